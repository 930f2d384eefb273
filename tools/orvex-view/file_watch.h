#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// Looks whether files have changed on disk, whoever wrote them and however: in place, or by a new
/// file that took the name.
///
/// A change counts once the files have stayed the same from one look to the next, so that what is
/// being written isn't read halfway.
class FileWatch {
public:
    /// Goes over to other files. Those that were watched before keep what was known of them, so
    /// that nothing written in the meantime is missed.
    void follow(const std::vector<std::string>& files);
    /// Looks at the files. @return whether they have changed since they were followed, or since the
    /// last change that was told
    bool look();
    /// Those of the files that were there when they were followed first, or told of last, and
    /// aren't any more.
    const std::vector<std::string>& gone() const { return missing; }

private:
    /// What tells one content of a name from another; all 0 without a file.
    struct Stamp {
        std::uint64_t device = 0;
        std::uint64_t number = 0;
        std::int64_t size = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        bool operator==(const Stamp&) const = default;
    };
    using Stamps = std::map<std::string, Stamp>;

    Stamps known;  ///< as they were followed, or told of last
    Stamps before; ///< at the last look
    std::vector<std::string> missing;

    static Stamp stamp_of(const std::string& file);
};
