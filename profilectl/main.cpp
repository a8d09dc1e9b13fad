#include "CommandError.h"
#include "Commands.h"
#include "StoredProfiles.h"

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileRecord.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <functional>
#include <iostream>
#include <map>

namespace {

constexpr char kExitStatuses[] =
    "Exit status: 0 done, 1 the list file has a fault, 2 bad command line, name or "
    "imported file,\n3 not there, there already or no room, 4 no permission, 5 not written.";

/// What the options of all subcommands are read into.
struct Options {
    Selection selection;
    std::vector<std::string> classes;
    std::string location, profileName, host, path = "-";
    bool hidden = false, json = false, replace = false;
};

/// The command line: each subcommand with the function that does it.
class CommandLine {
public:
    CommandLine()
    {
        app_.require_subcommand(1);
        app_.footer(kExitStatuses);
        app_.set_version_flag("--version", "profilectl " PDE_VERSION);
        addListing();
        addChanges();
        addFiles();
        addDiscovery();
    }

    int run(int argc, char** argv)
    {
        try {
            app_.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            if (error.get_exit_code() == 0)
                return app_.exit(error) == 0 ? kDone : kBadInput; // help or version
            throw CommandError(kBadInput, whatIsWrong(argc > 1 ? argv[1] : "", error));
        }
        if (loginName().empty())
            throw CommandError(kNoPermission, "the user database has no entry for you");
        options_.selection.indexes = listIndexes();
        if (!options_.location.empty())
            options_.selection.location = options_.location == "card" ? kOnCard : kOnDisk;
        return actions_.at(app_.get_subcommands().front())();
    }

private:
    std::string whatIsWrong(const std::string& first, const CLI::ParseError& error) const
    {
        bool known = std::any_of(actions_.begin(), actions_.end(),
                                 [&](const auto& action) { return action.first->get_name() == first; });
        if (known || first.starts_with("-"))
            return error.what() + std::string(" (--help explains)");
        std::string message = first.empty() ? "no command given" : "there is no command \"" + first + "\"";
        message += "; the commands are";
        for (const CLI::App* command : app_.get_subcommands({}))
            message += " " + command->get_name();
        return message;
    }

    CLI::App* add(const char* name, const char* does, const std::function<void()>& action)
    {
        CLI::App* command = app_.add_subcommand(name, does);
        command->footer(kExitStatuses);
        actions_[command] = [action] {
            action();
            return kDone;
        };
        return command;
    }

    CLI::Option* addClass(CLI::App* command)
    {
        return command
            ->add_option("--class", options_.classes,
                         "Lists: rgb (sources), sim (simulation), dst (destinations)")
            ->delimiter(',')
            ->allow_extra_args(false)
            ->check(CLI::IsMember({"rgb", "sim", "dst"}));
    }

    void addSelection(CLI::App* command)
    {
        command->add_option("FILE", options_.selection.fileName, "The profile's file name on the printer")
            ->required();
        command->add_option("--location", options_.location, "Where on the printer it is")
            ->check(CLI::IsMember({"disk", "card"}));
    }

    void addListing()
    {
        CLI::App* list = add("list", "Print the profiles",
                             [this] { listProfiles(options_.selection.indexes, options_.json); });
        addClass(list);
        list->add_flag("--json", options_.json, "As JSON, in the form that import takes");
        CLI::App* check =
            add("check", "Say what is wrong with the list file and what reading makes of it", [] {});
        actions_[check] = checkListFile;
    }

    void addChanges()
    {
        Options& o = options_;
        CLI::App* adding = add("add", "Register a profile that is on the printer", [&o] {
            addProfile(o.selection, o.profileName.empty() ? o.selection.fileName : o.profileName, !o.hidden);
        });
        addSelection(adding);
        addClass(adding)->required();
        adding->add_option("--name", o.profileName,
                           "The name in menus (else the file name), at most 31 bytes");
        adding->add_flag("--hidden", o.hidden, "Do not offer it in menus yet");
        CLI::App* commands[] = {
            add("remove", "Remove a profile from the lists", [&o] { removeProfile(o.selection); }),
            add("show", "Offer a profile in the menus", [&o] { setListing(o.selection, true); }),
            add("hide", "No longer offer a profile in the menus", [&o] { setListing(o.selection, false); }),
        };
        for (CLI::App* command : commands) {
            addSelection(command);
            addClass(command);
        }
    }

    void addFiles()
    {
        Options& o = options_;
        CLI::App* importing =
            add("import", "Add the profiles in a JSON file, and bring those that are there up to date",
                [&o] { importLists(o.path, o.replace); });
        importing->add_option("FILE", o.path, "What export wrote; \"-\" is standard input")->required();
        importing->add_flag("--replace", o.replace,
                            "Each list in the file takes the place of the stored one");
        CLI::App* exporting = add("export", "Write all lists as JSON", [&o] { exportLists(o.path); });
        exporting->add_option("FILE", o.path, "\"-\", standard output, unless given");
        add("restore", "Put the copy that the last discovery kept back in place of the lists", restoreLists);
    }

    void addDiscovery()
    {
        CLI::App* discovering = add("discover", "Ask a printer for its profiles, and print them",
                                    [this] { discoverProfiles(options_.host); });
        discovering->add_option("HOST", options_.host, "Name or address of the printer")->required();
    }

    std::vector<int32_t> listIndexes() const
    {
        std::vector<int32_t> indexes;
        for (int32_t index = 0; index < kProfileListCount; ++index) {
            bool named = std::find(options_.classes.begin(), options_.classes.end(), kClassNames[index]) !=
                         options_.classes.end();
            if (options_.classes.empty() || named)
                indexes.push_back(index);
        }
        return indexes;
    }

    CLI::App app_{"Manages the colour profile lists of the R4270 for the user who runs it."};
    Options options_;
    std::map<CLI::App*, std::function<int()>> actions_;
};

} // namespace

int main(int argc, char** argv)
{
    passHelperMessages();
    signal(SIGPIPE, SIG_IGN); // a reader that has gone is an output that cannot be written
    try {
        int status = CommandLine().run(argc, argv);
        if (!std::cout.flush())
            throw CommandError(kNotWritten, "standard output could not be written");
        return status;
    } catch (const CommandError& error) {
        std::cerr << "profilectl: " << printable(error.what()) << '\n';
        return error.status;
    }
}
