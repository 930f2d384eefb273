#include "orvex_formats/import/program/mesh_places.h"

#include <cmath>
#include <stdexcept>

#include <assimp/mesh.h>

namespace orvex::formats {

namespace {

vec3 vector_of(const aiVector3D& vector) {
    return {vector.x, vector.y, vector.z};
}

void add_share(aiMatrix4x4& sum, const aiMatrix4x4& whole, float share) {
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
            sum[row][column] += whole[row][column] * share;
}

} // namespace

MeshPlaces::MeshPlaces(const aiMesh& mesh, const Stand& stand, const SceneStands* stands)
    : mesh(mesh)
    , world(stand.world) {
    if (stands && mesh.mNumBones > 0)
        add_bones(*stands);
}

void MeshPlaces::add_bones(const SceneStands& stands) {
    const aiMatrix4x4 nothing(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    std::vector<float> shares(mesh.mNumVertices, 0.0f);
    by_vertex.assign(mesh.mNumVertices, nothing);
    for (unsigned i = 0; i < mesh.mNumBones; ++i) {
        const aiBone& bone = *mesh.mBones[i];
        const Stand* const stand = stands.find(bone.mName.C_Str());
        if (!stand)
            continue;
        const aiMatrix4x4 moved = stand->world * bone.mOffsetMatrix;
        for (unsigned k = 0; k < bone.mNumWeights; ++k) {
            const aiVertexWeight& weight = bone.mWeights[k];
            if (weight.mVertexId >= mesh.mNumVertices)
                throw std::runtime_error("a bone holds a vertex beyond their list");
            add_share(by_vertex[weight.mVertexId], moved, weight.mWeight);
            shares[weight.mVertexId] += weight.mWeight;
        }
    }
    // Shares come to one; what no bone holds is the node's.
    for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
        const bool is_held = shares[i] > 0.0f && std::isfinite(shares[i]);
        const aiMatrix4x4 sum = is_held ? by_vertex[i] : world;
        by_vertex[i] = nothing;
        add_share(by_vertex[i], sum, is_held ? 1.0f / shares[i] : 1.0f);
    }
}

std::vector<vec3> MeshPlaces::positions() const {
    std::vector<vec3> positions;
    positions.reserve(mesh.mNumVertices);
    for (unsigned i = 0; i < mesh.mNumVertices; ++i)
        positions.push_back(vector_of(world_of(i) * mesh.mVertices[i]));
    return positions;
}

std::vector<vec3> MeshPlaces::normals() const {
    std::vector<vec3> normals;
    if (!mesh.mNormals)
        return normals;
    normals.reserve(mesh.mNumVertices);
    const auto turn_of = [](const aiMatrix4x4& world) {
        return aiMatrix3x3(world).Inverse().Transpose();
    };
    aiMatrix3x3 turn = turn_of(world);
    for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
        if (!by_vertex.empty())
            turn = turn_of(by_vertex[i]);
        const aiVector3D normal = turn * mesh.mNormals[i];
        const float length = normal.Length();
        const bool is_right = std::isfinite(length) && length > 0.0f;
        normals.push_back(is_right ? vector_of(normal / length) : vec3(0.0f, 0.0f, 1.0f));
    }
    return normals;
}

bool MeshPlaces::is_mirrored() const {
    return mesh.mNumVertices > 0 && aiMatrix3x3(world_of(0)).Determinant() < 0.0f;
}

} // namespace orvex::formats
