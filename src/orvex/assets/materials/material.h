#pragma once

/// @file
/// Material: a program, textures and colours, as a resource.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"
#include "orvex/scene/resource.h"

namespace orvex {

/// What a drawn part of a mesh looks like: a GPU program, textures on consecutive units, colours
/// for the fixed pipeline, and a queue of texture files that wait to be loaded.
///
/// `MaterialMgr` makes and registers materials; whoever keeps one adds a reference and releases it
/// later. A material holds one reference on its program and on each entry of its texture list; they
/// are given back when it ends. The GPU copy of a texture that ends with its material stays behind
/// unless the texture was unloaded first.
///
/// Binding belongs on the renderer's thread and allocates nothing. The queue lets a model be parsed
/// on a worker thread: loaders only note file names, and a host later runs
/// `async_loading_process_all_texture_filenames`, with a renderer on its thread, or with a null
/// renderer on a worker, which leaves the uploads to the host. Nothing locks.
///
/// @code
/// Material* material = MaterialMgr::get()->create_material("brick");
/// material->set_gpu_program(program);
/// material->load_texture(renderer, "brick.png", PF_RGBA_U8, false);
/// material->bind(renderer);
/// @endcode
class ORVEX_API Material : public Resource {
public:
    /// No program, no textures; registered nowhere.
    Material();
    ~Material() override;

    /// Hook: gives the program and the textures back and empties the queue.
    bool _cleanup(Renderer* renderer) override;

    /// @name GPU program
    /// @{

    /// Releases the present program, then takes the new one and adds a reference; null for none.
    /// The same program again therefore needs another holder: one that ends by being released is
    /// gone, and the material is left without a program.
    void set_gpu_program(GpuProgram* program);
    GpuProgram* get_gpu_program() const; ///< held by this material; null for none, as at first
    /// @}

    /// @name Textures, in the order of their units
    /// One texture may stand in the list more than once.
    /// @{

    /// Appends a texture and adds a reference. Null is ignored.
    void add_texture(Texture* texture);
    /// Releases the first texture with that node id and closes the gap. @return false without one
    bool remove_texture(int id);
    /// Releases all of them. @return true
    bool remove_all_textures();
    /// Length of the list.
    unsigned long get_num_textures() const;
    /// Null past the end.
    Texture* get_texture_by_index(unsigned long index) const;
    /// First texture with that node id, or null.
    Texture* get_texture(int id) const;
    /// The unit of the first texture; at first 0.
    void set_texture_unit_offset(unsigned long offset);
    /// @}

    /// @name Colours of the fixed pipeline, and opacity
    /// @{

    /// Stores the ambient colour: red, green, blue, alpha, unclamped.
    void set_ambient(float r, float g, float b, float a);
    /// As the form of four floats.
    void set_ambient(const vec4& color);
    const vec4& get_ambient() const; ///< as set; (0.5, 0.5, 0.6, 1) at first
    /// Stores the diffuse colour.
    void set_diffuse(float r, float g, float b, float a);
    /// As the form of four floats.
    void set_diffuse(const vec4& color);
    const vec4& get_diffuse() const; ///< as set; (0.8, 0.8, 0.9, 1) at first
    /// Stores the specular colour.
    void set_specular(float r, float g, float b, float a);
    /// As the form of four floats.
    void set_specular(const vec4& color);
    const vec4& get_specular() const; ///< as set; (0.9, 0.9, 0.9, 1) at first
    /// Exponent of the highlight; OpenGL takes 0 to 128.
    void set_shininess(float shininess);
    float get_shininess() const; ///< as set; 16 at first
    /// Stored for the host; the engine doesn't read it.
    void set_opacity(float opacity);
    float get_opacity() const; ///< as set; 1 at first
    /// Whether `bind` sends the colours. At first it doesn't.
    void set_use_fixed_material_colors_state(bool enabled);
    bool get_use_fixed_material_colors_state() const; ///< see the setter
    /// @}

    /// @name Physical values
    /// Beside the colours above, for programs that draw metals, varnish and their like.
    /// @{

    /// Keeps a copy; null for none.
    void set_physical(const PhysicalMaterial* values);
    /// Null unless set; valid until the next `set_physical`.
    const PhysicalMaterial* get_physical() const;
    /// @}

    /// @name Binding
    /// A null renderer does nothing.
    /// @{

    /// Binds the program and the textures, and sends the colours if that is switched on.
    void bind(Renderer* renderer);
    /// Makes the program the active one; without a program the one before stays.
    void bind_gpu_program(Renderer* renderer);
    /// Binds texture `i` to unit `offset + i`.
    void bind_textures(Renderer* renderer);
    /// Sends ambient, diffuse, specular and shininess.
    void fixed_pipeline_bind_colors(Renderer* renderer);
    /// Unbinds the program and the textures; colours stay set.
    void unbind(Renderer* renderer);
    /// Leaves no program active; without a program nothing happens.
    void unbind_gpu_program(Renderer* renderer);
    /// Empties the units that `bind_textures` filled.
    void unbind_textures(Renderer* renderer);
    /// @}

    /// @name Loading textures
    /// @{

    /// Decodes a file, appends the texture, converts it unless `format` is `PF_NONE`, and uploads
    /// it if there is a renderer. A texture that couldn't be converted or uploaded is kept all the
    /// same.
    /// @param flag  not read: the file is never mirrored
    /// @return the texture, or null if it can't be decoded
    Texture* load_texture(Renderer* renderer, const char* filename, PIXEL_FORMAT format, bool flag);

    /// Appends a file name to the queue. @return false for null
    bool async_loading_add_texture_filename(const char* filename);
    /// Length of the queue.
    unsigned long async_loading_get_num_texture_filenames() const;
    /// The name, valid until the queue changes; null past the end.
    const char* async_loading_get_texture_filename(unsigned long index) const;
    /// Empties the queue. @return true
    bool async_loading_clear_texture_filenames_list();
    /// Runs `load_texture` for each name of the queue, then empties it. A file that can't be loaded
    /// is logged as an error and leaves no gap in the units.
    /// @param prefix  put in front of each name as it stands, without a separator; null for none
    /// @return true
    bool async_loading_process_all_texture_filenames(Renderer* renderer, const char* prefix,
                                                     PIXEL_FORMAT format, bool flag);
    /// @}

    /// Opaque to hosts: what the engine's own rooms look at ahead of a draw.
    struct Access;

private:
    struct MaterialData;

    std::unique_ptr<MaterialData> data;
};

} // namespace orvex
