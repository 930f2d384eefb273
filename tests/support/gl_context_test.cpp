#include "gl_context.h"

#include <string>

#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex_test {

namespace {

class Fixture : public orvex_test::GlTest {};
ORVEX_BOTH_PROFILES(Fixture);

TEST_P(Fixture, gives_a_context_of_the_asked_profile) {
    EXPECT_TRUE(context().ok());
    EXPECT_EQ(orvex_test::is_core_context(), GetParam() == orvex_test::Profile::core);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], 256);
    EXPECT_EQ(viewport[3], 256);
}

TEST_P(Fixture, keeps_what_the_driver_says_about_a_mistake) {
    glEnable(GL_VENDOR);
    EXPECT_GL_ERROR(GL_INVALID_ENUM);
    EXPECT_EQ(context().take_errors().size(), 1u);
    EXPECT_TRUE(context().take_errors().empty());
}

TEST_P(Fixture, tells_errors_apart) {
    EXPECT_FALSE(orvex_test::gl_error_is(GL_INVALID_ENUM));
    glEnable(GL_VENDOR);
    EXPECT_FALSE(orvex_test::gl_error_is(GL_INVALID_VALUE));
    EXPECT_NO_GL_ERROR();
}

TEST_P(Fixture, renders_into_its_own_pixels) {
    glClearColor(1.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    unsigned char pixel[4] = {};
    glReadPixels(255, 255, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    EXPECT_EQ(std::string(pixel, pixel + 4), std::string("\xff\x00\xff\xff", 4));
}

TEST_P(Fixture, shares_textures_with_a_second_context) {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    const orvex_test::GlContext other(GetParam(), 16, 16, &context());
    EXPECT_TRUE(glIsTexture(texture));
    context().make_current();
    EXPECT_TRUE(context().ok());
}

} // namespace

} // namespace orvex_test
