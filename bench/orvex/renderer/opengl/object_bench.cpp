/// @file
/// The engine's own share of an object's draw: the time outside of OpenGL, whose calls do nothing
/// here. Processor time of one object, in a walk over 10,000, where no cache holds all of them.
///
/// Rows: a program bound once around the walk, with the names unset that its shader doesn't read;
/// the same with a material for each; all defaults with Euler angles that change each frame; and
/// client arrays with the fixed pipeline. Each as it is, and with binds left out that the next
/// object wants again.
///
/// object_bench --benchmark_min_time=2

#include <algorithm>
#include <ctime>
#include <string>

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include "bench/support/core_context.h"
#include "bench/support/owned.h"
#include "bench/support/row.h"
#include "bench/support/tuned_program.h"
#include "orvex/assets/materials/material.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"

// What the engine calls straight, in the driver's place.

extern "C" {

void glGetIntegerv(GLenum name, GLint* values) {
    static const auto real =
        reinterpret_cast<void (*)(GLenum, GLint*)>(dlsym(RTLD_NEXT, "glGetIntegerv"));
    if (name == GL_VIEWPORT)
        std::fill_n(values, 4, 16);
    else
        real(name, values);
}
void glDrawElements(GLenum, GLsizei, GLenum, const void*) {}
void glMatrixMode(GLenum) {}
void glLoadMatrixf(const GLfloat*) {}
void glVertexPointer(GLint, GLenum, GLsizei, const void*) {}
void glNormalPointer(GLenum, GLsizei, const void*) {}
void glColorPointer(GLint, GLenum, GLsizei, const void*) {}
void glTexCoordPointer(GLint, GLenum, GLsizei, const void*) {}
void glEnableClientState(GLenum) {}
void glDisableClientState(GLenum) {}

} // extern "C"

namespace {

using namespace orvex;

constexpr int boxes_per_side = 100;
constexpr int num_boxes = boxes_per_side * boxes_per_side;

const char* const shader_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
uniform mat4 orvex_ModelViewProjectionMatrix;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
}
[Pixel_Shader]
#version 150
out vec4 pixel;
void main() {
    pixel = vec4(1.0);
}
)";

