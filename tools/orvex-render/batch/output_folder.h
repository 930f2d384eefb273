#pragma once

/// @file
/// Outputs stay in their folder.

#include <optional>
#include <string>
#include <unordered_set>

namespace batch {

/// The folder in which a batch writes. Follows no link below it, whoever puts one there meanwhile.
/// Any number; each on one thread.
class OutputFolder {
public:
    /// @param path  of the folder, which may be a link itself; empty is the current one
    explicit OutputFolder(std::string path);
    ~OutputFolder();
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

    /// Why the folder can't be used, as a sentence without a stop; empty if it can.
    const std::string& mistake() const { return reason; }

    /// Why a file isn't a place for an output: a folder or a link stands there, or a link or a file
    /// is among its folders. Folders that aren't there yet are fine.
    /// @param name  of the file, within the folder
    /// @return a sentence without a stop; empty if it is a place
    std::string mistake_in_place(const std::string& name) const;

    /// Whether a file may have no place; false if it surely has one, as long as nothing changes.
    /// Quicker than `mistake_in_place` for many files of one folder: that is looked through once.
    bool may_lack_place(const std::string& name);

    /// Makes the folders for an output.
    /// @return what went wrong, as a sentence without a stop; empty if nothing did
    std::string make_folders(const std::string& name) const;

private:
    int root;
    std::string reason;
    std::optional<std::string> looked_at; ///< the folder that was looked through, within this one
    std::unordered_set<std::string> odd;  ///< what isn't surely a plain file there
    bool is_odd = false;                  ///< the whole folder

    void look_at(const std::string& inner);
};

/// Makes the folder of a batch, unless it is there. An empty path is the current one.
/// @return what went wrong, as a sentence without a stop; empty if nothing did
std::string make_output_folder(const std::string& path);

} // namespace batch
