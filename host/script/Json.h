#pragma once

#include "dialog/Text.h"
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

/// Property-list objects as JSON: nil and unknown objects are null, dictionary keys are sorted, data is
/// base64, dates are text.
Json jsonOf(id object);

/// The answer to a line that cannot be carried out.
Json errorAnswer(const std::string& reason);
