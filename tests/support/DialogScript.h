#pragma once

#include "support/Process.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// What a scripted run of the print dialog answered.
struct DialogRun {
    ProcessResult process;
    std::vector<nlohmann::json> answers; ///< one for each script line, in order
    /// The answer to line `index` of the script; null when the run ended before it.
    const nlohmann::json& operator[](size_t index) const;
};

/// Runs `printdialog` with the arguments, driven by the script's lines. Needs a display.
DialogRun runDialog(std::vector<std::string> arguments, const std::vector<std::string>& script,
                    const std::vector<std::string>& environment = {});

/// The row of that outlet in the answer to `controls`; null when it has none.
const nlohmann::json& controlRow(const nlohmann::json& controls, const std::string& field);
