#pragma once

/// @file
/// What lies beside a model in its archive.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "orvex_formats/private/archive.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// The files of an archive as the model in it names them. None of them comes to the disk.
class ArchivedFiles {
public:
    /// Takes the archive over. @throw Refusal
    explicit ArchivedFiles(InputFile&& file);

    const ZipArchive& archive() const { return zip; }
    std::uint64_t stored_size() const { return file.size(); }

    /// Says which file is the model: names are those of its folder.
    void set_model(const ZipArchive::Entry& model);

    /// Where a file lies that the model names: from the model's folder on, or else in it by the end
    /// of the path that the name has, in letters of either case.
    /// @return its name in the archive; empty if it isn't there
    std::string find(std::string_view name) const;

    /// @param name  as `find` gives it
    /// @throw Refusal  also for more than archives of this size may hold in all
    std::vector<unsigned char> read(const std::string& name);

    /// How many files of the user's weren't read.
    std::size_t num_left_out() const;

private:
    InputFile file;
    ZipArchive zip;
    std::unordered_map<std::string, const ZipArchive::Entry*>
        entries;                                        ///< by names in small letters
    std::unordered_set<const ZipArchive::Entry*> known; ///< those that were read, and the model
    std::string folder;                                 ///< the model's, in small letters
    std::uint64_t left;                                 ///< bytes that may still be read
};

/// What is no file of the user's: folders, and what some systems add for themselves.
bool is_passed_over(const std::string& name);

} // namespace orvex::formats
