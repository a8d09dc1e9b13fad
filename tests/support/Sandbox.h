#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A scratch folder that is removed, with all in it, when the object goes.
class Sandbox {
public:
    Sandbox() : path_((std::filesystem::temp_directory_path() / "pde-test.XXXXXX").string())
    {
        if (mkdtemp(path_.data()) == nullptr)
            throw std::runtime_error("no scratch folder: " + path_);
    }
    ~Sandbox()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    std::filesystem::path path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path() / name; }

    /// Writes `text` to the file `name` (parent folders are made) and gives its path.
    std::filesystem::path write(const std::string& name, const std::string& text) const
    {
        std::filesystem::path file = path() / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }

private:
    std::string path_;
};

/// The bytes of a file; empty when it cannot be read.
inline std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Sets an environment variable for as long as the object lives; then it is unset.
class ScopedVariable {
public:
    ScopedVariable(const std::string& name, const std::string& value) : name_(name)
    {
        setenv(name.c_str(), value.c_str(), 1);
    }
    ~ScopedVariable() { unsetenv(name_.c_str()); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    std::string name_;
};
