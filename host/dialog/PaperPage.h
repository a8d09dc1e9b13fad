#pragma once

#import <AppKit/AppKit.h>
#include <cups/ppd.h>
#include <string>
#include <vector>

/// One option. The items of its pop-up carry the choices' keywords.
struct PaperRow {
    std::string keyword;
    std::string title;
    std::string group;
    std::string standard; ///< the keyword of the choice that holds when nothing is chosen
    NSPopUpButton* popUp; ///< the page's own
};

/// The page "Paper & Finishing": every option of the PPD with a choice to make that no panel handles, by the
/// PPD's groups, and how the printing system lays pages out.
@interface PaperPage : NSScrollView
{
    std::vector<PaperRow> rows_;
}
/// `claimed` are the keywords of the panel's options. `action` is sent after each choice; `target` is not
/// retained.
- (instancetype)initWithFrame:(NSRect)frame
                      ppdFile:(ppd_file_t*)ppd
                      claimed:(NSArray*)claimed
                       target:(id)target
                       action:(SEL)action;
/// Choice keyword by option keyword, for the options that are not left at the printer's default.
- (NSDictionary*)choices;
/// What the page does not offer is passed over.
- (void)setChoices:(NSDictionary*)choices;
/// Arrays of a name and a value, one for each option.
- (NSArray*)summary;
@end
