#include "orvex_formats/gltf/private/gltf_material.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "orvex_formats/gltf/private/gltf_color.h"

namespace orvex::formats {

namespace {

constexpr std::uint64_t cost_of_material = 4096; ///< in the draft and in the engine

float within(double number, double least, double most) {
    return static_cast<float>(std::clamp(number, least, most));
}

/// A number that has to be from 0 to 1, whatever the file says.
float unit(const Json& json, const char* name, double otherwise) {
    return within(json.number(name, otherwise), 0.0, 1.0);
}

vec3 color_of(const Json& json, const char* name, double otherwise, double most) {
    const auto told = json.numbers<3>(name, {otherwise, otherwise, otherwise});
    return {within(told[0], 0.0, most), within(told[1], 0.0, most), within(told[2], 0.0, most)};
}

constexpr double most_of_any = 1e30;

// --- The engine's colours ---------------------------------------------------------------------

vec4 encoded(const vec3& linear, float alpha) {
    return vec4(encoded_color(linear.x), encoded_color(linear.y), encoded_color(linear.z), alpha);
}

vec3 scaled(const vec3& color, float by) {
    return {color.x * by, color.y * by, color.z * by};
}

/// The nearest look that one diffuse and one specular colour have. Those colours are as screens
/// have them, not linear. Metals keep their colour as the diffuse one, as nothing is mirrored in
/// them; what an insulator reflects is the few percent that follow from its index of refraction. A
/// rough surface spreads its highlight until it is hardly seen. What shines by itself does so in
/// the ambient colour.
void set_colors(const PhysicalMaterial& physical, SurfaceMaterial& material) {
    const vec4& base = physical.base_color;
    const vec3 color(base.x, base.y, base.z);
    const bool is_blended = physical.alpha == PhysicalMaterial::Alpha::blend;
    material.opacity = is_blended ? base.w : 1.0f;
    material.diffuse = encoded(color, material.opacity);

    const float root = (physical.ior - 1.0f) / (physical.ior + 1.0f);
    const float smooth = physical.is_unlit ? 0.0f : 1.0f - physical.roughness;
    const vec3 insulator = scaled(physical.specular_color, root * root * physical.specular);
    const auto mirrored = [&](float of_insulator, float of_metal) {
        return std::min(1.0f, smooth * (of_insulator * (1.0f - physical.metallic) +
                                        of_metal * physical.metallic));
    };
    material.specular = encoded(vec3(mirrored(insulator.x, color.x), mirrored(insulator.y, color.y),
                                     mirrored(insulator.z, color.z)),
                                1.0f);
    const float spread = std::max(physical.roughness * physical.roughness, 0.1f);
    material.shininess = std::clamp(2.0f / (spread * spread) - 2.0f, 1.0f, 128.0f);

    const vec3 shining = scaled(physical.emissive, physical.emissive_strength);
    const auto lit = [&](float diffuse, float own) {
        return std::min(1.0f, diffuse * (physical.is_unlit ? 1.0f : 0.2f) + own);
    };
    const vec4& diffuse = material.diffuse;
    material.ambient =
        vec4(lit(diffuse.x, encoded_color(shining.x)), lit(diffuse.y, encoded_color(shining.y)),
             lit(diffuse.z, encoded_color(shining.z)), material.opacity);
}

// --- The pictures of a material ---------------------------------------------------------------

constexpr PhysicalTexture PhysicalMaterial::*all_textures[] = {
    &PhysicalMaterial::base_color_texture,
    &PhysicalMaterial::metallic_roughness_texture,
    &PhysicalMaterial::normal_texture,
    &PhysicalMaterial::occlusion_texture,
    &PhysicalMaterial::emissive_texture,
    &PhysicalMaterial::specular_texture,
    &PhysicalMaterial::specular_color_texture,
    &PhysicalMaterial::clearcoat_texture,
    &PhysicalMaterial::clearcoat_roughness_texture,
    &PhysicalMaterial::clearcoat_normal_texture};

bool lie_alike(const PhysicalTexture& a, const PhysicalTexture& b) {
    return a.offset_u == b.offset_u && a.offset_v == b.offset_v && a.scale_u == b.scale_u &&
           a.scale_v == b.scale_v && a.rotation == b.rotation;
}

/// Whether all pictures that use the coordinates of the base colour use them as it does.
bool can_change(const PhysicalMaterial& physical) {
    const PhysicalTexture& base = physical.base_color_texture;
    return std::all_of(std::begin(all_textures), std::end(all_textures), [&](auto member) {
        const PhysicalTexture& other = physical.*member;
        return other.image.empty() || other.layer != base.layer || lie_alike(other, base);
    });
}

/// Makes the coordinates of the base colour the first ones, and those moved already.
UvChange take_change(PhysicalMaterial& physical, bool is_moved) {
    const PhysicalTexture base = physical.base_color_texture;
    UvChange change;
    change.layer = base.layer;
    if (is_moved) {
        change.offset_u = base.offset_u;
        change.offset_v = base.offset_v;
        change.scale_u = base.scale_u;
        change.scale_v = base.scale_v;
        change.rotation = base.rotation;
    }
    for (const auto member : all_textures) {
        PhysicalTexture& texture = physical.*member;
        if (texture.layer == base.layer && is_moved) {
            texture.offset_u = texture.offset_v = texture.rotation = 0.0f;
            texture.scale_u = texture.scale_v = 1.0f;
        }
        if (base.layer == 1)
            texture.layer = 1 - texture.layer;
    }
    return change;
}

/// Names the pictures of a material, that of the base colour first.
void list_textures(SurfaceMaterial& material, GltfTextures& textures) {
    std::vector<std::string>& names = material.textures;
    for (const auto member : all_textures) {
        const std::string& name = (*material.physical.*member).image;
        if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    if (names.empty())
        return;
    const auto is_file = [&](const std::string& name) { return textures.is_file(name); };
    const bool has_base = !material.physical->base_color_texture.image.empty();
    // A file mustn't get behind a picture, nor another picture into the place of the base colour.
    if (!has_base || !std::all_of(names.begin(), names.end(), is_file))
        for (const std::string& name : names)
            textures.embed(name);
    if (!has_base)
        names.insert(names.begin(), textures.white());
}

} // namespace

// ------------------------------------------------------------------------------------ materials

GltfMaterials::GltfMaterials(const Json& json, const InputFile& file, GltfBuffers& buffers,
                             GltfBudget& budget, GltfNotes& notes, Draft& draft)
    : notes(notes)
    , draft(draft)
    , textures(json, file, buffers, budget, notes, draft) {
    const Json told = json.list("materials");
    if (told)
        budget.take(told.size(), cost_of_material, told);
    for (std::size_t i = 0; i < told.size(); ++i)
        add(told.at(i), i);
}

void GltfMaterials::add(const Json& json, std::size_t place) {
    if (!json.is_object())
        json.refuse("no object");
    SurfaceMaterial material;
    material.name = json.text("name", "material " + std::to_string(place));
    PhysicalMaterial& physical = material.physical.emplace();
    read_core(json, physical);
    read_extensions(json.object("extensions"), physical);

    UvChange change;
    if (const PhysicalTexture& base = physical.base_color_texture; !base.image.empty()) {
        const bool is_moved = can_change(physical);
        if (!is_moved)
            notes.add(json, "the pictures of a material lie differently; where only one picture is "
                            "drawn, it isn't moved");
        change = take_change(physical, is_moved);
    }
    changes.push_back(change);
    set_colors(physical, material);
    list_textures(material, textures);
    draft.materials.push_back(std::move(material));
}

void GltfMaterials::read_core(const Json& json, PhysicalMaterial& physical) {
    const Json core = json.object("pbrMetallicRoughness");
    const auto base = core.numbers<4>("baseColorFactor", {1.0, 1.0, 1.0, 1.0});
    physical.base_color = vec4(within(base[0], 0.0, 1.0), within(base[1], 0.0, 1.0),
                               within(base[2], 0.0, 1.0), within(base[3], 0.0, 1.0));
    physical.metallic = unit(core, "metallicFactor", 1.0);
    physical.roughness = unit(core, "roughnessFactor", 1.0);
    physical.base_color_texture = textures.read(core, "baseColorTexture");
    physical.metallic_roughness_texture = textures.read(core, "metallicRoughnessTexture");

    physical.normal_texture = textures.read(json, "normalTexture");
    physical.occlusion_texture = textures.read(json, "occlusionTexture");
    physical.emissive_texture = textures.read(json, "emissiveTexture");
    physical.emissive = color_of(json, "emissiveFactor", 0.0, 1.0);
    physical.is_double_sided = json.flag("doubleSided", false);
    physical.alpha_cutoff = within(json.number("alphaCutoff", 0.5), 0.0, most_of_any);

    const std::string_view mode = json.text("alphaMode", "OPAQUE");
    if (mode == "MASK")
        physical.alpha = PhysicalMaterial::Alpha::mask;
    else if (mode == "BLEND")
        physical.alpha = PhysicalMaterial::Alpha::blend;
    else if (mode != "OPAQUE")
        notes.add(json.need("alphaMode"), "a mode of alpha that isn't known was left out");
}

void GltfMaterials::read_extensions(const Json& extensions, PhysicalMaterial& physical) {
    physical.is_unlit = static_cast<bool>(extensions.find("KHR_materials_unlit"));
    physical.emissive_strength =
        within(extensions.object("KHR_materials_emissive_strength").number("emissiveStrength", 1.0),
               0.0, most_of_any);
    // An index below 1 is none, but for 0, which stands for endless.
    const double ior = extensions.object("KHR_materials_ior").number("ior", 1.5);
    physical.ior = ior == 0.0 ? 0.0f : within(ior, 1.0, most_of_any);

    const Json specular = extensions.object("KHR_materials_specular");
    physical.specular = unit(specular, "specularFactor", 1.0);
    physical.specular_color = color_of(specular, "specularColorFactor", 1.0, most_of_any);
    physical.specular_texture = textures.read(specular, "specularTexture");
    physical.specular_color_texture = textures.read(specular, "specularColorTexture");

    const Json clearcoat = extensions.object("KHR_materials_clearcoat");
    physical.clearcoat = unit(clearcoat, "clearcoatFactor", 0.0);
    physical.clearcoat_roughness = unit(clearcoat, "clearcoatRoughnessFactor", 0.0);
    physical.clearcoat_texture = textures.read(clearcoat, "clearcoatTexture");
    physical.clearcoat_roughness_texture = textures.read(clearcoat, "clearcoatRoughnessTexture");
    physical.clearcoat_normal_texture = textures.read(clearcoat, "clearcoatNormalTexture");
}

} // namespace orvex::formats
