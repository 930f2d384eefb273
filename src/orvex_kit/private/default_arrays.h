#pragma once

/// @file
/// Arrays of a mesh in which every vertex has what a draw without them gives: no texture
/// coordinates, no tangents, one colour. They need no memory on the GPU.

#include <array>
#include <optional>

#include <orvex/fwd.h>
#include <orvex/renderer/records/mesh_data.h>

#include "orvex_kit/path.h"

namespace orvex::kit {

/// The value that all elements of an array have: of a large one that nobody has written since it
/// was made or given one value. Nothing for any other.
std::optional<orvex::vec4> constant_of(const orvex::VertexAttribArray& array);

/// Whether that is what fresh vertices have.
bool is_default(const orvex::VertexAttribArray& array);

/// Which arrays of a mesh those are, as was found out last.
class DefaultArrays {
public:
    /// Looks again, where somebody has written since. Costs little where nobody has.
    void look_at(orvex::MeshData& mesh);
    /// Whether there is any.
    bool are_there() const;

private:
    friend class WithoutDefaults;
    static constexpr std::size_t count = 4;

    static std::array<orvex::VertexAttribArray*, count> arrays_of(orvex::MeshData& mesh);

    bool has_looked = false;
    std::array<bool, count> found{};
    orvex::vec4 color; ///< of all vertices, where the colours are such an array
};

/// Disables the client arrays that draws before have left enabled, with the context that is
/// current: a mesh without its own would be drawn with those.
void disable_client_arrays(orvex::Renderer& renderer);

/// While it lives, a mesh is without its default arrays, for a draw with the context that is
/// current. On path gl2 its tangents stay, as those of the mesh before are enabled still, and no
/// other array of a mesh may be: `disable_client_arrays`.
class WithoutDefaults {
public:
    /// @param arrays  that have looked at the mesh
    WithoutDefaults(orvex::MeshData& mesh, const DefaultArrays& arrays, Path path);
    ~WithoutDefaults();
    WithoutDefaults(const WithoutDefaults&) = delete;
    WithoutDefaults& operator=(const WithoutDefaults&) = delete;

private:
    void set_color(const orvex::vec4& color, int location);
    void set_fixed_values(const orvex::vec4& color);

    std::array<orvex::VertexAttribArray*, DefaultArrays::count> arrays;
    std::array<orvex::vec4*, DefaultArrays::count> data{}; ///< of what was taken away
    int color_location = -1;           ///< where the context has the one colour; -1: nowhere
    bool has_fixed_color = false;      ///< whether the context has it as that of the fixed pipeline
    std::array<float, 4> color_before; ///< that the context had there
};

} // namespace orvex::kit
