#pragma once

/// @file
/// The bytes of a model file, wherever they are.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvex::formats {

class ArchivedFiles;

/// A file whose bytes are copied out piece by piece. It isn't mapped: a file that somebody makes
/// shorter meanwhile is refused, and ends no process.
///
/// Reading is safe from several threads at once.
class InputFile {
public:
    /// Opens a regular file; a directory, a device or a FIFO is refused without waiting for it.
    /// @throw Refusal
    explicit InputFile(const std::string& path);
    /// The same of bytes in memory.
    /// @param path  that they are told by; nothing is opened
    explicit InputFile(std::vector<unsigned char> bytes, std::string path = "");
    /// The same of an open file, from its first byte on.
    /// @param opened  is closed at the end
    /// @param size    what of it is read
    InputFile(int opened, std::uint64_t size)
        : descriptor(opened)
        , num_bytes(size) {}
    /// What was moved from holds no bytes.
    InputFile(InputFile&& other) noexcept;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// As it was when the file was opened.
    std::uint64_t size() const { return num_bytes; }

    /// As it was told.
    const std::string& path() const { return name; }

    /// What lies beside it in an archive; null where its folder on the disk has that.
    ArchivedFiles* archive() const { return around.get(); }
    void set_archive(std::shared_ptr<ArchivedFiles> archive) { around = std::move(archive); }

    /// What another process can read the file by; -1 for bytes in memory.
    int get_descriptor() const { return descriptor; }

    /// Copies bytes.
    /// @throw Refusal  where the file doesn't hold them all
    void read(std::uint64_t offset, void* to, std::size_t size) const;

private:
    std::string name;
    std::vector<unsigned char> memory;
    int descriptor = -1; ///< -1: the bytes are in `memory`
    std::uint64_t num_bytes = 0;
    std::shared_ptr<ArchivedFiles> around;
};

/// Whether a path ends in a suffix of small letters, whatever its own letters' case.
bool has_suffix(const std::string& path, const std::string& suffix);

} // namespace orvex::formats
