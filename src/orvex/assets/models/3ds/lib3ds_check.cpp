#include "orvex/assets/models/3ds/private/lib3ds_check.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "orvex/platform/private/byte_window.h"

namespace orvex {

namespace {

// --- Bounds ----------------------------------------------------------------------------------
// Each lies far above what models have, and low enough that a file below all of them is loaded in
// seconds and in hundreds of megabytes.

constexpr std::uint64_t MAX_FILE_SIZE = 512u << 20;
constexpr std::uint64_t MAX_CHUNKS = 1u << 20;
/// Materials, meshes, lights, cameras and nodes: a material of 6 bytes costs lib3ds 3,000.
constexpr std::uint64_t MAX_OBJECTS = 1u << 16;
/// Names that lib3ds compares to find the materials of faces and the meshes of nodes.
constexpr std::uint64_t MAX_SEARCHES = 1u << 26;
/// Vertices and faces that nodes may add to those in the file by showing a mesh once more.
constexpr std::uint64_t MAX_REPEATED_ELEMENTS = 1u << 22;
/// Steps that the normals take: at a vertex, each face that meets there looks at all the others.
constexpr std::uint64_t MAX_NORMAL_STEPS = 1u << 28;
/// lib3ds goes down the tree of nodes by recursion.
constexpr int MAX_NODE_DEPTH = 1000;
/// lib3ds counts frames in int and in float; up to here both do so without loss.
constexpr std::int64_t MAX_FRAME = 1 << 24;

// --- The format ------------------------------------------------------------------------------

constexpr std::uint32_t HEADER_SIZE = 6;
constexpr std::uint32_t FACE_SIZE = 8;
constexpr std::uint32_t NAME_SIZE = 64; ///< with the terminator, as lib3ds stores names
constexpr std::uint16_t NO_NODE = 65535;

enum Chunk : std::uint16_t {
    CHUNK_NONE = 0x0000,
    CHUNK_COLOR_F = 0x0010,
    CHUNK_LIN_COLOR_F = 0x0013,
    CHUNK_MDATA = 0x3D3D,
    CHUNK_PROJECT = 0xC23D,
    CHUNK_LIBRARY = 0x3DAA,
    CHUNK_3DS = 0x4D4D,
    CHUNK_POINT_ARRAY = 0x4110,
    CHUNK_POINT_FLAGS = 0x4111,
    CHUNK_FACE_ARRAY = 0x4120,
    CHUNK_MATERIAL_GROUP = 0x4130,
    CHUNK_TEXTURE_VERTICES = 0x4140,
    CHUNK_SMOOTH_GROUP = 0x4150,
    CHUNK_BOX_MAP = 0x4190,
    CHUNK_OBJECT_NODE = 0xB002,
    CHUNK_NODE_HEADER = 0xB010,
    CHUNK_NODE_ID = 0xB030,
    CHUNK_FIRST_TRACK = 0xB020, ///< position, rotation, scale, opening, roll, colour, …
    CHUNK_LAST_TRACK = 0xB029
};

/// Where a chunk stands, which decides how lib3ds reads it.
enum Place : std::uint8_t {
    PLACE_NOWHERE, ///< the chunk has no children that anybody reads
    PLACE_LIST,    ///< a list of chunks without names, counts and children
    PLACE_FILE,
    PLACE_MDATA,
    PLACE_KEYFRAMER,
    PLACE_MATERIAL,
    PLACE_TEXTURE_MAP,
    PLACE_GRADIENT,
    PLACE_OBJECT,
    PLACE_LIGHT,
    PLACE_SPOTLIGHT,
    PLACE_MESH,
    PLACE_FACES,
    PLACE_NODE
};

/// What a chunk begins with: some bytes, then a text if it has one, then its children.
struct Layout {
    Place place;
    std::uint16_t id;
    std::uint8_t fixed;     ///< bytes before the text
    std::uint8_t text_size; ///< room for the text in lib3ds; 0 if there is none
    Place children;
};

constexpr std::uint32_t key_of(Place place, std::uint16_t id) {
    return static_cast<std::uint32_t>(place) << 16 | id;
}

constexpr bool is_before(const Layout& a, const Layout& b) {
    return key_of(a.place, a.id) < key_of(b.place, b.id);
}

/// Chunks without a line here are either looked at by hand below, or are of a fixed size that
/// lib3ds reads without harm, wherever they end.
constexpr Layout LAYOUTS[] = {
    {PLACE_FILE, CHUNK_MDATA, 0, 0, PLACE_MDATA},
    {PLACE_FILE, 0xB000, 0, 0, PLACE_KEYFRAMER},
    {PLACE_MDATA, 0x1100, 0, NAME_SIZE, PLACE_NOWHERE}, // background picture
    {PLACE_MDATA, 0x1200, 0, 0, PLACE_LIST},            // background colour
    {PLACE_MDATA, 0x1300, 4, 0, PLACE_GRADIENT},
    {PLACE_MDATA, 0x2100, 0, 0, PLACE_LIST},  // ambient light
    {PLACE_MDATA, 0x2200, 16, 0, PLACE_LIST}, // fog
    {PLACE_MDATA, 0x2300, 16, 0, PLACE_LIST}, // distance cue
    {PLACE_MDATA, 0x2302, 16, 0, PLACE_LIST}, // layered fog
    {PLACE_MDATA, 0x3000, 0, 0, PLACE_LIST},  // default view
    {PLACE_MDATA, 0x4000, 0, NAME_SIZE, PLACE_OBJECT},
    {PLACE_MDATA, 0x7001, 14, 0, PLACE_LIST}, // viewports
    {PLACE_MDATA, 0xAFFF, 0, 0, PLACE_MATERIAL},
    {PLACE_KEYFRAMER, 0x3000, 0, 0, PLACE_LIST},
    {PLACE_KEYFRAMER, 0x7001, 14, 0, PLACE_LIST},
    {PLACE_KEYFRAMER, 0xB001, 0, 0, PLACE_NODE}, // ambient light
    {PLACE_KEYFRAMER, CHUNK_OBJECT_NODE, 0, 0, PLACE_NODE},
    {PLACE_KEYFRAMER, 0xB003, 0, 0, PLACE_NODE},     // camera
    {PLACE_KEYFRAMER, 0xB004, 0, 0, PLACE_NODE},     // its target
    {PLACE_KEYFRAMER, 0xB005, 0, 0, PLACE_NODE},     // light
    {PLACE_KEYFRAMER, 0xB006, 0, 0, PLACE_NODE},     // target of a spotlight
    {PLACE_KEYFRAMER, 0xB007, 0, 0, PLACE_NODE},     // spotlight
    {PLACE_KEYFRAMER, 0xB00A, 2, 13, PLACE_NOWHERE}, // header
    {PLACE_MATERIAL, 0xA000, 0, NAME_SIZE, PLACE_NOWHERE},
    {PLACE_MATERIAL, 0xA010, 0, 0, PLACE_LIST}, // ambient
    {PLACE_MATERIAL, 0xA020, 0, 0, PLACE_LIST}, // diffuse
    {PLACE_MATERIAL, 0xA030, 0, 0, PLACE_LIST}, // specular
    {PLACE_MATERIAL, 0xA040, 0, 0, PLACE_LIST}, // shininess
    {PLACE_MATERIAL, 0xA041, 0, 0, PLACE_LIST}, // its strength
    {PLACE_MATERIAL, 0xA050, 0, 0, PLACE_LIST}, // transparency
    {PLACE_MATERIAL, 0xA052, 0, 0, PLACE_LIST}, // its falloff
    {PLACE_MATERIAL, 0xA053, 0, 0, PLACE_LIST}, // reflection blur
    {PLACE_MATERIAL, 0xA084, 0, 0, PLACE_LIST}, // own light
    // The sixteen maps and masks.
    {PLACE_MATERIAL, 0xA200, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA204, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA210, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA220, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA230, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33A, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33C, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33D, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33E, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA340, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA342, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA344, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA346, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA348, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA34A, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA34C, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_TEXTURE_MAP, 0xA300, 0, NAME_SIZE, PLACE_NOWHERE},
    {PLACE_OBJECT, 0x4100, 0, 0, PLACE_MESH},
    {PLACE_OBJECT, 0x4600, 12, 0, PLACE_LIGHT},
    {PLACE_OBJECT, 0x4700, 32, 0, PLACE_LIST}, // camera
    {PLACE_LIGHT, 0x4610, 20, 0, PLACE_SPOTLIGHT},
    {PLACE_SPOTLIGHT, 0x4653, 0, NAME_SIZE, PLACE_NOWHERE}, // projected picture
    {PLACE_NODE, 0xB011, 0, NAME_SIZE, PLACE_NOWHERE},      // instance name
};
static_assert(std::is_sorted(std::begin(LAYOUTS), std::end(LAYOUTS), is_before));

const Layout* layout_of(Place place, std::uint16_t id) {
    const Layout wanted{place, id, 0, 0, PLACE_NOWHERE};
    const Layout* const found =
        std::lower_bound(std::begin(LAYOUTS), std::end(LAYOUTS), wanted, is_before);
    return found != std::end(LAYOUTS) && found->place == place && found->id == id ? found : nullptr;
}

// --- Bytes -----------------------------------------------------------------------------------

/// Part of the file: what a chunk holds behind its header, or the rest of that.
struct Span {
    std::uint32_t begin;
    std::uint32_t end;

