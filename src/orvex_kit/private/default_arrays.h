#pragma once

/// @file
/// Arrays of a mesh in which every vertex has what a vertex array without them gives: no texture
/// coordinates, no tangents. They need no memory on the GPU.

#include <array>
#include <optional>

#include <orvex/renderer/records/mesh_data.h>

namespace orvex::kit {

/// Which arrays of a mesh those are, as was found out last.
class DefaultArrays {
public:
    /// Looks again, where somebody has written since. Costs little where nobody has.
    void look_at(orvex::MeshData& mesh);

private:
    friend class WithoutDefaults;
    static constexpr std::size_t count = 3;

    static std::array<orvex::VertexAttribArray*, count> arrays_of(orvex::MeshData& mesh);

    std::optional<std::array<bool, count>> found;
};

/// While it lives, a mesh is without its default arrays, for a draw.
class WithoutDefaults {
public:
    /// @param arrays  that have looked at the mesh
    WithoutDefaults(orvex::MeshData& mesh, const DefaultArrays& arrays);
    ~WithoutDefaults();
    WithoutDefaults(const WithoutDefaults&) = delete;
    WithoutDefaults& operator=(const WithoutDefaults&) = delete;

private:
    std::array<orvex::VertexAttribArray*, DefaultArrays::count> arrays;
    std::array<orvex::vec4*, DefaultArrays::count> data{}; ///< of what was taken away
};

} // namespace orvex::kit
