#include "orvex_formats/import/program/scene_materials.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include <assimp/material.h>
#include <assimp/scene.h>

namespace orvex::formats {

namespace {

// --- Pictures ---------------------------------------------------------------------------------

/// Pixels without a file around them get the smallest one that there is.
std::vector<unsigned char> targa_of(const aiTexture& texture) {
    constexpr unsigned largest = 16'384;
    if (!texture.pcData || texture.mWidth == 0 || texture.mWidth > largest ||
        texture.mHeight > largest)
        return {};
    const auto low = [](unsigned size) { return static_cast<unsigned char>(size & 255u); };
    const auto high = [](unsigned size) { return static_cast<unsigned char>(size >> 8); };
    constexpr unsigned char true_color = 2, bits = 32, alpha_and_top_down = 0x28;
    std::vector<unsigned char> file = {0,
                                       0,
                                       true_color,
                                       0,
                                       0,
                                       0,
                                       0,
                                       0,
                                       0,
                                       0,
                                       0,
                                       0,
                                       low(texture.mWidth),
                                       high(texture.mWidth),
                                       low(texture.mHeight),
                                       high(texture.mHeight),
                                       bits,
                                       alpha_and_top_down};
    const std::size_t head = file.size();
    const std::size_t size = std::size_t{texture.mWidth} * texture.mHeight * sizeof(aiTexel);
    file.resize(head + size);
    std::memcpy(file.data() + head, texture.pcData, size);
    return file;
}

void add_pictures(const aiScene& scene, Draft& draft) {
    for (unsigned i = 0; i < scene.mNumTextures; ++i) {
        const aiTexture& texture = *scene.mTextures[i];
        const std::string told = texture.mFilename.C_Str();
        Picture picture;
        picture.name = "picture " + std::to_string(i) + (told.empty() ? "" : ": " + told);
        if (texture.mHeight == 0) {
            const auto* const bytes = reinterpret_cast<const unsigned char*>(texture.pcData);
            picture.bytes.assign(bytes, bytes + (bytes ? texture.mWidth : 0));
        } else
            picture.bytes = targa_of(texture);
        draft.pictures.push_back(std::move(picture));
    }
}

// --- Materials --------------------------------------------------------------------------------

class MaterialReader {
public:
    /// @param[out] has_computed  becomes true where a picture is a formula, and is left out
    MaterialReader(const aiScene& scene, const aiMaterial& told, const Draft& draft,
                   bool& has_computed)
        : scene(scene)
        , told(told)
        , draft(draft)
        , has_computed(has_computed) {}

    SurfaceMaterial read() {
        aiString name;
        told.Get(AI_MATKEY_NAME, name);
        material.name = name.C_Str();
        read_colors();
        read_physical();
        return material;
    }

private:
    std::optional<float> number(const char* key, unsigned type, unsigned index) const {
        ai_real value = 0.0f;
        if (told.Get(key, type, index, value) != aiReturn_SUCCESS || !std::isfinite(value))
            return std::nullopt;
        return value;
    }

    std::optional<vec4> color(const char* key, unsigned type, unsigned index) const {
        aiColor4D value(0.0f, 0.0f, 0.0f, 1.0f);
        if (told.Get(key, type, index, value) != aiReturn_SUCCESS)
            return std::nullopt;
        const auto share = [](float part) { return part > 0.0f ? std::min(part, 1.0f) : 0.0f; };
        return vec4(share(value.r), share(value.g), share(value.b), 1.0f);
    }

    /// The first picture that a material has for one of several uses.
    PhysicalTexture texture(std::initializer_list<aiTextureType> uses) const {
        PhysicalTexture found;
        for (const aiTextureType use : uses) {
            aiString path;
            unsigned layer = 0;
            aiTextureMapMode wrap[3] = {aiTextureMapMode_Wrap, aiTextureMapMode_Wrap,
                                        aiTextureMapMode_Wrap};
            if (told.GetTexture(use, 0, &path, nullptr, &layer, nullptr, nullptr, wrap) !=
                    aiReturn_SUCCESS ||
                path.length == 0)
                continue;
            if (is_computed(path)) {
                has_computed = true;
                continue;
            }
            found.image = name_of(path);
            found.layer = layer == 1 ? 1 : 0;
            found.wrap_u = wrap_of(wrap[0]);
            found.wrap_v = wrap_of(wrap[1]);
            break;
        }
        return found;
    }

    /// Blender's textures that are formulas get such a name.
    static bool is_computed(const aiString& path) {
        return std::string(path.C_Str()).rfind("Procedural,", 0) == 0;
    }

    /// A file's name, or that of a picture of the draft.
    std::string name_of(const aiString& path) const {
        const auto [embedded, place] = scene.GetEmbeddedTextureAndIndex(path.C_Str());
        if (embedded && place >= 0 && static_cast<std::size_t>(place) < draft.pictures.size())
            return draft.pictures[static_cast<std::size_t>(place)].name;
        // A file that is called as a picture within the model is told from it by its folder.
        std::string name = path.C_Str();
        const bool is_taken =
            std::any_of(draft.pictures.begin(), draft.pictures.end(),
                        [&](const Picture& picture) { return picture.name == name; });
        return is_taken ? "./" + name : name;
    }