    std::uint32_t size() const { return end - begin; }
    bool holds(std::uint64_t count) const { return count <= size(); }
    Span behind(std::uint32_t count) const { return {begin + count, end}; }
};

std::uint16_t word_at(const unsigned char* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

std::uint32_t dword_at(const unsigned char* bytes) {
    return word_at(bytes) | static_cast<std::uint32_t>(word_at(bytes + 2)) << 16;
}

// --- Meshes ----------------------------------------------------------------------------------

/// What one mesh holds and costs.
struct MeshSummary {
    std::uint64_t elements = 0;     ///< vertices and faces
    std::uint64_t normal_steps = 0; ///< see MAX_NORMAL_STEPS
};

/// A mesh while its chunks go by. Its arrays may stand in any order; each once, since lib3ds makes
/// room for the first texture coordinates only.
struct MeshInProgress {
    bool has_points = false;
    bool has_flags = false;
    bool has_texcoords = false;
    bool has_faces = false;
    std::uint32_t num_vertices = 0; ///< as lib3ds counts: flags and coordinates add vertices
    std::uint32_t num_faces = 0;
    std::uint32_t faces_at = 0;       ///< where they begin in the file
    std::uint32_t end_of_indices = 0; ///< the greatest vertex index, plus one
    std::uint64_t normal_steps = 0;   ///< see MAX_NORMAL_STEPS

    /// A mesh without vertices is left out of the model, whatever its faces name.
    bool faces_fit() const { return num_vertices == 0 || end_of_indices <= num_vertices; }
};

// --- Nodes -----------------------------------------------------------------------------------

struct NodeSummary {
    std::uint16_t id = 0;
    std::uint16_t parent = NO_NODE;
    bool shows_mesh = false;
    std::string name = "$$$DUMMY"; ///< what lib3ds calls a node of a mesh until it is told
};

/// Whether the nodes hang together as lib3ds takes for granted: every parent is there, and is one
/// node, the first node has none, and nobody is its own ancestor.
class NodeTree {
public:
    explicit NodeTree(const std::vector<NodeSummary>& nodes)
        : nodes_(nodes)
        , depth_(nodes.size(), 0) {
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            if (nodes[i].id >= index_of_.size())
                index_of_.resize(nodes[i].id + std::size_t{1}, NOT_THERE);
            int& index = index_of_[nodes[i].id];
            index = index == NOT_THERE ? static_cast<int>(i) : AMBIGUOUS;
        }
    }

    bool is_sound() {
        if (!nodes_.empty() && nodes_.front().parent != NO_NODE)
            return false;
        for (std::size_t i = 0; i < nodes_.size(); ++i)
            if (!measure_depth(i))
                return false;
        return true;
    }

private:
    static constexpr int NOT_THERE = -1;
    static constexpr int AMBIGUOUS = -2;

    /// Goes up to a node whose depth is known, or to a root. A circle never comes to one.
    bool measure_depth(std::size_t index) {
        int steps = 1;
        for (std::size_t i = index; nodes_[i].parent != NO_NODE; ++steps) {
            const int parent = index_of(nodes_[i].parent);
            if (parent < 0 || steps > MAX_NODE_DEPTH)
                return false;
            i = static_cast<std::size_t>(parent);
            if (depth_[i] > 0) {
                steps += depth_[i];
                break;
            }
        }
        depth_[index] = steps;
        return steps <= MAX_NODE_DEPTH;
    }

    int index_of(std::uint16_t id) const {
        return id < index_of_.size() ? index_of_[id] : NOT_THERE;
    }

    const std::vector<NodeSummary>& nodes_;
    std::vector<int> index_of_; ///< by id, up to the greatest
    std::vector<int> depth_;    ///< 0: not yet known
};

// --- The walk --------------------------------------------------------------------------------

class Checker {
public:
    explicit Checker(ByteWindow& bytes)
        : bytes_(bytes) {}

