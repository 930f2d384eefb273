// The walk over the tree of chunks, and what the whole of it costs. What stands in a mesh and in a
// node is checked by classes of their own; all of them read through one `ChunkReader`, which keeps
// the first fault, so that a check says false and is done.

#include "orvex/assets/models/3ds/private/lib3ds_check.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "orvex/assets/models/3ds/private/lib3ds_chunk_reader.h"
#include "orvex/assets/models/3ds/private/lib3ds_mesh_check.h"
#include "orvex/assets/models/3ds/private/lib3ds_node_check.h"

namespace orvex {

namespace {

using namespace lib3ds;

// --- Bounds ----------------------------------------------------------------------------------
// Each lies far above what models have, and low enough that a file below all of them is loaded in
// seconds and in hundreds of megabytes.

constexpr std::uint64_t max_file_size = 512u << 20;
constexpr std::uint64_t max_chunks = 1u << 20;
/// Materials, meshes, lights, cameras and nodes: a material of 6 bytes costs lib3ds 3,000.
constexpr std::uint64_t max_objects = 1u << 16;
/// Names that lib3ds compares to find the materials of faces and the meshes of nodes.
constexpr std::uint64_t max_searches = 1u << 26;
/// Vertices and faces that nodes may add to those in the file by showing a mesh once more.
constexpr std::uint64_t max_repeated_elements = 1u << 22;
/// Steps that the normals take: at a vertex, each face that meets there looks at all the others.
constexpr std::uint64_t max_normal_steps = 1u << 28;

// --- The walk --------------------------------------------------------------------------------

class Checker {
public:
    explicit Checker(ByteWindow& window)
        : reader(window)
        , meshes(reader)
        , nodes(reader) {}

    bool check() {
        return check_root() && nodes.are_a_tree() &&
               reader.expect(is_affordable(), header_size,
                             "reading it would cost far more than its size suggests");
    }

    const Lib3dsFault& fault() const { return reader.fault(); }

private:
    bool check_root() {
        // What is no 3DS file ends here.
        if (reader.file_size() < header_size)
            return reader.refuse(0, "fewer than the 6 bytes of a chunk");
        const unsigned char* const header = reader.bytes_at(0, header_size);
        if (!header)
            return false;
        const std::uint16_t id = word_at(header);
        if (id != CHUNK_MDATA && id != CHUNK_3DS && id != CHUNK_LIBRARY && id != CHUNK_PROJECT)
            return reader.refuse(0, "byte 0 begins another format");

        // Of a 3DS file the first chunk is the whole.
        const std::uint32_t size = dword_at(header + 2);
        reader.know_format();
        if (reader.file_size() > max_file_size)
            return reader.refuse(0, "larger than any file that is read");
        if (size < header_size)
            return reader.refuse(2, "the first chunk is smaller than its own head");
        if (size > reader.file_size())
            return reader.refuse(reader.file_size(), "the file is cut off");
        return check_list({header_size, size}, id == CHUNK_MDATA ? PLACE_MDATA : PLACE_FILE);
    }

    /// The chunks that fill a part of the file. One of number 0 ends the list for lib3ds.
    bool check_list(Span list, Place place) {
        while (list.size() > 0) {
            const unsigned char* const header = reader.take(list, header_size);
            if (!header)
                return false;
            if (++num_chunks > max_chunks)
                return reader.refuse(list.begin, "more chunks than any model has");
            const std::uint16_t id = word_at(header);
            const std::uint32_t size = dword_at(header + 2);
            if (id == CHUNK_NONE)
                return true;
            if (size < header_size || !list.holds(size))
                return reader.refuse(list.begin, "a chunk doesn't fit into the one around it");
            if (!check_chunk(place, id, {list.begin + header_size, list.begin + size}))
                return false;
            list = list.behind(size);
        }
        return true;
    }

    bool check_chunk(Place place, std::uint16_t id, Span content) {
        if (const Layout* const layout = layout_of(place, id))
            return check_layout(*layout, content);
        switch (place) {
        case PLACE_MESH: {
            Span face_lists = content;
            return meshes.take_array(id, content, face_lists) &&
                   check_list(face_lists, PLACE_FACES);
        }
        case PLACE_FACES:
            return meshes.take_face_list(id, content);
        case PLACE_NODE:
            return nodes.take_part(id, content);
        case PLACE_GRADIENT:
            return check_gradient_color(id, content);
        default:
            return true;
        }
    }

