#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/started_renderer.h"

namespace orvex_test {

using namespace orvex;
namespace {

class RendererOpenGLFrame : public StartedRendererTest {};
ORVEX_BOTH_PROFILES(RendererOpenGLFrame);

TEST_P(RendererOpenGLFrame, records_matrices_without_touching_the_api) {
    mat4 projection;
    projection.ptr()[5] = 3.0f;
    mat4 view;
    view.ptr()[12] = 4.0f;
    renderer->set_projection_matrix(projection, false);
    renderer->set_view_matrix(view, false);
    EXPECT_TRUE(recorder->calls().empty());
    projection.ptr()[5] = 0.0f;
    EXPECT_EQ(renderer->get_projection_matrix().ptr()[5], 3.0f);
    EXPECT_EQ(renderer->get_view_matrix().ptr()[12], 4.0f);
    renderer->get_view_matrix().ptr()[12] = 5.0f;
    EXPECT_EQ(renderer->get_view_matrix().ptr()[12], 5.0f) << "a reference to the stored matrix";
}

TEST_P(RendererOpenGLFrame, reads_the_viewport_back) {
    renderer->set_viewport(1, 2, 30, 40);
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    renderer->get_viewport(&x, &y, &width, &height);
    EXPECT_EQ(x, 1);
    EXPECT_EQ(y, 2);
    EXPECT_EQ(width, 30);
    EXPECT_EQ(height, 40);
    renderer->get_viewport(nullptr, nullptr, &width, nullptr);
    EXPECT_EQ(width, 30);
    renderer->get_viewport(nullptr, nullptr, nullptr, nullptr);
    int* const viewport = renderer->get_viewport_ptr();
    EXPECT_EQ(viewport[0], 1);
    EXPECT_EQ(viewport[3], 40);
    renderer->set_viewport(5, 6, 7, 8);
    EXPECT_EQ(viewport[0], 1) << "changes with the next call only";
    EXPECT_EQ(renderer->get_viewport_ptr(), viewport);
    EXPECT_EQ(viewport[0], 5);
    EXPECT_EQ(viewport[2], 7);
}

TEST(RendererOpenGLWithoutContext, reads_zeros_as_viewport) {
    RendererOpenGL renderer;
    int values[4] = {7, 7, 7, 7};
    renderer.get_viewport(&values[0], &values[1], &values[2], &values[3]);
    for (const int value : values)
        EXPECT_EQ(value, 0);
    EXPECT_EQ(renderer.get_viewport_ptr()[2], 0);
}

// Reading the frame.

TEST_P(RendererOpenGLFrame, tells_the_size_of_the_colour_buffer) {
    renderer->set_viewport(10, 20, 30, 40);
    int size = 0;
    int width = 0;
    int height = 0;
    renderer->get_color_buffer_size(&size, &width, &height);
    EXPECT_EQ(size, 30 * 40 * 4);
    EXPECT_EQ(width, 30);
    EXPECT_EQ(height, 40);
    renderer->get_color_buffer_size(&size, nullptr, nullptr);
    EXPECT_EQ(size, 30 * 40 * 4);
    width = 7;
    renderer->get_color_buffer_size(nullptr, &width, &height);
    EXPECT_EQ(width, 7) << "without a place for the size nothing is written";
}

TEST_P(RendererOpenGLFrame, reads_the_frame_bottom_row_first_and_without_padding) {
    renderer->set_scissor_state(true);
    renderer->set_scissor(0, 0, 256, 1);
    renderer->clear_color_buffer(1.0f, 0.0f, 0.0f, 1.0f);
    renderer->set_scissor(0, 1, 256, 255);
    renderer->clear_color_buffer(0.0f, 1.0f, 0.0f, 0.0f);
    renderer->set_scissor_state(false);
    renderer->set_viewport(100, 100, 3, 2);
    recorder->clear();
    std::vector<unsigned char> pixels(3 * 2 * 4 + 1, 77);
    renderer->get_color_buffer(pixels.data());
    EXPECT_EQ(
        recorder->take(),
        GlCalls({"glPixelStorei(GL_PACK_ALIGNMENT, 1)", "glPixelStorei(GL_PACK_ROW_LENGTH, 0)",
                 "glPixelStorei(GL_PACK_SKIP_ROWS, 0)", "glPixelStorei(GL_PACK_SKIP_PIXELS, 0)",
                 "glPixelStorei(GL_UNPACK_ALIGNMENT, 4)", "glGetIntegerv(GL_VIEWPORT, ptr)",
                 "glReadBuffer(GL_BACK)",
                 "glReadPixels(0, 0, 3, 2, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"}));
    const std::vector<unsigned char> expected = {255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 255, 0,
                                                 255, 0, 0, 0,   255, 0, 0, 0,   255, 0, 0, 77};
    EXPECT_EQ(pixels, expected);
}

TEST_P(RendererOpenGLFrame, reads_nothing_into_null) {
    renderer->get_color_buffer(nullptr);
    EXPECT_TRUE(recorder->calls().empty());
}

// Targets, pools and polylines that aren't there.

} // namespace
} // namespace orvex_test
