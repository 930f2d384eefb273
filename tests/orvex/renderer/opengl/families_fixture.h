#pragma once

/// @file
/// The state that the families share, without a renderer, behind the recording layer.

#include <memory>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"

namespace orvex_test {

/// The table is empty until a test fills it.
class FamilyTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        recorder = std::make_unique<GlRecorder>();
    }

    void TearDown() override {
        recorder.reset();
        GlTest::TearDown();
    }

    /// Fetches the entry points and makes two texture units, and forgets the calls.
    void fill() {
        state.gl.init(false);
        state.ctx.init_texture_units(64, 2);
        recorder->clear();
    }

    std::unique_ptr<GlRecorder> recorder;
    orvex::GlState state;
};

} // namespace orvex_test
