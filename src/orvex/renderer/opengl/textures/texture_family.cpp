#include "orvex/renderer/opengl/textures/private/texture_family.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "orvex/renderer/opengl/textures/private/pixel_packing.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"

namespace orvex {

TextureFamily::TextureFamily(GlState& state, TextureUnitFamily& units, Renderer& renderer)
    : state(state)
    , gl(state.gl)
    , units(units)
    , renderer(renderer) {}

// Contexts

/// Whether a host's contexts share can't always be told: there the name decides.
bool TextureFamily::has_object_here(const TextureData& texture) const {
    if (state.context().group->is_apart_from(Kinship{texture.gl_group_kinship}))
        return false;
    return glIsTexture(texture.opengl_texture_id) == GL_TRUE;
}

bool TextureFamily::enter_context(TextureData& texture) const {
    state.follow_context();
    if (texture.gl_group == state.context().group->number)
        return false;
    state.look_at_context();
    const ShareGroup& here = *state.context().group;
    if (texture.gl_group == here.number)
        return false;
    std::vector<TextureObject>& elsewhere = texture.gl_elsewhere;
    bool to_load = false;
    if (texture.gl_group != 0 && (texture.opengl_texture_id != 0 || !elsewhere.empty())) {
        if (texture.opengl_texture_id != 0 && has_object_here(texture))
            return false;
        // What it has there is put aside, unless it is gone.
        if (texture.opengl_texture_id != 0)
            elsewhere.push_back({texture.gl_group, texture.opengl_texture_id,
                                 texture.opengl_texture_id_generated,
                                 texture.opengl_texture_id_borrowed, texture.needs_gpu_update});
        std::erase_if(elsewhere, [](const TextureObject& object) {
            return !contexts::find_group(object.group);
        });
        // What it has here takes the place.
        const auto kept =
            std::find_if(elsewhere.begin(), elsewhere.end(),
                         [&](const TextureObject& object) { return object.group == here.number; });
        const TextureObject object = kept != elsewhere.end() ? *kept : TextureObject();
        if (kept != elsewhere.end())
            elsewhere.erase(kept);
        texture.opengl_texture_id = object.id;
        texture.opengl_texture_id_generated = object.generated;
        texture.opengl_texture_id_borrowed = object.borrowed;
        texture.loaded_in_gpu_memory = object.id != 0 && !object.outdated;
        to_load = !texture.loaded_in_gpu_memory;
    }
    texture.gl_group = here.number;
    texture.gl_group_kinship = static_cast<unsigned char>(here.kinship);
    return to_load;
}

bool TextureFamily::unload(TextureData* texture) {
    if (!texture)
        return false;
    state.look_at_context();
    enter_context(*texture);
    for (const TextureObject& object : texture->gl_elsewhere) {
        BuriedObjects buried;
        if (!object.borrowed)
            buried.textures.push_back(object.id);
        contexts::bury(object.group, buried);
    }
    const bool was_elsewhere = !texture->gl_elsewhere.empty();
    texture->gl_elsewhere.clear();
    if (texture->opengl_texture_id == 0)
        return was_elsewhere;
    remove_id(texture->opengl_texture_id);
    if (!texture->opengl_texture_id_borrowed)
        glDeleteTextures(1, &texture->opengl_texture_id);
    texture->opengl_texture_id = 0;
    texture->opengl_texture_id_generated = false;
    texture->opengl_texture_id_borrowed = false;
    texture->loaded_in_gpu_memory = false;
    return true;
}

bool TextureFamily::remove_id(GLuint id) {
    const auto found = std::find(ids.begin(), ids.end(), id);
    if (found == ids.end())
        return false;
    ids.erase(found);
    return true;
}

// Bindless handles

bool TextureFamily::make_resident(TextureData* texture) const {
    if (!has_entries(gl.glMakeTextureHandleResidentARB, gl.glGetTextureHandleARB) || !texture ||
        texture->opengl_texture_id == 0)
        return false;
    texture->bindless_handle = gl.glGetTextureHandleARB(texture->opengl_texture_id);
    gl.glMakeTextureHandleResidentARB(texture->bindless_handle);
    return true;
}

bool TextureFamily::make_non_resident(const TextureData* texture) const {
    if (!gl.glMakeTextureHandleNonResidentARB || !texture)
        return false;
    if (texture->bindless_handle != 0)
        gl.glMakeTextureHandleNonResidentARB(texture->bindless_handle);
    return true;
}

// Read-back

namespace {

unsigned long read_level_size(GLenum name) {
    GLint value = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, name, &value);
    return static_cast<unsigned long>(std::max(value, 0));
}

// How many bytes the API may write for the bound texture.
unsigned long packed_texture_size(unsigned long channels) {
    return PixelPacking::current().size_of(read_level_size(GL_TEXTURE_WIDTH),
                                           read_level_size(GL_TEXTURE_HEIGHT), channels);
}

} // namespace

bool TextureFamily::read_2d(TextureData* texture, GLenum format, unsigned long channels) const {
    if (!texture || texture->type != TEXTURE_TYPE_2D || !texture->get_pixmap_u8_ptr())
        return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glBindTexture(GL_TEXTURE_2D, texture->opengl_texture_id);
    const unsigned long size = packed_texture_size(channels);
    const unsigned long room = ImageAccess::readable_u8_bytes(*texture);
    if (size <= room) {
        glGetTexImage(GL_TEXTURE_2D, 0, format, GL_UNSIGNED_BYTE, texture->get_pixmap_u8_ptr());
        return true;
    }
    // The GPU's texture is larger than the CPU's pixels, which take what fits.
    const std::unique_ptr<unsigned char[]> scratch = ImageAccess::zeroed_bytes(size);
    if (!scratch)
        return false;
    glGetTexImage(GL_TEXTURE_2D, 0, format, GL_UNSIGNED_BYTE, scratch.get());
    std::memcpy(texture->get_pixmap_u8_ptr(), scratch.get(), room);
    return true;
}

} // namespace orvex
