#include "orvex/kernel/aux.h"

#include "orvex/kernel/kernel.h"

namespace orvex::aux {

Model* load_model_from_file(char const* filename, char const* model_dir, char const* resource_dir) {
    return Kernel::get()->load_model_from_file(filename, model_dir, resource_dir);
}

Model* load_model_from_file_lib3ds(char const* filename, char const* model_dir,
                                   char const* resource_dir) {
    return Kernel::get()->load_model_from_file_lib3ds(filename, model_dir, resource_dir);
}

Model* load_model_from_file_obj(char const* filename, char const* model_dir,
                                char const* resource_dir) {
    return Kernel::get()->load_model_from_file_obj(filename, model_dir, resource_dir);
}

Model* load_model_from_file_fbx(char const* filename, char const* model_dir,
                                char const* resource_dir) {
    return Kernel::get()->load_model_from_file_fbx(filename, model_dir, resource_dir);
}

bool compute_object_vertex_color(Object* object, unsigned long vertex_index, vec4& out_color,
                                 Material* material, Light* light, bool clamp) {
    return Kernel::get()->compute_object_vertex_color(object, vertex_index, out_color, material,
                                                      light, clamp);
}

bool compute_object_vertex_color_v2(Object* object, mat4 const& transform,
                                    unsigned long vertex_index, vec4& out_color, Material* material,
                                    Light* light, vec4 const& light_position, bool clamp) {
    return Kernel::get()->compute_object_vertex_color_v2(object, transform, vertex_index, out_color,
                                                         material, light, light_position, clamp);
}

} // namespace orvex::aux
