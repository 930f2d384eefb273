#include "orvex/assets/models/obj/loader_3d_obj.h"

#include <memory>
#include <string>

#include "orvex/assets/models/load_undo.h"
#include "orvex/assets/models/obj/private/obj_builder.h"
#include "orvex/assets/models/obj/private/obj_reader.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"

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
    clear_failure_reason();
    if (!model || !filename)
        return misuse("Loader3D_OBJ::load_from_file", "a null model or file name");
    return or_undo([&] { return read_and_build(*model, filename); },
                   [&] { set_failure_reason("memory ran out"); });
}

bool Loader3D_OBJ::read_and_build(Model& model, const char* filename) {
    const std::string model_dir = get_model_dir();
    OBJ_Fault fault;
    const std::unique_ptr<OBJ_Model> source =
        read_obj_file((model_dir + filename).c_str(), model_dir, &fault);
    if (source) {
        LoadUndo undo(model);
        build_model(*source, model);
        undo.keep();
        return true;
    }
    if (fault.is_unreadable)
        set_format_unknown("no regular file that can be read, or no memory for it");
    else if (fault.num_vertices == 0)
        set_format_unknown("no OBJ file: none of its %zu lines begins with a v", fault.num_lines);
    else
        set_failure_reason("line %zu: the file ends with %zu vertices and no face", fault.num_lines,
                           fault.num_vertices);
    return false;
}

} // namespace orvex
