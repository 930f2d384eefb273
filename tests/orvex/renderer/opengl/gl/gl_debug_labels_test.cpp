#include <cstring>
#include <string>

#include "gl_debug_fixture.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/geometry/shapes/mesh_quad.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/records/uniform_buffer_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "orvex/renderer/render_target.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr const char* program_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
uniform Numbers { vec4 offset; };
void main() { gl_Position = orvex_Position + offset; }
[Pixel_Shader]
#version 150
out vec4 pixel;
void main() { pixel = vec4(1.0); }
)";

TEST(DebugNames, are_the_innermost_and_come_back) {
    EXPECT_EQ(DebugName::current(), nullptr);
    DebugName::want();
    {
        const DebugName outer("outer");
        EXPECT_STREQ(DebugName::current(), "outer");
        {
            const Node node;
            const DebugName inner(node);
            EXPECT_STREQ(DebugName::current(), node.get_name());
        }
        EXPECT_STREQ(DebugName::current(), "outer");
    }
    EXPECT_EQ(DebugName::current(), nullptr);
}

/// A renderer that labels, on a context of each profile.
class GlLabels : public GlTest, protected RecordedRenderer {
protected:
    void SetUp() override {
        GlTest::SetUp();
        start();
        program->set_name("plain");
        ASSERT_TRUE(
            program->load_from_memory(renderer.get(), program_text, std::strlen(program_text)));
    }

    void TearDown() override {
        program->kill(renderer.get(), nullptr);
        renderer.reset();
        recorder.reset();
        GlTest::TearDown();
    }

    void use_program() { ASSERT_TRUE(program->bind(renderer.get())); }

    GpuProgramData* program_data() {
        use_program();
        return renderer->gpu_program_get_active_program();
    }

    DebugEnvironment environment{"1"};
    GpuProgram* program = new GpuProgram;
};
ORVEX_BOTH_PROFILES(GlLabels);

TEST_P(GlLabels, name_programs_their_shaders_and_uniform_blocks) {
    const GpuProgramData* const data = program_data();
    EXPECT_EQ(gl_label(GL_PROGRAM, data->gl_program), "plain (program)");
    EXPECT_EQ(gl_label(GL_SHADER, data->shader_ids[GPU_SHADER_VERTEX]), "plain (Vertex shader)");
    EXPECT_EQ(gl_label(GL_SHADER, data->shader_ids[GPU_SHADER_PIXEL]), "plain (Pixel shader)");
    ASSERT_TRUE(program->ub_init(renderer.get(), "Numbers"));
    EXPECT_EQ(gl_label(GL_BUFFER, data->uniform_buffer->buffer), "plain (uniforms)");
    EXPECT_EQ(recorder->count("glObjectLabel"), 4);
    EXPECT_TRUE(program->ub_cleanup(renderer.get()));
}

TEST_P(GlLabels, name_a_program_that_is_made_anew) {
    GpuProgramData* const data = program_data();
    renderer->gpu_program_recreate_program(data);
    EXPECT_EQ(gl_label(GL_PROGRAM, data->gl_program), "program") << "no node stands behind it";
    const char* const pixel = "#version 150\nout vec4 p;\nvoid main() { p = vec4(0.5); }";
    const DebugName name("again");
    ASSERT_TRUE(
        renderer->gpu_program_update_shader(data, GPU_SHADER_PIXEL, pixel, std::strlen(pixel)));
    EXPECT_EQ(gl_label(GL_SHADER, data->shader_ids[GPU_SHADER_PIXEL]), "again (Pixel shader)");
}

/// A quad in either layout, with an instance and quad edges.
Mesh* make_mesh(bool separate) {
    MeshQuad* const mesh = new MeshQuad;
    mesh->set_name("teapot");
    mesh->set_vertex_alloc_params(separate, 0);
    mesh->build(nullptr);
    mesh->set_use_fixed_mvp_matrices_state(false, nullptr);
    return mesh;
}

