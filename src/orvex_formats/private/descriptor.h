#pragma once

/// @file
/// An open file that closes itself.

#include <utility>

#include <unistd.h>

namespace orvex::formats {

/// Holds a descriptor, or none.
class Descriptor {
public:
    explicit Descriptor(int number = -1)
        : number(number) {}
    Descriptor(Descriptor&& other) noexcept
        : number(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        close();
        number = other.release();
        return *this;
    }
    ~Descriptor() { close(); }

    int get() const { return number; }
    explicit operator bool() const { return number >= 0; }
    /// Gives it away.
    int release() { return std::exchange(number, -1); }
    void close() {
        if (number >= 0)
            ::close(release());
    }

private:
    int number;
};

} // namespace orvex::formats
