#include "orvex/geometry/shapes/mesh_quad_hud.h"

#include <gtest/gtest.h>

#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshQuadHud, is_the_unit_square_of_the_first_quadrant) {
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto quad = make_shape<MeshQuadHud>(kind);
        EXPECT_TRUE(quad->set_build_params());
        ASSERT_TRUE(quad->build(nullptr));
        expect_quad(
            *quad,
            {{0.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {1.0f, 1.0f, 0.0f}, {1.0f, 0.0f, 0.0f}});
        EXPECT_EQ(quad->get_mesh_data()->num_quad_edges, 0u);
    }
}

} // namespace

} // namespace orvex_test
