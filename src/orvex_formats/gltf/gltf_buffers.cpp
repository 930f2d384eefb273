#include "orvex_formats/gltf/private/gltf_buffers.h"

#include <utility>

#include "orvex_formats/gltf/private/base64.h"
#include "orvex_formats/gltf/private/meshopt_codec.h"
#include "orvex_formats/private/beside.h"
#include "orvex_formats/private/input_file.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

GltfBuffers::GltfBuffers(const Json& json, GltfParts& parts, const InputFile& file,
                         GltfBudget& budget)
    : file(file)
    , budget(budget) {
    const Json told_buffers = json.list("buffers"), told_views = json.list("bufferViews");
    for (std::size_t i = 0; i < told_buffers.size(); ++i)
        add_buffer(told_buffers.at(i), parts, i == 0);
    for (std::size_t i = 0; i < told_views.size(); ++i)
        add_view(told_views.at(i));
}

void GltfBuffers::add_buffer(const Json& json, GltfParts& parts, bool is_first) {
    Buffer buffer;
    buffer.json = json;
    buffer.size = json.need("byteLength").whole();
    // The first buffer without a name is the chunk of the file.
    if (is_first && parts.has_bytes && !json.find("uri")) {
        if (buffer.size > parts.bytes.size())
            json.need("byteLength")
                .refuse("the file's chunk of bytes has only " + std::to_string(parts.bytes.size()));
        buffer.own = std::move(parts.bytes);
        buffer.is_read = true;
    }
    if (json.find("uri"))
        budget.add_promise(buffer.size);
    buffers.push_back(std::move(buffer));
    if (buffers.back().is_read)
        buffers.back().bytes = buffers.back().own;
}

// ------------------------------------------------------------------------------------ views

void GltfBuffers::set_range(const Json& json, View& view) const {
    view.buffer = json.need("buffer").as_index(buffers.size(), "buffers");
    view.begin = json.whole("byteOffset", 0);
    view.size = json.need("byteLength").whole();
    const std::uint64_t size = buffers[view.buffer].size;
    if (view.begin > size || view.size > size - view.begin)
        json.refuse(std::to_string(view.size) + " bytes from byte " + std::to_string(view.begin) +
                    " on lie past the end of its buffer, which has " + std::to_string(size));
}

void GltfBuffers::add_view(const Json& json) {
    View view;
    view.json = json;
    set_range(json, view);
    if (const Json stride = json.find("byteStride")) {
        view.stride = static_cast<std::size_t>(stride.whole());
        if (view.stride < 4 || view.stride > 252 || view.stride % 4 != 0)
            stride.refuse(std::to_string(view.stride) +
                          " is no stride: those are 4 to 252, in steps of 4");
    }
    view.packed = json.object("extensions").object("EXT_meshopt_compression");
    views.push_back(std::move(view));
}

GltfBuffers::Bytes GltfBuffers::bytes_of_range(const View& view) {
    Buffer& buffer = buffers[view.buffer];
    if (!buffer.is_read)
        read(buffer);
    return buffer.bytes.subspan(static_cast<std::size_t>(view.begin),
                                static_cast<std::size_t>(view.size));
}

GltfBuffers::Bytes GltfBuffers::bytes_of_view(std::size_t place) {
    View& view = views[place];
    if (!view.packed || !can_unpack_meshopt())
        return bytes_of_range(view);
    if (!view.is_unpacked)
        unpack(view);
    return view.unpacked;
}

void GltfBuffers::unpack(View& view) {
    const Json& told = view.packed;
    View source;
    set_range(told, source);
    MeshoptStream stream;
    stream.bytes = bytes_of_range(source);
    stream.count = told.need("count").whole();
    stream.stride = told.need("byteStride").whole();
    stream.mode = told.need("mode").text();
    stream.filter = told.text("filter", "NONE");
    // Checked ahead of the bound, as it bounds the stride.
    if (const char* const mistake = mistake_in(stream))
        told.refuse(mistake);
    budget.take(stream.count, stream.stride, told);
    if (stream.count * stream.stride < view.size)
        told.refuse("unpacked, it is shorter than the view");
    view.unpacked.resize(static_cast<std::size_t>(stream.count * stream.stride));
    if (!unpack_meshopt(stream, view.unpacked.data()))
        told.refuse("the packed bytes are damaged");
    view.unpacked.resize(static_cast<std::size_t>(view.size));
    view.is_unpacked = true;
}

// ------------------------------------------------------------------------------------ sources

void GltfBuffers::read(Buffer& buffer) {
    const Json uri = buffer.json.find("uri");
    if (!uri)
        buffer.json.refuse("it has neither a URI nor a chunk of the file");
    if (decode_data_uri(uri, buffer.own))
        buffer.bytes = buffer.own;
    else
        buffer.bytes = read_file(uri);
    if (buffer.bytes.size() < buffer.size)
        uri.refuse("it has " + std::to_string(buffer.bytes.size()) + " bytes, and byteLength is " +
                   std::to_string(buffer.size));
    buffer.is_read = true;
}

bool GltfBuffers::decode_data_uri(const Json& uri, std::vector<unsigned char>& bytes) {
    const std::string_view text = uri.text();
    if (text.substr(0, 5) != "data:")
        return false;
    const std::size_t comma = text.substr(0, 200).find(',');
    if (comma == text.npos)
        uri.refuse("a data URI without a comma");
    constexpr std::string_view coding = ";base64";
    const std::string_view head = text.substr(0, comma);
    if (head.size() < coding.size() || head.substr(head.size() - coding.size()) != coding)
        uri.refuse("a data URI that isn't base64");
    const std::string_view letters = text.substr(comma + 1);
    const std::size_t right = decode_base64(letters, bytes);
    if (right != letters.size())
        uri.refuse("no base64 around letter " + std::to_string(right));
    return true;
}

const std::vector<unsigned char>& GltfBuffers::read_file(const Json& uri) {
    std::string name;
    if (!unescape_uri(uri.text(), name))
        uri.refuse("a percent sign without two digits");
    const Beside beside = find_beside(file, name);
    if (!beside.mistake.empty())
        uri.refuse("\"" + in_words(name) + "\": " + beside.mistake);
    const auto known = read_files.find(beside.path);
    if (known != read_files.end())
        return known->second;
    try {
        const InputFile opened = open_beside(file, beside.path);
        std::vector<unsigned char> bytes(static_cast<std::size_t>(opened.size()));
        opened.read(0, bytes.data(), bytes.size());
        budget.add_source(bytes.size());
        return read_files.emplace(beside.path, std::move(bytes)).first->second;
    } catch (const Refusal& refusal) {
        uri.refuse("\"" + in_words(name) + "\": " + refusal.what());
    }
}

std::vector<std::string> GltfBuffers::files() const {
    std::vector<std::string> paths;
    if (file.archive())
        return paths; // none of them lies on the disk
    for (const auto& [file, bytes] : read_files)
        paths.push_back(file);
    return paths;
}

} // namespace orvex::formats
