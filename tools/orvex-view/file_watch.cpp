#include "file_watch.h"

#include <utility>

#include <sys/stat.h>

FileWatch::Stamp FileWatch::stamp_of(const std::string& file) {
    struct stat now = {};
    if (::stat(file.c_str(), &now) != 0)
        return {};
    return {now.st_dev, now.st_ino, now.st_size, now.st_mtim.tv_sec, now.st_mtim.tv_nsec};
}

void FileWatch::follow(const std::vector<std::string>& files) {
    Stamps followed;
    for (const std::string& file : files) {
        const auto found = known.find(file);
        followed[file] = found == known.end() ? stamp_of(file) : found->second;
    }
    known = std::move(followed);
    before = known;
    missing.clear();
}

bool FileWatch::look() {
    Stamps now;
    for (const auto& [file, stamp] : known)
        now[file] = stamp_of(file);
    const bool is_settled = now == before;
    before = now;
    if (!is_settled || now == known)
        return false;
    missing.clear();
    for (const auto& [file, stamp] : now)
        if (stamp == Stamp() && !(known[file] == Stamp()))
            missing.push_back(file);
    known = std::move(now);
    return true;
}
