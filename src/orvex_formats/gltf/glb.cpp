#include "orvex_formats/gltf/private/glb.h"

#include <algorithm>
#include <cstring>

#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::uint64_t head_size = 12;
constexpr std::uint64_t chunk_head_size = 8;
constexpr std::uint32_t chunk_of_json = 0x4e4f534a;
constexpr std::uint32_t chunk_of_bytes = 0x004e4942;

unsigned long long number(std::uint64_t value) {
    return value;
}

std::string read_text(const InputFile& file, std::uint64_t begin, std::uint64_t size) {
    if (size > JsonTree::longest_text)
        refuse("byte %llu: %llu bytes of JSON are more than is read", number(begin), number(size));
    std::string text;
    text.reserve(size + JsonTree::padding);
    text.resize(size);
    file.read(begin, text.data(), text.size());
    return text;
}

/// Reads the chunks one after the other.
class ChunkReader {
public:
    ChunkReader(const InputFile& file, std::uint64_t end, GltfParts& parts)
        : file(file)
        , end(end)
        , parts(parts) {}

    void run() {
        while (end - next >= chunk_head_size)
            take_chunk();
        if (next < end)
            refuse("byte %llu: the head of a chunk is cut off", number(next));
        if (!has_json)
            refuse("byte %llu: there is no chunk of JSON", number(head_size));
    }

private:
    void take_chunk() {
        unsigned char head[chunk_head_size];
        file.read(next, head, sizeof head);
        const std::uint64_t size = number_at<std::uint32_t>(head);
        const auto kind = number_at<std::uint32_t>(head + 4);
        const std::uint64_t begin = next + chunk_head_size;
        if (size > end - begin)
            refuse("byte %llu: a chunk says that it has %llu bytes, and %llu are left",
                   number(next), number(size), number(end - begin));
        if (!has_json && kind != chunk_of_json)
            refuse("byte %llu: the first chunk isn't JSON", number(next));
        if (kind == chunk_of_json)
            take_json(begin, size);
        else if (kind == chunk_of_bytes)
            take_bytes(begin, size);
        next = begin + size;
    }

    void take_json(std::uint64_t begin, std::uint64_t size) {
        if (has_json)
            refuse("byte %llu: a second chunk of JSON", number(next));
        has_json = true;
        parts.json = read_text(file, begin, size);
    }

    void take_bytes(std::uint64_t begin, std::uint64_t size) {
        if (parts.has_bytes)
            refuse("byte %llu: a second chunk of bytes", number(next));
        parts.has_bytes = true;
        parts.bytes.resize(size);
        file.read(begin, parts.bytes.data(), parts.bytes.size());
    }

    const InputFile& file;
    const std::uint64_t end;
    GltfParts& parts;
    std::uint64_t next = head_size;
    bool has_json = false;
};

void read_binary(const InputFile& file, GltfParts& parts) {
    parts.is_binary = true;
    if (file.size() < head_size)
        refuse("byte %llu: the file's head is cut off", number(file.size()));
    unsigned char head[head_size];
    file.read(0, head, sizeof head);
    const auto version = number_at<std::uint32_t>(head + 4);
    const std::uint64_t size = number_at<std::uint32_t>(head + 8);
    if (version != 2)
        refuse("byte 4: version %llu of GLB; version 2 is read", number(version));
    if (size > file.size() || size < head_size)
        refuse("byte 8: the file says that it has %llu bytes, and has %llu", number(size),
               number(file.size()));
    if (size < file.size())
        parts.notes.push_back("byte " + std::to_string(size) + ": " +
                              std::to_string(file.size() - size) +
                              " bytes behind the end were left out");
    ChunkReader(file, size, parts).run();
}

/// Whether a text begins as an object of JSON does.
bool begins_as_object(const char* text, std::size_t size) {
    const std::string_view begin(text, size);
    const std::size_t first = begin.find_first_not_of(" \t\r\n");
    return first != begin.npos && begin[first] == '{';
}

} // namespace

GltfParts take_apart(const InputFile& file) {
    char begin[64];
    const std::size_t size =
        static_cast<std::size_t>(std::min<std::uint64_t>(file.size(), sizeof begin));
    file.read(0, begin, size);
    GltfParts parts;
    if (size >= 4 && std::memcmp(begin, "glTF", 4) == 0)
        read_binary(file, parts);
    else if (begins_as_object(begin, size) || has_suffix(file.path(), ".gltf"))
        parts.json = read_text(file, 0, file.size());
    else if (has_suffix(file.path(), ".glb"))
        refuse("byte 0: the file doesn't begin with \"glTF\"");
    else
        refuse_format("no glTF file: it begins neither with \"glTF\" nor with {");
    return parts;
}

} // namespace orvex::formats
