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
        for (id object : owned)
            [object release];
    }

    template <typename Object>
    Object* own(Object* object)
    {
        owned.push_back(object);
        return object;
    }

    void openPpd(const std::string& text)
    {
        auto file = sandbox.write("printer.ppd", text);
        NSString* error = nil;
        printer = own([[PMPrinterObject alloc] initWithIdentifier:@"Queue"
                                                        deviceURI:nil
                                                             file:[NSString stringWithUTF8String:file.c_str()]
                                                            error:&error]);
        ASSERT_NE(printer, nil) << [error UTF8String];
        session = own([[PMSessionObject alloc] initWithPrinter:printer]);
        settings = own([[PMSettingsObject alloc] init]);
        ppd = [printer ppdFile];
    }

    /// A row with a control of its kind: a pop-up, a check box or a text.
    PDEControlItem row(SInt32 kind, const char* key, const char* summary = nullptr, SInt16 profileClass = 0)
    {
        Class type = kind == PDEControlKindPopup      ? [NSPopUpButton class]
                     : kind == PDEControlKindCheckBox ? [NSButton class]
                                                      : [NSTextField class];
        id control = own((NSView*)[[type alloc] initWithFrame:NSMakeRect(0, 0, 200, 24)]);
        if (kind == PDEControlKindCheckBox)
            [control setButtonType:NSSwitchButton];
        return {control, kind, key, "Brightness:", summary, kNoKey, profileClass};
    }

    /// Makes the table of these rows, whose menus are filled.
    void build(std::vector<PDEControlItem> rows)
    {
        rows.push_back(kEndRow);
        table = createControlTable(rows.data(), (SInt16)rows.size(), ppd);
        [PDECommon commonBuildPDEItem:table ppdfile:ppd];
    }

    Sandbox sandbox;
    std::vector<id> owned;
    PMPrinterObject* printer = nil;
    PMSessionObject* session = nil;
    PMSettingsObject* settings = nil;
    ppd_file_t* ppd = nullptr;
    PDEControlItem* table = nullptr;
};
