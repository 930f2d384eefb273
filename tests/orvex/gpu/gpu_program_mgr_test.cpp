#include "orvex/gpu/gpu_program_mgr.h"

#include <string>

#include <gtest/gtest.h>

#include "fake_compiler.h"
#include "orvex/gpu/gpu_program.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
using orvex_test::FakeCompiler;
using orvex_test::LogCapture;
using orvex_test::TempDir;
using Lines = std::vector<std::string>;
using Sources = std::vector<std::pair<int, std::string>>;

namespace {

class GpuProgramMgrTest : public testing::Test {
protected:
    void TearDown() override { mgr->stop(nullptr); }

    FakeCompiler renderer;
    GpuProgramMgr* mgr = GpuProgramMgr::get();
};

TEST_F(GpuProgramMgrTest, is_one_for_all) {
    EXPECT_EQ(GpuProgramMgr::get(), mgr);
    EXPECT_TRUE(mgr->start(nullptr));
    EXPECT_TRUE(mgr->stop(nullptr));
    EXPECT_EQ(mgr->get_num_resources(), 0u);
}

TEST_F(GpuProgramMgrTest, makes_a_named_program_without_loading) {
    GpuProgram* const program = mgr->create_gpu_program("prog");
    EXPECT_STREQ(program->get_name(), "prog");
    EXPECT_EQ(program->get_ref(), 1);
    EXPECT_FALSE(program->is_valid());
    EXPECT_TRUE(mgr->has_resource(program));
    EXPECT_EQ(std::string(mgr->create_gpu_program(nullptr)->get_name()).rfind("node_", 0), 0u);
}

TEST_F(GpuProgramMgrTest, adds_a_program_of_the_host_once) {
    auto* const program = new GpuProgram;
    EXPECT_TRUE(mgr->add_gpu_program(program));
    EXPECT_TRUE(mgr->add_gpu_program(program));
    EXPECT_EQ(program->get_ref(), 1);
    EXPECT_EQ(mgr->get_num_resources(), 1u);
    EXPECT_FALSE(mgr->add_gpu_program(nullptr));
}

TEST_F(GpuProgramMgrTest, loads_from_memory) {
    const char text[] = "[Vertex_Shader]v[Pixel_Shader]p";
    GpuProgram* const program =
        mgr->create_gpu_program_from_memory(&renderer, text, sizeof text, "prog");
    EXPECT_TRUE(program->is_valid());
    EXPECT_STREQ(program->get_name(), "prog");
    EXPECT_EQ(program->get_ref(), 1) << "added once";
    EXPECT_EQ(renderer.sources, (Sources{{0, "v"}, {1, "p"}}));
}

TEST_F(GpuProgramMgrTest, loads_from_a_file) {
    const TempDir dir;
    GpuProgram* const program = mgr->create_gpu_program_from_file(
        &renderer, dir.write("a.glsl", "[Compute_Shader]c").c_str(), "prog");
    EXPECT_TRUE(program->is_valid());
    EXPECT_EQ(renderer.sources, (Sources{{5, "c"}}));
}

TEST_F(GpuProgramMgrTest, loads_separate_texts_in_a_fixed_order) {
    GpuProgram* const program =
        mgr->create_gpu_program_from_shaders(&renderer, "v", "p", "g", "t", "e", "c", "prog");
    EXPECT_TRUE(program->is_valid());
    EXPECT_EQ(renderer.sources,
              (Sources{{0, "v"}, {3, "t"}, {4, "e"}, {2, "g"}, {1, "p"}, {5, "c"}}));
    EXPECT_EQ(renderer.last_size, 1u);
}

TEST_F(GpuProgramMgrTest, passes_over_stages_without_text) {
    GpuProgram* const program = mgr->create_gpu_program_from_shaders(
        &renderer, "v", "p", nullptr, nullptr, nullptr, nullptr, "prog");
    EXPECT_TRUE(program->is_valid());
    EXPECT_EQ(renderer.sources, (Sources{{0, "v"}, {1, "p"}}));
}

TEST_F(GpuProgramMgrTest, a_program_without_any_text_counts_as_loaded) {
    EXPECT_TRUE(mgr->create_gpu_program_from_shaders(&renderer, nullptr, nullptr, nullptr, nullptr,
                                                     nullptr, nullptr, "prog")
                    ->is_valid());
}

TEST_F(GpuProgramMgrTest, returns_a_program_that_does_not_load) {
    const char* const null = nullptr;
    GpuProgram* const programs[] = {
        mgr->create_gpu_program_from_file(&renderer, null, "prog"),
        mgr->create_gpu_program_from_file(&renderer, "/nowhere/a.glsl", "prog"),
        mgr->create_gpu_program_from_file(nullptr, null, "prog"),
        mgr->create_gpu_program_from_memory(&renderer, null, 5, "prog"),
        mgr->create_gpu_program_from_memory(&renderer, "[Compute_Shader]bad", 20, "prog"),
        mgr->create_gpu_program_from_memory(nullptr, "[Compute_Shader]c", 20, "prog"),
        mgr->create_gpu_program_from_shaders(&renderer, "bad", "p", null, null, null, null, "prog"),
        mgr->create_gpu_program_from_shaders(&renderer, "", "p", null, null, null, null, "prog"),
        mgr->create_gpu_program_from_shaders(nullptr, "v", "p", null, null, null, null, "prog"),
        mgr->create_gpu_program_from_effect(&renderer, null, "prog"),
        mgr->create_gpu_program_from_effect(&renderer, "bad", "prog"),
    };
    for (GpuProgram* const program : programs) {
        ASSERT_NE(program, nullptr);
        EXPECT_FALSE(program->is_valid());
        EXPECT_STREQ(program->get_name(), "prog");
        EXPECT_TRUE(mgr->has_resource(program));
        EXPECT_EQ(program->get_ref(), 1);
    }
}

TEST_F(GpuProgramMgrTest, loads_a_program_of_the_host) {
    const TempDir dir;
    const std::string path = dir.write("a.glsl", "[Compute_Shader]c");
    auto* const program = new GpuProgram;
    EXPECT_TRUE(mgr->init_gpu_program_from_file(&renderer, program, path.c_str(), "file"));
    EXPECT_TRUE(program->is_valid());
    EXPECT_STREQ(program->get_name(), "file");
    EXPECT_TRUE(mgr->has_resource(program));
    EXPECT_FALSE(mgr->init_gpu_program_from_memory(&renderer, program, "text", 4, "memory"));
    EXPECT_FALSE(program->is_valid());
    EXPECT_STREQ(program->get_name(), "memory");
    EXPECT_TRUE(mgr->init_gpu_program_from_shaders(&renderer, program, "v", "p", nullptr, nullptr,
                                                   nullptr, nullptr, nullptr));
    EXPECT_TRUE(program->is_valid());
    EXPECT_STREQ(program->get_name(), "memory");
    EXPECT_TRUE(mgr->init_gpu_program_from_effect(&renderer, program, "technique", "effect"));
    EXPECT_EQ(renderer.sources.back(), (std::pair<int, std::string>{7, "technique"}));
    EXPECT_STREQ(program->get_name(), "effect");
    EXPECT_EQ(program->get_ref(), 1);
}

TEST_F(GpuProgramMgrTest, refuses_a_null_program) {
    EXPECT_FALSE(mgr->init_gpu_program_from_file(&renderer, nullptr, "path", "name"));
    EXPECT_FALSE(mgr->init_gpu_program_from_memory(&renderer, nullptr, "text", 4, "name"));
    EXPECT_FALSE(mgr->init_gpu_program_from_shaders(&renderer, nullptr, "v", "p", nullptr, nullptr,
                                                    nullptr, nullptr, "name"));
    EXPECT_FALSE(mgr->init_gpu_program_from_effect(&renderer, nullptr, "text", "name"));
    EXPECT_EQ(mgr->get_num_resources(), 0u);
}

TEST_F(GpuProgramMgrTest, a_null_effect_text_leaves_the_program_alone) {
    auto* const program = new GpuProgram;
    program->set_valid_state(true);
    EXPECT_FALSE(mgr->init_gpu_program_from_effect(&renderer, program, nullptr, "name"));
    EXPECT_TRUE(program->is_valid());
    EXPECT_FALSE(mgr->has_resource(program));
    program->release(nullptr, nullptr);
}

TEST_F(GpuProgramMgrTest, tells_of_every_stage_that_fails_and_goes_on) {
    LogCapture log;
    GpuProgram* const program = mgr->create_gpu_program_from_shaders(&renderer, "bad", "bad", "bad",
                                                                     "bad", "bad", "bad", "prog");
    EXPECT_FALSE(program->is_valid());
    EXPECT_EQ(log.messages(),
              (Lines{"<!> GPU program prog - Vertex shader: bad 0",
                     "<*> GPU program prog - Vertex shader error: bad 0",
                     "<!> GPU program prog - Tessellation control shader: bad 3",
                     "<*> GPU program prog - Tessellation control shader error: bad 3",
                     "<!> GPU program prog - Tessellation evaluation shader: bad 4",
                     "<*> GPU program prog - Tessellation eval shader error: bad 4",
                     "<!> GPU program prog - Geometry shader: bad 2",
                     "<*> GPU program prog - Geometry shader error: bad 2",
                     "<!> GPU program prog - Pixel shader: bad 1",
                     "<*> GPU program prog - Pixel shader error: bad 1",
                     "<!> GPU program prog - Compute shader: bad 5",
                     "<*> GPU program prog - Compute shader error: bad 5"}));
}

TEST_F(GpuProgramMgrTest, tells_of_an_effect_that_fails) {
    LogCapture log;
    mgr->create_gpu_program_from_effect(&renderer, "bad", "prog");
    EXPECT_EQ(log.messages(), (Lines{"<!> GPU program prog - Direct3D effect shader: bad 7",
                                     "<*> GPU program prog - D3D effect error: bad 7"}));
}

TEST_F(GpuProgramMgrTest, says_nothing_about_failures_without_a_log) {
    renderer.leaves_log = false;
    LogCapture log;
    mgr->create_gpu_program_from_shaders(&renderer, "bad", "p", nullptr, nullptr, nullptr, nullptr,
                                         "prog");
    mgr->create_gpu_program_from_effect(&renderer, "bad", "prog");
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(GpuProgramMgrTest, keeps_programs_of_another_renderer) {
    FakeCompiler other;
    GpuProgram* const program =
        mgr->create_gpu_program_from_memory(&renderer, "[Compute_Shader]c", 17, "prog");
    EXPECT_EQ(program->get_renderer_id(), renderer.get_id());
    EXPECT_EQ(mgr->release_resource(&other, program, nullptr), 0);
    EXPECT_TRUE(mgr->has_resource(program));
    EXPECT_TRUE(mgr->stop(&renderer));
    EXPECT_EQ(mgr->get_num_resources(), 0u);
    EXPECT_EQ(renderer.count("gpu_program_kill"), 1);
}

} // namespace

} // namespace orvex_test
