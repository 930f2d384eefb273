// What stands in a node of the keyframer, and that all nodes make a tree.

#include "orvex/assets/models/3ds/private/lib3ds_node_check.h"

#include <bit>
#include <cstddef>

namespace orvex::lib3ds {

namespace {

/// lib3ds goes down the tree of nodes by recursion.
constexpr int max_node_depth = 1000;
/// lib3ds counts frames in int and in float; up to here both do so without loss.
constexpr std::int64_t max_frame = 1 << 24;

// --- The tree --------------------------------------------------------------------------------

/// Measures how deep each node stands.
class NodeTree {
public:
    explicit NodeTree(const std::vector<NodeSummary>& nodes)
        : nodes(nodes)
        , depths(nodes.size(), 0) {
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            if (nodes[i].id >= indices.size())
                indices.resize(nodes[i].id + std::size_t{1}, not_there);
            int& index = indices[nodes[i].id];
            index = index == not_there ? static_cast<int>(i) : ambiguous;
        }
    }

    bool is_sound() {
        if (!nodes.empty() && nodes.front().parent != no_node)
            return false;
        for (std::size_t i = 0; i < nodes.size(); ++i)
            if (!measure_depth(i))
                return false;
        return true;
    }

private:
    static constexpr int not_there = -1;
    static constexpr int ambiguous = -2;

    /// Goes up to a node whose depth is known, or to a root. A circle never comes to one.
    bool measure_depth(std::size_t index) {
        int steps = 1;
        for (std::size_t i = index; nodes[i].parent != no_node; ++steps) {
            const int parent = index_of(nodes[i].parent);
            if (parent < 0 || steps > max_node_depth)
                return false;
            i = static_cast<std::size_t>(parent);
            if (depths[i] > 0) {
                steps += depths[i];
                break;
            }
        }
        depths[index] = steps;
        return steps <= max_node_depth;
    }

    int index_of(std::uint16_t id) const { return id < indices.size() ? indices[id] : not_there; }

    const std::vector<NodeSummary>& nodes;
    std::vector<int> indices; ///< by id, up to the greatest
    std::vector<int> depths;  ///< 0: not yet known
};

} // namespace

bool NodeCheck::are_a_tree() const {
    return reader.expect(NodeTree(summaries).is_sound(), header_size,
                         "the nodes don't hang together as a tree");
}

// --- One node --------------------------------------------------------------------------------

void NodeCheck::begin(std::uint16_t id) {
    // Until the file says otherwise, a node's id is its number.
    NodeSummary& node = summaries.emplace_back();
    node.id = static_cast<std::uint16_t>(summaries.size() - 1);
    node.shows_mesh = id == CHUNK_OBJECT_NODE;
}

bool NodeCheck::take_part(std::uint16_t id, Span content) {
    if (id >= CHUNK_FIRST_TRACK && id <= CHUNK_LAST_TRACK)
        return take_track(id, content);
    if (id == CHUNK_NODE_HEADER)
        return take_header(content);
    if (id != CHUNK_NODE_ID)
        return true;
    const unsigned char* const bytes = reader.take(content, 2);
    if (bytes)
        summaries.back().id = word_at(bytes);
    return bytes;
}

/// The name, two words of flags and the parent.
bool NodeCheck::take_header(Span content) {
    if (!reader.skip_text(content, name_size))
        return false;
    const unsigned char* const bytes = reader.take(content, 6);
    if (!bytes)
        return false;
    summaries.back().name = reader.text();
    summaries.back().parent = word_at(bytes + 4);
    return true;
}

namespace {

/// How many floats a key of a track has, by the number of its chunk.
std::uint32_t floats_of(std::uint16_t track) {
    switch (track) {
    case 0xB020: // position
    case 0xB022: // scale
    case 0xB025: // colour
        return 3;
    case 0xB021: // rotation
        return 4;
    case 0xB029: // visible or not
        return 0;
    default:
        return 1;
    }
}

constexpr std::uint32_t smallest_key = 6;

} // namespace

/// Flags, two unused dwords, the number of keys. A key is its frame, a word that says which of five
/// floats follow, those, and the value.
bool NodeCheck::take_track(std::uint16_t id, Span content) {
    constexpr std::uint16_t morph_track = 0xB026;
    constexpr std::uint32_t head_size = 14;
    constexpr unsigned repeats = 1;
    if (id == morph_track)
        return true;

    // The head, and whether the keys can fit at all.
    const unsigned char* const head = reader.take(content, head_size);
    if (!head)
        return false;
    const unsigned flags = word_at(head);
    const std::uint32_t num_keys = dword_at(head + 10);
    const std::uint32_t track_begin = content.begin;
    content = content.behind(head_size);
    if (!content.holds(std::uint64_t{num_keys} * smallest_key))
        return reader.refuse(track_begin, "a track has more keys than its chunk");

    // The keys one by one, for each has its own length.
    std::int64_t first = 0;
    std::int64_t last = 0;
    for (std::uint32_t i = 0; i < num_keys; ++i) {
        if (!skip_key(content, floats_of(id), last))
            return false;
        if (i == 0)
            first = last;
    }
    // A repetition of no length has no frame that any time falls into.
    return reader.expect(num_keys < 2 || (flags & repeats) == 0 || first != last, track_begin,
                         "a track repeats nothing");
}

bool NodeCheck::skip_key(Span& content, std::uint32_t num_floats, std::int64_t& frame) {
    const unsigned char* const key = reader.take(content, smallest_key);
    if (!key)
        return false;
    frame = static_cast<std::int32_t>(dword_at(key));
    const auto num_options = static_cast<std::uint32_t>(std::popcount(word_at(key + 4) & 0x1Fu));
    const std::uint32_t size = smallest_key + 4 * (num_options + num_floats);
    if (!content.holds(size))
        return reader.refuse(content.begin, "a key is longer than its track");
    if (frame < -max_frame || frame > max_frame)
        return reader.refuse(content.begin, "a key lies at a frame out of reach");
    content = content.behind(size);
    return true;
}

} // namespace orvex::lib3ds
