#include "orvex_formats/import/program/scene_draft.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include <assimp/scene.h>

#include "orvex_formats/import/program/mesh_places.h"
#include "orvex_formats/import/program/scene_cameras.h"
#include "orvex_formats/import/program/scene_materials.h"
#include "orvex_formats/import/program/scene_stands.h"

namespace orvex::formats {

namespace {

vec3 vector_of(const aiVector3D& vector) {
    return {vector.x, vector.y, vector.z};
}

/// Turns a file whose axes aren't the engine's, x to the right, y upward, z to the viewer. FBX
/// tells its own, and assimp leaves them as they are; of most other formats it turns what has to be
/// turned.
aiMatrix4x4 turn_of(const aiScene& scene, bool is_z_up) {
    if (is_z_up)
        return {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
    const char* const names[3][2] = {
        {"CoordAxis", "CoordAxisSign"}, {"UpAxis", "UpAxisSign"}, {"FrontAxis", "FrontAxisSign"}};
    aiMatrix4x4 turn;
    unsigned known = 0;
    for (unsigned row = 0; row < 3 && scene.mMetaData; ++row) {
        std::int32_t axis = -1, sign = 0;
        if (!scene.mMetaData->Get(names[row][0], axis) ||
            !scene.mMetaData->Get(names[row][1], sign) || axis < 0 || axis > 2)
            return {};
        for (int column = 0; column < 3; ++column)
            turn[row][column] = column == axis ? (sign < 0 ? -1.0f : 1.0f) : 0.0f;
        known |= 1u << axis;
    }
    return known == 7 ? turn : aiMatrix4x4();
}

class SceneDraft {
public:
    SceneDraft(const aiScene& scene, bool is_z_up, std::optional<float> time,
               std::uint64_t most_bytes)
        : scene(scene)
        , is_timed(time)
        , stands(scene, turn_of(scene, is_z_up), time)
        , bytes_left(most_bytes) {}

    Draft make() {
        add_materials(scene, draft);
        for (const Stand& stand : stands.all())
            add_meshes(stand);
        if (draft.surfaces.empty() && draft.clouds.empty() && draft.lines.empty())
            throw std::runtime_error("the file has nothing that can be drawn");
        add_cameras(scene, stands, draft);
        add_notes();
        return std::move(draft);
    }

private:
    void add_meshes(const Stand& stand) {
        for (unsigned i = 0; i < stand.node->mNumMeshes; ++i) {
            const unsigned place = stand.node->mMeshes[i];
            if (place >= scene.mNumMeshes)
                throw std::runtime_error("a node names a mesh beyond their list");
            const aiMesh& mesh = *scene.mMeshes[place];
            check(mesh);
            const std::string name =
                mesh.mName.length > 0 ? mesh.mName.C_Str() : stand.node->mName.C_Str();
            if (mesh.mPrimitiveTypes & (aiPrimitiveType_TRIANGLE | aiPrimitiveType_POLYGON))
                add_surface(mesh, stand, name);
            else if (mesh.mPrimitiveTypes & aiPrimitiveType_LINE)
                add_lines(mesh, stand.world, name);
            else
                add_cloud(mesh, stand.world, name);
        }
    }

    /// All corners lie in the list of vertices; and there is room for the whole.
    void check(const aiMesh& mesh) {
        const std::uint64_t size =
            std::uint64_t{mesh.mNumVertices} * 64 + std::uint64_t{mesh.mNumFaces} * 16 + 256;
        if (size > bytes_left)
            throw std::runtime_error("the model would be far larger than its file");
        bytes_left -= size;
        for (unsigned i = 0; i < mesh.mNumFaces; ++i)
            for (unsigned corner = 0; corner < mesh.mFaces[i].mNumIndices; ++corner)
                if (mesh.mFaces[i].mIndices[corner] >= mesh.mNumVertices)
                    throw std::runtime_error("a face has a corner beyond the vertices");
    }

    // --- Vertices

    static std::vector<vec3> places_of(const aiMesh& mesh, const aiMatrix4x4& world) {
        std::vector<vec3> places;
        places.reserve(mesh.mNumVertices);
        for (unsigned i = 0; i < mesh.mNumVertices; ++i)
            places.push_back(vector_of(world * mesh.mVertices[i]));
        return places;
    }

    static std::vector<vec4> colors_of(const aiMesh& mesh) {
        std::vector<vec4> colors;
        if (!mesh.mColors[0])
            return colors;
        colors.reserve(mesh.mNumVertices);
        const auto share = [](float part) { return part > 0.0f ? std::min(part, 1.0f) : 0.0f; };
        for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
            const aiColor4D& color = mesh.mColors[0][i];
            colors.emplace_back(share(color.r), share(color.g), share(color.b), share(color.a));
        }
        return colors;
    }

    static std::vector<vec2> uvs_of(const aiMesh& mesh, unsigned layer) {
        std::vector<vec2> uvs;
        if (!mesh.mTextureCoords[layer])
            return uvs;
        uvs.resize(mesh.mNumVertices);
        const auto finite = [](float part) { return std::isfinite(part) ? part : 0.0f; };
        for (unsigned i = 0; i < mesh.mNumVertices; ++i)
            uvs[i].set(finite(mesh.mTextureCoords[layer][i].x),
                       finite(mesh.mTextureCoords[layer][i].y));
        return uvs;
    }

    // --- Pieces

    void add_surface(const aiMesh& mesh, const Stand& stand, const std::string& name) {
        Surface surface;
        surface.name = name;
        const MeshPlaces places(mesh, stand, is_timed ? &stands : nullptr);
        const bool is_mirrored = places.is_mirrored();
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            const aiFace& face = mesh.mFaces[i];
            if (face.mNumIndices != 3)
                continue;
            surface.triangles.push_back({face.mIndices[0], face.mIndices[is_mirrored ? 2 : 1],
                                         face.mIndices[is_mirrored ? 1 : 2]});
        }
        if (surface.triangles.empty())
            return;
        surface.positions = places.positions();
        surface.normals = places.normals();
        surface.colors = colors_of(mesh);
        for (unsigned layer = 0; layer < 2; ++layer)
            surface.uvs[layer] = uvs_of(mesh, layer);
        if (mesh.mMaterialIndex < draft.materials.size())
            surface.triangle_materials.assign(surface.triangles.size(), mesh.mMaterialIndex);
        has_bones = has_bones || mesh.mNumBones > 0;
        has_targets = has_targets || mesh.mNumAnimMeshes > 0;
        draft.surfaces.push_back(std::move(surface));
    }

