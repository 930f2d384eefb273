#include "orvex/overlays/tripod_visualizer.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "line_renderer.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/scene/camera.h"
#include "other_text.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// Keeps the shaders and matrices it is given.
class TripodRenderer : public LineRenderer {
public:
    struct Fixed {
        mat4 projection;
        mat4 model_view;
    };

    std::vector<std::string> shaders;
    std::vector<Fixed> fixed_matrices;
    std::string compile_error; ///< what stages fail with

    bool gpu_program_load_shader_from_memory(GpuProgramData* program, GPU_SHADER_TYPE type,
                                             const char* source, unsigned long size) override {
        shaders.push_back(std::to_string(type) + ": " + source);
        if (!compile_error.empty())
            program->set_shader_info_log(type, compile_error.c_str(), compile_error.size());
        return FakeRenderer::gpu_program_load_shader_from_memory(program, type, source, size);
    }

    void gl2_matrix_load(float* projection, float* view, float* model, float* texture) override {
        Fixed& fixed = fixed_matrices.emplace_back();
        std::memcpy(fixed.projection.ptr(), projection, 16 * sizeof(float));
        std::memcpy(fixed.model_view.ptr(), view, 16 * sizeof(float));
        FakeRenderer::gl2_matrix_load(projection, view, model, texture);
    }

    bool polyline_vb_draw(PolylineData* polyline, int start, int count) override {
        EXPECT_EQ(polyline->render_mode, LINE_RENDER_MODE_LINES);
        EXPECT_NE(active_program, nullptr);
        return LineRenderer::polyline_vb_draw(polyline, start, count);
    }

    void set_version(int major, int minor) {
        api_version_major = major;
        api_version_minor = minor;
    }
};

bool same(const mat4& a, const mat4& b) {
    return std::equal(a.m, a.m + 16, b.m);
}

unsigned long num_programs() {
    return GpuProgramMgr::get()->get_num_resources();
}

class TripodVisualizers : public testing::Test {
protected:
    ~TripodVisualizers() override {
        base.cleanup(&renderer);
        of_camera.cleanup(&renderer);
        of_object.cleanup(&renderer);
        EXPECT_EQ(num_programs(), programs_before);
    }

    /// The camera that the visualizer films with, once more.
    static std::vector<std::string> bind_of_own_camera(int x, int y, int width, int height,
                                                       bool fixed) {
        FakeRenderer other;
        const Owned<Camera> camera(new Camera);
        camera->build_projection_persp(45.0f, 1.0f, 1.0f, 100.0f, true);
        camera->set_position(vec4(0.0f, 0.0f, 3.0f, 1.0f));
        camera->set_lookat(vec4(0.0f, 0.0f, 0.0f, 1.0f));
        camera->set_viewport(x, y, width, height);
        camera->bind(&other, true, false, true, true, fixed);
        return other.take_calls();
    }

    unsigned long programs_before = num_programs();
    TripodRenderer renderer;
    aux::TripodVisualizer base;
    aux::TripodVisualizerCamera of_camera;
    aux::TripodVisualizerObject of_object;
    Owned<Camera> camera{new Camera};
    Owned<Object> object{new Object};
};

TEST(TripodVisualizerTexts, are_these) {
    EXPECT_STREQ(aux::orvex_tripod_viz_vs_gl2,
                 "#version 120\nuniform mat4 orvex_ModelViewProjectionMatrix;\nvoid main()\n{\n  "
                 "gl_Position = orvex_ModelViewProjectionMatrix * gl_Vertex;\n  gl_FrontColor = "
                 "gl_Color;\n}");
    EXPECT_STREQ(aux::orvex_tripod_viz_ps_gl2,
                 "#version 120\nvoid main()\n{\n  gl_FragColor = gl_Color; \n}");
    EXPECT_STREQ(aux::orvex_tripod_viz_vs_gl3,
                 "#version 150\nin vec4 orvex_Position;\nin vec4 orvex_Color;\nout vec4 "
                 "Vertex_Color;\nuniform mat4 orvex_ModelViewProjectionMatrix;\nvoid main()\n{\n  "
                 "gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;\n  Vertex_Color "
                 "= orvex_Color;\n}");
    EXPECT_STREQ(aux::orvex_tripod_viz_ps_gl3,
                 "#version 150\nin vec4 Vertex_Color;\nout vec4 Out_Color;\nvoid main()\n{\n  "
                 "Out_Color = Vertex_Color; \n}");
}

