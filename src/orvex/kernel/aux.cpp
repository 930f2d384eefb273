#include "orvex/kernel/aux.h"

#include "orvex/kernel/kernel.h"

namespace orvex::aux {

Model* load_model_from_file(const char* filename, const char* model_dir, const char* resource_dir) {
    return Kernel::get()->load_model_from_file(filename, model_dir, resource_dir);
}

Model* load_model_from_file_lib3ds(const char* filename, const char* model_dir,
                                   const char* resource_dir) {
    return Kernel::get()->load_model_from_file_lib3ds(filename, model_dir, resource_dir);
}

Model* load_model_from_file_obj(const char* filename, const char* model_dir,
                                const char* resource_dir) {
    return Kernel::get()->load_model_from_file_obj(filename, model_dir, resource_dir);
}

Model* load_model_from_file_fbx(const char* filename, const char* model_dir,
                                const char* resource_dir) {
    return Kernel::get()->load_model_from_file_fbx(filename, model_dir, resource_dir);
}

const char* get_load_failure_reason() noexcept {
    return Kernel::get()->get_load_failure_reason();
}

bool compute_object_vertex_color(Object* object, unsigned long vertex_index, vec4& out_color,
                                 Material* material, Light* light, bool clamp) {
    return Kernel::get()->compute_object_vertex_color(object, vertex_index, out_color, material,
                                                      light, clamp);
}

bool compute_object_vertex_color_v2(Object* object, const mat4& transform,
                                    unsigned long vertex_index, vec4& out_color, Material* material,
                                    Light* light, const vec4& light_position, bool clamp) {
    return Kernel::get()->compute_object_vertex_color_v2(object, transform, vertex_index, out_color,
                                                         material, light, light_position, clamp);
}

} // namespace orvex::aux
