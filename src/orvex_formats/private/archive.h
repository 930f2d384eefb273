#pragma once

/// @file
/// Compressed bytes. Names in archives stay names: none becomes a path.

#include <cstdint>
#include <string>
#include <vector>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// The most that compressed bytes may grow to: far more than models compress, and far less than the
/// thousandfold that is possible.
constexpr std::uint64_t most_inflated(std::uint64_t packed_size) {
    return (std::uint64_t{16} << 20) + 64 * packed_size;
}

/// Whether a file begins as gzip does.
bool is_gzip(const InputFile& file);

/// Inflates a gzip file of one member or several, and checks their sums.
/// @param[out] num_behind  how many bytes stand behind the last member
/// @throw Refusal
std::vector<unsigned char> gunzip(const InputFile& file, std::uint64_t& num_behind);

/// Whether a file begins as zip archives do.
bool is_zip(const InputFile& file);

/// The files of a zip archive.
class ZipArchive {
public:
    struct Entry {
        std::string name; ///< as the archive has it: any bytes
        std::uint64_t offset = 0;
        std::uint64_t packed_size = 0;
        std::uint64_t size = 0; ///< as the archive says
        std::uint32_t sum = 0;
        unsigned method = 0;
        bool is_encrypted = false;
    };

    /// Reads the directory, and refuses such whose files overlap. The file has to live longer.
    /// @throw Refusal
    explicit ZipArchive(const InputFile& file);

    const std::vector<Entry>& entries() const { return files; }
    /// The entry of a name, whatever the case of its letters; null if there is none.
    const Entry* find(const std::string& name) const;

    /// Inflates a file, and checks its size and its sum.
    /// @throw Refusal
    std::vector<unsigned char> read(const Entry& entry) const;

private:
    /// Where the directory stands.
    struct Directory {
        std::uint64_t begin = 0, size = 0, count = 0;
    };

    Directory find_directory() const;
    Directory wide_directory(std::uint64_t end) const;
    void read_directory(const Directory& directory);
    void check_overlaps(std::uint64_t end) const;
    std::uint64_t data_begin(const Entry& entry) const;

    const InputFile& file;
    std::vector<Entry> files;
};

} // namespace orvex::formats
