#pragma once

/// @file
/// What the tests of the program back end share: a started renderer behind the recorder, a record,
/// and sources that compile in both profiles.

#include <cstring>
#include <string>

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "orvex/renderer/records/gpu_program_data.h"
#include "tests/orvex/renderer/opengl/started_renderer.h"

namespace orvex_test {

/// A pixel stage that goes with any vertex stage.
inline constexpr const char* PIXEL_SOURCE = "#version 150\n"
                                            "out vec4 color;\n"
                                            "void main() { color = vec4(1.0); }\n";

/// A vertex stage without attributes.
inline constexpr const char* PLAIN_VERTEX_SOURCE =
    "#version 150\n"
    "void main() { gl_Position = vec4(0.0, 0.0, 0.0, 1.0); }\n";

/// A source that doesn't compile.
inline constexpr const char* BAD_SOURCE = "#version 150\nvoid main() { nonsense(); }\n";

class GpuProgramGlTest : public StartedRendererTest {
protected:
    void TearDown() override {
        renderer->gpu_program_kill(&data);
        StartedRendererTest::TearDown();
    }

    bool load(orvex::GPU_SHADER_TYPE type, const char* source) {
        return renderer->gpu_program_load_shader_from_memory(&data, type, source,
                                                             std::strlen(source));
    }

    /// Loads both stages of a program that compiles, and forgets the calls.
    void load_program(const std::string& vertex) {
        ASSERT_TRUE(load(orvex::GPU_SHADER_VERTEX, vertex.c_str()));
        ASSERT_TRUE(load(orvex::GPU_SHADER_PIXEL, PIXEL_SOURCE));
        recorder->clear();
    }

    std::string program_id() const { return std::to_string(data.gl_program); }

    /// Hides an entry point from the renderer.
    void hide(const char* name) {
        recorder->hide(name);
        renderer->stop();
        renderer->start();
        recorder->clear();
    }

    orvex::GpuProgramData data;
};

} // namespace orvex_test
