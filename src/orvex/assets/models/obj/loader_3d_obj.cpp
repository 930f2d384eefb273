#include "orvex/assets/models/obj/loader_3d_obj.h"

#include <memory>
#include <new>
#include <string>

#include "orvex/assets/models/obj/private/obj_builder.h"
#include "orvex/assets/models/obj/private/obj_reader.h"

namespace orvex {

Loader3D_OBJ::Loader3D_OBJ() {
    set_name("orvex_plugin_core_obj");
    set_description("OBJ 3D loader (core plugin).");
    set_author("orvex");
    set_build_info("BUILD_DATE: [" __DATE__ "] - BUILD_TIME: [" __TIME__ "]");
    set_version(0, 1, 0);
    set_type(PLUGIN_TYPE_LOADER_3D);
}

Loader3D_OBJ::~Loader3D_OBJ() = default;

bool Loader3D_OBJ::load_from_file(Model* model, const char* filename) {
    if (model == nullptr || filename == nullptr)
        return false;
    const std::string model_dir = get_model_dir();
    std::unique_ptr<OBJ_Model> source = read_obj_file((model_dir + filename).c_str(), model_dir);
    if (source == nullptr)
        return false;
    build_model(*source, *model);
    return true;
}

} // namespace orvex
