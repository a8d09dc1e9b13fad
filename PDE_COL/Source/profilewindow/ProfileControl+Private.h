#pragma once

#include "profilewindow/ProfileControl.h"

@interface ProfileControl (Private)

/// Whether the printer's own profiles cannot be read over this connection (AppleTalk, USB).
- (BOOL)usesPapLists;

/// The records deleted from the current list; null when there is none.
- (ProfileList*)currentDeleteDict;

/// The current list's record in a row; null when there is none.
- (ProfileRecord*)recordInRow:(NSInteger)row;

/// The selected record; null when none is.
- (ProfileRecord*)selectedRecord;

/// Begins or ends an edit, for the keys that end it.
- (void)setEditMode:(SInt32)mode;

/// Selects no row, also while an edit keeps the person from changing the selection.
- (void)selectNoRow;

/// Puts a text into an edit field, as the one to go back to.
- (void)setText:(NSString*)text ofField:(VelTextField*)field;

/// The name field as text; empty when its bytes are no UTF-8.
- (NSString*)textOfName:(const char*)field;

@end

@interface ProfileControl (Table)
@end