TEST_P(GlLabels, name_the_buffers_of_meshes) {
    use_program();
    for (const bool separate : {false, true}) {
        Mesh* const mesh = make_mesh(separate);
        mesh->render(renderer.get(), nullptr);
        const MeshData& data = *mesh->get_mesh_data();
        EXPECT_EQ(gl_label(GL_BUFFER, data.vertex_buffer_id), "teapot (vertices)");
        EXPECT_EQ(gl_label(GL_BUFFER, data.index_buffer_id), "teapot (faces)");
        EXPECT_EQ(gl_label(GL_VERTEX_ARRAY, data.vertex_array_id), "teapot (vertex array)");
        recorder->clear();
        mesh->render(renderer.get(), nullptr);
        EXPECT_EQ(recorder->count("glObjectLabel"), 0) << "only what is new";
        mesh->kill(renderer.get(), nullptr);
    }
}

TEST_P(GlLabels, name_the_quad_edges_and_instances_of_meshes) {
    use_program();
    MeshData data;
    data.num_instances = 1;
    const DebugName name("grid");
    ASSERT_TRUE(data.alloc_vertex_data(4));
    data.instance_positions.data = new vec4[1];
    data.instance_positions.num_elements = 1;
    data.render_wireframe_quad = true;
    data.num_quad_edges = 8;
    data.quad_edges = new unsigned int[8]{0, 1, 1, 2, 2, 3, 3, 0};
    ASSERT_TRUE(renderer->vertex_buffer_prepare(&data));
    renderer->vertex_buffer_finish(&data);
    EXPECT_EQ(gl_label(GL_BUFFER, data.quad_edge_buffer_id), "grid (quad edges)");
    EXPECT_EQ(gl_label(GL_BUFFER, data.instance_buffer_id), "grid (instances)");
    renderer->vertex_buffer_kill(&data);
}

TEST_P(GlLabels, name_lines_and_points) {
    use_program();
    Polyline* const line = new Polyline;
    line->set_name("path");
    line->initialize(2, LINE_RENDER_MODE_LINES);
    line->set_use_fixed_mvp_matrices_state(false, nullptr);
    line->render(renderer.get(), nullptr);
    EXPECT_EQ(gl_label(GL_BUFFER, line->get_polyline_data()->vertex_buffer_id), "path (vertices)");
    EXPECT_EQ(gl_label(GL_VERTEX_ARRAY, line->get_polyline_data()->vertex_array_id),
              "path (vertex array)");
    VertexPool* const pool = new VertexPool;
    pool->set_name("stars");
    pool->init_pool(2, false);
    pool->set_use_fixed_mvp_matrices_state(false, nullptr);
    pool->render(renderer.get(), nullptr);
    EXPECT_EQ(gl_label(GL_BUFFER, pool->get_vertex_pool_data()->vertex_buffer_id),
              "stars (vertices)");
    ASSERT_TRUE(pool->shader_storage_init(renderer.get(), BUFFER_USAGE_DYNAMIC_DRAW));
    EXPECT_EQ(gl_label(GL_BUFFER, pool->get_vertex_pool_data()->vertex_buffer_id),
              "stars (storage)");
    pool->shader_storage_cleanup(renderer.get());
    pool->kill(renderer.get(), nullptr);
    line->kill(renderer.get(), nullptr);
    forget_gl_errors(); // point sprites, in a core context
}

TEST_P(GlLabels, name_textures) {
    TextureMgr* const textures = TextureMgr::get();
    for (const bool by_manager : {false, true}) {
        Texture* const texture = textures->create_texture_2d(4, 4, PF_RGBA_U8);
        texture->set_name("logo");
        ASSERT_TRUE(by_manager ? textures->upload_to_renderer(renderer.get(), texture, 0)
                               : texture->upload(renderer.get()));
        EXPECT_EQ(gl_label(GL_TEXTURE, texture->get_data_ptr()->opengl_texture_id),
                  "logo (texture)");
        textures->release_texture(renderer.get(), texture, nullptr);
    }
}

