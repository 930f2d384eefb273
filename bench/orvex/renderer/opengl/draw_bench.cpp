/// @file
/// The price of drawing through the engine, against bare OpenGL calls that draw the same.
///
/// Goals, as `ratio` in the output: a frame of 10,000 boxes, each with a transform and a material
/// of its own, at most 2.0 times a bare loop of one matrix uniform and one draw call per box (run
/// with LP_NO_RAST=1, so that a software driver fills no pixel), and with elided binds 1.25
/// times, 1.5 by client arrays; a mesh of 1,000,000 triangles, 800 by 600, at most 1.05 times the
/// bare draw. The processor's time counts.
///
/// LP_NO_RAST=1 draw_bench --benchmark_filter=boxes --benchmark_min_time=5
/// draw_bench --benchmark_filter=mesh --benchmark_min_time=10

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include "bench/support/core_context.h"
#include "bench/support/owned.h"
#include "bench/support/row.h"
#include "bench/support/tuned_program.h"
#include "orvex/assets/materials/material.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/math/mat4.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/mesh_data.h"

namespace {

using namespace orvex;

constexpr int width = 800;
constexpr int height = 600;
constexpr int boxes_per_side = 100;

const std::string pixel_shader_text = R"([Pixel_Shader]
#version 150
in vec4 color;
out vec4 pixel;
void main() {
    pixel = color;
}
)";

const std::string shader_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 color;
void main() {
    color = orvex_Color;
    gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
}
)" + pixel_shader_text;

const std::string instanced_shader_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
in vec4 orvex_Instance_Position;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 color;
void main() {
    color = orvex_Color;
    gl_Position = orvex_ModelViewProjectionMatrix *
                  vec4(orvex_Position.xyz + orvex_Instance_Position.xyz, 1.0);
}
)" + pixel_shader_text;

/// The same for client arrays, by what the fixed pipeline has.
const std::string old_shader_text = R"([Vertex_Shader]
#version 120
varying vec4 color;
void main() {
    color = gl_Color;
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
}
[Pixel_Shader]
#version 120
varying vec4 color;
void main() {
    gl_FragColor = color;
}
)";

/// A context off screen, with the renderer on it and a program in use by nobody yet.
class Stage {
public:
    explicit Stage(bool is_compatible = false, const std::string& core_text = shader_text)
        : is_compatible(is_compatible) {
        // The driver frees its scene at each glFinish. Whether that gives pages back to the system
        // depends on what lies at the top of the heap, so none of the rows does.
        mallopt(M_TRIM_THRESHOLD, 1 << 30);
        mallopt(M_MMAP_THRESHOLD, 1 << 30);
        start_on_core_context(renderer, width, height, is_compatible);
        const std::string& text = is_compatible ? old_shader_text : core_text;
        program->add_ref();
        program->load_from_memory(&renderer, text.c_str(), text.size());
        mat4 projection;
        projection.buildRHPerspectiveProjectionMatrix(60.0f, 4.0f / 3.0f, 1.0f, 1000.0f, 1e-5f);
        mat4 view;
        view.init_translate(0.0f, 0.0f, -150.0f);
        renderer.set_projection_matrix(projection, false);
        renderer.set_view_matrix(view, false);
        glEnable(GL_DEPTH_TEST);
        glViewport(0, 0, width, height);
    }

    ~Stage() { program->release(&renderer, nullptr); }

    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    const bool is_compatible;
    KeepingRendererOpenGL renderer;
    GpuProgram* program = new GpuProgram;
};

