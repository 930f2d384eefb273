#pragma once

/// @file
/// Textures on the GPU: loads, updates, sampler settings, handles and read-back.
///
/// A load makes the GL texture, binds it to a unit and sends the pixels; it does nothing for a
/// record that is loaded. Updates and sampler settings act on what is bound now and bind nothing:
/// who calls them has activated the texture before. Whatever OpenGL reads behind a pixel pointer
/// has been counted first.
///
/// Loads stand in texture_family_loads.cpp, updates and sampler settings in
/// texture_family_updates.cpp, everything else in texture_family.cpp.

#include <vector>

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

class TextureUnitFamily;

/// Carries records' pixels to the GPU and back. Each operation that answers returns false for a
/// null record, and one that is named after a type for a record of another type.
class TextureFamily {
public:
    /// @param state     the limits and the entry points
    /// @param units     where loads bind
    /// @param renderer  asked for the addressing mode of a load, which a renderer may take over,
    /// and
    ///                  for the largest anisotropy; all three outlive the object
    TextureFamily(GlState& state, TextureUnitFamily& units, Renderer& renderer);

    /// @name Loads
    /// True for a record that is loaded. False, with a line in the log, for one that is larger than
    /// the context takes; false, too, where pixels are missing.
    /// @{

    /// By the record's type. False for one without pixels, which the others would make empty.
    bool load(TextureData* texture, unsigned long unit);
    bool load_1d(TextureData* texture, unsigned long unit);
    bool load_2d(TextureData* texture, unsigned long unit);
    bool load_cube(TextureData* texture, unsigned long unit);
    /// Gives one face of the bound cube texture its pixels, whatever the record's type; false
    /// without a texture, and for a face with fewer pixels than face 0 asks for.
    bool load_cube_face(TextureData* texture, CUBEMAP_FACE face);
    /// Takes the texture off the GPU, unless somebody else made it. False without one.
    bool unload(TextureData* texture);
    /// @}

    /// @name Updates of the bound texture
    /// False where pixels are missing. A format without pixels to send only marks the record.
    /// @{

    bool update_1d(TextureData* texture, int x, int width) const;
    bool update_2d(TextureData* texture, int x, int y, int width, int height) const;
    /// Takes the pixels from the caller, who answers for their number.
    bool update_2d_pixels(TextureData* texture, int x, int y, int width, int height,
                          PIXEL_FORMAT format, const void* pixels) const;
    bool update_cube(TextureData* texture) const;
    bool update_cube_face(TextureData* texture, CUBEMAP_FACE face) const;
    /// @}

    /// @name Sampler settings of the bound texture
    /// The record tells only the target; its own settings stay.
    /// @{

    void set_addressing_mode(const TextureData* texture, SAMPLER_ADDRESSING_MODE mode) const;
    void set_filtering_mode(const TextureData* texture, SAMPLER_FILTERING_MODE mode) const;
    void set_anisotropy(const TextureData* texture, float value) const;
    /// @}

    /// @name Bindless handles
    /// @{

    bool make_resident(TextureData* texture) const;
    bool make_non_resident(const TextureData* texture) const;
    /// @}

    /// Reads the texture back into the record's bytes, as many as fit.
    /// @param format    GL_RGB or GL_RGBA
    /// @param channels  that the format has
    /// @return false without bytes to read into, or without memory
    bool read_2d(TextureData* texture, GLenum format, unsigned long channels) const;

    /// @name Ids
    /// A list for extensions of the engine; loads don't enter anything.
    /// @{

    void add_id(GLuint id) { ids.push_back(id); }
    /// @return whether the id was listed
    bool remove_id(GLuint id);
    /// @}

    /// Makes the name of a record that of the current context, or none. A bind of a record that was
    /// loaded in another context only loads it here too, if it has its pixels yet.
    /// @return whether it is to be loaded, as it was elsewhere
    bool enter_context(TextureData& texture) const;

private:
    bool has_object_here(const TextureData& texture) const;
    bool can_load(const TextureData* texture) const;
    bool start_load(TextureData* texture, GLenum target, unsigned long unit);
    void make_mipmaps(const TextureData* texture, GLenum target) const;
    void set_up_2d_levels(const TextureData* texture) const;

    GlState& state;
    const ORVEX_Renderer_OpenGL_Func& gl;
    TextureUnitFamily& units;
    Renderer& renderer;
    std::vector<GLuint> ids;
};

} // namespace orvex