struct VersionRow {
    int major;
    int minor;
    bool gl3;
};

const VersionRow version_rows[] = {{0, 0, false}, {1, 5, false}, {2, 1, false},
                                   {3, 0, true},  {3, 2, true},  {4, 5, true}};

TEST_F(TripodVisualizers, take_the_texts_and_states_of_the_version) {
    for (const VersionRow& row : version_rows) {
        SCOPED_TRACE(row.major);
        renderer.set_version(row.major, row.minor);
        renderer.shaders.clear();
        ASSERT_TRUE(of_camera.init(&renderer));
        const std::vector<std::string> gl2 = {"0: " + std::string(aux::orvex_tripod_viz_vs_gl2),
                                              "1: " + std::string(aux::orvex_tripod_viz_ps_gl2)};
        const std::vector<std::string> gl3 = {"0: " + std::string(aux::orvex_tripod_viz_vs_gl3),
                                              "1: " + std::string(aux::orvex_tripod_viz_ps_gl3)};
        EXPECT_EQ(renderer.shaders, row.gl3 ? gl3 : gl2);
        EXPECT_EQ(renderer.active_program, nullptr) << "init leaves no program active";

        renderer.take_calls();
        of_camera.render(&renderer, camera.get(), 5, 6, 70, 80);
        const std::vector<std::string> bind = bind_of_own_camera(5, 6, 70, 80, !row.gl3);
        const std::vector<std::string> calls = renderer.take_calls();
        ASSERT_GT(calls.size(), bind.size());
        EXPECT_EQ(std::vector<std::string>(
                      calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(bind.size())),
                  bind);
        EXPECT_EQ(calls[bind.size()], "gpu_program_activate(pointer)");
        of_camera.cleanup(&renderer);
    }
}

TEST_F(TripodVisualizers, take_texts_of_the_host) {
    const OtherText other(aux::orvex_tripod_viz_ps_gl3, "void main() {}");
    EXPECT_TRUE(base.init(&renderer));
    EXPECT_EQ(renderer.shaders.back(), "1: void main() {}");
}

TEST_F(TripodVisualizers, make_nothing_new_at_a_second_init) {
    aux::TripodVisualizer* const all[] = {&base, &of_camera, &of_object};
    for (aux::TripodVisualizer* const visualizer : all) {
        ASSERT_TRUE(visualizer->init(&renderer));
        const unsigned long programs = num_programs();
        renderer.take_calls();
        EXPECT_TRUE(visualizer->init(&renderer));
        EXPECT_TRUE(renderer.take_calls().empty());
        EXPECT_EQ(num_programs(), programs);
    }
    EXPECT_EQ(num_programs(), programs_before + 3);
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    const PolylineData* const store = renderer.take_lines().at(0).store;
    EXPECT_TRUE(of_camera.init(&renderer));
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    EXPECT_EQ(renderer.take_lines().at(0).store, store);
}

TEST_F(TripodVisualizers, draw_three_coloured_axes) {
    ASSERT_TRUE(of_object.init(&renderer));
    of_object.render(&renderer, object.get());
    const std::vector<DrawnLine> lines = renderer.take_lines();
    ASSERT_EQ(lines.size(), 1u);
    ASSERT_EQ(lines[0].vertices.size(), 6u);
    const vec4 ends[] = {vec4(1.0f, 0.0f, 0.0f, 1.0f), vec4(0.0f, 1.0f, 0.0f, 1.0f),
                         vec4(0.0f, 0.0f, 1.0f, 1.0f)};
    for (unsigned long axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(lines[0].at(2 * axis), vec4(0.0f, 0.0f, 0.0f, 1.0f));
        EXPECT_EQ(lines[0].at(2 * axis + 1), ends[axis]);
        EXPECT_EQ(lines[0].color_at(2 * axis), ends[axis]);
        EXPECT_EQ(lines[0].color_at(2 * axis + 1), ends[axis]);
    }
    EXPECT_EQ(lines[0].start, 0);
    EXPECT_LT(lines[0].count, 1);
}

