#include "DialogController.h"

#include "Prompts.h"
#include "Text.h"

// Dictionaries of the print settings, each with one of choices for every printer: the plug-in's, and that of
// the page "Paper & Finishing".
static NSString* const kPanelChoices = @"R4270";
static NSString* const kPaperChoices = @"PrintDialog";
static NSString* const kCopies = @"copies";
static NSString* const kPageRanges = @"page-ranges";

static NSDictionary* dictionaryIn(NSDictionary* parent, NSString* key)
{
    id value = [parent isKindOfClass:[NSDictionary class]] ? [parent objectForKey:key] : nil;
    return [value isKindOfClass:[NSDictionary class]] ? value : [NSDictionary dictionary];
}

@implementation DialogController (Choices)

- (void)takeCopies
{
    int copies = [window_ copies];
    NSString* ranges = [window_ pageRanges];
    [[settings_ values] setValue:copies > 1 ? [NSString stringWithFormat:@"%d", copies] : nil forKey:kCopies];
    [[settings_ values] setValue:[ranges length] > 0 ? ranges : nil forKey:kPageRanges];
}

- (void)showCopies
{
    id copies = [[settings_ values] objectForKey:kCopies];
    id ranges = [[settings_ values] objectForKey:kPageRanges];
    [window_ setCopies:[copies isKindOfClass:[NSString class]] ? [copies intValue] : 1
            pageRanges:[ranges isKindOfClass:[NSString class]] ? ranges : @""];
}

#pragma mark The printer's choices

- (NSDictionary*)choicesIn:(NSString*)dictionary
{
    return dictionaryIn(dictionaryIn([settings_ values], dictionary), [printer_ identifier]);
}

- (void)setChoices:(NSDictionary*)choices in:(NSString*)dictionary
{
    NSMutableDictionary* printers = [[dictionaryIn([settings_ values], dictionary) mutableCopy] autorelease];
    [printers setObject:[[choices mutableCopy] autorelease] forKey:[printer_ identifier]];
    [[settings_ values] setObject:printers forKey:dictionary];
}

- (void)putUpChoices
{
    [[settings_ values] addEntriesFromDictionary:[self choicesIn:kPaperChoices]];
    [[settings_ values] addEntriesFromDictionary:[self choicesIn:kPanelChoices]];
}

- (void)takeDownChoices
{
    [[settings_ values] removeObjectsForKeys:[[self choicesIn:kPaperChoices] allKeys]];
    [[settings_ values] removeObjectsForKeys:[[self choicesIn:kPanelChoices] allKeys]];
}

/// Puts these in place of the printer's own, and of no other's.
- (void)applyChoices:(NSDictionary*)choices
{
    [self takeDownChoices];
    for (NSString* dictionary in @[ kPanelChoices, kPaperChoices ])
        [self setChoices:dictionaryIn(choices, dictionary) in:dictionary];
    [self putUpChoices];
}

- (NSDictionary*)printersChoices
{
    return @{
        kPanelChoices : [self choicesIn:kPanelChoices],
        kPaperChoices : [self choicesIn:kPaperChoices],
    };
}

- (void)recallChoices
{
    BOOL isNew = [[self choicesIn:kPanelChoices] count] + [[self choicesIn:kPaperChoices] count] == 0;
    NSDictionary* choices = isNew && options_.settings.empty()
                                ? [remembered_ valuesOfPreset:[printer_ identifier] error:nullptr]
                                : nil;
    if (choices != nil)
        [self applyChoices:choices];
}

- (void)rememberChoices
{
    if (options_.settings.empty())
        (void)[remembered_ save:[self printersChoices] name:[printer_ identifier]]; // printed all the same
}

- (PaperPage*)paperPage
{
    if (paper_ == nil) {
        NSSize size = [window_ pageSize];
        paper_ = [[PaperPage alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)
                                          ppdFile:[printer_ ppdFile]
                                          claimed:[[self panel] supportedPPDOptionKeys]
                                           target:self
                                           action:@selector(paperChosen:)];
        [paper_ setChoices:[self choicesIn:kPaperChoices]];
    }
    return paper_;
}

- (void)paperChosen:(id)sender
{
    [self takeDownChoices];
    [self setChoices:[paper_ choices] in:kPaperChoices];
    [self putUpChoices];
}

- (NSString*)noteConflict
{
    [self takeCopies];
    [[self panel] saveValuesAndReturnError:nullptr];
    std::map<std::string, std::string> options = [self jobOptions];
    std::optional<Conflict> conflict = firstConflict([printer_ ppdFile], options);
    NSString* note = @"";
    // The system's filters count what is put onto the sheets, not what is in the document.
    if (options.contains("number-up") && options.contains(textOf(kPageRanges)))
        note = [NSString
            stringWithFormat:localized(@"With %@ pages per sheet the page numbers count printed sides"),
                             stringOf(options["number-up"])];
    if (conflict)
        note = [NSString stringWithFormat:localized(@"%@: %@ does not go with %@: %@"),
                                          stringOf(conflict->option), stringOf(conflict->choice),
                                          stringOf(conflict->otherOption), stringOf(conflict->otherChoice)];
    if (![note isEqual:[window_ note]])
        [window_ setNote:note];
    return note;
}

