#pragma once

/// @file
/// Kernel: start and stop of the engine, its plugins, and the doors for model loading.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Starts and stops the engine, creates its built-in plugins and loads others, and loads models.
///
/// One per process, made on first use and never destroyed. Not locked: the host's main thread calls
/// it. The engine itself never does.
///
/// The usual order: `core::start`; search directories and plugins of the host;
/// `load_core_opengl_renderer_plugin(true)`; `initialize` of the renderer, a render window, then
/// `start` of the renderer; work; `core::stop`.
///
/// @code
/// orvex::core::start("host.txt", true, nullptr, nullptr);
/// orvex::Renderer* renderer = orvex::Kernel::get()->load_core_opengl_renderer_plugin(true);
/// @endcode
class ORVEX_API Kernel {
public:
    /// The only instance.
    static Kernel* get();

    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;

    /// @name Life
    /// @{

    /// Reads the platform, creates the core plugins, starts the managers of GPU programs, materials
    /// and textures without a renderer, and makes the image codecs known to the texture manager.
    /// Does nothing once started.
    /// @return true
    bool start();

    /// Stops the managers, unloads all plugins and clears the search path. Does nothing unless
    /// started, nor while a stop goes on, when a plugin asks for it in its own end; afterwards the
    /// kernel can start again.
    /// @return true
    bool stop();

    /// Whether `stop` runs at this moment, for what plugins do in their own end.
    bool is_stopping() const;

    /// @}
    /// @name Version
    /// @{
    int get_version_major() const; ///< the 0 of 0.9.0
    int get_version_minor() const; ///< the 9 of 0.9.0
    int get_version_patch() const; ///< the last number of 0.9.0
    int get_version_build() const; ///< of the same version; 0
    /// The codename of this version.
    const char* get_codename() const;

    /// @}
    /// @name Platform
    /// Known from `start` on. Texts stay valid until the next start; those of another system are
    /// empty, its numbers 0.
    /// @{

    /// 64 or 32, a fact of the build and known at any time.
    int get_platform_bitness() const;
    /// Name of the system, "Linux".
    const char* get_platform_name() const;
    /// Any of the three may be null.
    void get_osx_version(int* major, int* minor, int* patch) const;
    const char* get_osx_codename() const;       ///< empty here
    const char* get_osx_kern_osrelease() const; ///< empty here
    /// The `get_linux_*` texts are those of `uname`.
    const char* get_linux_sysname() const;
    const char* get_linux_release() const; ///< as `uname -r`
    const char* get_linux_version() const; ///< as `uname -v`
    const char* get_linux_machine() const; ///< as `uname -m`

    /// @}
    /// @name Core plugins
    /// @{

    /// `load_core_image_codec_plugins`, then `load_core_loader3d_plugins`; `start` runs it.
    /// @return true
    bool load_core_plugins();

    /// Creates, inserts, initializes and starts the built-in image codec. Each call adds one more.
    /// @return true
    bool load_core_image_codec_plugins();

    /// Creates, inserts, initializes and starts the built-in 3D loaders that are not there yet, the
    /// 3DS loader ahead of the OBJ loader: the order in which `load_model_from_file` tries them. A
    /// loader that this build lacks is named in a log line.
    /// @return true
    bool load_core_loader3d_plugins();

    /// Gives a renderer of the OpenGL back end, owned by the plugin registry.
    /// @param create_new  true creates and inserts one more, neither initialized nor started. False
    ///                    gives the first registered renderer if its core-plugin state is set,
    ///                    which only a host does; else null
    Renderer* load_core_opengl_renderer_plugin(bool create_new);

    /// Hands a plugin to the registry and logs it.
    /// @return false for null
    bool insert_core_plugin(Plugin* plugin);

    /// The engine has no renderer that draws nothing. @return null
    Renderer* get_null_renderer() const;

    /// @}
    /// @name Plugins
    /// @{

    /// Loads a plugin from a shared library, without initializing or starting it.
    /// @param force            loads another instance of a file that is loaded already
    /// @param use_search_path  tries each search directory in order, put before `filename` as it
    ///                         is, and notes it as the registry's current directory. What a
    ///                         module changes in the search path counts from the next call on
    /// @return the plugin, owned by the registry; null, with a log line, if it can't be loaded. An
    ///         empty search path, and null for the file name, give null without a line
    Plugin* load_plugin(const char* filename, bool force, bool use_search_path);

    /// Unloads a plugin as `PluginMgr::unload_plugin` does.
    /// @return the references left; -1 if there is no plugin of this id
    int unload_plugin(int id);
    /// The same for a registered plugin. @return 0 for null
    int unload_plugin(Plugin* plugin);

    /// Unloads all plugins as `PluginMgr::unload_all_plugins` does.
    /// @return how many ended
    int unload_all_plugins();

    /// The registered plugin of this id; null if there is none.
    Plugin* get_plugin(int id) const;

    /// Calls the operation of each registered plugin in order. @return true
    bool initialize_all_plugins();
    /// `Plugin::start` of each registered plugin in order. @return true
    bool start_all_plugins();
    /// `Plugin::stop` of each registered plugin in order. @return true
    bool stop_all_plugins();
    /// `Plugin::terminate` of each registered plugin in order. @return true
    bool terminate_all_plugins();

    /// @}
    /// @name Plugin search path
    /// Directories are prefixes of file names: the caller ends them in a separator.
    /// @{

    /// Appends a directory; the same one may stand there twice. @return false for null
    bool plugin_search_path_add_dir(const char* directory);

    /// Removes the first entry of exactly this text. @return false for null and if there is none
    bool plugin_search_path_remove_dir(const char* directory);

