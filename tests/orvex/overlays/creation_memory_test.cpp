// Everything that a host makes, with memory that runs out at each block: what was begun is gone
// again, and the next try works.

#include "tests/support/memory_runs_out.h"

#include <string>
#include <type_traits>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/log_mgr.h"
#include "orvex/diagnostics/artifact_scanner.h"
#include "orvex/geometry/lines/curve.h"
#include "orvex/geometry/lines/line.h"
#include "orvex/geometry/lines/mini_spline.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/geometry/particles/particle_action.h"
#include "orvex/geometry/particles/particle_emitter.h"
#include "orvex/geometry/particles/particle_system.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/geometry/shapes/mesh_box.h"
#include "orvex/geometry/shapes/mesh_terrain.h"
#include "orvex/geometry/shapes/mesh_torus.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/overlays/font.h"
#include "orvex/overlays/graph2d.h"
#include "orvex/overlays/hud.h"
#include "orvex/overlays/mad_led_bar.h"
#include "orvex/overlays/skybox.h"
#include "orvex/overlays/tripod_visualizer.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/light.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// A new thing of a class, and its end.
template<class T>
T* make() {
    return new T;
}

template<class T>
void end(T* made) {
    if (!made)
        return;
    if constexpr (std::is_base_of_v<Node, T>)
        made->release(nullptr, nullptr);
    else
        delete made;
}

void end_managed() {
    GpuProgramMgr::get()->release_all_resources(nullptr, nullptr);
    MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    TextureMgr::get()->release_all_textures(nullptr, nullptr);
}

unsigned long num_managed() {
    return GpuProgramMgr::get()->get_num_resources() + MaterialMgr::get()->get_num_resources() +
           TextureMgr::get()->get_num_resources();
}

/// Makes something whole first, then with each block and each array refused in turn.
/// @param begin    what the work is done on; null where the work makes it
/// @param work     on what was begun
template<class Begin, class Work>
void expect_whole_or_nothing(const char* name, Begin begin, Work work) {
    SCOPED_TRACE(name);
    LogMgr::get(); // made for good, at the first thing to say
    const auto run = [&](bool single) {
        auto* made = begin();
        const auto clear = [&] {
            end(made);
            end_managed();
            made = nullptr;
        };
        const auto again = [&] {
            if (!made)
                made = begin();
        };
        // Twice, as some tables are made once for good.
        for (int i = 0; i < 2; ++i) {
            again();
            work(made);
            clear();
        }
        if (single)
            refuse_each_block(
                [&] {
                    again();
                    work(made);
                },
                clear);
        else
            refuse_each_array(
                12,
                [&] {
                    again();
                    work(made);
                },
                clear);
        clear();
        EXPECT_EQ(num_managed(), 0u);
    };
    run(true);
    run(false);
}

template<class T>
void expect_made_or_not(const char* name) {
    expect_whole_or_nothing(name, make<T>, [](T*) {});
}

template<class... T>
void expect_each_made_or_not(const char* const (&names)[sizeof...(T)]) {
    std::size_t i = 0;
    (expect_made_or_not<T>(names[i++]), ...);
}

TEST(CreationWithoutMemory, leaves_nothing_of_a_node_of_any_class) {
    expect_each_made_or_not<Camera, Light, Material, Texture, GpuProgram>(
        {"camera", "light", "material", "texture", "program"});
    expect_each_made_or_not<Mesh, Model, MeshBox, MeshTorus, MeshTerrain, VertexPool, Polyline,
                            Line, Curve, MiniSpline, ParticleSystem, ParticleEmitter,
                            ParticleAction>({"mesh", "model", "box", "torus", "terrain", "pool",
                                             "polyline", "line", "curve", "spline", "particles",
                                             "emitter", "action"});
    expect_each_made_or_not<Font, Graph2d, MadLedBar, Skybox, ArtifactScanner>(
        {"font", "graph", "bar", "skybox", "scanner"});
    expect_each_made_or_not<aux::Hud, aux::TripodVisualizerCamera, aux::TripodVisualizerObject>(
        {"hud", "axes of a camera", "axes of an object"});
}

