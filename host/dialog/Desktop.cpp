#include "Desktop.h"

#include <X11/Xlib.h>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

namespace {

std::string variable(const char* name)
{
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

std::string outputOf(const char* command)
{
    std::string result;
    if (FILE* pipe = popen(command, "r")) {
        char part[256];
        while (fgets(part, sizeof part, pipe) != nullptr)
            result += part;
        pclose(pipe);
    }
    return result;
}

/// Without a session bus the tools below would start one.
bool hasSessionBus()
{
    std::error_code ignored;
    return !variable("DBUS_SESSION_BUS_ADDRESS").empty() ||
           std::filesystem::exists(variable("XDG_RUNTIME_DIR") + "/bus", ignored);
}

/// "" when the dialog does not have the language of the locale.
std::string knownLanguage(const std::string& locale)
{
    std::string name = locale.substr(0, locale.find_first_of(".@"));
    if (name == "zh" || name == "zh_CN" || name == "zh_SG" || name == "zh-Hans")
        return "zh_CN";
    std::string language = name.substr(0, name.find_first_of("_-"));
    if (language == "C" || language == "POSIX")
        return "en";
    for (const char* known : {"de", "en", "es", "fr", "it", "ja"})
        if (language == known)
            return language;
    return "";
}

} // namespace

double desktopScale()
{
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr)
        return 1;
    const char* dpi = XGetDefault(display, "Xft", "dpi");
    double scale = dpi != nullptr ? strtod(dpi, nullptr) / 96 : 1;
    XCloseDisplay(display);
    return std::clamp(scale, 1.0, 4.0);
}

bool desktopIsDark()
{
    std::string theme = variable("GTK_THEME");
    if (!theme.empty())
        return theme.ends_with(":dark") || theme.ends_with("-dark");
    if (!hasSessionBus())
        return false;
    std::string scheme =
        outputOf("gdbus call --session --timeout 1 --dest org.freedesktop.portal.Desktop"
                 " --object-path /org/freedesktop/portal/desktop"
                 " --method org.freedesktop.portal.Settings.Read org.freedesktop.appearance color-scheme"
                 " 2>/dev/null || gsettings get org.gnome.desktop.interface color-scheme 2>/dev/null");
    return scheme.find("uint32 1") != std::string::npos || scheme.find("prefer-dark") != std::string::npos;
}

void settleLanguage()
{
    std::string wanted;
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
        if (wanted.empty())
            wanted = variable(name);
    std::istringstream list(wanted);
    std::string language;
    for (std::string locale; language.empty() && std::getline(list, locale, ':');)
        language = knownLanguage(locale);
    setenv("LANGUAGE", language.empty() ? "en" : language.c_str(), 1);
}
