#pragma once

#import <Foundation/Foundation.h>
#include <nlohmann/json.hpp>
#include <string>

using Json = nlohmann::ordered_json;

/// Property-list objects as JSON: nil and unknown objects are null, dictionary keys are sorted, data is
/// base64, dates are text.
Json jsonOf(id object);

/// UTF-8; "" for nil.
std::string textOf(NSString* string);

/// Nil when the bytes are not UTF-8.
NSString* stringOf(const std::string& text);

/// The answer to a line that cannot be carried out.
Json errorAnswer(const std::string& reason);
