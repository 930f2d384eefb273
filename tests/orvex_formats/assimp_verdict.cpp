// Says what assimp makes of each file.

#include <assimp/Importer.hpp>
#include <assimp/material.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include "verdict.h"

namespace {

using orvex_test::Verdict;

void add_mesh(const aiMesh& mesh, const aiMatrix4x4& world, Verdict& verdict) {
    verdict.vertices += mesh.mNumVertices;
    ++verdict.draws;
    for (unsigned i = 0; i < mesh.mNumFaces; ++i)
        verdict.triangles += mesh.mFaces[i].mNumIndices == 3 ? 1 : 0;
    for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
        const aiVector3D place = world * mesh.mVertices[i];
        verdict.add_place(place.x, place.y, place.z);
    }
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the files of a test are.
void add_node(const aiScene& scene, const aiNode& node, const aiMatrix4x4& parent,
              Verdict& verdict) {
    const aiMatrix4x4 world = parent * node.mTransformation;
    for (unsigned i = 0; i < node.mNumMeshes; ++i)
        add_mesh(*scene.mMeshes[node.mMeshes[i]], world, verdict);
    for (unsigned i = 0; i < node.mNumChildren; ++i)
        add_node(scene, *node.mChildren[i], world, verdict);
}

void judge(const char* path) {
    Assimp::Importer importer;
    const aiScene* const scene = importer.ReadFile(path, aiProcess_Triangulate);
    if (!scene)
        return orvex_test::tell_refusal(importer.GetErrorString());
    Verdict verdict;
    if (scene->mRootNode)
        add_node(*scene, *scene->mRootNode, aiMatrix4x4(), verdict);
    for (unsigned i = 0; i < scene->mNumMaterials; ++i) {
        aiColor4D color;
        if (scene->mMaterials[i]->Get(AI_MATKEY_BASE_COLOR, color) != AI_SUCCESS &&
            scene->mMaterials[i]->Get(AI_MATKEY_COLOR_DIFFUSE, color) != AI_SUCCESS)
            continue;
        verdict.materials.push_back(
            {scene->mMaterials[i]->GetName().C_Str(), {color.r, color.g, color.b}});
    }
    tell(verdict);
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        judge(argv[i]);
}
