#pragma once

#include <unistd.h>
#include <utility>

/// Owns one open file; -1 is none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor()
    {
        if (number_ >= 0)
            close(number_);
    }

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }
    /// Gives the open file up to the caller.
    int release() { return std::exchange(number_, -1); }

private:
    int number_ = -1;
};
