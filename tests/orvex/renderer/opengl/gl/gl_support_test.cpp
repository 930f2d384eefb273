#include "orvex/renderer/opengl/gl/private/gl_support.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/gl/private/gl_function_table.h"

namespace orvex_test {

using namespace orvex;
namespace {

#define ORVEX_GL_NAME(result, name, parameters, support) #name,
const std::vector<std::string> all_names = {ORVEX_GL_FUNCTIONS(ORVEX_GL_NAME)};
#undef ORVEX_GL_NAME

GlCapabilities version(int major, int minor, bool compatibility = true) {
    GlCapabilities capabilities;
    capabilities.major = major;
    capabilities.minor = minor;
    capabilities.compatibility = compatibility;
    return capabilities;
}

int count_served(const GlCapabilities& capabilities) {
    int count = 0;
    for (const std::string& name : all_names)
        count += choose_gl_entry(name.c_str(), capabilities).empty() ? 0 : 1;
    return count;
}

TEST(GlSupport, knows_126_names) {
    EXPECT_EQ(all_names.size(), 126U);
    EXPECT_TRUE(is_gl_table_name("glBindBuffer"));
    EXPECT_FALSE(is_gl_table_name("glEnable"));
    EXPECT_FALSE(is_gl_table_name("glSwapAPPLE"));
    EXPECT_FALSE(is_gl_table_name(""));
    EXPECT_EQ(choose_gl_entry("glEnable", version(4, 6)), "");
}

TEST(GlSupport, grows_with_the_version) {
    struct Row {
        int major;
        int minor;
        int served;
    };
    const Row rows[] = {{1, 1, 0},   {1, 2, 1},   {1, 3, 4},   {1, 4, 5},  {1, 5, 14}, {2, 0, 60},
                        {2, 1, 60},  {3, 0, 91},  {3, 1, 96},  {3, 2, 97}, {3, 3, 98}, {4, 0, 106},
                        {4, 1, 106}, {4, 2, 108}, {4, 3, 110}, {4, 6, 110}};
    for (const Row& row : rows) {
        EXPECT_EQ(count_served(version(row.major, row.minor)), row.served)
            << row.major << '.' << row.minor;
    }
    EXPECT_EQ(count_served(version(0, 0)), 0);
}

TEST(GlSupport, leaves_out_what_only_the_fixed_pipeline_has) {
    EXPECT_EQ(choose_gl_entry("glClientActiveTexture", version(2, 1)), "glClientActiveTexture");
    EXPECT_EQ(choose_gl_entry("glClientActiveTexture", version(4, 5, false)), "");
    EXPECT_EQ(count_served(version(4, 6, false)), 109);
}

struct Choice {
    const char* name;
    GlCapabilities context;
    const char* extension;
    const char* served;
};

TEST(GlSupport, takes_extensions_where_the_version_is_too_low) {
    const Choice rows[] = {
        {"glBlendEquation", version(1, 3), "GL_ARB_imaging", "glBlendEquation"},
        {"glGenBuffers", version(1, 4), "GL_ARB_vertex_buffer_object", "glGenBuffersARB"},
        {"glGetBufferParameteriv", version(1, 4), "GL_ARB_vertex_buffer_object",
         "glGetBufferParameterivARB"},
        {"glBindBufferBase", version(2, 1), "GL_ARB_uniform_buffer_object", "glBindBufferBase"},
        {"glGetIntegeri_v", version(2, 1), "GL_ARB_uniform_buffer_object", "glGetIntegeri_v"},
        {"glMapBufferRange", version(2, 1), "GL_ARB_map_buffer_range", "glMapBufferRange"},
        {"glFlushMappedBufferRange", version(2, 1), "GL_ARB_map_buffer_range",
         "glFlushMappedBufferRange"},
        {"glBlitFramebuffer", version(2, 1), "GL_ARB_framebuffer_object", "glBlitFramebuffer"},
        {"glGenerateMipmap", version(2, 1), "GL_ARB_framebuffer_object", "glGenerateMipmap"},
        {"glGenVertexArrays", version(2, 1), "GL_ARB_vertex_array_object", "glGenVertexArrays"},
        {"glUniform4ui", version(2, 1), "GL_EXT_gpu_shader4", "glUniform4uiEXT"},
        {"glVertexAttribIPointer", version(2, 1), "GL_EXT_gpu_shader4",
         "glVertexAttribIPointerEXT"},
        {"glUniformBlockBinding", version(3, 0), "GL_ARB_uniform_buffer_object",
         "glUniformBlockBinding"},
        {"glDrawArraysInstancedARB", version(2, 1), "GL_ARB_draw_instanced",
         "glDrawArraysInstancedARB"},
        {"glDrawElementsInstancedARB", version(2, 1), "GL_EXT_draw_instanced",
         "glDrawElementsInstancedEXT"},
        {"glVertexAttribDivisorARB", version(2, 1), "GL_ARB_instanced_arrays",
         "glVertexAttribDivisorARB"},
        {"glTexImage2DMultisample", version(3, 1), "GL_ARB_texture_multisample",
         "glTexImage2DMultisample"},
        {"glUniform3dv", version(3, 3), "GL_ARB_gpu_shader_fp64", "glUniform3dv"},
        {"glBindImageTexture", version(4, 1), "GL_ARB_shader_image_load_store",
         "glBindImageTexture"},
        {"glDispatchComputeIndirect", version(4, 2), "GL_ARB_compute_shader",
         "glDispatchComputeIndirect"},
        {"glMakeTextureHandleResidentARB", version(4, 5), "GL_ARB_bindless_texture",
         "glMakeTextureHandleResidentARB"},
    };
    for (const Choice& row : rows) {
        GlCapabilities context = row.context;
        EXPECT_EQ(choose_gl_entry(row.name, context), "") << row.name;
        context.extensions.insert("GL_EXT_something_else");
        EXPECT_EQ(choose_gl_entry(row.name, context), "") << row.name;
        context.extensions.insert(row.extension);
        EXPECT_EQ(choose_gl_entry(row.name, context), row.served) << row.name;
    }
}

TEST(GlSupport, has_no_extension_for_some) {
    GlCapabilities context = version(2, 1);
    context.extensions = {"GL_ARB_shader_objects", "GL_EXT_framebuffer_object",
                          "GL_ARB_vertex_shader"};
    for (const char* name : {"glClearBufferfv", "glGetStringi", "glBindFramebuffer"})
        EXPECT_EQ(choose_gl_entry(name, context), "") << name;
    context.major = 1;
    context.minor = 5;
    EXPECT_EQ(choose_gl_entry("glCreateShader", context), "");
}

// A name with a suffix prefers the extension it belongs to; a plain name prefers the version.
TEST(GlSupport, chooses_the_best_of_several_sources) {
    GlCapabilities context = version(3, 3);
    EXPECT_EQ(choose_gl_entry("glDrawArraysInstancedARB", context), "glDrawArraysInstanced");
    EXPECT_EQ(choose_gl_entry("glDrawElementsInstancedARB", context), "glDrawElementsInstanced");
    EXPECT_EQ(choose_gl_entry("glVertexAttribDivisorARB", context), "glVertexAttribDivisor");
    context.extensions = {"GL_EXT_draw_instanced", "GL_EXT_gpu_shader4",
                          "GL_ARB_vertex_buffer_object"};
    EXPECT_EQ(choose_gl_entry("glDrawArraysInstancedARB", context), "glDrawArraysInstanced");
    EXPECT_EQ(choose_gl_entry("glUniform1ui", context), "glUniform1ui");
    EXPECT_EQ(choose_gl_entry("glBindBuffer", context), "glBindBuffer");
    context.extensions.insert("GL_ARB_draw_instanced");
    context.extensions.insert("GL_ARB_instanced_arrays");
    EXPECT_EQ(choose_gl_entry("glDrawArraysInstancedARB", context), "glDrawArraysInstancedARB");
    EXPECT_EQ(choose_gl_entry("glVertexAttribDivisorARB", context), "glVertexAttribDivisorARB");
}

} // namespace
} // namespace orvex_test
