#include "orvex_formats/gltf/private/gltf_reader.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "orvex_formats/gltf/private/draco_meshes.h"
#include "orvex_formats/gltf/private/glb.h"
#include "orvex_formats/gltf/private/gltf_accessor.h"
#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_buffers.h"
#include "orvex_formats/gltf/private/gltf_camera.h"
#include "orvex_formats/gltf/private/gltf_chains.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_light.h"
#include "orvex_formats/gltf/private/gltf_material.h"
#include "orvex_formats/gltf/private/gltf_mesh.h"
#include "orvex_formats/gltf/private/gltf_nodes.h"
#include "orvex_formats/gltf/private/gltf_notes.h"
#include "orvex_formats/gltf/private/meshopt_codec.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

// --- What the file asks of its readers --------------------------------------------------------

constexpr std::string_view known_extensions[] = {
    "KHR_lights_punctual",   "KHR_materials_clearcoat", "KHR_materials_emissive_strength",
    "KHR_materials_ior",     "KHR_materials_specular",  "KHR_materials_unlit",
    "KHR_mesh_quantization", "KHR_texture_transform"};

constexpr std::string_view draco = "KHR_draco_mesh_compression";

bool is_known(std::string_view name) {
    return (name == "EXT_meshopt_compression" && can_unpack_meshopt()) ||
           (name == draco && can_unpack_draco()) ||
           std::find(std::begin(known_extensions), std::end(known_extensions), name) !=
               std::end(known_extensions);
}

void check_extensions(const Json& root, GltfNotes& notes) {
    const Json required = root.list("extensionsRequired");
    for (std::size_t i = 0; i < required.size(); ++i)
        if (const std::string_view name = required.at(i).text(); !is_known(name))
            required.at(i).refuse("the file can't be read without \"" +
                                  in_words(std::string(name)) +
                                  (name == draco ? "\", whose packed meshes aren't unpacked here"
                                                 : "\", which isn't known"));
    const Json used = root.list("extensionsUsed");
    for (std::size_t i = 0; i < used.size(); ++i)
        if (const std::string_view name = used.at(i).text(); !is_known(name) && name != draco)
            notes.add(used.at(i),
                      "\"" + in_words(std::string(name)) + "\" isn't known, and was left out");
}

/// Whether meshes are there packed alone; else what is read lies beside them.
bool needs_draco(const Json& root) {
    const Json required = root.list("extensionsRequired");
    for (std::size_t i = 0; i < required.size(); ++i)
        if (required.at(i).text() == draco)
            return true;
    return false;
}

void check_version(const Json& root) {
    const Json asset = root.need("asset");
    const Json version = asset.need("version");
    if (version.text().substr(0, 2) != "2.")
        version.refuse("version " + in_words(std::string(version.text())) + "; version 2 is read");
    const Json least = asset.find("minVersion");
    if (least && least.text() != "2.0")
        least.refuse("the file needs version " + in_words(std::string(least.text())) +
                     "; version 2.0 is read");
}

/// Parses the text. What isn't called glTF, and has no asset, is some other JSON.
void parse(const InputFile& file, bool is_sure, std::string&& text, std::optional<JsonTree>& tree) {
    constexpr std::size_t long_text = 1u << 20;
    if (text.size() > long_text)
        check_chains(text);
    try {
        tree.emplace(std::move(text));
        tree->root().need("asset");
    } catch (const Refusal& refusal) {
        if (is_sure || has_suffix(file.path(), ".gltf"))
            throw;
        refuse_format("no glTF file: %s", refusal.what());
    }
}

} // namespace

Draft read_gltf(const InputFile& file) {
    return read_gltf_at(file, {});
}

Draft read_gltf_at(const InputFile& file, std::optional<float> time) {
    GltfParts parts = take_apart(file);
    std::optional<JsonTree> tree;
    parse(file, parts.is_binary, std::move(parts.json), tree);
    const Json root = tree->root();

    Draft draft;
    draft.notes = std::move(parts.notes);
    GltfNotes notes(draft.notes);
    check_version(root);
    check_extensions(root, notes);
    if (!time && root.list("animations").size() > 0)
        notes.add(root.find("animations"), "animations were left out, as no time was asked for");

    GltfBudget budget;
    budget.add_source(file.size());
    GltfBuffers buffers(root, parts, file, budget);
    GltfAccessors accessors(root, buffers, budget);
    if (needs_draco(root))
        unpack_draco(root, buffers, accessors, budget, installed_importer(file.size()));
    GltfMaterials materials(root, file, buffers, budget, notes, draft);
    GltfMeshes meshes(root, accessors, materials, budget, notes, draft);
    GltfCameras cameras(root, budget, notes, draft);
    GltfLights lights(root, budget, notes, draft);
    GltfNodes(root, time, accessors, budget, notes).add_scene(meshes, cameras, lights);
    draft.files = buffers.files();
    return draft;
}

} // namespace orvex::formats
