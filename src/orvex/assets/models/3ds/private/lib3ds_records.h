#pragma once

/// @file
/// What one load of a 3DS file holds between lib3ds's records and the engine's objects.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/fwd.h"
#include "orvex/platform/private/large_pages.h"

namespace orvex {

using Lib3dsFloat2 = std::array<float, 2>;
using Lib3dsFloat3 = std::array<float, 3>;
using Lib3dsFloat4 = std::array<float, 4>;
using Lib3dsIndices = std::array<std::uint16_t, 3>;

/// A material of the file.
struct orvexLib3dsMaterial {
    Material* material = nullptr; ///< only when this load made it
    char name[128] = {};
    Lib3dsFloat4 ambient = {0.7f, 0.7f, 0.7f, 1.0f};
    Lib3dsFloat4 diffuse = {0.2f, 0.4f, 0.9f, 1.0f};
    Lib3dsFloat4 specular = {0.1f, 0.1f, 0.1f, 1.0f};
    float shininess = 16.0f;
    float opacity = 1.0f;
    char texture_filename[256] = {};
};

/// The material of a face.
struct sLib3dsFaceMaterial {
    std::uint16_t face = 0;     ///< number of the face
    std::uint32_t material = 0; ///< index into the materials of the load
};

/// A mesh as one node of the file shows it.
struct sLib3dsMesh {
    Mesh* mesh = nullptr; ///< set when it is built
    char name[128] = {};
    std::uint32_t num_vertices = 0;
    Lib3dsFloat3* vertices = nullptr; ///< in place, axes as in the file
    std::uint32_t num_normals = 0;    ///< three per face, as far as vertices and faces ask for them
    Lib3dsFloat3* normals = nullptr;
    std::uint32_t num_texcoords = 0; ///< none, or one per vertex
    Lib3dsFloat2* texcoords = nullptr;
    std::uint32_t num_faces = 0;
    Lib3dsIndices* faces = nullptr;
    sLib3dsFaceMaterial* face_materials = nullptr; ///< null if the file has no materials
    LargeBlock memory;                             ///< where the five arrays lie
};

/// The work of one load.
struct Loader3D_Lib3ds::Loader3D_Lib3dsData {
    std::unique_ptr<orvexLib3dsMaterial[]> materials;
    std::uint64_t num_materials = 0;
    std::vector<std::unique_ptr<sLib3dsMesh>> meshes;
};

} // namespace orvex
