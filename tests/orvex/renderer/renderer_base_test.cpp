#include "orvex/renderer/renderer_base.h"

#include <gtest/gtest.h>

#include "orvex/math/vec4.h"
#include "orvex/renderer/renderer_operations.h"

namespace orvex_test {

using namespace orvex;

namespace {

// A whole back end. It has to stay below 30 lines: that is what `RendererBase` is for.
class ClearingRenderer : public RendererBase {
public:
    ClearingRenderer() {
        set_type(PLUGIN_TYPE_RENDERER);
        set_name("clearing renderer");
        set_api_name("none");
    }
    using RendererBase::clear_color_buffer;
    void clear_color_buffer(float r, float g, float b, float a) override { color = {r, g, b, a}; }

    vec4 color;
};

TEST(RendererBase, is_all_that_a_back_end_of_one_operation_needs) {
    ClearingRenderer clearing;
    Renderer& renderer = clearing;
    EXPECT_TRUE(renderer.initialize());
    EXPECT_TRUE(renderer.start());
    renderer.clear_color_buffer(0.25f, 0.5f, 0.75f, 1.0f);
    EXPECT_EQ(clearing.color.y, 0.5f);
    EXPECT_TRUE(renderer.stop());
    EXPECT_TRUE(renderer.terminate());
}

// A zero, a null or an empty value, for parameters that are references too.
template<class Value>
Value& any() {
    static Value value{};
    return value;
}

// Whether an operation gives false, null or 0 for such arguments.
template<class Owner, class Result, class... Values>
bool refuses(Owner& owner, Result (Owner::*operation)(Values...)) {
    if constexpr (std::is_void_v<Result>) {
        (owner.*operation)(any<std::decay_t<Values>>()...);
        return true;
    } else {
        return (owner.*operation)(any<std::decay_t<Values>>()...) == Result();
    }
}

TEST(RendererBase, refuses_every_plain_operation) {
    RendererBase base;
    int refused = 0;
    int operations = 0;
#define ORVEX_CALL(Result, name, parameters, arguments)                                            \
    ++operations;                                                                                  \
    if (refuses(base, static_cast<Result(RendererBase::*) parameters>(&RendererBase::name)))       \
        ++refused;                                                                                 \
    else                                                                                           \
        ADD_FAILURE() << #name;
#define ORVEX_PASS(Result, name, parameters, arguments)
    ORVEX_RENDERER_OPERATIONS(ORVEX_CALL, ORVEX_PASS)
#undef ORVEX_CALL
#undef ORVEX_PASS
    EXPECT_EQ(refused, operations);
    EXPECT_GT(operations, 200);
}

TEST(RendererBase, keeps_the_flags_of_its_life_cycle) {
    struct Flags : RendererBase {
        bool is_initialized() const { return initialized; }
        bool is_started() const { return started; }
    } renderer;
    EXPECT_TRUE(renderer.initialize());
    EXPECT_TRUE(renderer.is_initialized());
    EXPECT_TRUE(renderer.start_v2(true));
    EXPECT_TRUE(renderer.is_started());
    EXPECT_TRUE(renderer.stop());
    EXPECT_FALSE(renderer.is_started());
    EXPECT_TRUE(renderer.terminate());
    EXPECT_FALSE(renderer.is_initialized());
}

TEST(RendererBase, gives_back_both_matrices) {
    RendererBase renderer;
    mat4 projection;
    projection.m[5] = 2.0f;
    mat4 view;
    view.m[12] = 3.0f;
    renderer.set_projection_matrix(projection, true);
    renderer.set_view_matrix(view, false);
    EXPECT_EQ(renderer.get_projection_matrix().m[5], 2.0f);
    EXPECT_EQ(renderer.get_view_matrix().m[12], 3.0f);
}

TEST(RendererBase, reads_an_empty_viewport_whatever_was_set) {
    RendererBase renderer;
    renderer.set_viewport(1, 2, 3, 4);
    int x = -1;
    int height = -1;
    renderer.get_viewport(&x, nullptr, nullptr, &height);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(height, 0);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(renderer.get_viewport_ptr()[i], 0);
    renderer.get_viewport_ptr()[2] = 7;
    EXPECT_EQ(renderer.get_viewport_ptr()[2], 0);

    int size = -1;
    int width = -1;
    renderer.get_color_buffer_size(nullptr, &width, nullptr);
    EXPECT_EQ(width, -1);
    renderer.get_color_buffer_size(&size, &width, nullptr);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(width, 0);
}

TEST(RendererBase, knows_no_version_and_no_program) {
    RendererBase renderer;
    int major = -1;
    EXPECT_FALSE(renderer.get_opengl_version(&major, nullptr));
    EXPECT_EQ(major, -1);
    EXPECT_EQ(renderer.get_api_version_major(), 0);
    EXPECT_EQ(renderer.get_api_version_minor(), 0);
    EXPECT_FALSE(renderer.gpu_program_activate(nullptr));
    EXPECT_FALSE(renderer.gpu_program_deactivate(nullptr));
    EXPECT_EQ(renderer.gpu_program_get_active_program(), nullptr);
    EXPECT_EQ(renderer.gpu_program_get_vertex_attrib_location(nullptr, "a"), -1);
    EXPECT_EQ(renderer.gpu_program_get_uniform_location(nullptr, "a"), -1);
}

} // namespace

} // namespace orvex_test
