#include "orvex_formats/import/program/model_files.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

#include <assimp/IOStream.hpp>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "orvex_formats/private/importer_protocol.h"

namespace orvex::formats {

namespace {

/// @return -1 for what is no regular file
std::int64_t size_of(int descriptor) {
    struct stat found {};
    return fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode) ? found.st_size : -1;
}

/// A file to be read. Several may share a descriptor.
class FileStream : public Assimp::IOStream {
public:
    FileStream(int descriptor, std::size_t size)
        : descriptor(descriptor)
        , size(size) {}
    ~FileStream() override {
        if (descriptor != input_descriptor)
            close(descriptor);
    }

    std::size_t Read(void* to, std::size_t width, std::size_t count) override {
        if (width == 0 || count > (size - place) / width)
            count = width == 0 ? 0 : (size - place) / width;
        auto* next = static_cast<char*>(to);
        for (std::size_t left = width * count; left > 0;) {
            const ssize_t got = pread(descriptor, next, left, static_cast<off_t>(place));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return 0;
            next += got;
            place += static_cast<std::size_t>(got);
            left -= static_cast<std::size_t>(got);
        }
        return count;
    }
    std::size_t Write(const void*, std::size_t, std::size_t) override { return 0; }
    aiReturn Seek(std::size_t offset, aiOrigin origin) override {
        const std::size_t base = origin == aiOrigin_SET ? 0 : origin == aiOrigin_CUR ? place : size;
        const std::size_t found = base + offset; // steps back come as such that wrap around
        if (found > size)
            return aiReturn_FAILURE;
        place = found;
        return aiReturn_SUCCESS;
    }
    std::size_t Tell() const override { return place; }
    std::size_t FileSize() const override { return size; }
    void Flush() override {}

private:
    int descriptor;
    std::size_t size;
    std::size_t place = 0;
};

} // namespace

ModelFiles::ModelFiles(std::string model, int folder)
    : model(std::move(model))
    , folder(folder) {}

int ModelFiles::open_below(const char* name) const {
    if (folder < 0)
        return -1;
    std::string path(name);
    std::replace(path.begin(), path.end(), '\\', '/');
    open_how how{};
    how.flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    const auto opened =
        static_cast<int>(syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how));
    if (opened >= 0 && size_of(opened) < 0) {
        close(opened);
        return -1;
    }
    return opened;
}

bool ModelFiles::Exists(const char* name) const {
    if (name == model)
        return true;
    const int opened = open_below(name);
    if (opened >= 0)
        close(opened);
    return opened >= 0;
}

Assimp::IOStream* ModelFiles::Open(const char* name, const char* mode) {
    if (mode && mode[0] != 'r')
        return nullptr;
    const bool is_model = name == model;
    const int opened = is_model ? input_descriptor : open_below(name);
    const std::int64_t size = opened < 0 ? -1 : size_of(opened);
    if (size < 0)
        return nullptr;
    if (!is_model && std::find(names.begin(), names.end(), name) == names.end())
        names.emplace_back(name);
    return new FileStream(opened, static_cast<std::size_t>(size));
}

void ModelFiles::Close(Assimp::IOStream* stream) {
    delete stream;
}

} // namespace orvex::formats
