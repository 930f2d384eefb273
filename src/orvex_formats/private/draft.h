#pragma once

/// @file
/// What a reader makes of a file: plain arrays, which know nothing of the engine's nodes.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <orvex/assets/materials/physical_material.h>
#include <orvex/math/vec2.h>
#include <orvex/math/vec3.h>
#include <orvex/math/vec4.h>

namespace orvex::formats {

/// Three places in the list of vertices, counter-clockwise seen from the front.
using Triangle = std::array<std::uint32_t, 3>;

/// Triangles with one list of vertices. Lists that may be empty have one entry a vertex otherwise.
struct Surface {
    std::string name;
    std::vector<vec3> positions;
    std::vector<vec3> normals; ///< unit vectors; may be empty: then `add_normals` makes them
    std::vector<vec4> colors;  ///< red, green, blue, alpha, 0 to 1; may be empty
    std::array<std::vector<vec2>, 2> uvs; ///< v upward from the picture's lower edge; may be empty
    std::vector<Triangle> triangles;
    /// One a triangle, a place in the list of materials or `no_material`; may be empty: none.
    std::vector<std::uint32_t> triangle_materials;
};
inline constexpr std::uint32_t no_material = UINT32_MAX;

/// Points without faces.
struct Cloud {
    std::string name;
    std::vector<vec3> positions;
    std::vector<vec4> colors; ///< one a point, or empty
};

/// Separate lines.
struct Lines {
    std::string name;
    std::vector<vec3> positions; ///< two a line
    std::vector<vec4> colors;    ///< one a position, or empty
};

/// From where a scene may be seen.
struct Viewpoint {
    std::string name;
    vec3 eye;
    vec3 forward, up;     ///< unit vectors, at a right angle
    float opening = 0.0f; ///< degrees from below to above; 0: without perspective
    float height = 0.0f;  ///< of what is seen; 0: in perspective
    float aspect = 0.0f;  ///< width by height; 0: that of any picture
    float near = 0.0f;    ///< where sight begins
    float far = 0.0f;     ///< where it ends; 0: nowhere
};

/// A light that stands somewhere and shines to all sides.
struct Lamp {
    std::string name;
    vec3 place;
    vec3 color;         ///< red, green and blue, each times the light's intensity; from 0 upward
    float reach = 0.0f; ///< where it ends; 0: nowhere
};

/// A picture that the model's file carries within itself.
struct Picture {
    std::string name;                 ///< as materials name it
    std::vector<unsigned char> bytes; ///< as a file would have them; none: a white picture
};

/// How faces look.
struct SurfaceMaterial {
    std::string name;
    vec4 ambient = vec4(0.2f, 0.2f, 0.2f, 1.0f);
    vec4 diffuse = vec4(0.8f, 0.8f, 0.8f, 1.0f);
    vec4 specular = vec4(0.0f, 0.0f, 0.0f, 1.0f);
    float shininess = 16.0f;
    float opacity = 1.0f;
    /// Names of pictures, or else of files, as the model's file has them. Looks that know one
    /// picture only take the first one. Pictures come before files, whatever the order here.
    std::vector<std::string> textures;
    std::optional<PhysicalMaterial> physical;
};

/// A model.
struct Draft {
    std::vector<Surface> surfaces;
    std::vector<Cloud> clouds;
    std::vector<Lines> lines;
    std::vector<Viewpoint> cameras;
    std::vector<Lamp> lamps;
    std::vector<SurfaceMaterial> materials;
    std::vector<Picture> pictures;
    std::vector<std::string> notes; ///< sentences about what the file has and the draft hasn't
    std::vector<std::string> files; ///< paths of what was read beside the model's own file
};

} // namespace orvex::formats