    /// Copies all entries, each followed by ";", into `buffer`: at most `size` - 1 bytes, the rest
    /// of them zeroed. The last byte is never written: a caller who may see a cut text zeroes it.
    /// @return false for a null buffer or no size
    bool plugin_search_path_get(char* buffer, unsigned long size) const;

    /// Removes all entries. @return true
    bool plugin_search_path_clear();

    /// @}
    /// @name Models
    /// Each gives a new model that the caller owns, or null: for a null file name, and if no loader
    /// accepts the file. Directories go to the loader as they are; a null one keeps the directory
    /// of the load before. The `_v2` forms choose how the meshes store their vertices, see
    /// `Model::set_mesh_vertex_alloc_params`; the others choose true and 0.
    /// @{

    /// Offers the file to every registered 3D loader in order.
    [[nodiscard]] Model* load_model_from_file(const char* filename, const char* model_dir,
                                              const char* resource_dir);
    /// As `load_model_from_file`, with the storage chosen.
    /// @param vertex_alignment  of the meshes' arrays in bytes; below 1 for ordinary memory
    [[nodiscard]] Model* load_model_from_file_v2(const char* filename, const char* model_dir,
                                                 const char* resource_dir,
                                                 bool separate_vertex_arrays, int vertex_alignment);

    /// Only the built-in 3DS loader.
    [[nodiscard]] Model* load_model_from_file_lib3ds(const char* filename, const char* model_dir,
                                                     const char* resource_dir);
    /// As `load_model_from_file_lib3ds`, with the storage chosen.
    /// @param vertex_alignment  of the meshes' arrays in bytes; below 1 for ordinary memory
    [[nodiscard]] Model* load_model_from_file_lib3ds_v2(const char* filename, const char* model_dir,
                                                        const char* resource_dir,
                                                        bool separate_vertex_arrays,
                                                        int vertex_alignment);

    /// Only the built-in OBJ loader.
    [[nodiscard]] Model* load_model_from_file_obj(const char* filename, const char* model_dir,
                                                  const char* resource_dir);
    /// As `load_model_from_file_obj`, with the storage chosen.
    /// @param vertex_alignment  of the meshes' arrays in bytes; below 1 for ordinary memory
    [[nodiscard]] Model* load_model_from_file_obj_v2(const char* filename, const char* model_dir,
                                                     const char* resource_dir,
                                                     bool separate_vertex_arrays,
                                                     int vertex_alignment);

    /// Only the first registered 3D loader named "orvex_plugin_fbx", which comes from outside.
    [[nodiscard]] Model* load_model_from_file_fbx(const char* filename, const char* model_dir,
                                                  const char* resource_dir);
    /// As `load_model_from_file_fbx`, with the storage chosen.
    /// @param vertex_alignment  of the meshes' arrays in bytes; below 1 for ordinary memory
    [[nodiscard]] Model* load_model_from_file_fbx_v2(const char* filename, const char* model_dir,
                                                     const char* resource_dir,
                                                     bool separate_vertex_arrays,
                                                     int vertex_alignment);

    /// Why the last of these loads on this thread gave null: the place, as a line or an offset in
    /// bytes, and what is wrong there. It comes from the loader whose format the file has; if none
    /// knew it, each says why, with "; " between. Never null, empty after a success and where no
    /// loader gives a reason; valid until the thread loads again.
    [[nodiscard]] const char* get_load_failure_reason() const noexcept;

    /// @}
    /// @name Vertex lighting
    /// The lit colour of one vertex, computed on the CPU. The vertex must be one that
    /// `Object::get_vertex` gives: the mesh stores full vertices, interleaved. Loaded models do if
    /// they were loaded by a `_v2` form with false.
    ///
    /// The colour is (vertex · material ambient · light ambient + material diffuse · light diffuse
    /// · n) · attenuation. n is the cosine between the normal and the direction to the light, and
    /// negative for a vertex that faces away, which darkens it. The attenuation falls from 1 at the
    /// light to 0 at its radius. Alpha gets 1 added in place of the diffuse part. Normals are
    /// turned by the full matrix, which bends them where it scales unevenly. Without a material its
    /// colours are white; without a light its colours are white too, and n and the attenuation 1.
    /// @{

    /// Computes the colour of vertex `vertex_index`.
    /// @param out_color  takes the colour; untouched on failure
    /// @param material   may be null
    /// @param light      may be null. Its position is that of `get_absolute_position`
    /// @param clamp      limits all four components to 0..1
    /// @return false for a null object, and if it gives no such vertex
    bool compute_object_vertex_color(Object* object, unsigned long vertex_index, vec4& out_color,
                                     Material* material, Light* light, bool clamp) const;
    /// The same with a matrix in place of the object's absolute transform, and a position in place
    /// of the light's own.
    bool compute_object_vertex_color_v2(Object* object, const mat4& transform,
                                        unsigned long vertex_index, vec4& out_color,
                                        Material* material, Light* light,
                                        const vec4& light_position, bool clamp) const;

    /// @}
    /// @name Textures of render targets
    /// @{

    /// A new texture of the texture manager that stands for the first colour texture of a render
    /// target, to which it goes on belonging: the target has to outlive what samples it.
    /// @param color_index  not read
    /// @return null for a null target
    Texture* create_color_texture_from_render_target(RenderTarget* target,
                                                     unsigned long color_index);
    /// The same for the depth texture.
    Texture* create_depth_texture_from_render_target(RenderTarget* target);

    /// @}

private:
    Kernel();
    ~Kernel();

    void init_platform_information();
    void forget(Plugin* plugin);

    struct cKernelData;
    std::unique_ptr<cKernelData> data;
    bool started = false;
    Loader3D* loader_lib3ds = nullptr; ///< owned by the plugin registry
    Loader3D* loader_obj = nullptr;    ///< owned by the plugin registry
};

} // namespace orvex