void fill_box(Mesh& mesh) {
    mesh.alloc_vertex_data(8);
    mesh.alloc_face_data(12, false);
    for (unsigned long i = 0; i < 8; ++i) {
        const auto corner = [i](unsigned long axis) { return i >> axis & 1 ? 0.4f : -0.4f; };
        mesh.set_vertex_position(i, vec4(corner(0), corner(1), corner(2), 1.0f));
        mesh.set_vertex_color(i, vec4(corner(0) + 0.5f, corner(1) + 0.5f, 0.5f, 1.0f));
    }
    const unsigned int quads[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                      {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (unsigned long i = 0; i < 6; ++i) {
        mesh.set_face_indexes(2 * i, quads[i][0], quads[i][1], quads[i][2]);
        mesh.set_face_indexes(2 * i + 1, quads[i][2], quads[i][3], quads[i][0]);
    }
}

/// Boxes in a square below one object, each a node with a transform and a material of its own; all
/// share geometry.
Owned<Object> make_boxes(const Stage& stage, bool has_materials = true) {
    Owned<Object> root(new Object);
    Mesh* first = nullptr;
    for (int i = 0; i < boxes_per_side * boxes_per_side; ++i) {
        Mesh* const box = new Mesh;
        if (first)
            box->share_mesh_data(nullptr, first);
        else
            fill_box(*(first = box));
        box->set_position(static_cast<float>(i % boxes_per_side - boxes_per_side / 2),
                          static_cast<float>(i / boxes_per_side - boxes_per_side / 2), 0.0f);
        box->set_orientation_euler_xyz(static_cast<float>(i), static_cast<float>(2 * i), 0.0f);
        box->set_use_fixed_mvp_matrices_state(stage.is_compatible, nullptr);
        if (has_materials) {
            Material* const material = new Material;
            material->set_gpu_program(stage.program);
            box->add_material(material, nullptr);
        }
        root->add_child(box);
    }
    return root;
}

Mesh& box_of(const Object& root, unsigned long index) {
    return *static_cast<Mesh*>(root.get_child(index));
}

/// What the engine binds for a mesh, bound by hand: the program, and the vertex array of an earlier
/// draw.
class BareDraw {
public:
    BareDraw(Stage& stage, Mesh& mesh)
        : gl(stage.renderer.gl) {
        stage.program->activate(&stage.renderer);
        location =
            stage.program->get_uniform_location(&stage.renderer, "orvex_ModelViewProjectionMatrix");
        gl.glBindVertexArray(mesh.get_mesh_data()->vertex_array_id);
    }

    ~BareDraw() {
        gl.glBindVertexArray(0);
        gl.glUseProgram(0);
    }

    BareDraw(const BareDraw&) = delete;
    BareDraw& operator=(const BareDraw&) = delete;

    void triangles(const mat4& matrix, GLsizei num_indices, GLenum type) const {
        gl.glUniformMatrix4fv(location, 1, GL_FALSE, matrix.ptr());
        glDrawElements(GL_TRIANGLES, num_indices, type, nullptr);
    }

private:
    const ORVEX_Renderer_OpenGL_Func& gl;
    int location = -1;
};

constexpr double num_boxes = boxes_per_side * boxes_per_side;

/// Draws both ways in turn, each to its end.
/// @param objects  in a frame: the row tells the cost of one
template<class Bare, class Engine>
void compare(benchmark::State& state, double goal, double objects, Bare draw_bare,
             Engine draw_by_engine) {
    const auto frame = [](auto& draw) {
        return [&draw] {
            glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
            draw();
            glFinish();
        };
    };
    orvex_bench::take_turns(state, {"bare GL", goal}, frame(draw_by_engine), frame(draw_bare),
                            objects);
}

/// The same for a box of client arrays, whose place is a matrix of the fixed pipeline.
class BareClientDraw {
public:
    BareClientDraw(Stage& stage, Mesh& mesh)
        : gl(stage.renderer.gl) {
        MeshData& store = *mesh.get_mesh_data();
        stage.program->activate(&stage.renderer);
        gl.glBindBuffer(GL_ARRAY_BUFFER, store.vertex_buffer_id);
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, store.index_buffer_id);
        glVertexPointer(static_cast<GLint>(store.get_position_vector_dim()), GL_FLOAT, 0, nullptr);
        glColorPointer(static_cast<GLint>(store.get_color_vector_dim()), GL_FLOAT, 0,
                       reinterpret_cast<const void*>(
                           static_cast<std::uintptr_t>(store.get_position_elt_size()) * 8));
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_COLOR_ARRAY);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(stage.renderer.get_projection_matrix().ptr());
        glMatrixMode(GL_MODELVIEW);
    }

    ~BareClientDraw() {
        glDisableClientState(GL_VERTEX_ARRAY);
        glDisableClientState(GL_COLOR_ARRAY);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        gl.glUseProgram(0);
    }

    BareClientDraw(const BareClientDraw&) = delete;
    BareClientDraw& operator=(const BareClientDraw&) = delete;

    void triangles(const mat4& matrix) const {
        glLoadMatrixf(matrix.ptr());
        glDrawElements(GL_TRIANGLES, 36, GL_UNSIGNED_SHORT, nullptr);
    }

private:
    const ORVEX_Renderer_OpenGL_Func& gl;
};

