#pragma once

#include <optional>
#include <string>
#include <vector>

/// What the command line asks for.
struct Options {
    std::string plugin;  ///< absolute path of the bundle
    std::string printer; ///< queue of the CUPS server
    std::string ppd;     ///< the sample printer's when neither is given
    std::string queue;   ///< identifier of the printer that the PPD stands for
    std::string deviceUri;
    std::string settings;   ///< empty: none
    std::string script;     ///< "-" standard input; empty: a person drives the dialog
    std::string appearance; ///< "light" or "dark"; empty: as the desktop's other programs
    std::vector<std::string> files;
};

/// Fills `options`, with the bundle and the sample PPD of this installation or build where none are named.
/// Gives the status to exit with when there is nothing more to do: 0 after --help and --version, 2 after
/// wrong usage.
std::optional<int> parseOptions(int argc, char** argv, Options& options);

/// The PPD of the sample printer: the installed one, or the source tree's in a development build.
std::string samplePpd();

/// The dialog's texts, a folder for each language but English.
std::string textsFolder();

/// The queue identifier of the sample printer.
inline constexpr char kSampleQueue[] = "R4270-sample";