    bool check() { return check_root() && NodeTree(nodes_).is_sound() && is_affordable(); }

private:
    bool check_root() {
        const unsigned char* const header = bytes_.at(0, HEADER_SIZE);
        if (header == nullptr || bytes_.size() > MAX_FILE_SIZE)
            return false;
        const std::uint32_t size = dword_at(header + 2);
        if (size < HEADER_SIZE || size > bytes_.size())
            return false;
        switch (word_at(header)) {
        case CHUNK_MDATA:
            return check_list({HEADER_SIZE, size}, PLACE_MDATA);
        case CHUNK_3DS:
        case CHUNK_LIBRARY:
        case CHUNK_PROJECT:
            return check_list({HEADER_SIZE, size}, PLACE_FILE);
        default:
            return false;
        }
    }

    /// The chunks that fill a part of the file. One of number 0 ends the list for lib3ds.
    bool check_list(Span list, Place place) {
        while (list.size() > 0) {
            const unsigned char* const header =
                list.holds(HEADER_SIZE) ? bytes_.at(list.begin, HEADER_SIZE) : nullptr;
            if (header == nullptr || ++num_chunks_ > MAX_CHUNKS)
                return false;
            const std::uint16_t id = word_at(header);
            const std::uint32_t size = dword_at(header + 2);
            if (id == CHUNK_NONE)
                return true;
            if (size < HEADER_SIZE || !list.holds(size))
                return false;
            if (!check_chunk(place, id, {list.begin + HEADER_SIZE, list.begin + size}))
                return false;
            list = list.behind(size);
        }
        return true;
    }

