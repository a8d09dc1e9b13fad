#pragma once

#include "common/ProfileKind.h"

#import <ApplicationServices/ApplicationServices.h>
#import <Cocoa/Cocoa.h>

/// Kind of a control. 1033 and 1038 are not used.
enum : SInt32 {
    PDEControlKindEnd = 1032,      ///< the record that ends a table
    PDEControlKindText = 1034,     ///< static text: `title` is its text
    PDEControlKindPopup = 1035,    ///< pop-up button: items come from the PPD, the value is an index
    PDEControlKindCheckBox = 1036, ///< check box: `title` is its title, the value 0 or 1
    PDEControlKindCleared = 1037,  ///< integer control that reading the print settings sets to 0
    PDEControlKindButton = 1039,   ///< push button: `title` is its title
    PDEControlKindTab = 1040,      ///< tab view: its labels are fixed, `title` is not shown
};

/// One row of a control table: an array that ends with a record whose `control` is null and whose `kind` is
/// PDEControlKindEnd. Strings are literals.
struct PDEControlItem {
    id control; ///< not owned; null only in the last record
    SInt32 kind;
    const char* ppdKey;                  ///< option keyword; "" for a row without a PPD option
    const char* title;                   ///< localisation key, or null
    const char* summaryName;             ///< localisation key of the summary row; null keeps the row out
    const char* identifier;              ///< name that the preset rules use; unique unless ""
    SInt16 profileClass = kNoProfiles;   ///< a ProfileKind
    CFMutableArrayRef choices = nullptr; ///< owned by the view's table; null when the PPD lacks the option
};

/// Elements of an entry of PDEControlItem::choices, an array of five strings.
enum : CFIndex {
    kChoiceOption = 0,
    kChoiceDefault = 1,
    kChoiceKeyword = 2,
    kChoiceText = 3,
    kChoiceConflict = 4, ///< "ConflictTrue" or "ConflictFalse", as of the table's creation
};
