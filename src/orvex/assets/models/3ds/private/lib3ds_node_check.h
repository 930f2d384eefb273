#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/assets/models/3ds/private/lib3ds_chunk_reader.h"

namespace orvex::lib3ds {

/// What a node of the keyframer says of itself.
struct NodeSummary {
    std::uint16_t id = 0;
    std::uint16_t parent = no_node;
    bool shows_mesh = false;
    std::string name = "$$$DUMMY"; ///< what lib3ds calls a node of a mesh until it is told
};

/// Checks the nodes of a file: the keys of their tracks fit, and they hang together as a tree.
/// `begin` and the chunks of each node, then once `are_a_tree`.
class NodeCheck {
public:
    explicit NodeCheck(ChunkReader& reader)
        : reader(reader) {}

    /// A node begins. @param id  that of its chunk
    void begin(std::uint16_t id);
    /// Takes a chunk of the node that began last.
    bool take_part(std::uint16_t id, Span content);

    /// Whether the nodes hang together as lib3ds takes for granted: every parent is there, and is
    /// one node, the first node has none, and nobody is its own ancestor.
    bool are_a_tree() const;

    const std::vector<NodeSummary>& nodes() const { return summaries; }

private:
    bool take_header(Span content);
    bool take_track(std::uint16_t id, Span content);
    bool skip_key(Span& content, std::uint32_t num_floats, std::int64_t& frame);

    ChunkReader& reader;
    std::vector<NodeSummary> summaries;
};

} // namespace orvex::lib3ds