TEST_F(TripodVisualizers, turn_the_axes_as_the_view_of_the_camera_turns_the_world) {
    camera->set_position(vec4(4.0f, 5.0f, 6.0f, 1.0f));
    camera->set_lookat(vec4(1.0f, 2.0f, -3.0f, 1.0f));
    mat4 rotation = camera->get_view_matrix();
    EXPECT_NE(rotation.m[12], 0.0f);
    rotation.set_translate(0.0f, 0.0f, 0.0f);
    for (const int major : {2, 3}) {
        renderer.set_version(major, 0);
        ASSERT_TRUE(of_camera.init(&renderer));
        renderer.fixed_matrices.clear();
        of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
        ASSERT_EQ(renderer.fixed_matrices.size(), 1u);
        EXPECT_TRUE(same(renderer.fixed_matrices[0].model_view, renderer.view_matrix * rotation));
        EXPECT_TRUE(same(renderer.fixed_matrices[0].projection, renderer.projection_matrix));
        of_camera.cleanup(&renderer);
    }
}

TEST_F(TripodVisualizers, put_the_axes_where_the_object_is) {
    const Owned<Object> parent(new Object);
    parent->set_position(100.0f, 0.0f, 0.0f);
    parent->add_child(object.get());
    object->add_ref();
    object->set_position(1.0f, 2.0f, 3.0f);
    object->set_orientation_euler_xyz(10.0f, 20.0f, 30.0f);
    object->set_scale(2.0f, 3.0f, 4.0f);
    renderer.view_matrix.init_translate(7.0f, 8.0f, 9.0f);
    for (const int major : {2, 3}) {
        renderer.set_version(major, 0);
        ASSERT_TRUE(of_object.init(&renderer));
        renderer.fixed_matrices.clear();
        renderer.take_calls();
        of_object.render(&renderer, object.get());
        EXPECT_EQ(renderer.calls.front(), "gpu_program_activate(pointer)")
            << "the host's camera stays bound";
        ASSERT_EQ(renderer.fixed_matrices.size(), 1u);
        EXPECT_TRUE(same(renderer.fixed_matrices[0].model_view,
                         renderer.view_matrix * object->get_transform()));
        of_object.cleanup(&renderer);
    }
}

TEST_F(TripodVisualizers, leave_their_program_active_and_restore_nothing) {
    ASSERT_TRUE(of_camera.init(&renderer));
    renderer.take_calls();
    of_camera.render(&renderer, camera.get(), 5, 6, 70, 80);
    EXPECT_NE(renderer.active_program, nullptr);
    EXPECT_EQ(renderer.viewport[0], 5);
    EXPECT_EQ(renderer.viewport[3], 80);
    EXPECT_EQ(renderer.count("set_viewport"), 1);
    EXPECT_EQ(renderer.count("set_scissor"), 0);
    EXPECT_EQ(renderer.count("set_projection_matrix"), 1);
    EXPECT_EQ(renderer.count("set_view_matrix"), 1);
    EXPECT_EQ(renderer.count("gpu_program_deactivate"), 0);
    EXPECT_EQ(renderer.calls.back(), "polyline_vb_finish(pointer)");
}

TEST_F(TripodVisualizers, do_nothing_without_what_they_need) {
    EXPECT_FALSE(base.init(nullptr));
    EXPECT_FALSE(of_camera.init(nullptr));
    EXPECT_FALSE(of_object.init(nullptr));
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    of_object.render(&renderer, object.get());
    EXPECT_TRUE(renderer.take_calls().empty()) << "not without init";
    ASSERT_TRUE(of_camera.init(&renderer));
    ASSERT_TRUE(of_object.init(&renderer));
    renderer.take_calls();
    of_camera.render(nullptr, camera.get(), 0, 0, 10, 10);
    of_camera.render(&renderer, nullptr, 0, 0, 10, 10);
    of_object.render(nullptr, object.get());
    of_object.render(&renderer, nullptr);
    EXPECT_TRUE(renderer.take_calls().empty());
}