    static PhysicalTexture::Wrap wrap_of(aiTextureMapMode mode) {
        return mode == aiTextureMapMode_Mirror  ? PhysicalTexture::Wrap::mirror
               : mode == aiTextureMapMode_Clamp ? PhysicalTexture::Wrap::clamp
                                                : PhysicalTexture::Wrap::repeat;
    }

    void read_colors() {
        material.opacity = std::clamp(number(AI_MATKEY_OPACITY).value_or(1.0f), 0.0f, 1.0f);
        base = texture({aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE});
        const bool has_picture = !base.image.empty();
        if (has_picture)
            material.textures.push_back(base.image);
        const auto base_color = color(AI_MATKEY_BASE_COLOR);
        const auto diffuse = color(AI_MATKEY_COLOR_DIFFUSE);
        material.diffuse = base_color ? *base_color : diffuse.value_or(material.diffuse);
        // Many programs leave a picture's colour black, which would hide it.
        const vec4& shown = material.diffuse;
        if (has_picture && shown.x == 0.0f && shown.y == 0.0f && shown.z == 0.0f)
            material.diffuse = vec4(1.0f, 1.0f, 1.0f, 1.0f);
        material.specular = color(AI_MATKEY_COLOR_SPECULAR).value_or(material.specular);
        const auto ambient = color(AI_MATKEY_COLOR_AMBIENT);
        if (ambient && ambient->x + ambient->y + ambient->z > 0.0f)
            material.ambient = *ambient;
        const float exponent = number(AI_MATKEY_SHININESS).value_or(0.0f);
        if (exponent > 0.0f)
            material.shininess = std::clamp(exponent, 1.0f, 128.0f);
        else
            material.specular = vec4(0.0f, 0.0f, 0.0f, 1.0f); // which would cover all
    }

    void read_physical() {
        const auto metallic = number(AI_MATKEY_METALLIC_FACTOR);
        const auto roughness = number(AI_MATKEY_ROUGHNESS_FACTOR);
        PhysicalMaterial physical;
        physical.base_color_texture = base;
        physical.normal_texture = texture({aiTextureType_NORMALS, aiTextureType_NORMAL_CAMERA});
        physical.emissive_texture = texture({aiTextureType_EMISSION_COLOR, aiTextureType_EMISSIVE});
        physical.occlusion_texture =
            texture({aiTextureType_AMBIENT_OCCLUSION, aiTextureType_LIGHTMAP});
        const PhysicalTexture rough = texture({aiTextureType_DIFFUSE_ROUGHNESS});
        if (!rough.image.empty() && rough.image == texture({aiTextureType_METALNESS}).image)
            physical.metallic_roughness_texture = rough;
        const vec4 emissive = color(AI_MATKEY_COLOR_EMISSIVE).value_or(vec4(0, 0, 0, 1));
        physical.emissive = {emissive.x, emissive.y, emissive.z};
        const bool is_any = metallic || roughness || !physical.normal_texture.image.empty() ||
                            !physical.emissive_texture.image.empty() ||
                            !physical.occlusion_texture.image.empty() ||
                            !physical.metallic_roughness_texture.image.empty() ||
                            emissive.x + emissive.y + emissive.z > 0.0f;
        if (!is_any)
            return;
        if (!physical.emissive_texture.image.empty() &&
            emissive.x + emissive.y + emissive.z == 0.0f)
            physical.emissive = vec3(1.0f, 1.0f, 1.0f);
        const bool has_both = !physical.metallic_roughness_texture.image.empty();
        physical.base_color = material.diffuse;
        physical.base_color.w = material.opacity;
        physical.metallic = metallic.value_or(has_both ? 1.0f : 0.0f);
        physical.roughness = roughness.value_or(has_both ? 1.0f : roughness_of(material.shininess));
        physical.alpha = material.opacity < 1.0f ? PhysicalMaterial::Alpha::blend
                                                 : PhysicalMaterial::Alpha::opaque;
        int is_double_sided = 0;
        told.Get(AI_MATKEY_TWOSIDED, is_double_sided);
        physical.is_double_sided = is_double_sided != 0;
        material.physical = physical;
    }

    /// A rough surface has a wide highlight.
    static float roughness_of(float exponent) { return std::sqrt(2.0f / (exponent + 2.0f)); }

    const aiScene& scene;
    const aiMaterial& told;
    const Draft& draft;
    bool& has_computed;
    SurfaceMaterial material;
    PhysicalTexture base;
};

} // namespace

void add_materials(const aiScene& scene, Draft& draft) {
    add_pictures(scene, draft);
    bool has_computed = false;
    for (unsigned i = 0; i < scene.mNumMaterials; ++i)
        draft.materials.push_back(
            MaterialReader(scene, *scene.mMaterials[i], draft, has_computed).read());
    if (has_computed)
        draft.notes.emplace_back("textures that are formulas were left out");
}

} // namespace orvex::formats
