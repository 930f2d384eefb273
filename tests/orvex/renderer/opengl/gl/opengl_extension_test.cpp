#include "orvex/renderer/opengl/gl/private/opengl_extension.h"

#include <string>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using orvex::OpenGLExtension;

TEST(OpenGLExtensionTest, copies_its_name) {
    std::string name = "GL_EXT_name";
    const OpenGLExtension extension(name.c_str());
    name[0] = 'X';
    EXPECT_STREQ(extension.get_name(), "GL_EXT_name");
    EXPECT_STREQ(OpenGLExtension(nullptr).get_name(), "");
}

TEST(OpenGLExtensionTest, compares_length_and_characters) {
    EXPECT_TRUE(OpenGLExtension("GL_A") == OpenGLExtension("GL_A"));
    EXPECT_FALSE(OpenGLExtension("GL_A") == OpenGLExtension("GL_a"));
    EXPECT_FALSE(OpenGLExtension("GL_A") == OpenGLExtension("GL_AB"));
    EXPECT_FALSE(OpenGLExtension("GL_AB") == OpenGLExtension("GL_A"));
}

} // namespace

} // namespace orvex_test
