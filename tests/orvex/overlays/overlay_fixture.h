#pragma once

/// @file
/// What the tests of overlays share that draw through a renderer without a graphics API.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "tests/orvex/assets/textures/fake_codec.h"
#include "tests/orvex/gpu/fake_compiler.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using Calls = std::vector<std::string>;

/// Compiles as its base does and calls every program "program" in its calls.
class OverlayRenderer : public FakeCompiler {
public:
    OverlayRenderer() {
        ignored = {"get_projection_matrix", "get_view_matrix", "get_viewport_ptr",
                   "gpu_program_get_active_program"};
    }

    bool gpu_program_load_shader_from_memory(orvex::GpuProgramData* program,
                                             orvex::GPU_SHADER_TYPE type, const char* source,
                                             unsigned long size) override {
        name_pointer(program, "program");
        return FakeCompiler::gpu_program_load_shader_from_memory(program, type, source, size);
    }

    /// The operations called since the last time, without their arguments.
    Calls take_names() {
        Calls names;
        for (const std::string& call : take_calls())
            names.push_back(call.substr(0, call.find('(')));
        return names;
    }
};

/// The managers, with a codec for files of the word "flat", and the log. Whatever a test leaves in
/// a manager fails it.
class OverlayTest : public testing::Test {
protected:
    OverlayTest() {
        codec->add_ref();
        textures.register_image_codec_plugin(codec);
    }
    ~OverlayTest() override {
        EXPECT_EQ(textures.get_num_resources(), 0u) << "a texture that nobody gave back";
        EXPECT_EQ(programs.get_num_resources(), 0u) << "a program that nobody gave back";
        stop_managers();
        EXPECT_EQ(codec->live(), 0u) << "decoded pixels that nobody gave back";
        EXPECT_EQ(codec->release(), 0);
    }

    /// As `core::stop` does: whatever the managers hold ends, without a renderer.
    void stop_managers() {
        textures.stop(nullptr);
        programs.stop(nullptr);
    }

    orvex_test::LogCapture log;
    orvex_test::TempDir dir;
    orvex::TextureMgr& textures = *orvex::TextureMgr::get();
    orvex::GpuProgramMgr& programs = *orvex::GpuProgramMgr::get();
    FakeCodec* const codec = new FakeCodec("stb", "flat");
    OverlayRenderer renderer;
};

} // namespace orvex_test
