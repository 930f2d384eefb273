#pragma once

/// @file
/// Random access to the bytes of a file.

#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvex {

/// Random access to bytes in memory, or to those of a file of which only a small window is held.
class ByteWindow {
public:
    /// The largest count that `at` can be asked for.
    static constexpr std::size_t largest_view = 16 * 1024;

    ByteWindow() = default;
    /// Looks at bytes that the caller keeps.
    ByteWindow(const unsigned char* bytes, std::size_t size);
    ~ByteWindow();
    ByteWindow(const ByteWindow&) = delete;
    ByteWindow& operator=(const ByteWindow&) = delete;

    /// Opens a regular file; devices and pipes are refused.
    /// @return false if it can't be opened
    bool open(const char* path);

    /// Bytes in all, of the file or of the memory.
    std::uint64_t size() const { return file_size; }

    /// The bytes from `offset` on, valid until the next call.
    /// @param count  largest_view at most
    /// @return null if they don't all lie within the file, or can't be read
    const unsigned char* at(std::uint64_t offset, std::size_t count) {
        if (offset >= begin && offset <= end && count <= end - offset)
            return bytes + (offset - begin);
        return move_to(offset, count);
    }

private:
    const unsigned char* move_to(std::uint64_t offset, std::size_t count);

    const unsigned char* bytes = nullptr; ///< the window, from begin to end in the file
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::uint64_t file_size = 0;
    std::unique_ptr<unsigned char[]> buffer;
    int descriptor = -1;
};

} // namespace orvex
