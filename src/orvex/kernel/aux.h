#pragma once

/// @file
/// The host's door to model loading and vertex lighting.

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// The host's short ways. Each function is the operation of `Kernel` of the same name; the classes
/// draw small things over a scene.
///
/// @code
/// orvex::Model* model = orvex::aux::load_model_from_file("house.obj", "data/", "data/");
/// …
/// model->kill(renderer, nullptr);
/// @endcode
namespace aux {

/// Offers the file to every 3D loader in order.
/// @param filename      the model file; the built-in loaders put `model_dir` before it
/// @param model_dir     prefix of the model's files, ending in a separator; null keeps that of the
///                      load before, "" means none
/// @param resource_dir  prefix of its textures, likewise, for loaders that use one
/// @return a new model that the caller owns; null for a null name and if no loader accepts the file
[[nodiscard]] ORVEX_API Model* load_model_from_file(const char* filename, const char* model_dir,
                                                    const char* resource_dir);
/// Only the built-in 3DS loader; null in a build without it.
[[nodiscard]] ORVEX_API Model*
load_model_from_file_lib3ds(const char* filename, const char* model_dir, const char* resource_dir);
/// Only the built-in OBJ loader.
[[nodiscard]] ORVEX_API Model* load_model_from_file_obj(const char* filename, const char* model_dir,
                                                        const char* resource_dir);
/// Only the plugin "orvex_plugin_fbx", if one is loaded.
[[nodiscard]] ORVEX_API Model* load_model_from_file_fbx(const char* filename, const char* model_dir,
                                                        const char* resource_dir);

/// Why the last of these loads on this thread gave null; see `Kernel::get_load_failure_reason`.
[[nodiscard]] ORVEX_API const char* get_load_failure_reason() noexcept;

/// The lit colour of one vertex; see `Kernel::compute_object_vertex_color`.
ORVEX_API bool compute_object_vertex_color(Object* object, unsigned long vertex_index,
                                           vec4& out_color, Material* material, Light* light,
                                           bool clamp);
/// The same with a transform and a light position of the caller's.
ORVEX_API bool compute_object_vertex_color_v2(Object* object, const mat4& transform,
                                              unsigned long vertex_index, vec4& out_color,
                                              Material* material, Light* light,
                                              const vec4& light_position, bool clamp);

} // namespace aux
} // namespace orvex
