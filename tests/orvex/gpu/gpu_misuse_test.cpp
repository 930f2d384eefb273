// Runs with ORVEX_TELL_MISUSE=1 in its environment.

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "fake_compiler.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

struct Misuse {
    const char* told;
    std::function<bool(GpuProgram& program, Renderer& renderer)> commit;
};

void PrintTo(const Misuse& row, std::ostream* out) {
    *out << row.told;
}

using P = GpuProgram;
using R = Renderer;

// clang-format off
const Misuse rows[] = {
    {"GpuProgram::load_from_file: a null path", [](P& p, R& r) { return p.load_from_file(&r, nullptr); }},
    {"GpuProgram::load_from_memory: no text", [](P& p, R& r) { return p.load_from_memory(&r, "[Compute_Shader]", 0); }},
    {"GpuProgram::shader_load_from_file: a null path", [](P& p, R& r) { return p.shader_load_from_file(&r, GPU_SHADER_PIXEL, nullptr); }},
    {"GpuProgram::shader_load_from_memory: a null renderer", [](P& p, R&) { return p.shader_load_from_memory(nullptr, GPU_SHADER_PIXEL, "a", 1); }},
    {"GpuProgram::shader_load_from_memory: a stage outside 0 to 7", [](P& p, R& r) { return p.shader_load_from_memory(&r, GPU_SHADER_TYPE(8), "a", 1); }},
    {"GpuProgram::bind: a null renderer", [](P& p, R&) { return p.bind(nullptr); }},
    {"GpuProgram::unbind: a null renderer", [](P& p, R&) { return p.unbind(nullptr); }},
    {"GpuProgram::run_compute: a null renderer", [](P& p, R&) { return p.run_compute(nullptr, 1, 1, 1); }},
    {"GpuProgram::bind_uniforms: a null renderer", [](P& p, R&) { return p.bind_uniforms(nullptr); }},
    {"GpuProgram::ub_init: a null block name", [](P& p, R& r) { return p.ub_init(&r, nullptr); }},
    {"GpuProgram::ub_bind: a program without a uniform block: ub_init makes one", [](P& p, R& r) { return p.ub_bind(&r); }},
    {"GpuProgram::ub_bind_base: a program without a uniform block: ub_init makes one", [](P& p, R& r) { return p.ub_bind_base(&r, 0); }},
    {"GpuProgram::ub_unbind: a program without a uniform block: ub_init makes one", [](P& p, R& r) { return p.ub_unbind(&r); }},
    {"GpuProgram::ub_map: a program without a uniform block: ub_init makes one", [](P& p, R& r) { return p.ub_map(&r) != nullptr; }},
    {"GpuProgram::ub_unmap: a program without a uniform block: ub_init makes one", [](P& p, R& r) { return p.ub_unmap(&r); }},
    {"GpuProgram::ub_set_value_ui64: a buffer that isn't mapped", [](P& p, R& r) { return p.ub_set_value_ui64(&r, 0, 1); }},
    {"GpuProgramData::set_uniform: a null name", [](P& p, R&) { return p.set_uniform_1f(nullptr, nullptr, 1); }},
    {"GpuProgramMgr::init_gpu_program_from_file: a null program", [](P&, R& r) { return GpuProgramMgr::get()->init_gpu_program_from_file(&r, nullptr, "a", "a"); }},
    {"GpuProgramMgr::init_gpu_program_from_memory: a null program", [](P&, R& r) { return GpuProgramMgr::get()->init_gpu_program_from_memory(&r, nullptr, "a", 1, "a"); }},
    {"GpuProgramMgr::init_gpu_program_from_shaders: a null program", [](P&, R& r) { return GpuProgramMgr::get()->init_gpu_program_from_shaders(&r, nullptr, "a", "a", nullptr, nullptr, nullptr, nullptr, "a"); }},
    {"GpuProgramMgr::init_gpu_program_from_effect: a null program or text", [](P& p, R& r) { return GpuProgramMgr::get()->init_gpu_program_from_effect(&r, &p, nullptr, "a"); }},
};
// clang-format on

class GpuMisuse : public testing::TestWithParam<Misuse> {};

INSTANTIATE_TEST_SUITE_P(Rows, GpuMisuse, testing::ValuesIn(rows));

TEST_P(GpuMisuse, is_refused_and_told) {
    FakeCompiler renderer;
    GpuProgram program;
    const LogCapture log;
    EXPECT_FALSE(GetParam().commit(program, renderer));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0], std::string("<!> misuse: ") + GetParam().told);
}

TEST(GpuProgramMisuse, names_an_index_beyond_the_mapped_block) {
    FakeCompiler renderer;
    GpuProgram program;
    ASSERT_TRUE(program.ub_init(&renderer, "Block"));
    ASSERT_NE(program.ub_map(&renderer), nullptr);
    const LogCapture log;
    EXPECT_TRUE(program.ub_set_value_ui64(&renderer, 3, 1));
    EXPECT_FALSE(program.ub_set_value_ui64(&renderer, 4, 1));
    EXPECT_TRUE(
        log.has("<!> misuse: GpuProgram::ub_set_value_ui64: an index beyond the buffer's end"));
    EXPECT_EQ(log.messages().size(), 1u);
}

TEST(GpuProgramMisuse, is_none_to_clean_up_what_has_no_block) {
    FakeCompiler renderer;
    GpuProgram program;
    const LogCapture log;
    EXPECT_FALSE(program.ub_cleanup(&renderer));
    EXPECT_TRUE(program._cleanup(&renderer));
    EXPECT_TRUE(log.messages().empty());
}

} // namespace

} // namespace orvex_test