TEST_P(GlLabels, name_the_parts_of_render_targets) {
    RenderTarget* const target = renderer->create_render_target();
    const std::string name = "render target " + std::to_string(target->get_id());
    ASSERT_TRUE(target->create_target_v2(8, 8, PF_RGBA_U8, 2, false, true, true, 0));
    EXPECT_EQ(gl_label(GL_FRAMEBUFFER, target->get_fbo()), name + " (framebuffer)");
    EXPECT_EQ(gl_label(GL_TEXTURE, target->get_color_tex_id_opengl(0)), name + " (color 0)");
    EXPECT_EQ(gl_label(GL_TEXTURE, target->get_color_tex_id_opengl(1)), name + " (color 1)");
    EXPECT_EQ(gl_label(GL_TEXTURE, target->get_depth_tex_id_opengl()), name + " (depth)");
    ASSERT_TRUE(target->create_target_depth(8, 8, true, false));
    EXPECT_EQ(gl_label(GL_TEXTURE, target->get_depth_tex_id_opengl()), name + " (depth)");
    recorder->clear();
    ASSERT_TRUE(target->create_render_buffer_target(8, 8, PF_RGBA_U8, false, 1, false, 0));
    EXPECT_EQ(gl_label(GL_FRAMEBUFFER, target->get_fbo()), name + " (framebuffer)");
    EXPECT_EQ(recorder->count("glObjectLabel"), 3) << "two render buffers, one framebuffer";
    renderer->kill_render_target(target);
    forget_gl_errors(); // clamping, in a core context
}

TEST_P(GlLabels, name_buffers_of_no_node_by_their_use) {
    const unsigned int vertices = renderer->vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW);
    const unsigned int storage =
        renderer->shader_storage_buffer_create(16, BUFFER_USAGE_STATIC_DRAW, nullptr);
    const unsigned int counters =
        renderer->atomic_counter_create_buffer(1, BUFFER_USAGE_STATIC_DRAW, 0, nullptr);
    EXPECT_EQ(gl_label(GL_BUFFER, vertices), "vertex buffer");
    EXPECT_EQ(gl_label(GL_BUFFER, storage), "storage");
    EXPECT_EQ(gl_label(GL_BUFFER, counters), "counters");
    renderer->vertex_buffer_kill(vertices);
    renderer->shader_storage_buffer_kill(storage);
    renderer->atomic_counter_kill_buffer(counters);
}

TEST_P(GlLabels, cut_long_names_and_keep_the_use) {
    const std::string long_name(1000, 'n');
    const DebugName name(long_name.c_str());
    const unsigned int id = renderer->vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW);
    const std::string label = gl_label(GL_BUFFER, id);
    EXPECT_EQ(label, std::string(239, 'n') + " (vertex buffer)");
    EXPECT_EQ(label.size(), 255u);
    EXPECT_NO_GL_ERROR();
    renderer->vertex_buffer_kill(id);
}

TEST_P(GlLabels, are_sent_right_after_the_object_exists) {
    recorder->clear();
    const DebugName name("tea");
    const unsigned int id = renderer->vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW);
    EXPECT_EQ(recorder->take_names(), (GlCalls{"glGenBuffers", "glBindBuffer", "glObjectLabel",
                                               "glBufferData", "glBindBuffer"}));
    renderer->vertex_buffer_kill(id);
    label_gl_object(renderer->gl, GL_BUFFER, 0, "nothing");
    EXPECT_EQ(recorder->count("glObjectLabel"), 0) << "not for an id that wasn't to be had";
}

// Client arrays, where there are some.
TEST(GlLabelsOfClientArrays, name_the_buffers_of_meshes) {
    const DebugEnvironment environment("1");
    const GlContext context(Profile::compatibility);
    RendererOpenGL renderer;
    renderer.start();
    Mesh* const mesh = make_mesh(false);
    mesh->render(&renderer, nullptr);
    EXPECT_EQ(gl_label(GL_BUFFER, mesh->get_mesh_data()->vertex_buffer_id), "teapot (vertices)");
    EXPECT_EQ(gl_label(GL_BUFFER, mesh->get_mesh_data()->index_buffer_id), "teapot (faces)");
    mesh->kill(&renderer, nullptr);
    EXPECT_NO_GL_ERROR();
}

} // namespace

} // namespace orvex_test
