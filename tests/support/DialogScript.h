#pragma once

#include "support/Process.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// What a scripted run of the print dialog answered.
struct DialogRun {
    ProcessResult process;
    std::vector<nlohmann::json> answers; ///< one for each script line, in order
    /// The answer to line `index` of the script; an empty object when the run ended before it.
    const nlohmann::json& operator[](size_t index) const;
};

/// Runs `printdialog` with the arguments, driven by the script's lines. Needs a display. Unless the
/// environment says otherwise with PDE_ROOT, the driver's files are an empty folder.
DialogRun runDialog(std::vector<std::string> arguments, const std::vector<std::string>& script,
                    std::vector<std::string> environment = {});

/// The row of that outlet in the answer to `controls`; an empty object when it has none.
const nlohmann::json& controlRow(const nlohmann::json& controls, const std::string& field);
