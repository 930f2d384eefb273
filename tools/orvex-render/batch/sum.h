#pragma once

/// @file
/// Sums of bytes by which they are known again: SHA-256.

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace batch {

/// Adds up bytes.
class Sum {
public:
    Sum();
    ~Sum();
    Sum(const Sum&) = delete;
    Sum& operator=(const Sum&) = delete;

    void add(std::string_view bytes);
    /// The sum of all so far. Begins a new one.
    std::array<std::uint8_t, 32> finish();
    /// The same in 64 digits.
    std::string finish_as_text();

private:
    struct State;
    std::unique_ptr<State> state;
};

/// The sum of bytes, in 64 digits.
std::string sum_of(std::string_view bytes);

/// A file's sum in 64 digits, and how many bytes it has.
struct FileSum {
    std::string text;
    std::uint64_t bytes = 0;
};
/// @return nothing for what can't be read, and for what is no regular file
std::optional<FileSum> sum_of_file(const std::string& path);

} // namespace batch
