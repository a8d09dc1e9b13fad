#pragma once

#include "support/Process.h"
#include "support/SamplePpd.h"

#include <nlohmann/json.hpp>
#include <sstream>

inline const nlohmann::json kNothing = nlohmann::json::object();

/// What a scripted run of the print dialog answered.
struct DialogRun {
    ProcessResult process;
    std::vector<nlohmann::json> answers; ///< one for each script line, in order
    /// The answer to line `index` of the script; an empty object when the run ended before it.
    const nlohmann::json& operator[](size_t index) const
    {
        return index < answers.size() ? answers[index] : kNothing;
    }
};

/// Runs `printdialog` with the arguments, driven by the script's lines. Needs a display. The
/// driver's files are those of a DriverRoot that is alive, else an empty folder.
inline DialogRun runDialog(std::vector<std::string> arguments, const std::vector<std::string>& script)
{
    arguments.insert(arguments.begin(), {PDE_BUILD_DIR "/bin/printdialog", "--script", "-"});
    Sandbox root;
    ProcessOptions options{.timeout = std::chrono::seconds(60)};
    if (getenv("PDE_ROOT") == nullptr)
        options.environment = {"PDE_ROOT=" + root.path().string()};
    for (const std::string& line : script)
        options.input += line + "\n";
    DialogRun run{runProcess(arguments, options), {}};
    std::istringstream lines(run.process.out);
    for (std::string line; std::getline(lines, line);)
        run.answers.push_back(nlohmann::json::parse(line, nullptr, false));
    return run;
}

/// The row of that outlet in the answer to `controls`; an empty object when it has none.
inline const nlohmann::json& controlRow(const nlohmann::json& controls, const std::string& field)
{
    for (const nlohmann::json& row : controls.contains("controls") ? controls["controls"] : kNothing)
        if (row.value("field", "") == field)
            return row;
    return kNothing;
}