    bool check_layout(const Layout& layout, Span content) {
        // What the chunk begins with.
        if (!reader.expect(content.holds(layout.fixed), content.begin,
                           "a chunk is too short for what it begins with"))
            return false;
        content = content.behind(layout.fixed);
        if (layout.text_size > 0 && !reader.skip_text(content, layout.text_size))
            return false;
        if (layout.place == PLACE_OBJECT && !count_object(content))
            return false;

        // The chunks in it.
        switch (layout.children) {
        case PLACE_NOWHERE:
            return true;
        case PLACE_KEYFRAMER:
            return check_keyframer(content);
        case PLACE_GRADIENT:
            return check_gradient(content);
        case PLACE_MATERIAL:
            ++num_materials;
            return count_object(content) && check_list(content, PLACE_MATERIAL);
        case PLACE_OBJECT:
            object_name = reader.text();
            return check_list(content, PLACE_OBJECT);
        case PLACE_MESH:
            return check_mesh(content);
        case PLACE_NODE:
            nodes.begin(layout.id);
            return count_object(content) && check_list(content, PLACE_NODE);
        default:
            return check_list(content, layout.children);
        }
    }

    bool count_object(Span content) {
        return reader.expect(++num_objects <= max_objects, content.begin,
                             "more objects than any model has");
    }

    /// lib3ds has room for three colours of each kind.
    bool check_gradient(Span content) {
        num_gradient_colors[0] = num_gradient_colors[1] = 0;
        return check_list(content, PLACE_GRADIENT);
    }

    bool check_gradient_color(std::uint16_t id, Span content) {
        if (id != CHUNK_COLOR_F && id != CHUNK_LIN_COLOR_F)
            return true;
        return reader.expect(++num_gradient_colors[id == CHUNK_COLOR_F] <= 3, content.begin,
                             "a gradient has more than three colours");
    }

    bool check_mesh(Span content) {
        meshes.begin(content.begin);
        ++num_meshes;
        MeshSummary summary;
        if (!check_list(content, PLACE_MESH) || !meshes.end(summary))
            return false;
        // Of meshes of one name nodes get the first.
        summaries.try_emplace(object_name, summary);
        num_elements += summary.elements;
        num_normal_steps += summary.normal_steps;
        return true;
    }

    /// lib3ds would forget the nodes of a first one when it comes to a second.
    bool check_keyframer(Span content) {
        return reader.expect(!std::exchange(has_keyframer, true), content.begin,
                             "a second list of nodes") &&
               check_list(content, PLACE_KEYFRAMER);
    }

    // --- The whole

    bool is_affordable() const {
        // Without nodes, lib3ds makes one for each mesh.
        const std::uint64_t num_nodes = nodes.nodes().empty() ? num_meshes : nodes.nodes().size();
        const std::uint64_t searches = meshes.num_material_groups() * num_materials +
                                       num_nodes * num_meshes + num_materials * num_materials;
        return searches <= max_searches && nodes_are_affordable();
    }

    bool nodes_are_affordable() const {
        std::uint64_t elements = 0;
        std::uint64_t normal_steps = nodes.nodes().empty() ? num_normal_steps : 0;
        for (const NodeSummary& node : nodes.nodes()) {
            const auto shown = node.shows_mesh ? summaries.find(node.name) : summaries.end();
            if (shown == summaries.end())
                continue;
            elements += shown->second.elements;
            normal_steps += shown->second.normal_steps;
        }
        return elements <= num_elements + max_repeated_elements && normal_steps <= max_normal_steps;
    }

    ChunkReader reader;
    MeshCheck meshes;
    NodeCheck nodes;
    std::string object_name; ///< of the object whose chunks go by
    std::unordered_map<std::string, MeshSummary> summaries;
    bool has_keyframer = false;
    int num_gradient_colors[2] = {0, 0};

    std::uint64_t num_chunks = 0;
    std::uint64_t num_objects = 0;
    std::uint64_t num_materials = 0;
    std::uint64_t num_meshes = 0;
    std::uint64_t num_elements = 0;
    std::uint64_t num_normal_steps = 0;
};

} // namespace

bool lib3ds_can_read(ByteWindow& bytes, Lib3dsFault* fault) {
    Checker checker(bytes);
    const bool can_read = checker.check();
    if (fault)
        *fault = checker.fault();
    return can_read;
}

} // namespace orvex
