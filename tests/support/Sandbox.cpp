#include "support/Sandbox.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

Sandbox::Sandbox()
{
    std::string pattern = (fs::temp_directory_path() / "pde-test.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no scratch folder: " + pattern);
    path_ = pattern;
}

Sandbox::~Sandbox()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

fs::path Sandbox::write(const std::string& name, const std::string& text) const
{
    fs::path file = path_ / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file;
}

std::string readFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

ScopedVariable::ScopedVariable(std::string name, const std::string& value) : name_(std::move(name))
{
    const char* earlier = getenv(name_.c_str());
    wasSet_ = earlier != nullptr;
    if (wasSet_)
        earlier_ = earlier;
    setenv(name_.c_str(), value.c_str(), 1);
}

ScopedVariable::~ScopedVariable()
{
    if (wasSet_)
        setenv(name_.c_str(), earlier_.c_str(), 1);
    else
        unsetenv(name_.c_str());
}
