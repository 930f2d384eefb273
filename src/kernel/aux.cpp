#include "kernel/aux.h"

#include "kernel/kernel.h"

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

} // namespace orvex::aux
