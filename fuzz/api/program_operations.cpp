// GPU programs, their uniforms and their uniform buffers.

#include <string>

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

constexpr const char* vertex_text =
    "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
    "void main() { gl_Position = orvex_ModelViewProjectionMatrix * gl_Vertex; }\n";
constexpr const char* vertex_text_core =
    "#version 150\n"
    "in vec4 orvex_Position;\n"
    "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
    "void main() { gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position; }\n";
constexpr const char* pixel_text = "uniform vec4 a;\nvoid main() { gl_FragColor = a; }\n";
constexpr const char* pixel_text_core = "#version 150\n"
                                        "out vec4 color;\n"
                                        "layout(std140) uniform block { vec4 b; };\n"
                                        "uniform vec4 a;\n"
                                        "void main() { color = a + b; }\n";
constexpr const char* compute_text = "#version 430\n"
                                     "layout(local_size_x = 1) in;\n"
                                     "layout(std430, binding = 0) buffer points { vec4 p[]; };\n"
                                     "void main() { p[0] = vec4(1.0); }\n";

/// A text for a stage: one that compiles, one that doesn't, or any.
const char* draw_stage(Bytes& in) {
    static constexpr const char* known[] = {
        nullptr, vertex_text, pixel_text, vertex_text_core, pixel_text_core, compute_text, "bad"};
    const unsigned int choice = in.byte() % 9;
    return choice < 7 ? known[choice] : in.text();
}

void make_program(World& world, Bytes& in) {
    const bool core = in.flag();
    world.hold(GpuProgramMgr::get()->create_gpu_program_from_shaders(
        draw<Renderer*>(world, in), core ? vertex_text_core : vertex_text,
        core ? pixel_text_core : pixel_text, nullptr, nullptr, nullptr, nullptr, in.text()));
}

void make_any_program(World& world, Bytes& in) {
    const char* stages[6];
    for (const char*& stage : stages)
        stage = draw_stage(in);
    world.hold(GpuProgramMgr::get()->create_gpu_program_from_shaders(
        draw<Renderer*>(world, in), stages[0], stages[1], stages[2], stages[3], stages[4],
        stages[5], in.text()));
}

void load_from_memory(World& world, Bytes& in) {
    std::string text;
    for (const char* const marker : {"[Vertex_Shader]", "[Pixel_Shader]", "[Compute_Shader]"}) {
        const char* const stage = draw_stage(in);
        if (stage && in.flag())
            text += std::string(marker) + stage;
    }
    auto* const renderer = draw<Renderer*>(world, in);
    const unsigned long size = in.flag() ? text.size() : in.size();
    if (in.flag())
        world.hold(GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                        size, in.text()));
    else
        GpuProgramMgr::get()->init_gpu_program_from_memory(renderer, world.reach<GpuProgram>(in),
                                                           text.c_str(), size, in.text());
}

void load_stage(World& world, Bytes& in) {
    GpuProgram* const program = world.reach<GpuProgram>(in);
    if (!program)
        return;
    auto* const renderer = draw<Renderer*>(world, in);
    const auto type = draw<GPU_SHADER_TYPE>(world, in);
    program->shader_load_from_memory(renderer, type, draw_stage(in), in.size());
}

/// The renderer's own road to a stage, of the program that is active.
void update_stage(World& world, Bytes& in) {
    auto* const program = draw<GpuProgramData*>(world, in);
    const auto type = draw<GPU_SHADER_TYPE>(world, in);
    const char* const text = draw_stage(in);
    const unsigned long size = in.size();
    char message[64];
    switch (in.byte() % 3) {
    case 0:
        world.renderer->gpu_program_update_shader(program, type, text, size);
        break;
    case 1:
        world.renderer->gpu_program_load_shader_from_memory(program, type, text, size);
        break;
    default:
        world.renderer->gpu_program_get_shader_compile_status(
            type, text, in.flag() ? message : nullptr, in.below(sizeof message + 1));
    }
}

void write_block(World& world, Bytes& in) {
    GpuProgram* const program = world.reach<GpuProgram>(in);
    if (!program)
        return;
    if (auto* const bytes = static_cast<unsigned char*>(program->ub_map(world.renderer)))
        bytes[0] = 1;
    program->ub_set_value_ui64(world.renderer, in.size(), in.size());
    if (in.flag())
        program->ub_unmap(world.renderer);
}

