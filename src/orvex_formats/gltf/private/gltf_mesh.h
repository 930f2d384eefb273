#pragma once

/// @file
/// Triangles, lines and points of glTF's meshes.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "orvex_formats/gltf/private/gltf_accessor.h"
#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_material.h"
#include "orvex_formats/gltf/private/gltf_notes.h"
#include "orvex_formats/gltf/private/gltf_transform.h"
#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// How a mesh stands in the scene.
struct GltfStand {
    GltfTransform world;
    const std::vector<GltfTransform>* joints = nullptr; ///< instead of `world`; null for none
    Json weights; ///< of the morph targets, those of the node; none: those of the mesh
    const std::vector<double>* moved_weights = nullptr; ///< those of an animation; null for none
    bool is_timed = false; ///< whether a host asked for a moment, so that nothing is left out
    std::string name;      ///< for a mesh without one
};

/// All meshes of a file.
class GltfMeshes {
public:
    GltfMeshes(const Json& json, GltfAccessors& accessors, const GltfMaterials& materials,
               GltfBudget& budget, GltfNotes& notes, Draft& draft)
        : meshes(json.list("meshes"))
        , accessors(accessors)
        , materials(materials)
        , budget(budget)
        , notes(notes)
        , draft(draft) {}

    std::size_t size() const { return meshes.size(); }

    /// Roughly the bytes that a mesh takes in the engine, each time that it stands somewhere.
    /// @throw Refusal
    std::uint64_t size_of(std::size_t mesh) const;

    /// Adds what a mesh has to the draft, once more for each call, in its place in the scene.
    /// @throw Refusal
    void add(std::size_t mesh, const GltfStand& stand);

private:
    /// What the vertices of a primitive have.
    struct Vertices {
        std::size_t count = 0;             ///< as the file has them
        std::vector<std::uint32_t> chosen; ///< which of them are read; empty: all
        std::vector<vec3> positions, normals;
        std::vector<vec4> colors;
        std::vector<vec2> uvs[2];
        bool is_mirrored = false; ///< faces are to be turned around

        GltfAccessors::Selection selection() const { return chosen.empty() ? nullptr : &chosen; }
    };
    /// A primitive on its way.
    struct Primitive {
        Json json;
        Json attributes;
        Json weights;
        std::string name;
        const GltfStand* stand = nullptr;
        std::size_t material = Json::no_index;
        std::uint64_t mode = 4;
    };

    void add(const Primitive& primitive);
    /// The places of vertices in the order in which they are joined.
    std::vector<std::uint32_t> read_corners(const Primitive& primitive, Vertices& vertices);
    void read_vertices(const Primitive& primitive, Vertices& vertices);
    /// One of the lists of numbers; empty where there is none.
    std::vector<float> read(const Json& attributes, const char* name, const Vertices& vertices,
                            std::size_t least_width, std::size_t most_width, std::size_t& width);
    std::vector<vec3> read_vec3(const Json& attributes, const char* name, const Vertices& vertices);
    void read_colors(const Json& attributes, Vertices& vertices);
    void read_uvs(const Primitive& primitive, Vertices& vertices);
    void apply_targets(const Primitive& primitive, Vertices& vertices);
    void place(const Primitive& primitive, Vertices& vertices);
    void place_by_joints(const Primitive& primitive, Vertices& vertices);
    void note_attributes(const Json& attributes);

    void add_triangles(const Primitive& primitive, const std::vector<std::uint32_t>& corners,
                       Vertices&& vertices);
    void add_lines(const Primitive& primitive, const std::vector<std::uint32_t>& corners,
                   const Vertices& vertices);
    void add_points(const Primitive& primitive, const std::vector<std::uint32_t>& corners,
                    const Vertices& vertices);

    Json meshes;
    GltfAccessors& accessors;
    const GltfMaterials& materials;
    GltfBudget& budget;
    GltfNotes& notes;
    Draft& draft;
};

} // namespace orvex::formats
