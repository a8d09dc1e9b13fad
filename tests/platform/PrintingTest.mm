// The Printing core's calls on the objects that a print dialog makes, and opening an application.

#include <CoreServices/CoreServices.h>
#include <PrintingObjects.h>

#include "support/Process.h"
#include "support/Sandbox.h"

#include <clocale>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

class PrintingTest : public ::testing::Test {
protected:
    ~PrintingTest() override { [pool drain]; }

    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    PMPrinterObject* printer(NSString* uri)
    {
        return [[[PMPrinterObject alloc] initWithIdentifier:@"Q"
                                                  deviceURI:uri
                                                       file:@PDE_SOURCE_DIR "/printer/R4270.ppd"
                                                      error:nullptr] autorelease];
    }
};

} // namespace

TEST_F(PrintingTest, WhatIsMissingIsNamed)
{
    PMSettingsObject* object = [[[PMSettingsObject alloc] init] autorelease];
    PMPrintSettings settings = [object handle];
    CFTypeRef value = @"untouched";
    EXPECT_EQ(PMPrintSettingsGetValue(settings, CFSTR("a"), &value), kPMKeyNotFound);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(PMPrintSettingsSetValue(settings, CFSTR("a"), @"1", false), kPMNoError);
    EXPECT_EQ(PMPrintSettingsSetValue(settings, CFSTR("a"), nullptr, false), kPMNoError);
    EXPECT_TRUE([[object values] isEqual:@{}]);
    EXPECT_EQ(PMPrintSettingsGetValue(nullptr, CFSTR("a"), &value), kPMInvalidParameter);
    EXPECT_EQ(PMPrintSettingsSetValue(settings, nullptr, @"1", false), kPMInvalidParameter);
    PMSessionObject* session = [[[PMSessionObject alloc] initWithPrinter:nil] autorelease];
    PMPrinter current = nullptr;
    EXPECT_EQ(PMSessionGetDataFromSession([session handle], CFSTR("k"), &value), kPMKeyNotFound);
    EXPECT_EQ(PMSessionGetCurrentPrinter([session handle], &current), kPMNoDefaultPrinter);
    EXPECT_EQ(PMPrinterGetID(nullptr), nullptr);
}

TEST_F(PrintingTest, DeviceUriIsAUrlOnlyWhenItIsOne)
{
    const std::pair<NSString*, bool> cases[] = {
        {@"dnssd://Office%20Printer._pdl-datastream._tcp.local./?uuid=1-2", true},
        {@"usb://MAKER/MODEL?serial=AB%201", true},
        {@"socket://[fe80::1]:9100", true},
        {@"", false},
        {@"://x", false},
        {@"lpd://a b/", false},
        {@"lpd://h:port/", false},
        {@"1a://x", false},
        {nil, false},
    };
    for (auto [text, valid] : cases) {
        CFURLRef uri = nullptr;
        EXPECT_EQ(PMPrinterCopyDeviceURI([printer(text) handle], &uri) == kPMNoError, valid)
            << [text UTF8String];
        EXPECT_TRUE(valid ? [[(NSURL*)uri absoluteString] isEqual:text] : uri == nullptr)
            << [text UTF8String];
        [(id)uri release];
    }
}

TEST_F(PrintingTest, PpdTextsFollowTheToolkitsLanguageWhateverTheLocale)
{
    NSArray* languages = [NSUserDefaults userLanguages];
    const std::pair<NSString*, const char*> cases[] = {
        {@"German", "Strichzeichnung"}, {@"SimplifiedChinese", "线条图"}, {@"English", "Line Art"}};
    const std::string locale = setlocale(LC_MESSAGES, nullptr);
    ScopedVariable variable("LC_MESSAGES", "fr_FR");
    for (auto [language, text] : cases) {
        [NSUserDefaults setUserLanguages:@[ language ]];
        ppd_option_t* option = ppdFindOption([printer(nil) ppdFile], "VelQuickColor");
        EXPECT_STREQ(ppdFindChoice(option, "LineArt")->text, text);
        EXPECT_EQ(setlocale(LC_MESSAGES, nullptr), locale);
    }
    EXPECT_STREQ(getenv("LC_MESSAGES"), "fr_FR");
    [NSUserDefaults setUserLanguages:languages];
}

TEST_F(PrintingTest, AnApplicationStartsAndLeavesNoChildBehind)
{
    Sandbox files;
    std::string marker = files / "it ran";
    std::string program =
        files.write("Some Tool.app/Contents/MacOS/Some Tool", "#!/bin/sh\ntouch '" + marker + "'\n");
    chmod(program.c_str(), 0755);
    FSRef ref;
    std::string application = files / "Some Tool.app";
    ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(application.c_str()), &ref, nullptr), noErr);
    EXPECT_EQ(LSOpenFSRef(&ref, nullptr), noErr);
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(marker); }));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child, and so no zombie";
    std::string missing = files / "Missing.app";
    EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(missing.c_str()), &ref, nullptr), fnfErr);
}
