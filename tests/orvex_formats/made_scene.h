#pragma once

/// @file
/// Files of formats that we read through the importer, written by assimp.

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <assimp/Exporter.hpp>
#include <assimp/scene.h>
#include <gtest/gtest.h>

namespace orvex_test {

/// A scene that grows, and is written as a file of some format.
///
/// What it begins with: the square "sign", which stands on the ground, two wide and two high, with
/// the picture "four.png"; and the red triangle "flag" of node "mast", three above the ground.
class MadeScene {
public:
    MadeScene()
        : scene(new aiScene) {
        scene->mRootNode = new aiNode("root");
        const unsigned painted = add_material("painted", aiColor3D(1, 1, 1), "four.png");
        const unsigned red = add_material("red", aiColor3D(1, 0, 0), "");
        const unsigned sign =
            add_mesh("sign", painted, {{-1, 0, 0}, {1, 0, 0}, {1, 2, 0}, {-1, 2, 0}}, {0, 1, 2, 3},
                     {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
        const unsigned flag =
            add_mesh("flag", red, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2}, {});
        add_node("sign", sign, aiMatrix4x4());
        aiMatrix4x4 raised;
        aiMatrix4x4::Translation(aiVector3D(0, 3, 0), raised);
        add_node("mast", flag, raised);
    }

    unsigned add_material(const char* name, const aiColor3D& color, const std::string& picture) {
        auto* const material = new aiMaterial;
        const aiString text(name);
        const ai_real shininess = 8;
        material->AddProperty(&text, AI_MATKEY_NAME);
        material->AddProperty(&color, 1, AI_MATKEY_COLOR_DIFFUSE);
        material->AddProperty(&shininess, 1, AI_MATKEY_SHININESS);
        if (!picture.empty()) {
            const aiString path(picture);
            material->AddProperty(&path, AI_MATKEY_TEXTURE_DIFFUSE(0));
        }
        materials.push_back(material);
        return static_cast<unsigned>(materials.size() - 1);
    }

    /// One face.
    unsigned add_mesh(const char* name, unsigned material, const std::vector<aiVector3D>& places,
                      const std::vector<unsigned>& corners, const std::vector<aiVector3D>& uvs) {
        auto* const mesh = new aiMesh;
        mesh->mName = name;
        mesh->mMaterialIndex = material;
        mesh->mPrimitiveTypes =
            corners.size() == 3 ? aiPrimitiveType_TRIANGLE : aiPrimitiveType_POLYGON;
        mesh->mNumVertices = static_cast<unsigned>(places.size());
        mesh->mVertices = copy_of(places);
        mesh->mNormals = copy_of(std::vector<aiVector3D>(places.size(), aiVector3D(0, 0, 1)));
        if (!uvs.empty()) {
            mesh->mTextureCoords[0] = copy_of(uvs);
            mesh->mNumUVComponents[0] = 2;
        }
        mesh->mNumFaces = 1;
        mesh->mFaces = new aiFace[1];
        mesh->mFaces[0].mNumIndices = static_cast<unsigned>(corners.size());
        mesh->mFaces[0].mIndices = copy_of(corners);
        meshes.push_back(mesh);
        return static_cast<unsigned>(meshes.size() - 1);
    }

    void add_node(const char* name, unsigned mesh, const aiMatrix4x4& place) {
        auto* const node = new aiNode(name);
        node->mTransformation = place;
        node->mNumMeshes = 1;
        node->mMeshes = copy_of(std::vector<unsigned>{mesh});
        aiNode* const one = node;
        scene->mRootNode->addChildren(1, const_cast<aiNode**>(&one));
    }

    /// A picture within the file.
    void add_picture(const std::vector<unsigned char>& bytes, const char* name) {
        auto* const texture = new aiTexture;
        texture->mFilename = name;
        texture->mWidth = static_cast<unsigned>(bytes.size());
        texture->pcData = new aiTexel[bytes.size() / sizeof(aiTexel) + 1];
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<unsigned char*>(texture->pcData));
        std::copy_n("png", 4, texture->achFormatHint);
        textures.push_back(texture);
    }

