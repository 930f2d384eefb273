// A host that uses GLUT itself: the library is in the process before the engine asks for it. That
// can't be taken back, so these tests have a program of their own.

#include "orvex/renderer/opengl/text/private/glut_text.h"

#include <cstdarg>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/font_data.h"
#include "tests/support/gl_context.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

int host_errors = 0;

void count_error(const char*, va_list) {
    ++host_errors;
}

class HostWithGlut : public testing::Test {
protected:
    HostWithGlut() {
        host_errors = 0;
        const auto set_error_function =
            reinterpret_cast<void (*)(void (*)(const char*, va_list))>(find("glutInitErrorFunc"));
        set_error_function(count_error);
    }

    static void* find(const char* name) {
        static void* const library = dlopen("libglut.so.3.12", RTLD_LAZY);
        return dlsym(library, name);
    }
};

TEST_F(HostWithGlut, has_no_raster_text_before_it_initializes_glut) {
    GlutText text;
    EXPECT_STREQ(text.prepare(), "the host has not called glutInit");
    EXPECT_STREQ(text.prepare(), "the host has not called glutInit");
    EXPECT_EQ(host_errors, 0);
}

TEST_F(HostWithGlut, is_told_so_once_by_the_renderer) {
    const orvex_test::GlContext context;
    LogCapture log;
    RendererOpenGL renderer;
    FontData font;
    EXPECT_FALSE(renderer.font_bitmap_linux_render(&font, 0, 0, 1.0f, 1.0f, 1.0f, 1.0f, "A", 1));
    EXPECT_FALSE(renderer.font_bitmap_linux_render(&font, 0, 0, 1.0f, 1.0f, 1.0f, 1.0f, "A", 1));
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"<!> OpenGL renderer - raster text can't be "
                                        "drawn: the host has not called glutInit"}));
}

TEST_F(HostWithGlut, keeps_its_own_error_function) {
    const orvex_test::GlContext context;
    GlutText text;
    EXPECT_NE(text.prepare(), nullptr);
    const auto draw = reinterpret_cast<void (*)(void*, int)>(find("glutBitmapCharacter"));
    draw(find("glutBitmapHelvetica12"), 'A');
    EXPECT_GT(host_errors, 0) << "GLUT still tells the host of its errors";
}

} // namespace
} // namespace orvex_test
