#include "support/SamplePpd.h"

#include "support/Sandbox.h"

#include <stdexcept>

std::string samplePpd()
{
    return readFile(PDE_SOURCE_DIR "/printer/R4270.ppd");
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    size_t at = text.find(from);
    if (at == std::string::npos)
        throw std::invalid_argument("not in the text: " + from);
    return text.replace(at, from.size(), to);
}

std::string withOption(const std::string& ppd, const std::string& keyword, const std::string& body)
{
    std::string closing = "*CloseUI: *" + keyword + "\n";
    size_t begin = ppd.find("*OpenUI *" + keyword + "/");
    size_t end = ppd.find(closing);
    if (begin == std::string::npos || end == std::string::npos)
        throw std::invalid_argument("no such option: " + keyword);
    return ppd.substr(0, begin) + body + ppd.substr(end + closing.size());
}