    bool check_chunk(Place place, std::uint16_t id, Span content) {
        if (const Layout* const layout = layout_of(place, id))
            return check_layout(*layout, content);
        switch (place) {
        case PLACE_MESH:
            return check_mesh_array(id, content);
        case PLACE_FACES:
            return check_face_list(id, content);
        case PLACE_NODE:
            return check_node_part(id, content);
        case PLACE_GRADIENT:
            return check_gradient_color(id);
        default:
            return true;
        }
    }

    bool check_layout(const Layout& layout, Span content) {
        if (!content.holds(layout.fixed))
            return false;
        content = content.behind(layout.fixed);
        if (layout.text_size > 0 && !skip_text(content, layout.text_size))
            return false;
        if (layout.place == PLACE_OBJECT && !count_object())
            return false;
        switch (layout.children) {
        case PLACE_NOWHERE:
            return true;
        case PLACE_KEYFRAMER:
            return check_keyframer(content);
        case PLACE_GRADIENT:
            return check_gradient(content);
        case PLACE_MATERIAL:
            ++num_materials_;
            return count_object() && check_list(content, PLACE_MATERIAL);
        case PLACE_OBJECT:
            object_name_ = text_;
            return check_list(content, PLACE_OBJECT);
        case PLACE_MESH:
            return check_mesh(content);
        case PLACE_NODE:
            return check_node(layout.id, content);
        default:
            return check_list(content, layout.children);
        }
    }

