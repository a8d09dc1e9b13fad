#pragma once

#import <Foundation/Foundation.h>
#include <string>

/// UTF-8; "" for nil.
std::string textOf(NSString* string);

/// What is not UTF-8 is taken for Latin-1.
NSString* stringOf(const std::string& text);

/// The dialog's own text in the user's language. The English one is the key.
NSString* localized(NSString* english);
