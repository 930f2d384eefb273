// Reads bytes as an OBJ file. What comes out must hold together: every run of triangles lies within
// the list, every material and group within theirs, and no group has more than was counted.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/support/target.h"
#include "orvex/assets/models/obj/private/obj_reader.h"

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto model = orvex::read_obj_text(text.c_str(), text.size(), "/nonexistent/");
    if (!model)
        return 0;
    require(model->num_vertices > 0 && model->num_triangles > 0);
    require(model->vertices.size() == model->num_vertices + 1);
    for (const auto& group : model->groups) {
        std::size_t filed = 0;
        for (const orvex::OBJ_TriangleRun& run : group->triangles) {
            require(run.first + run.count <= model->triangles.size());
            require(run.material < model->materials.size());
            filed += run.count;
        }
        require(filed == group->num_filled && filed <= group->num_triangles);
    }
    return 0;
}