    /// Steps over a text, which is kept in text_. @return false unless it ends in time
    bool skip_text(Span& content, std::uint32_t room) {
        const std::uint32_t count = std::min(room, content.size());
        const unsigned char* const text = bytes_.at(content.begin, count);
        if (text == nullptr)
            return false;
        const void* const end = std::memchr(text, 0, count);
        if (end == nullptr)
            return false;
        text_ = reinterpret_cast<const char*>(text);
        content = content.behind(static_cast<std::uint32_t>(text_.size()) + 1);
        return true;
    }

    /// Steps over a count of 16 bits. @return false unless the list behind it fits
    bool skip_count(Span& content, std::uint32_t element_size, std::uint32_t& count) {
        const unsigned char* const bytes = content.holds(2) ? bytes_.at(content.begin, 2) : nullptr;
        if (bytes == nullptr)
            return false;
        count = word_at(bytes);
        content = content.behind(2);
        return content.holds(std::uint64_t{count} * element_size);
    }

    bool count_object() { return ++num_objects_ <= MAX_OBJECTS; }

    /// lib3ds has room for three colours of each kind.
    bool check_gradient(Span content) {
        num_gradient_colors_[0] = num_gradient_colors_[1] = 0;
        return check_list(content, PLACE_GRADIENT);
    }

    bool check_gradient_color(std::uint16_t id) {
        if (id != CHUNK_COLOR_F && id != CHUNK_LIN_COLOR_F)
            return true;
        return ++num_gradient_colors_[id == CHUNK_COLOR_F] <= 3;
    }

    // --- Meshes

    bool check_mesh(Span content) {
        mesh_ = {};
        ++num_meshes_;
        if (!check_list(content, PLACE_MESH) || !mesh_.faces_fit())
            return false;
        MeshSummary summary;
        summary.elements = mesh_.num_vertices + mesh_.num_faces;
        summary.normal_steps = mesh_.normal_steps;
        // Of meshes of one name nodes get the first.
        meshes_.try_emplace(object_name_, summary);
        num_elements_ += summary.elements;
        num_normal_steps_ += summary.normal_steps;
        return true;
    }

    bool check_mesh_array(std::uint16_t id, Span content) {
        std::uint32_t count = 0;
        switch (id) {
        case CHUNK_POINT_ARRAY:
            if (std::exchange(mesh_.has_points, true) || !skip_count(content, 12, count))
                return false;
            mesh_.num_vertices = count;
            return true;
        case CHUNK_POINT_FLAGS:
            if (std::exchange(mesh_.has_flags, true) || !skip_count(content, 2, count))
                return false;
            mesh_.num_vertices = std::max(mesh_.num_vertices, count);
            return true;
        case CHUNK_TEXTURE_VERTICES:
            if (std::exchange(mesh_.has_texcoords, true) || !skip_count(content, 8, count))
                return false;
            mesh_.num_vertices = std::max(mesh_.num_vertices, count);
            return true;
        case CHUNK_FACE_ARRAY:
            return !std::exchange(mesh_.has_faces, true) && check_faces(content);
        default:
            return true;
        }
    }

    /// Faces are three indices and a word of flags each. Without any, lib3ds reads no further.
    bool check_faces(Span content) {
        if (!skip_count(content, FACE_SIZE, mesh_.num_faces))
            return false;
        if (mesh_.num_faces == 0)
            return true;
        mesh_.faces_at = content.begin;
        std::uint32_t greatest = 0;
        const bool are_there = for_each_index(
            [&greatest](std::uint32_t index) { greatest = std::max(greatest, index); });
        mesh_.end_of_indices = greatest + 1;
        return are_there && check_list(content.behind(mesh_.num_faces * FACE_SIZE), PLACE_FACES);
    }

