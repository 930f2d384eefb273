#pragma once

/// @file
/// A renderer that was started, and nothing else, behind the recording layer.

#include <memory>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"

namespace orvex_test {

/// The calls of the start are forgotten; an error of it fails the test.
class StartedRendererTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        recorder = std::make_unique<GlRecorder>();
        renderer = std::make_unique<orvex::RendererOpenGL>();
        renderer->start();
        recorder->clear();
    }

    void TearDown() override {
        renderer.reset();
        recorder.reset();
        GlTest::TearDown();
    }

    std::unique_ptr<GlRecorder> recorder;
    std::unique_ptr<orvex::RendererOpenGL> renderer;
};

} // namespace orvex_test
