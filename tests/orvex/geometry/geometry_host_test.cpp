#include <memory>

#include <gtest/gtest.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/renderer/records/mesh_data_packed.h>

namespace orvex_test {

using namespace orvex;

namespace {

/// Uses a store by its own type, so that calls need not go through its table of virtual operations.
template<class Store>
void use_store() {
    Store store;
    ASSERT_TRUE(store.alloc_vertex_data(2));
    store.set_position(1, vec3(1.0f, 2.0f, 3.0f));
    store.set_position(1, vec4(1.0f, 2.0f, 3.0f, 1.0f));
    store.set_normal(1, vec3(0.0f, 0.0f, 1.0f));
    store.set_color(1, vec4());
    store.set_uv0(1, vec4());
    store.set_uv1(1, vec4());
    store.set_tangent(1, vec4());
    store.set_user_attrib(0, 0, vec4());
    EXPECT_EQ(store.get_position(1).y, 2.0f);
    EXPECT_EQ(store.get_position_4f(1).w, 1.0f);
    EXPECT_EQ(store.get_normal(1).z, 1.0f);
    EXPECT_EQ(store.get_color(1).w, 1.0f);
    EXPECT_EQ(store.get_uv0(1).w, 1.0f);
    EXPECT_EQ(store.get_uv1(1).w, 1.0f);
    EXPECT_EQ(store.get_tangent(1).w, 1.0f);
    EXPECT_EQ(store.get_vertex_v2(1).position.x, 1.0f);
    EXPECT_EQ(store.get_vertex(1), nullptr);
    EXPECT_EQ(store.get_position_elt_size() + store.get_normal_elt_size() +
                  store.get_uv0_elt_size() + store.get_color_elt_size() + store.get_uv1_elt_size() +
                  store.get_tangent_elt_size(),
              store.get_vertex_elt_size());
    EXPECT_EQ(store.get_vertex_ptr(), nullptr);
    EXPECT_NE(store.get_position_ptr(), nullptr);
    store.free_vertex_data();
    std::unique_ptr<MeshData> base = std::make_unique<Store>();
    EXPECT_NE(dynamic_cast<Store*>(base.get()), nullptr);
}

TEST(GeometryHost, uses_stores_of_every_format) {
    use_store<MeshData>();
    use_store<MeshData_64>();
    use_store<MeshData_32>();
    use_store<MeshData_PhysXCloth>();
}

TEST(GeometryHost, derives_a_mesh_of_its_own) {
    class HostMesh : public Mesh {
    public:
        bool _build() override {
            update_build_state(false);
            return alloc_vertex_data(3) && alloc_face_data(1, false) && Mesh::_build();
        }
    };
    Mesh* const mesh = new HostMesh;
    EXPECT_TRUE(mesh->build(nullptr));
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    mesh->release(nullptr, nullptr);
}

TEST(GeometryHost, aligns_vertices) {
    unsigned char* raw = nullptr;
    Vertex_32* vertices = AlignedNew_Vertex_32(4, 64, &raw);
    EXPECT_NE(vertices, nullptr);
    AlignedDelete_Vertex_32(&vertices, 4, &raw);
}

} // namespace

} // namespace orvex_test
