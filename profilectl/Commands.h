#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One function a command. Each prints what it did, and throws CommandError when it could not.

/// Which profiles a command is about.
struct Selection {
    std::vector<int32_t> indexes; ///< the lists
    std::string fileName;
    int32_t location = 0; ///< 0: any
};

void listProfiles(const std::vector<int32_t>& indexes, bool asJson, bool onPrinterOnly = false);
/// `selection.location` 0 stands for the printer's disk.
void addProfile(const Selection& selection, const std::string& profileName, bool listed);
void removeProfile(const Selection& selection);
/// Offers the profile in menus, or not.
void setListing(const Selection& selection, bool listed);

/// `path` may be "-" for standard input or output.
void importLists(const std::string& path, bool replace);
void exportLists(const std::string& path);

/// Puts the copy that the last discovery kept back into its place.
void restoreLists();

/// Has the helper read the table of the printer with this address, and prints what it found.
void discoverProfiles(const std::string& host);

/// Says what is wrong with the list file and what reading makes of it; returns the exit status.
int checkListFile();
