#pragma once

#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+PPD.h"
#include "support/SamplePpd.h"
#include "support/Sandbox.h"

#include <PrintingObjects.h>
#include <gtest/gtest.h>
#include <vector>

/// A table over real controls, and the PPD that it was made from.
class TableFixture : public ::testing::Test {
protected:
    ~TableFixture() override
    {
        freeControlTable(table);
        [printer release];
        [session release];
        [settings release];
        for (id control : controls)
            [control release];
    }

    NSPopUpButton* makePopup()
    {
        controls.push_back([[NSPopUpButton alloc] initWithFrame:NSMakeRect(0, 0, 200, 24) pullsDown:NO]);
        return controls.back();
    }

    NSButton* makeCheckBox()
    {
        NSButton* box = [[NSButton alloc] initWithFrame:NSMakeRect(0, 0, 200, 24)];
        [box setButtonType:NSSwitchButton];
        controls.push_back(box);
        return box;
    }

    NSTextField* makeText()
    {
        controls.push_back([[NSTextField alloc] initWithFrame:NSMakeRect(0, 0, 200, 24)]);
        return controls.back();
    }

    void openPpd(const std::string& text, NSString* queue = @"Queue")
    {
        auto file = sandbox.write("printer.ppd", text);
        NSString* error = nil;
        printer = [[PMPrinterObject alloc] initWithIdentifier:queue
                                                    deviceURI:nil
                                                         file:[NSString stringWithUTF8String:file.c_str()]
                                                        error:&error];
        ASSERT_NE(printer, nil) << [error UTF8String];
        session = [[PMSessionObject alloc] initWithPrinter:printer];
        settings = [[PMSettingsObject alloc] init];
        ppd = [printer ppdFile];
    }

    /// Makes the table of these rows, whose menus are filled.
    void build(std::vector<PDEControlItem> rows)
    {
        rows.push_back(kEndRow);
        table = createControlTable(rows.data(), (SInt16)rows.size(), ppd);
        [PDECommon commonBuildPDEItem:table ppdfile:ppd];
    }

    Sandbox sandbox;
    PMPrinterObject* printer = nil;
    PMSessionObject* session = nil;
    PMSettingsObject* settings = nil;
    ppd_file_t* ppd = nullptr;
    PDEControlItem* table = nullptr;
    std::vector<id> controls;
};
