// A material holds a reference on its program and on each texture, and gives them back in
// `_cleanup`. A list grows before a reference is counted, so that the end of memory leaves neither.

#include "orvex/assets/materials/material.h"

#include <algorithm>
#include <string>
#include <vector>

#include "orvex/assets/materials/physical_material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/private/eliding_renderers.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/kept_binds.h"
#include "orvex/scene/private/node_handle.h"

namespace orvex {

/// What every frame reads stands first.
struct Material::MaterialData {
    /// Holds one reference.
    GpuProgram* gpu_program = nullptr;
    /// In the order of their units; each holds one reference.
    std::vector<Texture*> textures;
    unsigned long texture_unit_offset = 0;
    bool use_fixed_material_colors = false;
    /// Files that wait to be loaded.
    std::vector<std::string> texture_filenames;
    vec4 ambient = vec4(0.5f, 0.5f, 0.6f, 1.0f);
    vec4 diffuse = vec4(0.8f, 0.8f, 0.9f, 1.0f);
    vec4 specular = vec4(0.9f, 0.9f, 0.9f, 1.0f);
    float shininess = 16.0f;
    float opacity = 1.0f;
    std::unique_ptr<const PhysicalMaterial> physical; ///< null: none
};

Material::Material()
    : data(std::make_unique<MaterialData>()) {
    set_type(NODE_TYPE_MATERIAL);
}

Material::~Material() = default;

bool Material::_cleanup(Renderer* renderer) {
    set_gpu_program(nullptr);
    remove_all_textures();
    async_loading_clear_texture_filenames_list();
    return Resource::_cleanup(renderer);
}

void Material::set_gpu_program(GpuProgram* program) {
    const NodeHandle alive(program);
    if (data->gpu_program)
        data->gpu_program->release(nullptr, nullptr);
    // The program that was just released may be the new one, and may have ended.
    data->gpu_program = alive.get() ? program : nullptr;
    if (data->gpu_program)
        data->gpu_program->add_ref();
}

GpuProgram* Material::get_gpu_program() const {
    return data->gpu_program;
}

// -------------------------------------------------------------------------------- textures

void Material::add_texture(Texture* texture) {
    if (!texture) {
        misuse("Material::add_texture", "a null texture");
        return;
    }
    data->textures.push_back(texture);
    texture->add_ref();
}

bool Material::remove_texture(int id) {
    std::vector<Texture*>& textures = data->textures;
    const auto found = std::find_if(textures.begin(), textures.end(),
                                    [id](Texture* texture) { return texture->get_id() == id; });
    if (found == textures.end())
        return false;
    Texture* const texture = *found;
    textures.erase(found);
    texture->release(nullptr, nullptr);
    return true;
}

bool Material::remove_all_textures() {
    std::vector<Texture*> textures;
    textures.swap(data->textures);
    for (Texture* texture : textures)
        texture->release(nullptr, nullptr);
    return true;
}

unsigned long Material::get_num_textures() const {
    return data->textures.size();
}

Texture* Material::get_texture_by_index(unsigned long index) const {
    return index < data->textures.size() ? data->textures[index] : nullptr;
}

Texture* Material::get_texture(int id) const {
    for (Texture* texture : data->textures)
        if (texture->get_id() == id)
            return texture;
    return nullptr;
}

void Material::set_texture_unit_offset(unsigned long offset) {
    data->texture_unit_offset = offset;
}

// -------------------------------------------------------------------------------- colours

void Material::set_ambient(float r, float g, float b, float a) {
    data->ambient = vec4(r, g, b, a);
}

void Material::set_ambient(const vec4& color) {
    data->ambient = color;
}

const vec4& Material::get_ambient() const {
    return data->ambient;
}

void Material::set_diffuse(float r, float g, float b, float a) {
    data->diffuse = vec4(r, g, b, a);
}

void Material::set_diffuse(const vec4& color) {
    data->diffuse = color;
}

const vec4& Material::get_diffuse() const {
    return data->diffuse;
}

void Material::set_specular(float r, float g, float b, float a) {
    data->specular = vec4(r, g, b, a);
}

void Material::set_specular(const vec4& color) {
    data->specular = color;
}

const vec4& Material::get_specular() const {
    return data->specular;
}

void Material::set_shininess(float shininess) {
    data->shininess = shininess;
}

float Material::get_shininess() const {
    return data->shininess;
}

void Material::set_opacity(float opacity) {
    data->opacity = opacity;
}

float Material::get_opacity() const {
    return data->opacity;
}

void Material::set_use_fixed_material_colors_state(bool enabled) {
    data->use_fixed_material_colors = enabled;
}

bool Material::get_use_fixed_material_colors_state() const {
    return data->use_fixed_material_colors;
}

void Material::set_physical(const PhysicalMaterial* values) {
    data->physical = values ? std::make_unique<const PhysicalMaterial>(*values) : nullptr;
}

const PhysicalMaterial* Material::get_physical() const {
    return data->physical.get();
}

// -------------------------------------------------------------------------------- binding

void Material::bind(Renderer* renderer) {
    bind_gpu_program(renderer);
    bind_textures(renderer);
    if (data->use_fixed_material_colors)
        fixed_pipeline_bind_colors(renderer);
}

void Material::bind_gpu_program(Renderer* renderer) {
    if (data->gpu_program)
        data->gpu_program->bind(renderer);
}

namespace {

/// Keeps no binds for as long as a texture of a host's own class runs, which may call the API by
/// itself.
class TextureRun {
public:
    TextureRun(Renderer* renderer, const Texture& texture)
        : renderer(renderer && any_renderer_elides() && renderer->get_kept_binds_state() &&
                           !is_drawn_by_engine(texture)
                       ? renderer
                       : nullptr) {
        if (this->renderer)
            this->renderer->keep_binds(false);
    }
    ~TextureRun() {
        if (renderer)
            renderer->keep_binds(true);
    }
    TextureRun(const TextureRun&) = delete;
    TextureRun& operator=(const TextureRun&) = delete;

private:
    Renderer* renderer; ///< null where nothing was kept
};

} // namespace

void Material::bind_textures(Renderer* renderer) {
    for (unsigned long i = 0; i < data->textures.size(); ++i) {
        Texture& texture = *data->textures[i];
        const TextureRun run(renderer, texture);
        texture.bind(renderer, data->texture_unit_offset + i);
    }
}

void Material::fixed_pipeline_bind_colors(Renderer* renderer) {
    if (renderer)
        renderer->material_set_colors(data->ambient, data->diffuse, data->specular,
                                      data->shininess);
}

void Material::unbind(Renderer* renderer) {
    unbind_gpu_program(renderer);
    unbind_textures(renderer);
}

void Material::unbind_gpu_program(Renderer* renderer) {
    if (data->gpu_program)
        data->gpu_program->unbind(renderer);
}

void Material::unbind_textures(Renderer* renderer) {
    for (unsigned long i = 0; i < data->textures.size(); ++i) {
        Texture& texture = *data->textures[i];
        const TextureRun run(renderer, texture);
        texture.unbind(renderer, data->texture_unit_offset + i);
    }
}

// -------------------------------------------------------------------------------- loading

Texture* Material::load_texture(Renderer* renderer, const char* filename, PIXEL_FORMAT format,
                                bool) {
    TextureMgr* const textures = TextureMgr::get();
    Texture* const texture = textures->create_texture_2d_from_file(filename, false);
    if (!texture)
        return nullptr;
    add_texture(texture);
    if (format != PF_NONE)
        texture->update_pixel_format(format);
    if (renderer)
        textures->upload_to_renderer(renderer, texture, 0);
    return texture;
}

bool Material::async_loading_add_texture_filename(const char* filename) {
    if (!filename)
        return misuse("Material::async_loading_add_texture_filename", "a null name");
    data->texture_filenames.emplace_back(filename);
    return true;
}

unsigned long Material::async_loading_get_num_texture_filenames() const {
    return data->texture_filenames.size();
}

const char* Material::async_loading_get_texture_filename(unsigned long index) const {
    const std::vector<std::string>& names = data->texture_filenames;
    return index < names.size() ? names[index].c_str() : nullptr;
}

bool Material::async_loading_clear_texture_filenames_list() {
    data->texture_filenames.clear();
    return true;
}

bool Material::async_loading_process_all_texture_filenames(Renderer* renderer, const char* prefix,
                                                           PIXEL_FORMAT format, bool flag) {
    constexpr const char* operation =
        "orvex::Material::async_loading_process_all_texture_filenames()";
    LogMgr* const log = LogMgr::get();
    for (std::size_t i = 0; i < data->texture_filenames.size(); ++i) {
        const std::string path = (prefix ? prefix : "") + data->texture_filenames[i];
        log->tracef_debug("%s - loading texture %zu with filename: %s", operation, i, path.c_str());
        if (load_texture(renderer, path.c_str(), format, flag))
            log->tracef_debug("%s - texture %zu (%s) loaded ok.", operation, i, path.c_str());
        else
            log->tracef_error("%s - texture %zu (%s) NOT loaded.", operation, i, path.c_str());
    }
    return async_loading_clear_texture_filenames_list();
}

} // namespace orvex
