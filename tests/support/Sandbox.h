#pragma once

#include <filesystem>
#include <string>

/// A scratch folder that is removed, with all in it, when the object goes.
class Sandbox {
public:
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// Writes `text` to the file `name` (parent folders are made) and gives its path.
    std::filesystem::path write(const std::string& name, const std::string& text) const;

private:
    std::filesystem::path path_;
};

/// The bytes of a file; empty when it cannot be read.
std::string readFile(const std::filesystem::path& path);

/// Sets an environment variable for as long as the object lives.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::string& value);
    ~ScopedVariable();
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    std::string name_;
    std::string earlier_;
    bool wasSet_;
};
