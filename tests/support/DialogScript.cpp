#include "support/DialogScript.h"

#include "support/Sandbox.h"

#include <sstream>

namespace {
const nlohmann::json kNothing = nlohmann::json::object();
}

const nlohmann::json& DialogRun::operator[](size_t index) const
{
    return index < answers.size() ? answers[index] : kNothing;
}

DialogRun runDialog(std::vector<std::string> arguments, const std::vector<std::string>& script,
                    std::vector<std::string> environment)
{
    arguments.insert(arguments.begin(), PDE_BUILD_DIR "/bin/printdialog");
    arguments.insert(arguments.begin() + 1, {"--script", "-"});
    Sandbox root;
    environment.insert(environment.begin(), "PDE_ROOT=" + root.path().string());
    ProcessOptions options{.environment = environment, .timeout = std::chrono::seconds(60)};
    for (const std::string& line : script)
        options.input += line + "\n";
    DialogRun run;
    run.process = runProcess(arguments, options);
    std::istringstream lines(run.process.out);
    for (std::string line; std::getline(lines, line);)
        run.answers.push_back(nlohmann::json::parse(line, nullptr, false));
    return run;
}

const nlohmann::json& controlRow(const nlohmann::json& controls, const std::string& field)
{
    if (!controls.contains("controls"))
        return kNothing;
    for (const nlohmann::json& row : controls["controls"])
        if (row.value("field", "") == field)
            return row;
    return kNothing;
}
