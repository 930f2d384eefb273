#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/mesh_data.h"
#include "tests/support/gl_context.h"
#include "tests/support/heap.h"

namespace orvex_test {

using namespace orvex;

namespace {

const char* const shader_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
uniform mat4 orvex_ModelViewProjectionMatrix;
uniform mat4 orvex_ModelMatrix;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * orvex_ModelMatrix * orvex_Position;
}
[Pixel_Shader]
#version 150
out vec4 pixel;
void main() {
    pixel = vec4(1.0);
}
)";

class DrawingAllocations : public orvex_test::GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        renderer.initialize();
        renderer.start();
        orvex_test::forget_gl_errors(); // of the start, in a core context
        glDisable(GL_DEBUG_OUTPUT);     // the context's messages are kept on this thread
    }

    /// A triangle in either layout.
    static Mesh* make_mesh(bool separate) {
        Mesh* const mesh = new Mesh;
        mesh->set_vertex_alloc_params(separate, 0);
        mesh->alloc_vertex_data(3);
        mesh->alloc_face_data(1, false);
        mesh->set_vertex_position(1, vec4(1.0f, 0.0f, 0.0f, 1.0f));
        mesh->set_vertex_position(2, vec4(0.0f, 1.0f, 0.0f, 1.0f));
        mesh->set_face_indexes(0, 0, 1, 2);
        mesh->set_use_fixed_mvp_matrices_state(false, nullptr);
        return mesh;
    }

    /// Allocations of a frame, after frames that made what is kept.
    template<class Shape>
    unsigned long allocations_of_a_frame(Shape& shape) {
        for (int i = 0; i < 3; ++i) {
            shape.set_vertex_position(0, vec4());
            shape.render(&renderer, nullptr);
        }
        const orvex_test::CountAllocations allocations;
        shape.Object::set_position(1.0f, 2.0f, 3.0f);
        shape.set_vertex_position(0, vec4());
        shape.render(&renderer, nullptr);
        return allocations.count();
    }

    /// What draws without a material, with a program and, where there is one, by the fixed
    /// pipeline.
    template<class Shape>
    void expect_frames_without_allocations(Shape& shape, GpuProgram& program) {
        shape.set_use_fixed_mvp_matrices_state(false, nullptr);
        ASSERT_TRUE(program.bind(&renderer));
        EXPECT_EQ(allocations_of_a_frame(shape), 0u);
        EXPECT_TRUE(program.unbind(&renderer));
        if (!orvex_test::is_core_context())
            EXPECT_EQ(allocations_of_a_frame(shape), 0u);
        shape.kill(&renderer, nullptr);
    }

    RendererOpenGL renderer;
};
ORVEX_BOTH_PROFILES(DrawingAllocations);

TEST_P(DrawingAllocations, are_none_with_a_program_and_a_material) {
    GpuProgram* const program = new GpuProgram;
    program->add_ref();
    ASSERT_TRUE(program->load_from_memory(&renderer, shader_text,
                                          std::char_traits<char>::length(shader_text)));
    for (const bool separate : {true, false}) {
        const orvex_test::CountAllocations of_the_mesh;
        Mesh* const mesh = make_mesh(separate);
        EXPECT_GT(of_the_mesh.count(), 0u);
        Material* const material = new Material;
        material->set_gpu_program(program);
        mesh->add_material(material, nullptr);
        EXPECT_EQ(allocations_of_a_frame(*mesh), 0u);
        EXPECT_NE(mesh->get_mesh_data()->vertex_array_id, 0u) << "it went by generic attributes";
        mesh->kill(&renderer, nullptr);
    }
    program->kill(&renderer, nullptr);
}

TEST_P(DrawingAllocations, are_none_for_points_and_lines) {
    GpuProgram* const program = new GpuProgram;
    ASSERT_TRUE(program->load_from_memory(&renderer, shader_text,
                                          std::char_traits<char>::length(shader_text)));
    for (const bool separate : {true, false}) {
        const orvex_test::CountAllocations of_the_pool;
        VertexPool* const pool = new VertexPool;
        ASSERT_TRUE(pool->init_pool(3, separate));
        EXPECT_GT(of_the_pool.count(), 0u);
        expect_frames_without_allocations(*pool, *program);
    }
    Polyline* const polyline = new Polyline;
    ASSERT_TRUE(polyline->initialize(3, LINE_RENDER_MODE_LINE_STRIP));
    expect_frames_without_allocations(*polyline, *program);
    program->kill(&renderer, nullptr);
    while (glGetError() != GL_NO_ERROR) { // a core context has no point sprites to switch
    }
}

TEST(ClientArrayAllocations, are_none) {
    const orvex_test::GlContext context(orvex_test::Profile::compatibility);
    RendererOpenGL renderer;
    renderer.initialize();
    renderer.start();
    glDisable(GL_DEBUG_OUTPUT);
    for (const bool separate : {true, false}) {
        MeshData store;
        store.separate_vertex_arrays = separate;
        const orvex_test::CountAllocations of_the_vertices;
        ASSERT_TRUE(store.alloc_vertex_data(3));
        EXPECT_GT(of_the_vertices.count(), 0u);
        store.set_use_generic_vertex_attribs_state(false);
        const auto draw = [&] {
            store.positions_need_update = true;
            EXPECT_TRUE(renderer.vertex_buffer_prepare(&store));
            renderer.vertex_buffer_draw(&store);
            renderer.vertex_buffer_finish(&store);
        };
        for (int i = 0; i < 3; ++i)
            draw();
        const orvex_test::CountAllocations allocations;
        draw();
        EXPECT_EQ(allocations.count(), 0u);
        renderer.vertex_buffer_kill(&store);
    }
}

} // namespace

} // namespace orvex_test
