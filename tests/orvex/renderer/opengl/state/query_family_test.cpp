#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/started_renderer.h"

namespace orvex_test {

using namespace orvex;
namespace {

class RendererOpenGLQueries : public StartedRendererTest {};
ORVEX_BOTH_PROFILES(RendererOpenGLQueries);

struct Limit {
    const char* name;
    GLenum constant;
    int (Renderer::*query)();
};

#define ORVEX_LIMIT(constant, query)                                                               \
    { #constant, constant, &Renderer::query }

const Limit limits[] = {
    ORVEX_LIMIT(GL_MAX_TEXTURE_IMAGE_UNITS, get_max_texture_units),
    ORVEX_LIMIT(GL_MAX_TEXTURE_SIZE, get_max_texture_size),
    ORVEX_LIMIT(GL_MAX_TEXTURE_SIZE, get_GL_MAX_TEXTURE_SIZE),
    ORVEX_LIMIT(GL_MAX_VERTEX_ATTRIBS, get_max_vertex_attribs),
    ORVEX_LIMIT(GL_MAX_ATOMIC_COUNTER_BUFFER_SIZE, get_max_atomic_counter_buffer_size),
    ORVEX_LIMIT(GL_MAX_COMBINED_ATOMIC_COUNTER_BUFFERS, get_max_combined_atomic_counter_buffers),
    ORVEX_LIMIT(GL_MAX_COMBINED_ATOMIC_COUNTERS, get_max_combined_atomic_counters),
    ORVEX_LIMIT(GL_MAX_VERTEX_ATOMIC_COUNTERS, get_max_vertex_atomic_counters),
    ORVEX_LIMIT(GL_MAX_GEOMETRY_ATOMIC_COUNTERS, get_max_geometry_atomic_counters),
    ORVEX_LIMIT(GL_MAX_FRAGMENT_ATOMIC_COUNTERS, get_max_fragment_atomic_counters),
    ORVEX_LIMIT(GL_MAX_TESS_CONTROL_ATOMIC_COUNTERS, get_max_tess_control_atomic_counters),
    ORVEX_LIMIT(GL_MAX_TESS_EVALUATION_ATOMIC_COUNTERS, get_max_tess_eval_atomic_counters),
    ORVEX_LIMIT(GL_MAX_COMPUTE_ATOMIC_COUNTERS, get_max_compute_atomic_counters),
    ORVEX_LIMIT(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS),
    ORVEX_LIMIT(GL_MAX_VIEWPORT_DIMS, get_GL_MAX_VIEWPORT_DIMS),
    ORVEX_LIMIT(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS, get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS),
    ORVEX_LIMIT(GL_MAX_COLOR_ATTACHMENTS, get_GL_MAX_COLOR_ATTACHMENTS),
    ORVEX_LIMIT(GL_MAX_SAMPLES, get_GL_MAX_SAMPLES),
};

TEST_P(RendererOpenGLQueries, ask_the_api_for_each_limit_at_each_call) {
    for (const Limit& limit : limits) {
        GLint expected[4] = {};
        {
            const GlRecorderPause pause(*recorder);
            glGetIntegerv(limit.constant, expected);
        }
        for (int times = 0; times < 2; ++times) {
            EXPECT_EQ((renderer.get()->*limit.query)(), expected[0]) << limit.name;
            EXPECT_EQ(recorder->take(),
                      GlCalls({"glGetIntegerv(" + std::string(limit.name) + ", ptr)"}));
        }
        EXPECT_NO_GL_ERROR();
        recorder->clear();
    }
}

TEST(RendererOpenGLQueriesWithoutContext, give_zeros) {
    RendererOpenGL renderer;
    for (const Limit& limit : limits)
        EXPECT_EQ((renderer.*limit.query)(), 0) << limit.name;
    EXPECT_EQ(renderer.get_max_texture_anisotropy(), 0.0f);
    EXPECT_EQ(renderer.get_gpu_memory_total_available_kb_nv(), 0U);
    EXPECT_EQ(renderer.get_gpu_free_texture_memory_amd(), 0U);
    EXPECT_EQ(renderer.get_renderer_model(), nullptr);
    EXPECT_EQ(renderer.get_renderer_vendor(), nullptr);
    EXPECT_EQ(renderer.get_shading_language_version(), nullptr);
    EXPECT_EQ(renderer.get_renderer_gl_extensions_raw_string(), nullptr);
    EXPECT_FALSE(renderer.is_geometry_instancing_supported());
    int x = 7;
    EXPECT_FALSE(renderer.get_GL_MAX_COMPUTE_WORK_GROUP_COUNT(&x, nullptr, nullptr));
    EXPECT_FALSE(renderer.get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(nullptr, &x, nullptr));
    EXPECT_EQ(x, 7);
}

TEST_P(RendererOpenGLQueries, identify_the_driver) {
    struct Row {
        GLenum constant;
        const char* (Renderer::*query)();
        const char* call;
    };
    const Row rows[] = {
        {GL_RENDERER, &Renderer::get_renderer_model, "glGetString(GL_RENDERER)"},
        {GL_VENDOR, &Renderer::get_renderer_vendor, "glGetString(GL_VENDOR)"},
        {GL_VERSION, &Renderer::get_api_version, "glGetString(GL_VERSION)"},
        {GL_SHADING_LANGUAGE_VERSION, &Renderer::get_shading_language_version,
         "glGetString(GL_SHADING_LANGUAGE_VERSION)"},
    };
    for (const Row& row : rows) {
        const std::string expected = reinterpret_cast<const char*>(glGetString(row.constant));
        recorder->clear();
        EXPECT_EQ((renderer.get()->*row.query)(), expected);
        EXPECT_EQ(recorder->take(), GlCalls({row.call}));
    }
}

TEST_P(RendererOpenGLQueries, give_the_extension_text_where_there_is_one) {
    const bool core = is_core_context();
    recorder->clear();
    const char* const text = renderer->get_renderer_gl_extensions_raw_string();
    EXPECT_EQ(recorder->take(), GlCalls({"glGetString(GL_EXTENSIONS)"}));
    if (core) {
        EXPECT_EQ(text, nullptr);
        EXPECT_GL_ERROR(GL_INVALID_ENUM);
    } else {
        ASSERT_NE(text, nullptr);
        EXPECT_NE(std::string(text).find("GL_ARB_multitexture"), std::string::npos);
    }
}

TEST_P(RendererOpenGLQueries, read_the_version_through_the_pointers_that_are_given) {
    GLint expected_major = 0;
    GLint expected_minor = 0;
    glGetIntegerv(GL_MAJOR_VERSION, &expected_major);
    glGetIntegerv(GL_MINOR_VERSION, &expected_minor);
    int major = 0;
    int minor = -1;
    EXPECT_TRUE(renderer->get_opengl_version(&major, &minor));
    EXPECT_EQ(major, expected_major);
    EXPECT_EQ(minor, expected_minor);
    EXPECT_EQ(renderer->get_api_version_major(), expected_major);
    EXPECT_EQ(renderer->get_api_version_minor(), expected_minor);
    major = 0;
    EXPECT_TRUE(renderer->get_opengl_version(&major, nullptr));
    EXPECT_EQ(major, expected_major);
    minor = -1;
    EXPECT_TRUE(renderer->get_opengl_version(nullptr, &minor));
    EXPECT_EQ(minor, expected_minor);
    EXPECT_TRUE(renderer->get_opengl_version(nullptr, nullptr));
}

TEST_P(RendererOpenGLQueries, answer_the_version_of_the_start_from_memory) {
    renderer->get_api_version_major();
    renderer->get_api_version_minor();
    EXPECT_TRUE(recorder->calls().empty());
}

TEST_P(RendererOpenGLQueries, take_one_error_at_a_time) {
    EXPECT_EQ(renderer->get_opengl_error(), 0U);
    glEnable(0xFFFF);
    EXPECT_EQ(renderer->get_opengl_error(), static_cast<unsigned int>(GL_INVALID_ENUM));
    EXPECT_EQ(renderer->get_opengl_error(), 0U);
}

TEST_P(RendererOpenGLQueries, read_the_anisotropy_as_a_float) {
    GLfloat expected = 0.0f;
    glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &expected);
    recorder->clear();
    EXPECT_EQ(renderer->get_max_texture_anisotropy(), expected);
    EXPECT_EQ(recorder->take(), GlCalls({"glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, ptr)"}));
}

TEST_P(RendererOpenGLQueries, need_both_entries_for_instancing) {
    EXPECT_TRUE(renderer->is_geometry_instancing_supported());
    const auto divisor = renderer->gl.glVertexAttribDivisorARB;
    renderer->gl.glVertexAttribDivisorARB = nullptr;
    EXPECT_FALSE(renderer->is_geometry_instancing_supported());
    renderer->gl.glVertexAttribDivisorARB = divisor;
    renderer->gl.glDrawElementsInstancedARB = nullptr;
    EXPECT_FALSE(renderer->is_geometry_instancing_supported());
}

struct WorkGroups {
    const char* name;
    GLenum constant;
    bool (Renderer::*query)(int*, int*, int*);
};

const WorkGroups work_groups[] = {
    {"GL_MAX_COMPUTE_WORK_GROUP_COUNT", GL_MAX_COMPUTE_WORK_GROUP_COUNT,
     &Renderer::get_GL_MAX_COMPUTE_WORK_GROUP_COUNT},
    {"GL_MAX_COMPUTE_WORK_GROUP_SIZE", GL_MAX_COMPUTE_WORK_GROUP_SIZE,
     &Renderer::get_GL_MAX_COMPUTE_WORK_GROUP_SIZE},
};

TEST_P(RendererOpenGLQueries, read_work_groups_in_three_directions) {
    for (const WorkGroups& row : work_groups) {
        GLint expected[3] = {};
        for (GLuint i = 0; i < 3; ++i)
            renderer->gl.glGetIntegeri_v(row.constant, i, &expected[i]);
        recorder->clear();
        int x = 0;
        int y = 0;
        int z = 0;
        EXPECT_TRUE((renderer.get()->*row.query)(&x, &y, &z));
        const std::string call = "glGetIntegeri_v(" + std::string(row.name) + ", ";
        EXPECT_EQ(recorder->take(),
                  GlCalls({call + "0, ptr)", call + "1, ptr)", call + "2, ptr)"}));
        EXPECT_EQ(x, expected[0]);
        EXPECT_EQ(y, expected[1]);
        EXPECT_EQ(z, expected[2]);
        EXPECT_GT(x, 0);
        y = 0;
        EXPECT_TRUE((renderer.get()->*row.query)(nullptr, &y, nullptr));
        EXPECT_EQ(y, expected[1]);
        EXPECT_TRUE((renderer.get()->*row.query)(nullptr, nullptr, nullptr));
    }
}

void APIENTRY refuse_indexed_query(GLenum, GLuint, GLint*) {}

TEST_P(RendererOpenGLQueries, give_zeros_when_only_compute_is_missing) {
    renderer->gl.glGetIntegeri_v = refuse_indexed_query;
    for (const WorkGroups& row : work_groups) {
        int x = 7;
        int y = 7;
        int z = 7;
        EXPECT_TRUE((renderer.get()->*row.query)(&x, &y, &z));
        EXPECT_EQ(x + y + z, 0);
    }
}

TEST_P(RendererOpenGLQueries, fail_for_work_groups_without_indexed_queries) {
    renderer->gl.glGetIntegeri_v = nullptr;
    for (const WorkGroups& row : work_groups) {
        int x = 7;
        EXPECT_FALSE((renderer.get()->*row.query)(&x, &x, &x));
        EXPECT_EQ(x, 7);
    }
}

// The vendors' extensions differ by driver: what is fixed is the number asked for, and that an
// error means 0.
TEST_P(RendererOpenGLQueries, ask_vendor_memory_by_number) {
    struct Row {
        GLenum constant;
        unsigned int (Renderer::*query)();
        const char* call;
    };
    const Row rows[] = {
        {36936, &Renderer::get_gpu_memory_total_available_kb_nv, "(0x9048, ptr)"},
        {36937, &Renderer::get_gpu_memory_current_available_kb_nv, "(0x9049, ptr)"},
        {34814, &Renderer::get_gpu_total_physical_memory_amd, "(0x87FE, ptr)"},
        {34812, &Renderer::get_gpu_free_texture_memory_amd, "(GL_TEXTURE_FREE_MEMORY_ATI, ptr)"},
        {34811, &Renderer::get_gpu_free_vbo_memory_amd, "(GL_VBO_FREE_MEMORY_ATI, ptr)"},
        {34813, &Renderer::get_gpu_free_renderbuffer_memory_amd,
         "(GL_RENDERBUFFER_FREE_MEMORY_ATI, ptr)"},
    };
    for (const Row& row : rows) {
        recorder->clear();
        const unsigned int value = (renderer.get()->*row.query)();
        const GlCalls calls = recorder->take();
        ASSERT_EQ(calls.size(), 1U);
        if (renderer->get_opengl_error() != 0)
            EXPECT_EQ(value, 0U) << row.constant;
        EXPECT_EQ(calls[0].substr(0, 13), "glGetIntegerv");
        EXPECT_TRUE(calls[0].substr(13) == row.call ||
                    calls[0].find("_NVX, ptr)") != std::string::npos)
            << calls[0];
    }
}

class CountsMemory : public RendererOpenGL {
public:
    unsigned int get_gpu_memory_total_available_kb_nv() override { return 5000; }
    unsigned int get_gpu_memory_current_available_kb_nv() override { return 1200; }
    unsigned int get_gpu_free_texture_memory_amd() override { return 1000; }
};

TEST(RendererOpenGLMemory, is_what_is_not_free) {
    CountsMemory renderer;
    EXPECT_EQ(renderer.get_gpu_memory_usage_kb_nv(), 3800U);
    EXPECT_EQ(renderer.get_num_gpus_amd(), 0U);
    EXPECT_EQ(renderer.get_gpu_memory_total_available_kb_amd(0), 0U);
    EXPECT_EQ(renderer.get_gpu_memory_total_available_kb_amd(3), 0U);
    EXPECT_EQ(renderer.get_gpu_memory_usage_kb_amd(), 4294966296U) << "wraps around";
}

} // namespace
} // namespace orvex_test
