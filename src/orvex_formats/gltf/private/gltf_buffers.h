#pragma once

/// @file
/// The bytes that a glTF text speaks of.

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "orvex_formats/gltf/private/glb.h"
#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_json.h"

namespace orvex::formats {

/// Buffers and views into them. A buffer is read when it is asked for, once; each view is known to
/// lie in its buffer from the begin on.
class GltfBuffers {
public:
    using Bytes = std::span<const unsigned char>;

    /// @param json   the whole text, which has to live on
    /// @param parts  of the file; its bytes are taken
    /// @param file   that the parts are of
    /// @throw Refusal
    GltfBuffers(const Json& json, GltfParts& parts, const InputFile& file, GltfBudget& budget);

    std::size_t num_views() const { return views.size(); }

    /// What a view shows, unpacked. Valid as long as this is.
    /// @throw Refusal  where it can't be read
    Bytes bytes_of_view(std::size_t view);
    /// How many bytes a view shows.
    std::uint64_t size_of_view(std::size_t view) const { return views[view].size; }
    /// From one element to the next; 0 where they stand side by side.
    std::size_t stride_of_view(std::size_t view) const { return views[view].stride; }

    /// What a data URI carries. @param uri  where it stands
    /// @return whether the text is one
    /// @throw Refusal  for one that is broken
    static bool decode_data_uri(const Json& uri, std::vector<unsigned char>& bytes);
    /// A file beside the model's own.
    /// @throw Refusal
    const std::vector<unsigned char>& read_file(const Json& uri);

    /// Paths of the files that were read.
    std::vector<std::string> files() const;

private:
    struct Buffer {
        Json json;
        std::uint64_t size = 0;
        bool is_read = false;
        std::vector<unsigned char> own; ///< of a data URI, or the file's chunk
        Bytes bytes;
    };
    struct View {
        Json json;
        std::size_t buffer = 0;
        std::uint64_t begin = 0;
        std::uint64_t size = 0;
        std::size_t stride = 0;
        Json packed; ///< how it is packed, if it is
        bool is_unpacked = false;
        std::vector<unsigned char> unpacked; ///< of a packed one
    };

    void add_buffer(const Json& json, GltfParts& parts, bool is_first);
    void add_view(const Json& json);
    /// Sets where bytes lie in a buffer. @throw Refusal  where they don't
    void set_range(const Json& json, View& view) const;
    Bytes bytes_of_range(const View& view);
    void read(Buffer& buffer);
    void unpack(View& view);

    const InputFile& file;
    GltfBudget& budget;
    std::vector<Buffer> buffers;
    std::vector<View> views;
    std::map<std::string, std::vector<unsigned char>, std::less<>> read_files; ///< by their paths
};

} // namespace orvex::formats
