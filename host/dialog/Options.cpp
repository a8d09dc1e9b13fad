#include "Options.h"

#include <CLI/CLI.hpp>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr char kInstalledPlugin[] = "/Library/Printers/QUORVEX/R4270/R4270.plugin";

/// The folder above the executable's: that of a build, or the prefix of an installation.
fs::path prefix()
{
    std::error_code ignored;
    return fs::read_symlink("/proc/self/exe", ignored).parent_path().parent_path();
}

std::string defaultPlugin()
{
    std::error_code ignored;
    fs::path ofBuild = prefix() / "R4270.plugin";
    return fs::is_directory(ofBuild, ignored) ? ofBuild.string() : kInstalledPlugin;
}

void describe(CLI::App& app, Options& options)
{
    app.set_version_flag("--version", "printdialog " PDE_VERSION);
    app.add_option("--plugin", options.plugin, "Plug-in bundle (default: the one of this installation)");
    CLI::Option* printer = app.add_option("--printer", options.printer, "Queue of the CUPS server");
    CLI::Option* ppd = app.add_option("--ppd", options.ppd, "PPD file (default: the sample printer's)");
    app.add_option("--queue", options.queue, "With --ppd: queue identifier")->excludes(printer);
    app.add_option("--device-uri", options.deviceUri, "With --ppd: device URI")->excludes(printer);
    printer->excludes(ppd);
    app.add_option("--settings", options.settings,
                   "Print settings (property list), read at start and written back at the end");
    app.add_option("--appearance", options.appearance, "Colours (default: the desktop's)")
        ->check(CLI::IsMember({"light", "dark"}));
    app.add_option(
        "--script", options.script,
        "Take commands from this file, or from standard input (-); each answers with a line of JSON");
    app.add_option("FILE", options.files, "What Print prints (with --printer)");
    app.footer("Without --printer and --ppd the dialog opens on the default printer, else on the first queue "
               "with the\n"
               "panel's options, else on the sample printer; a script on the sample printer.\n"
               "Exit status: 0 done, 1 the script or the dialog failed, 2 wrong usage.");
}

} // namespace

std::string samplePpd()
{
    fs::path installed = prefix() / "share/ppd/QUORVEX/R4270.ppd";
#ifdef PDE_SAMPLE_PPD
    std::error_code ignored;
    if (!fs::exists(installed, ignored))
        return PDE_SAMPLE_PPD;
#endif
    return installed.string();
}

std::string textsFolder()
{
    return (prefix() / "share/r4270-printdialog").string();
}

std::optional<int> parseOptions(int argc, char** argv, Options& options)
{
    options.queue = kSampleQueue;
    CLI::App app("Print dialog for the R4270", "printdialog");
    describe(app, options);
    try {
        app.parse(argc, argv);
        if (options.plugin.empty())
            options.plugin = defaultPlugin();
        options.plugin = fs::absolute(options.plugin).lexically_normal().string();
        if (options.plugin.size() > 1 && options.plugin.back() == '/')
            options.plugin.pop_back();
        // The pictures of a script are the same on every desktop.
        if (!options.script.empty() && options.appearance.empty())
            options.appearance = "light";
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
}