    /// Calls back for each corner of each face of the mesh that goes by.
    /// @return false if the bytes can't be read
    template<class Visitor>
    bool for_each_index(Visitor visit) {
        constexpr std::uint32_t faces_at_once = ByteWindow::largest_view / FACE_SIZE;
        for (std::uint32_t done = 0; done < mesh_.num_faces;) {
            const std::uint32_t count = std::min(mesh_.num_faces - done, faces_at_once);
            const unsigned char* face =
                bytes_.at(mesh_.faces_at + done * FACE_SIZE, count * FACE_SIZE);
            if (face == nullptr)
                return false;
            for (const unsigned char* const end = face + count * FACE_SIZE; face != end;
                 face += FACE_SIZE) {
                visit(word_at(face));
                visit(word_at(face + 2));
                visit(word_at(face + 4));
            }
            done += count;
        }
        return true;
    }

    /// Without smoothing groups nobody looks around at a vertex, so that few meshes are looked
    /// through once more for this.
    bool count_normal_steps() {
        if (mesh_.normal_steps > 0)
            return true;
        corners_at_.assign(mesh_.end_of_indices, 0);
        // A file may have other faces by now.
        const bool are_there = for_each_index([this](std::uint32_t index) {
            if (index < corners_at_.size())
                ++corners_at_[index];
        });
        if (!are_there)
            return false;
        for (const std::uint64_t corners : corners_at_)
            mesh_.normal_steps += corners * corners;
        return true;
    }

    bool check_face_list(std::uint16_t id, Span content) {
        std::uint32_t count = 0;
        switch (id) {
        case CHUNK_MATERIAL_GROUP:
            ++num_material_groups_;
            return skip_text(content, NAME_SIZE) && skip_count(content, 2, count);
        case CHUNK_SMOOTH_GROUP:
            return content.holds(std::uint64_t{mesh_.num_faces} * 4) && count_normal_steps();
        case CHUNK_BOX_MAP:
            return skip_six_texts(content);
        default:
            return true;
        }
    }

    bool skip_six_texts(Span content) {
        for (int i = 0; i < 6; ++i)
            if (!skip_text(content, NAME_SIZE))
                return false;
        return true;
    }

    // --- Nodes

    /// lib3ds would forget the nodes of a first one when it comes to a second.
    bool check_keyframer(Span content) {
        return !std::exchange(has_keyframer_, true) && check_list(content, PLACE_KEYFRAMER);
    }

    bool check_node(std::uint16_t id, Span content) {
        // Until the file says otherwise, a node's id is its number.
        NodeSummary& node = nodes_.emplace_back();
        node.id = static_cast<std::uint16_t>(nodes_.size() - 1);
        node.shows_mesh = id == CHUNK_OBJECT_NODE;
        return count_object() && check_list(content, PLACE_NODE);
    }

    bool check_node_part(std::uint16_t id, Span content) {
        if (id >= CHUNK_FIRST_TRACK && id <= CHUNK_LAST_TRACK)
            return check_track(id, content);
        if (id == CHUNK_NODE_HEADER)
            return check_node_header(content);
        if (id != CHUNK_NODE_ID)
            return true;
        const unsigned char* const bytes = content.holds(2) ? bytes_.at(content.begin, 2) : nullptr;
        if (bytes != nullptr)
            nodes_.back().id = word_at(bytes);
        return bytes != nullptr;
    }

    /// The name, two words of flags and the parent.
    bool check_node_header(Span content) {
        if (!skip_text(content, NAME_SIZE))
            return false;
        const unsigned char* const bytes = content.holds(6) ? bytes_.at(content.begin, 6) : nullptr;
        if (bytes == nullptr)
            return false;
        nodes_.back().name = text_;
        nodes_.back().parent = word_at(bytes + 4);
        return true;
    }

    /// How many floats a key of a track has, by the number of its chunk.
    static std::uint32_t floats_of(std::uint16_t track) {
        switch (track) {
        case 0xB020:
            return 3; // position
        case 0xB021:
            return 4; // rotation
        case 0xB022:
            return 3; // scale
        case 0xB025:
            return 3; // colour
        case 0xB029:
            return 0; // visible or not
        default:
            return 1;
        }
    }