/// A renderer on a real context, whose calls are taken away once all is loaded.
class Stage {
public:
    Stage() {
        start_on_core_context(renderer, 16, 16);
        program->add_ref();
        program->load_from_memory(&renderer, shader_text,
                                  std::char_traits<char>::length(shader_text));
        mat4 projection;
        projection.buildRHPerspectiveProjectionMatrix(60.0f, 1.0f, 1.0f, 1000.0f, 1e-5f);
        renderer.set_projection_matrix(projection, false);
    }
    ~Stage() { program->release(&renderer, nullptr); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// From here on nothing comes from the driver.
    void take_calls_away() {
        ORVEX_Renderer_OpenGL_Func& gl = renderer.gl;
        gl.glUseProgram = [](GLuint) {};
        gl.glBindVertexArray = [](GLuint) {};
        gl.glBindBuffer = [](GLenum, GLuint) {};
        gl.glUniformMatrix4fv = [](GLint, GLsizei, GLboolean, const GLfloat*) {};
        gl.glUniform4f = [](GLint, GLfloat, GLfloat, GLfloat, GLfloat) {};
        gl.glGetUniformLocation = [](GLuint, const GLchar*) -> GLint { return -1; };
        gl.glClientActiveTexture = [](GLenum) {};
        gl.glVertexAttribPointer = [](GLuint, GLint, GLenum, GLboolean, GLsizei, const void*) {};
        gl.glEnableVertexAttribArray = [](GLuint) {};
        gl.glDisableVertexAttribArray = [](GLuint) {};
    }

    KeepingRendererOpenGL renderer;
    GpuProgram* program = new GpuProgram;
};

void fill(Mesh& mesh) {
    mesh.alloc_vertex_data(3);
    mesh.alloc_face_data(1, false);
    mesh.set_vertex_position(1, vec4(1.0f, 0.0f, 0.0f, 1.0f));
    mesh.set_vertex_position(2, vec4(0.0f, 1.0f, 0.0f, 1.0f));
    mesh.set_face_indexes(0, 0, 1, 2);
}

Owned<Object> make_boxes(GpuProgram* material_program, bool by_fixed_pipeline) {
    Owned<Object> root(new Object);
    Mesh* first = nullptr;
    for (int i = 0; i < num_boxes; ++i) {
        Mesh* const box = new Mesh;
        if (first)
            box->share_mesh_data(nullptr, first);
        else
            fill(*(first = box));
        box->set_position(static_cast<float>(i % boxes_per_side),
                          static_cast<float>(i / boxes_per_side), 0.0f);
        box->set_orientation_euler_xyz(static_cast<float>(i), static_cast<float>(2 * i), 0.0f);
        box->set_use_fixed_mvp_matrices_state(by_fixed_pipeline, nullptr);
        if (material_program) {
            Material* const material = new Material;
            material->set_gpu_program(material_program);
            box->add_material(material, nullptr);
        }
        root->add_child(box);
    }
    return root;
}

void turn(Object& root, int frame) {
    for (unsigned long i = 0; i < root.get_num_children(); ++i)
        static_cast<Mesh*>(root.get_child(i))
            ->set_orientation_euler_xyz(0.0f, static_cast<float>(frame + static_cast<int>(i)),
                                        0.0f);
}

/// Times frames; `state.range(0)` says whether binds are left out.
template<class Draw>
void time_frames(benchmark::State& state, Stage& stage, double most_seconds, Draw draw) {
    stage.renderer.set_elided_binds_state(state.range(0) != 0);
    draw(0);
    stage.take_calls_away();
    int frame = 0;
    std::clock_t spent = 0;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        draw(++frame);
        spent += std::clock() - start;
    }
    const double seconds = static_cast<double>(spent) / CLOCKS_PER_SEC / frame / num_boxes;
    state.counters["ns_per_object"] = 1e9 * seconds;
    // What is left out costs some looks, and spares calls that cost nothing here.
    if (state.range(0) == 0)
        orvex_bench::say_row(state, {"a bound", 1.0}, seconds, most_seconds);
}

void program_bound_once(benchmark::State& state) {
    Stage stage;
    unset_unused_names(stage.renderer, *stage.program);
    const Owned<Object> root = make_boxes(nullptr, false);
    time_frames(state, stage, 120e-9, [&](int) {
        stage.program->bind(&stage.renderer);
        root->render(&stage.renderer, nullptr);
        stage.program->unbind(&stage.renderer);
    });
}

void materials(benchmark::State& state) {
    Stage stage;
    unset_unused_names(stage.renderer, *stage.program);
    const Owned<Object> root = make_boxes(stage.program, false);
    time_frames(state, stage, 180e-9, [&](int) { root->render(&stage.renderer, nullptr); });
}

void defaults_with_euler_angles(benchmark::State& state) {
    Stage stage;
    const Owned<Object> root = make_boxes(stage.program, false);
    time_frames(state, stage, 260e-9, [&](int frame) {
        turn(*root, frame);
        root->render(&stage.renderer, nullptr);
    });
}

void fixed_pipeline(benchmark::State& state) {
    Stage stage;
    const Owned<Object> root = make_boxes(nullptr, true);
    time_frames(state, stage, 180e-9, [&](int) { root->render(&stage.renderer, nullptr); });
}

BENCHMARK(program_bound_once)->ArgName("elided")->Arg(0)->Arg(1);
BENCHMARK(materials)->ArgName("elided")->Arg(0)->Arg(1);
BENCHMARK(defaults_with_euler_angles)->ArgName("elided")->Arg(0)->Arg(1);
BENCHMARK(fixed_pipeline)->ArgName("elided")->Arg(0)->Arg(1);

} // namespace

BENCHMARK_MAIN();
