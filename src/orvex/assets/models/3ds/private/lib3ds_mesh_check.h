#pragma once

#include <cstdint>
#include <vector>

#include "orvex/assets/models/3ds/private/lib3ds_chunk_reader.h"

namespace orvex::lib3ds {

/// What one mesh holds and costs.
struct MeshSummary {
    std::uint64_t elements = 0;     ///< vertices and faces
    std::uint64_t normal_steps = 0; ///< at a vertex, each face looks at all that meet there
};

/// Checks one mesh after another: its lists fit their chunks, and its faces name vertices that are
/// there. `begin`, then its chunks as they come, then `end`.
class MeshCheck {
public:
    explicit MeshCheck(ChunkReader& reader)
        : reader(reader) {}

    /// A mesh begins. @param offset  where
    void begin(std::uint32_t offset);

    /// Takes a chunk of the mesh. Its arrays may stand in any order; each once, since lib3ds makes
    /// room for the first texture coordinates only.
    /// @param[out] face_lists  the chunks that follow the faces; empty unless there are some
    bool take_array(std::uint16_t id, Span content, Span& face_lists);

    /// Takes a chunk that stands behind the faces.
    bool take_face_list(std::uint16_t id, Span content);

    /// The mesh has ended. @return false if a face names a vertex that isn't there
    bool end(MeshSummary& summary);

    /// Lists of faces that share a material, of all meshes.
    std::uint64_t num_material_groups() const { return material_groups; }

private:
    /// What went by of the mesh so far.
    struct InProgress {
        std::uint32_t offset = 0;
        bool has_points = false;
        bool has_flags = false;
        bool has_texcoords = false;
        bool has_faces = false;
        std::uint32_t num_vertices = 0; ///< as lib3ds counts: flags and coordinates add vertices
        std::uint32_t num_faces = 0;
        std::uint32_t faces_at = 0;       ///< where they begin in the file
        std::uint32_t end_of_indices = 0; ///< the greatest vertex index, plus one
        std::uint64_t normal_steps = 0;
    };

    bool take_vertices(bool& had_one, Span content, std::uint32_t element_size);
    bool take_faces(Span content, Span& face_lists);
    bool count_normal_steps();
    bool skip_six_texts(Span content);
    template<class Visitor>
    bool for_each_index(Visitor visit);

    ChunkReader& reader;
    InProgress mesh;
    std::vector<std::uint32_t> corners_at; ///< for each vertex
    std::uint64_t material_groups = 0;
};

} // namespace orvex::lib3ds