constexpr Operation rows[] = {
    {"new GpuProgram", [](World& world, Bytes&) { world.hold(new GpuProgram); }},
    {"GpuProgramMgr::create_gpu_program",
     [](World& world, Bytes& in) {
         world.hold(GpuProgramMgr::get()->create_gpu_program(in.text()));
     }},
    {"GpuProgramMgr::create_gpu_program_from_shaders", &make_program},
    {"GpuProgramMgr::create_gpu_program_from_shaders", &make_program},
    {"GpuProgramMgr::create_gpu_program_from_shaders", &make_any_program},
    {"GpuProgramMgr::create_gpu_program_from_memory", &load_from_memory},
    {"GpuProgramMgr::create_gpu_program_from_effect",
     [](World& world, Bytes& in) {
         auto* const renderer = draw<Renderer*>(world, in);
         world.hold(GpuProgramMgr::get()->create_gpu_program_from_effect(renderer, draw_stage(in),
                                                                         in.text()));
     }},
    ORVEX_FUZZ_CALL(GpuProgramMgr, add_gpu_program),
    ORVEX_FUZZ_CALL(GpuProgramMgr, init_gpu_program_from_file),
    {"GpuProgram::shader_load_from_memory", &load_stage},
    {"Renderer::gpu_program_update_shader", &update_stage},
    ORVEX_FUZZ_CALL(GpuProgram, load_from_file),
    ORVEX_FUZZ_CALL(GpuProgram, shader_load_from_file),
    ORVEX_FUZZ_CALL(GpuProgram, bind),
    ORVEX_FUZZ_CALL(GpuProgram, bind),
    ORVEX_FUZZ_CALL(GpuProgram, unbind),
    ORVEX_FUZZ_CALL(GpuProgram, activate),
    ORVEX_FUZZ_CALL(GpuProgram, deactivate),
    ORVEX_FUZZ_CALL(GpuProgram, bind_uniforms),
    ORVEX_FUZZ_CALL(GpuProgram, need_bind_uniforms),
    ORVEX_FUZZ_CALL(GpuProgram, set_valid_state),
    ORVEX_FUZZ_CALL(GpuProgram, get_shader_error_messages),
    ORVEX_FUZZ_CALL(GpuProgram, get_shader_source_code),
    ORVEX_FUZZ_CALL(GpuProgram, get_vertex_attrib_location),
    ORVEX_FUZZ_CALL(GpuProgram, get_uniform_location),
    ORVEX_FUZZ_CALL(GpuProgram, set_model_matrix_uniform_name),
    ORVEX_FUZZ_CALL(GpuProgram, set_view_matrix_uniform_name),
    ORVEX_FUZZ_CALL(GpuProgram, set_projection_matrix_uniform_name),
    ORVEX_FUZZ_CALL(GpuProgram, set_model_view_matrix_uniform_name),
    ORVEX_FUZZ_CALL(GpuProgram, set_model_view_projection_matrix_uniform_name),
    ORVEX_FUZZ_CALL(GpuProgram, get_model_matrix_uniform_name),
    ORVEX_FUZZ_CALL(GpuProgram, set_vertex_attrib_name),
    ORVEX_FUZZ_CALL(GpuProgram, get_vertex_attrib_name),
    ORVEX_FUZZ_CALL(GpuProgram, set_use_generic_vertex_attribs_state),
    ORVEX_FUZZ_CALL(GpuProgram, ub_init),
    ORVEX_FUZZ_CALL(GpuProgram, ub_bind),
    ORVEX_FUZZ_CALL(GpuProgram, ub_bind_base),
    ORVEX_FUZZ_CALL(GpuProgram, ub_unbind),
    {"GpuProgram::ub_map", &write_block},
    ORVEX_FUZZ_CALL(GpuProgram, ub_unmap),
    ORVEX_FUZZ_CALL(GpuProgram, ub_cleanup),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_1i),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_4i),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_1f),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_4f),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_1d),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_4d),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_1ui),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_4ui),
    ORVEX_FUZZ_CALL(GpuProgram, set_uniform_1ui64),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_1iv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_2iv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_3iv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_4iv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_1fv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_2fv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_3fv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_4fv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_1dv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_4dv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_1ui64v),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_3x3fv),
    ORVEX_FUZZ_COUNTED(GpuProgram, set_uniform_4x4fv),
    ORVEX_FUZZ_COUNTED(GpuProgram, run_compute),
};

} // namespace

std::span<const Operation> program_operations() {
    return rows;
}

} // namespace orvex_fuzz