    /// Flags, two unused dwords, the number of keys. A key is its frame, a word that says which of
    /// five floats follow, those, and the value.
    bool check_track(std::uint16_t id, Span content) {
        constexpr std::uint16_t morph_track = 0xB026;
        constexpr std::uint32_t head_size = 14;
        constexpr std::uint32_t smallest_key = 6;
        constexpr unsigned repeats = 1;
        if (id == morph_track)
            return true;
        const unsigned char* const head =
            content.holds(head_size) ? bytes_.at(content.begin, head_size) : nullptr;
        if (head == nullptr)
            return false;
        const unsigned flags = word_at(head);
        const std::uint32_t num_keys = dword_at(head + 10);
        content = content.behind(head_size);
        if (!content.holds(std::uint64_t{num_keys} * smallest_key))
            return false;
        std::int64_t first = 0;
        std::int64_t last = 0;
        for (std::uint32_t i = 0; i < num_keys; ++i) {
            if (!skip_key(content, floats_of(id), last))
                return false;
            if (i == 0)
                first = last;
        }
        // A repetition of no length has no frame that any time falls into.
        return num_keys < 2 || (flags & repeats) == 0 || first != last;
    }

    bool skip_key(Span& content, std::uint32_t num_floats, std::int64_t& frame) {
        const unsigned char* const key = content.holds(6) ? bytes_.at(content.begin, 6) : nullptr;
        if (key == nullptr)
            return false;
        frame = static_cast<std::int32_t>(dword_at(key));
        const auto num_options =
            static_cast<std::uint32_t>(std::popcount(word_at(key + 4) & 0x1Fu));
        const std::uint32_t size = 6 + 4 * (num_options + num_floats);
        if (!content.holds(size) || frame < -MAX_FRAME || frame > MAX_FRAME)
            return false;
        content = content.behind(size);
        return true;
    }

    // --- The whole

    bool is_affordable() const {
        // Without nodes, lib3ds makes one for each mesh.
        const std::uint64_t num_nodes = nodes_.empty() ? num_meshes_ : nodes_.size();
        const std::uint64_t searches = num_material_groups_ * num_materials_ +
                                       num_nodes * num_meshes_ + num_materials_ * num_materials_;
        return searches <= MAX_SEARCHES && nodes_are_affordable();
    }

    bool nodes_are_affordable() const {
        std::uint64_t elements = 0;
        std::uint64_t normal_steps = nodes_.empty() ? num_normal_steps_ : 0;
        for (const NodeSummary& node : nodes_) {
            const auto mesh = node.shows_mesh ? meshes_.find(node.name) : meshes_.end();
            if (mesh == meshes_.end())
                continue;
            elements += mesh->second.elements;
            normal_steps += mesh->second.normal_steps;
        }
        return elements <= num_elements_ + MAX_REPEATED_ELEMENTS &&
               normal_steps <= MAX_NORMAL_STEPS;
    }

    ByteWindow& bytes_;
    std::string text_;        ///< the last text that was stepped over
    std::string object_name_; ///< of the object whose chunks go by
    MeshInProgress mesh_;
    std::vector<std::uint32_t> corners_at_; ///< of the mesh that goes by, for each vertex
    std::vector<NodeSummary> nodes_;
    std::unordered_map<std::string, MeshSummary> meshes_;
    bool has_keyframer_ = false;
    int num_gradient_colors_[2] = {0, 0};

    std::uint64_t num_chunks_ = 0;
    std::uint64_t num_objects_ = 0;
    std::uint64_t num_materials_ = 0;
    std::uint64_t num_material_groups_ = 0;
    std::uint64_t num_meshes_ = 0;
    std::uint64_t num_elements_ = 0;
    std::uint64_t num_normal_steps_ = 0;
};

} // namespace

bool lib3ds_can_read(ByteWindow& bytes) {
    return Checker(bytes).check();
}

} // namespace orvex
