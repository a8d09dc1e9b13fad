#include "profilewindow/VelTextField.h"

#include "profilewindow/KeyFilters.h"

#include <algorithm>
#include <string>
#include <string_view>

// The checks look at UTF-16 units: searching and comparing as NSString does would also see composed
// characters in them.

namespace {

std::u16string unitsOf(NSString* text)
{
    std::u16string units([text length], u'\0');
    for (size_t i = 0; i < units.size(); ++i)
        units[i] = [text characterAtIndex:i];
    return units;
}

NSString* stringOf(const std::u16string& units)
{
    return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data()) length:units.size()];
}

/// What the filter leaves of the text.
std::u16string filtered(std::u16string_view units, SInt32 inputkey)
{
    std::u16string result(units);
    CheckUniCharString(units.data(), units.size(), inputkey, result);
    return result;
}

/// Whether the lengths and the full stops are within the rules of setMaxLength:extension:.
bool isWellFormed(const std::u16string& units, SInt32 maxLen, SInt32 maxExtension)
{
    auto length = static_cast<SInt32>(units.size());
    if (maxExtension < 1)
        return length <= maxLen;
    SInt32 longestBase = maxLen - maxExtension - 1;
    size_t stop = units.find(u'.');
    if (stop == std::u16string::npos)
        return length <= longestBase;
    auto base = static_cast<SInt32>(stop);
    return length <= maxLen && base <= longestBase && length - base <= maxExtension + 1 &&
           units.find(u'.', stop + 1) == std::u16string::npos;
}

} // namespace

@implementation VelTextField

- (void)dealloc
{
    [oldValue release];
    [super dealloc];
}

- (void)setMaxLength:(SInt32)length extension:(SInt32)extension
{
    maxLen = length;
    maxExtension = extension;
}

- (void)setInputKey:(SInt32)key
{
    inputkey = key;
}

- (void)setOperateControl:(NSControl*)control
{
    operateOutlet = control;
}

- (void)setOldString:(NSString*)string
{
    NSString* copy = [string copy];
    [oldValue release];
    oldValue = copy;
}

#pragma mark Caret

/// Shows `text` in place of what the edit left, with the caret at `caret`.
- (void)replaceText:(NSString*)text caret:(NSInteger)caret
{
    [self setStringValue:text];
    // Setting the text selects all of it, and the next key would replace it.
    auto place = (NSUInteger)std::clamp<NSInteger>(caret, 0, (NSInteger)[text length]);
    [textObj setSelectedRange:NSMakeRange(place, 0)];
}

#pragma mark Editing

- (BOOL)textShouldBeginEditing:(NSText*)textObject
{
    [self setOldString:[self stringValue]];
    textObj = textObject;
    return [super textShouldBeginEditing:textObject];
}

/// Takes the change that made the text `units` back. The caret returns to where the refused input began.
- (void)restoreOldValueAfter:(const std::u16string&)units
{
    NSString* old = oldValue != nil ? [[oldValue retain] autorelease] : @"";
    auto start = (NSInteger)[textObj selectedRange].location;
    [self replaceText:old caret:start - (NSInteger)units.size() + (NSInteger)[old length]];
}

- (void)filterText:(const std::u16string&)units
{
    std::u16string result = filtered(units, inputkey);
    // An unchanged text is left alone, with its selection and a character that is still being composed.
    if (result != units) {
        std::u16string_view beforeCaret(units.data(),
                                        std::min(units.size(), [textObj selectedRange].location));
        [self replaceText:stringOf(result) caret:(NSInteger)filtered(beforeCaret, inputkey).size()];
    }
    [self setOldString:stringOf(result)];
}

- (void)updateOperateControl
{
    NSString* text = [self stringValue];
    BOOL usable = [text length] > 0 && [text characterAtIndex:0] != '.';
    if (operateOutlet != nil && [operateOutlet isEnabled] != usable)
        [operateOutlet setEnabled:usable];
}

/// Does not call the base class, on purpose: no delegate hears of a text that is not checked.
- (void)textDidChange:(NSNotification*)notification
{
    std::u16string units = unitsOf([self stringValue]);
    if (isWellFormed(units, maxLen, maxExtension))
        [self filterText:units];
    else
        [self restoreOldValueAfter:units];
    [self updateOperateControl];
}

@end