    void add_lines(const aiMesh& mesh, const aiMatrix4x4& world, const std::string& name) {
        Lines lines;
        lines.name = name;
        const std::vector<vec4> colors = colors_of(mesh);
        for (unsigned i = 0; i < mesh.mNumFaces; ++i)
            for (unsigned end = 0; end < 2 && mesh.mFaces[i].mNumIndices == 2; ++end) {
                const unsigned place = mesh.mFaces[i].mIndices[end];
                lines.positions.push_back(vector_of(world * mesh.mVertices[place]));
                if (!colors.empty())
                    lines.colors.push_back(colors[place]);
            }
        if (!lines.positions.empty())
            draft.lines.push_back(std::move(lines));
    }

    void add_cloud(const aiMesh& mesh, const aiMatrix4x4& world, const std::string& name) {
        if (mesh.mNumVertices == 0)
            return;
        draft.clouds.push_back({name, places_of(mesh, world), colors_of(mesh)});
    }

    void add_notes() {
        const auto add = [this](bool is_so, const char* note) {
            if (is_so)
                draft.notes.emplace_back(note);
        };
        add(!is_timed && scene.mNumAnimations > 0,
            "animations were left out, as no time was asked for");
        add(is_timed && scene.mNumAnimations > 1, "animations but the first were left out");
        add(scene.mNumLights > 0, "lights were left out");
        add(!is_timed && has_bones, "bones were left out: meshes stand as they were made");
        add(has_targets, "morph targets were left out");
    }

    const aiScene& scene;
    const bool is_timed;
    const SceneStands stands;
    std::uint64_t bytes_left;
    bool has_bones = false, has_targets = false;
    Draft draft;
};

} // namespace

Draft draft_of(const aiScene& scene, bool is_z_up, std::optional<float> time,
               std::uint64_t most_bytes) {
    return SceneDraft(scene, is_z_up, time, most_bytes).make();
}

} // namespace orvex::formats