TEST_F(TripodVisualizers, draw_nothing_when_the_program_cannot_be_activated_any_more) {
    ASSERT_TRUE(of_object.init(&renderer));
    renderer.results["gpu_program_activate"] = false;
    of_object.render(&renderer, object.get());
    EXPECT_TRUE(renderer.take_lines().empty());
}

/// That `init` failed and left nothing behind.
template<class Visualizer>
void expect_failed_init(Visualizer& visualizer, TripodRenderer& renderer) {
    const unsigned long programs = num_programs();
    EXPECT_FALSE(visualizer.init(&renderer));
    EXPECT_EQ(num_programs(), programs);
}

TEST_F(TripodVisualizers, tell_what_the_shaders_fail_with) {
    const LogCapture log;
    renderer.results["gpu_program_load_shader_from_memory"] = false;
    renderer.compile_error = "0:1: no";
    expect_failed_init(of_camera, renderer);
    EXPECT_TRUE(log.has("<*> - tripod visualizer GPU program error: \nVertex shader error: 0:1: "
                        "no\nPixel shader error: 0:1: no"))
        << testing::PrintToString(log.messages());
}

TEST_F(TripodVisualizers, tell_of_shaders_that_fail_without_a_word) {
    const LogCapture log;
    renderer.results["gpu_program_load_shader_from_memory"] = false;
    expect_failed_init(of_object, renderer);
    ASSERT_FALSE(log.messages().empty());
    EXPECT_EQ(log.messages().back(), "<*> - tripod visualizer GPU program has erros");
}

TEST_F(TripodVisualizers, tell_of_a_program_that_cannot_be_activated) {
    const LogCapture log;
    renderer.results["gpu_program_activate"] = false;
    expect_failed_init(base, renderer);
    EXPECT_EQ(log.messages(),
              std::vector<std::string>{
                  "<*> - unable to create the GPU program for the tripod visualizer."});
}

TEST_F(TripodVisualizers, render_nothing_after_a_failed_init_and_can_be_tried_again) {
    renderer.results["gpu_program_activate"] = false;
    EXPECT_FALSE(of_camera.init(&renderer));
    EXPECT_FALSE(of_object.init(&renderer));
    renderer.results.clear();
    renderer.take_calls();
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    of_object.render(&renderer, object.get());
    EXPECT_TRUE(renderer.take_calls().empty());
    EXPECT_TRUE(of_camera.init(&renderer));
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    EXPECT_EQ(renderer.take_lines().size(), 1u);
}

TEST_F(TripodVisualizers, give_everything_back_in_cleanup) {
    of_camera.cleanup(&renderer);
    EXPECT_TRUE(renderer.take_calls().empty());
    ASSERT_TRUE(of_camera.init(&renderer));
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    renderer.take_calls();
    of_camera.cleanup(&renderer);
    EXPECT_EQ(renderer.take_calls(),
              (std::vector<std::string>{"gpu_program_kill(pointer)", "polyline_vb_kill(pointer)"}));
    EXPECT_EQ(num_programs(), programs_before);
    of_camera.cleanup(&renderer);
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    EXPECT_TRUE(renderer.take_calls().empty());
    EXPECT_TRUE(of_camera.init(&renderer));
    EXPECT_EQ(num_programs(), programs_before + 1);
}

TEST_F(TripodVisualizers, forget_a_program_that_its_manager_ended) {
    ASSERT_TRUE(of_camera.init(&renderer));
    ASSERT_TRUE(of_object.init(&renderer));
    GpuProgramMgr::get()->stop(&renderer);
    renderer.take_calls();
    of_camera.render(&renderer, camera.get(), 0, 0, 10, 10);
    of_object.render(&renderer, object.get());
    EXPECT_TRUE(renderer.take_calls().empty());
    of_camera.cleanup(&renderer);
    EXPECT_EQ(renderer.take_calls(), std::vector<std::string>{"polyline_vb_kill(pointer)"});
    EXPECT_TRUE(of_object.init(&renderer));
    of_object.render(&renderer, object.get());
    EXPECT_EQ(renderer.take_lines().size(), 1u);
    programs_before = 0;
}

} // namespace

} // namespace orvex_test
