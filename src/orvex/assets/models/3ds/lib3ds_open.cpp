// Opens a file for lib3ds: all of it is checked, then lib3ds reads the very same bytes from memory.

#include "orvex/assets/models/3ds/private/lib3ds_open.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

#include <lib3ds.h>

#include "orvex/assets/models/3ds/private/lib3ds_check.h"
#include "orvex/assets/models/3ds/private/lib3ds_chunk_reader.h"
#include "orvex/assets/models/3ds/private/lib3ds_memory.h"
#include "orvex/platform/private/byte_window.h"
#include "orvex/platform/private/file_bytes.h"

namespace orvex {

void Lib3dsFileDeleter::operator()(Lib3dsFile* file) const {
    lib3ds_file_free(file);
}

namespace {

/// Bytes in memory as lib3ds reads a stream.
struct MemoryStream {
    const unsigned char* bytes;
    std::size_t size;
    std::size_t position = 0;
};

constexpr std::size_t farthest = std::numeric_limits<std::size_t>::max() / 2;

long seek(void* self, long offset, Lib3dsIoSeek origin) {
    auto& stream = *static_cast<MemoryStream*>(self);
    const std::size_t from = origin == LIB3DS_SEEK_SET   ? 0
                             : origin == LIB3DS_SEEK_CUR ? stream.position
                                                         : stream.size;
    // Below the greatest number there is, so that a count can be added to it.
    stream.position = std::min(from + static_cast<std::size_t>(offset), farthest);
    return 0;
}

long tell(void* self) {
    return static_cast<long>(static_cast<MemoryStream*>(self)->position);
}

/// lib3ds takes what it asked for as read: behind the end there are zeros. Inlined, it would cost
/// each single number some registers.
[[gnu::noinline]] std::size_t read_to_the_end(MemoryStream& stream, void* buffer,
                                              std::size_t count) {
    const std::size_t got = stream.size - std::min(stream.position, stream.size);
    std::memset(buffer, 0, count);
    std::memcpy(buffer, stream.bytes + (stream.size - got), got);
    stream.position += count;
    return got;
}

/// Called for every single number.
std::size_t read(void* self, void* buffer, std::size_t count) {
    auto& stream = *static_cast<MemoryStream*>(self);
    const unsigned char* const from = stream.bytes + stream.position;
    const std::size_t end = stream.position + count;
    if (end > stream.size) [[unlikely]]
        return read_to_the_end(stream, buffer, count);
    stream.position = end;
    if (count == 2)
        std::memcpy(buffer, from, 2);
    else if (count == 4)
        std::memcpy(buffer, from, 4);
    else
        std::memcpy(buffer, from, count);
    return count;
}

/// Says why there is no file. @return null
Lib3dsFilePtr refuse(Lib3dsFault* fault, const Lib3dsFault& found) {
    if (fault)
        *fault = found;
    return nullptr;
}

/// From this size on a file is looked through before it is read into memory, which costs a second
/// look, so that refusing it takes little memory.
constexpr std::size_t large_file = 16u << 20;

} // namespace

Lib3dsFilePtr read_3ds_bytes(const unsigned char* bytes, std::size_t size, Lib3dsFault* fault) {
    ByteWindow window(bytes, size);
    if (!lib3ds_can_read(window, fault))
        return nullptr;
    MemoryStream stream{bytes, size};
    Lib3dsIo io{};
    io.self = &stream;
    io.seek_func = seek;
    io.tell_func = tell;
    io.read_func = read;
    Lib3dsFile* file = nullptr;
    const bool is_read = run_lib3ds([&] {
        file = lib3ds_file_new();
        if (!file || !lib3ds_file_read(file, &io))
            return false;
        if (!file->nodes)
            lib3ds_file_create_nodes_for_meshes(file);
        return true;
    });
    if (is_read)
        return Lib3dsFilePtr(file);
    return refuse(fault, {"lib3ds can't read on, or has no memory for it", stream.position, true});
}

Lib3dsFilePtr open_3ds_file(const char* path, Lib3dsFault* fault) {
    const Lib3dsFault unreadable{"no regular file that can be read, or no memory for it", 0, false};
    ByteWindow window;
    if (!path || !window.open(path))
        return refuse(fault, unreadable);
    if (window.size() >= large_file && !lib3ds_can_read(window, fault))
        return nullptr;
    FileBytes file;
    if (!file.read(path))
        return refuse(fault, unreadable);
    return read_3ds_bytes(file.data(), file.size(), fault);
}

} // namespace orvex