    /// Blue pixels of half opacity within the file.
    void add_pixels(unsigned width, unsigned height) {
        auto* const texture = new aiTexture;
        texture->mWidth = width;
        texture->mHeight = height;
        texture->pcData = new aiTexel[std::size_t{width} * height];
        std::fill_n(texture->pcData, std::size_t{width} * height, aiTexel{255, 0, 0, 128});
        textures.push_back(texture);
    }

    /// Stands where a node of its name does.
    aiCamera& add_camera(const char* name) {
        cameras.push_back(new aiCamera);
        cameras.back()->mName = name;
        return *cameras.back();
    }

    /// Has a node move to a place in two seconds, and turn about z by a right angle.
    void add_motion(const char* node, const aiVector3D& from, const aiVector3D& to) {
        auto* const channel = new aiNodeAnim;
        channel->mNodeName = node;
        channel->mNumPositionKeys = channel->mNumRotationKeys = 2;
        channel->mPositionKeys = copy_of(std::vector<aiVectorKey>{{0.0, from}, {20.0, to}});
        const aiQuaternion half(aiVector3D(0, 0, 1), AI_MATH_HALF_PI_F);
        channel->mRotationKeys = copy_of(std::vector<aiQuatKey>{{0.0, {}}, {20.0, half}});
        auto* const animation = new aiAnimation;
        animation->mTicksPerSecond = 10.0;
        animation->mDuration = 20.0;
        animation->mNumChannels = 1;
        animation->mChannels = copy_of(std::vector<aiNodeAnim*>{channel});
        animations.push_back(animation);
    }

    /// Has a node hold all vertices of a mesh, as they stand in the mesh.
    void add_bone(unsigned place, const char* node) {
        auto* const bone = new aiBone;
        bone->mName = node;
        std::vector<aiVertexWeight> weights;
        for (unsigned i = 0; i < meshes[place]->mNumVertices; ++i)
            weights.emplace_back(i, 0.5f);
        bone->mNumWeights = static_cast<unsigned>(weights.size());
        bone->mWeights = copy_of(weights);
        meshes[place]->mNumBones = 1;
        meshes[place]->mBones = copy_of(std::vector<aiBone*>{bone});
    }

    aiMaterial& material(unsigned place) { return *materials[place]; }
    aiMesh& mesh(unsigned place) { return *meshes[place]; }

    /// @param format  as assimp's exporter calls it: "fbx", "fbxa", "collada", "x"
    void write(const std::string& format, const std::string& path) {
        scene->mMeshes = copy_of(meshes);
        scene->mNumMeshes = static_cast<unsigned>(meshes.size());
        scene->mMaterials = copy_of(materials);
        scene->mNumMaterials = static_cast<unsigned>(materials.size());
        scene->mTextures = copy_of(textures);
        scene->mNumTextures = static_cast<unsigned>(textures.size());
        scene->mCameras = copy_of(cameras);
        scene->mNumCameras = static_cast<unsigned>(cameras.size());
        scene->mAnimations = copy_of(animations);
        scene->mNumAnimations = static_cast<unsigned>(animations.size());
        Assimp::Exporter exporter;
        EXPECT_EQ(exporter.Export(scene.get(), format, path), aiReturn_SUCCESS)
            << exporter.GetErrorString();
    }

private:
    template<class Value>
    static Value* copy_of(const std::vector<Value>& values) {
        auto* const copy = new Value[values.size()];
        std::copy(values.begin(), values.end(), copy);
        return copy;
    }

    std::unique_ptr<aiScene> scene;
    std::vector<aiMaterial*> materials;
    std::vector<aiMesh*> meshes;
    std::vector<aiTexture*> textures;
    std::vector<aiCamera*> cameras;
    std::vector<aiAnimation*> animations;
};

} // namespace orvex_test
