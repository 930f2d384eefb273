#include "gl_context.h"

#include <string>

#include <GL/gl.h>

namespace orvex_test {

namespace {

TEST(OldContext, reports_2_1) {
    const orvex_test::GlContext context(orvex_test::Profile::gl_2_1);
    ASSERT_TRUE(context.ok());
    const std::string version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    EXPECT_EQ(version.substr(0, 3), "2.1");
    EXPECT_NO_GL_ERROR();
}

} // namespace

} // namespace orvex_test
