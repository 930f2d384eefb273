#include <gtest/gtest.h>

#include "assets/material.h"
#include "geometry/mesh.h"
#include "geometry/mesh_data.h"
#include "gpu/gpu_program.h"
#include "renderer/opengl/renderer_opengl.h"
#include "support/gl_context.h"
#include "support/heap.h"

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
        while (glGetError() != GL_NO_ERROR) { // of the start, in a core context
        }
        glDisable(GL_DEBUG_OUTPUT); // the context's messages are kept on this thread
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
    unsigned long allocations_of_a_frame(Mesh& mesh) {
        for (int i = 0; i < 3; ++i) {
            mesh.set_vertex_position(0, vec4());
            mesh.render(&renderer, nullptr);
        }
        const orvex_test::CountAllocations allocations;
        mesh.set_position(1.0f, 2.0f, 3.0f);
        mesh.set_vertex_position(0, vec4());
        mesh.render(&renderer, nullptr);
        return allocations.count();
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