void compare_client_boxes(benchmark::State& state, bool is_eliding) {
    Stage stage(true);
    stage.renderer.set_elided_binds_state(is_eliding);
    const Owned<Object> root = make_boxes(stage);
    std::vector<mat4> matrices;
    for (unsigned long i = 0; i < root->get_num_children(); ++i)
        matrices.push_back(stage.renderer.get_view_matrix() * box_of(*root, i).get_transform());
    const auto bare = [&] {
        const BareClientDraw draw(stage, box_of(*root, 0));
        for (const mat4& matrix : matrices)
            draw.triangles(matrix);
    };
    const auto engine = [&] { root->render(&stage.renderer, nullptr); };
    compare(state, is_eliding ? 1.5 : 2.0, num_boxes, bare, engine);
    root->cleanup(&stage.renderer, nullptr);
}

/// By client arrays, as a host has it whose program reads matrices of the fixed pipeline alone.
void client_boxes(benchmark::State& state) {
    compare_client_boxes(state, false);
}

void client_boxes_with_elided_binds(benchmark::State& state) {
    compare_client_boxes(state, true);
}

/// @param has_materials  or the program is bound once, around the walk
void compare_boxes(benchmark::State& state, Stage& stage, double goal, bool has_materials = true) {
    const Owned<Object> root = make_boxes(stage, has_materials);
    const mat4 view_projection =
        stage.renderer.get_projection_matrix() * stage.renderer.get_view_matrix();
    std::vector<mat4> matrices;
    for (unsigned long i = 0; i < root->get_num_children(); ++i)
        matrices.push_back(view_projection * box_of(*root, i).get_transform());
    const auto bare = [&] {
        const BareDraw draw(stage, box_of(*root, 0));
        for (const mat4& matrix : matrices)
            draw.triangles(matrix, 36, GL_UNSIGNED_SHORT);
    };
    const auto engine = [&] {
        if (!has_materials)
            stage.program->bind(&stage.renderer);
        root->render(&stage.renderer, nullptr);
        if (!has_materials)
            stage.program->unbind(&stage.renderer);
    };
    compare(state, goal, num_boxes, bare, engine);
    root->cleanup(&stage.renderer, nullptr);
}

void boxes(benchmark::State& state) {
    Stage stage;
    compare_boxes(state, stage, 2.0);
}

void compare_tuned_boxes(benchmark::State& state, double goal, bool is_eliding,
                         bool has_materials = true) {
    Stage stage;
    stage.renderer.set_elided_binds_state(is_eliding);
    unset_unused_names(stage.renderer, *stage.program);
    compare_boxes(state, stage, goal, has_materials);
}

void boxes_without_unused_names(benchmark::State& state) {
    compare_tuned_boxes(state, 2.0, false);
}

void boxes_without_unused_names_with_elided_binds(benchmark::State& state) {
    compare_tuned_boxes(state, 1.25, true);
}

/// With binds left out that the next box wants again.
void boxes_with_elided_binds(benchmark::State& state) {
    Stage stage;
    stage.renderer.set_elided_binds_state(true);
    compare_boxes(state, stage, 1.5);
}

void boxes_of_a_program_bound_once(benchmark::State& state) {
    compare_tuned_boxes(state, 1.5, false, false);
}

