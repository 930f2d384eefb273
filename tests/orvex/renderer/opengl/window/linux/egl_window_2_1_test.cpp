#include <cstdlib>

#include <gtest/gtest.h>

#include <GL/gl.h>

#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

namespace orvex_test {

namespace {

/// The driver settles its version once per process, so that this is a program of its own.
class OldWindow : public testing::Test {
protected:
    orvex::RenderWindowOpenGL window;

    void SetUp() override {
        setenv("MESA_GL_VERSION_OVERRIDE", "2.1", 1);
        ASSERT_TRUE(window.initialize(nullptr, nullptr, 16, 16, nullptr, nullptr, nullptr));
    }
};

TEST_F(OldWindow, tells_version_2_1) {
    int major = 0;
    int minor = 0;
    EXPECT_TRUE(window.get_opengl_version(&major, &minor));
    EXPECT_EQ(major, 2);
    EXPECT_EQ(minor, 1);
    EXPECT_EQ(window.get_api_3d(), 2);
    EXPECT_TRUE(window.is_opengl_version_supported(2, 0));
    EXPECT_FALSE(window.is_opengl_version_supported(3, 0));
}

TEST_F(OldWindow, lists_extensions_from_the_one_text) {
    EXPECT_TRUE(window.build_opengl_extensions_list());
    EXPECT_GT(window.get_num_GL_extensions(), 0);
    EXPECT_EQ(window.get_num_opengl_extensions(),
              static_cast<unsigned long>(window.get_num_GL_extensions()));
    EXPECT_TRUE(window.check_opengl_extension(window.get_opengl_extension(0)));
}

} // namespace

} // namespace orvex_test
