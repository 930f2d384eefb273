#include "orvex_kit/private/model_numbers.h"

#include <orvex/gpu/gpu_program.h>

#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

FirstNumbers Model::Data::draw_numbered(Renderer& renderer, GpuProgram& program,
                                        const FirstNumbers& first) {
    begin_draw(renderer, program, Path::gl3);
    for (const FaceRun& run : facts.runs) {
        const int material =
            run.material < 0 ? -1 : static_cast<int>(first.material) + run.material;
        program.set_uniform_1f(nullptr, "object_id", static_cast<float>(first.object + run.mesh));
        program.set_uniform_1f(nullptr, "material_id", static_cast<float>(material));
        program.set_uniform_1i(nullptr, "first_face", static_cast<int>(run.first_face));
        // The faces of a run are counted from its first one.
        draw_run(renderer, program, run, nullptr, run.num_faces);
    }
    return {first.object + meshes.size(), first.material + materials.size()};
}

FirstNumbers ModelNumbers::draw(Model& model, Renderer& renderer, GpuProgram& program,
                                const FirstNumbers& first) {
    return model.data && model ? model.data->draw_numbered(renderer, program, first) : first;
}

} // namespace orvex::kit