/// The same number of boxes as instances of one, against as many bare draw calls.
void boxes_instanced(benchmark::State& state) {
    Stage stage(false, instanced_shader_text);
    const Owned<Object> one_by_one = make_boxes(stage, false);
    const Owned<Mesh> box(new Mesh);
    fill_box(*box);
    box->set_use_fixed_mvp_matrices_state(false, nullptr);
    InstancingInitParams arrays;
    arrays.position = true;
    box->instancing_init(static_cast<unsigned long>(num_boxes), arrays, 16);
    for (unsigned long i = 0; i < one_by_one->get_num_children(); ++i)
        box->set_instance_position(i, box_of(*one_by_one, i).get_position());
    const mat4 matrix = stage.renderer.get_projection_matrix() * stage.renderer.get_view_matrix();
    stage.program->bind(&stage.renderer);
    one_by_one->render(&stage.renderer, nullptr);
    stage.program->unbind(&stage.renderer);
    const auto bare = [&] {
        const BareDraw draw(stage, box_of(*one_by_one, 0));
        for (int i = 0; i < boxes_per_side * boxes_per_side; ++i)
            draw.triangles(matrix, 36, GL_UNSIGNED_SHORT);
    };
    const auto engine = [&] {
        stage.program->bind(&stage.renderer);
        box->render(&stage.renderer, nullptr);
        stage.program->unbind(&stage.renderer);
    };
    compare(state, 1.0, num_boxes, bare, engine);
    one_by_one->cleanup(&stage.renderer, nullptr);
    box->_cleanup(&stage.renderer);
}

/// A wavy sheet of 1,000,000 triangles that fills the picture.
Owned<Mesh> make_sheet(const Stage& stage) {
    constexpr unsigned int columns = 1000;
    constexpr unsigned int rows = 500;
    Owned<Mesh> sheet(new Mesh);
    sheet->alloc_vertex_data((columns + 1) * (rows + 1));
    sheet->alloc_face_data(2ul * columns * rows, false);
    for (unsigned int y = 0; y <= rows; ++y)
        for (unsigned int x = 0; x <= columns; ++x) {
            const unsigned long i = y * (columns + 1) + x;
            const float u = static_cast<float>(x) / columns;
            const float v = static_cast<float>(y) / rows;
            sheet->set_vertex_position(i, vec4(200.0f * (u - 0.5f), 160.0f * (v - 0.5f),
                                               5.0f * std::sin(40.0f * u), 1.0f));
            sheet->set_vertex_color(i, vec4(u, v, 0.5f, 1.0f));
        }
    for (unsigned int y = 0; y < rows; ++y)
        for (unsigned int x = 0; x < columns; ++x) {
            const unsigned int corner = y * (columns + 1) + x;
            const unsigned long face = 2ul * (y * columns + x);
            sheet->set_face_indexes(face, corner, corner + 1, corner + columns + 1);
            sheet->set_face_indexes(face + 1, corner + 1, corner + columns + 2,
                                    corner + columns + 1);
        }
    sheet->set_use_fixed_mvp_matrices_state(false, nullptr);
    Material* const material = new Material;
    material->set_gpu_program(stage.program);
    sheet->add_material(material, nullptr);
    return sheet;
}

void mesh(benchmark::State& state) {
    Stage stage;
    const Owned<Mesh> sheet = make_sheet(stage);
    const mat4 matrix = stage.renderer.get_projection_matrix() * stage.renderer.get_view_matrix();
    const auto bare = [&] { BareDraw(stage, *sheet).triangles(matrix, 3000000, GL_UNSIGNED_INT); };
    const auto engine = [&] { sheet->render(&stage.renderer, nullptr); };
    compare(state, 1.05, 1.0, bare, engine);
    sheet->_cleanup(&stage.renderer);
}

BENCHMARK(boxes)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(boxes_without_unused_names_with_elided_binds)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK(client_boxes)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(client_boxes_with_elided_binds)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(boxes_with_elided_binds)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(boxes_without_unused_names)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(boxes_of_a_program_bound_once)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(boxes_instanced)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(mesh)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