TEST(CreationWithoutMemory, leaves_nothing_with_the_managers) {
    const auto none = [] { return static_cast<Texture*>(nullptr); };
    expect_whole_or_nothing("program", none, [](Texture*) {
        GpuProgramMgr::get()->create_gpu_program("a name beyond what a string holds by itself");
    });
    expect_whole_or_nothing("material", none, [](Texture*) {
        MaterialMgr::get()->create_material("a name beyond what a string holds by itself");
    });
    expect_whole_or_nothing("texture", none, [](Texture*) { TextureMgr::get()->create_texture(); });
    expect_whole_or_nothing("texture 1D", none,
                            [](Texture*) { TextureMgr::get()->create_texture_1d(8, PF_RGBA_U8); });
    expect_whole_or_nothing("texture 2D", none, [](Texture*) {
        TextureMgr::get()->create_texture_2d(8, 8, PF_RGBA_F32);
    });
    expect_whole_or_nothing("texture cube", none,
                            [](Texture*) { TextureMgr::get()->create_texture_cube(8, PF_RGB_U8); });
}

TEST(CreationWithoutMemory, leaves_nothing_of_what_geometry_makes) {
    expect_whole_or_nothing("box", make<MeshBox>, [](MeshBox* box) { box->build(nullptr); });
    expect_whole_or_nothing("torus", make<MeshTorus>,
                            [](MeshTorus* torus) { torus->build(nullptr); });
    expect_whole_or_nothing("pool", make<VertexPool>,
                            [](VertexPool* pool) { pool->init_pool(20, true); });
    expect_whole_or_nothing("line", make<Line>,
                            [](Line* line) { line->initialize(4, LINE_RENDER_MODE_LINE_STRIP); });
    expect_whole_or_nothing("curve", make<Curve>, [](Curve* curve) { curve->alloc(9); });
    expect_whole_or_nothing("model", make<Model>, [](Model* model) {
        Owned<Mesh> mesh(model->create_mesh());
        mesh->get_mesh_data()->alloc_vertex_data_v2(3, 2);
        mesh->alloc_face_data(1, true);
        mesh->instancing_init(2, {}, 16);
    });
    expect_whole_or_nothing("particles", make<ParticleSystem>, [](ParticleSystem* system) {
        system->create_emitter();
        system->create_action();
    });
}

TEST(CreationWithoutMemory, leaves_nothing_of_a_programs_uniforms) {
    expect_whole_or_nothing("uniforms", make<GpuProgram>, [](GpuProgram* program) {
        for (int i = 0; i < 70; ++i)
            program->set_uniform_1f(nullptr, ("u" + std::to_string(i)).c_str(), 1.0f);
    });
}

TEST(CreationWithoutMemory, leaves_nothing_of_what_overlays_make) {
    FakeRenderer renderer;
    expect_whole_or_nothing("charset", make<Font>, [](Font* font) {
        font->bm_load_charset_from_memory("<font><info face='a face'/><common scaleW='8'/></font>");
    });
    expect_whole_or_nothing("text", make<Font>, [&](Font* font) {
        font->bm_load_charset_from_memory("<font><common scaleW='8' scaleH='8'/></font>");
        font->bm_draw_reset();
        font->bm_draw_text_2d(1, 1, 1.0f, 1.0f, 1.0f, 1.0f, "a text beyond what a string holds");
        font->bm_update_vb(&renderer, false);
    });
    expect_whole_or_nothing("graph", make<Graph2d>,
                            [](Graph2d* graph) { graph->create_curve(10); });
    expect_whole_or_nothing("points", make<MadLedBar>, [](MadLedBar* bar) {
        bar->initialize(vec3(0.0f, 0.0f, 0.0f), vec3(1.0f, 0.0f, 0.0f), 4);
    });
    expect_whole_or_nothing("strip", make<MadLedBar>, [](MadLedBar* bar) {
        bar->initialize(vec3(0.0f, 0.0f, 0.0f), vec3(1.0f, 0.0f, 0.0f), 4, 0.5f);
    });
}

} // namespace
} // namespace orvex_test