#pragma mark Presets

- (void)listPresetsAndSelect:(NSString*)name
{
    NSString* model = [NSString stringWithUTF8String:[printer_ ppdFile]->modelname ?: ""];
    model = [model stringByReplacingOccurrencesOfString:@"/" withString:@"-"];
    [presets_ release];
    presets_ = [[Presets alloc] initWithFolder:[@"presets" stringByAppendingPathComponent:model]];
    NSPopUpButton* popUp = [window_ presets];
    NSString* standard = localized(@"Default Settings");
    [popUp removeAllItems];
    [popUp addItemWithTitle:standard];
    [popUp addItemsWithTitles:[presets_ names]];
    [popUp selectItemWithTitle:name != nil && [popUp itemWithTitle:name] != nil ? name : standard];
    [[popUp menu] addItem:[NSMenuItem separatorItem]];
    [popUp addItemWithTitle:localized(@"Save Current Settings as Preset...")];
    if ([popUp indexOfSelectedItem] > 0)
        [popUp addItemWithTitle:[NSString stringWithFormat:localized(@"Delete Preset \"%@\"..."), name]];
    [preset_ release];
    preset_ = [[popUp titleOfSelectedItem] copy];
}

- (void)presetChosen:(id)sender
{
    [self performSelector:@selector(changePreset) withObject:nil afterDelay:0];
}

- (void)changePreset
{
    NSPopUpButton* popUp = [window_ presets];
    NSInteger chosen = [popUp indexOfSelectedItem];
    NSInteger line = static_cast<NSInteger>([[presets_ names] count]) + 1;
    NSString* name = [[[popUp titleOfSelectedItem] retain] autorelease];
    // The line between is an item too, which the user can choose.
    if (chosen >= line)
        [popUp selectItemWithTitle:preset_];
    if (chosen < line)
        [self choosePreset:chosen == 0 ? nil : name];
    else if (chosen == line + 1)
        [self savePreset];
    else if (chosen == line + 2)
        [self deletePreset];
}

/// Nil for the printer's defaults.
- (void)choosePreset:(NSString*)name
{
    NSString* reason = nil;
    NSDictionary* values =
        name == nil ? [NSDictionary dictionary] : [presets_ valuesOfPreset:name error:&reason];
    if (values == nil)
        NSRunAlertPanel(localized(@"The preset cannot be read"), @"%@", localized(@"OK"), nil, nil, reason);
    else
        [self applyPreset:values];
    [self listPresetsAndSelect:values != nil ? name : nil];
}

- (void)applyPreset:(NSDictionary*)values
{
    [self applyChoices:values];
    for (NSString* key in @[ kCopies, kPageRanges ])
        [[settings_ values] setValue:[values objectForKey:key] forKey:key];
    [self showCopies];
    [[self panel] restoreValuesAndReturnError:nullptr];
    [paper_ setChoices:[self choicesIn:kPaperChoices]];
}

- (void)savePreset
{
    NSString* name = promptForName(localized(@"Save the current settings as:"), localized(@"My Preset"));
    if (name == nil)
        return;
    if ([[presets_ names] containsObject:name] &&
        NSRunAlertPanel(localized(@"Replace the preset?"), localized(@"There is a preset \"%@\" already."),
                        localized(@"Replace"), localized(@"Cancel"), nil, name) != NSAlertDefaultReturn)
        return;
    [self takeCopies];
    [[self panel] saveValuesAndReturnError:nullptr];
    NSMutableDictionary* values = [[[self printersChoices] mutableCopy] autorelease];
    for (NSString* key in @[ kCopies, kPageRanges ])
        [values setValue:[[settings_ values] objectForKey:key] forKey:key];
    // A title of the list itself could not be told from a preset's.
    BOOL isTitle = [[window_ presets] itemWithTitle:name] != nil && ![[presets_ names] containsObject:name];
    if (isTitle || ![presets_ save:values name:name])
        NSRunAlertPanel(localized(@"The preset was not saved"),
                        localized(@"A preset cannot be stored as \"%@\"."), localized(@"OK"), nil, nil, name);
    [self listPresetsAndSelect:name];
}

- (void)deletePreset
{
    if (NSRunAlertPanel(localized(@"Delete the preset?"), localized(@"\"%@\" cannot be brought back."),
                        localized(@"Delete"), localized(@"Cancel"), nil, preset_) != NSAlertDefaultReturn)
        return;
    [presets_ removePreset:preset_];
    [self choosePreset:nil];
}

@end
