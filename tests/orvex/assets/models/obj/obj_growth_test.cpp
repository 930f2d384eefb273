// How the time of a load grows with its file. Processor time of this thread, so that other work on
// the machine doesn't count, and a ratio, so that its speed doesn't.

#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/models/obj/loader_3d_obj.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "tests/orvex/assets/models/loader_fixture.h"

namespace orvex_test {

using namespace orvex;
namespace {

class ObjGrowth : public LoaderTest<Loader3D_OBJ> {
protected:
    /// Loads a file. @return the seconds that it took
    double seconds_for(const std::string& text) {
        new_model();
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
        const double begin = now();
        EXPECT_TRUE(load_file("m.obj", text));
        return now() - begin;
    }

    static double now() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }
};

std::string faces_of_materials(int count) {
    std::string text = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    for (int i = 0; i < count; ++i)
        text += "usemtl m" + std::to_string(i) + "\nf 1 2 3\n";
    return text;
}

TEST_F(ObjGrowth, is_that_of_the_materials_and_not_of_their_square) {
    const double few = seconds_for(faces_of_materials(4000));
    const double many = seconds_for(faces_of_materials(32000));
    EXPECT_LT(many, 30 * few);
    ASSERT_EQ(model_->get_num_materials(), 32000u);
    EXPECT_STREQ(model_->get_material_by_index(31999)->get_name(), "m31999");
    ASSERT_EQ(mesh_at(0)->get_num_materials(), 32000u);
    EXPECT_EQ(mesh_at(0)->get_material_by_index(77), model_->get_material_by_index(77));
}

TEST_F(ObjGrowth, is_not_that_of_the_mentions_of_a_library) {
    std::string library;
    for (int i = 0; i < 2000; ++i)
        library += "newmtl m" + std::to_string(i) + "\nKd 1 0 0\n";
    dir_.write("a.mtl", library);
    dir_.write("b.mtl", library);
    const std::string face = faces_of_materials(1);
    const double once = seconds_for("mtllib a.mtl\nmtllib b.mtl\n" + face);
    std::string mentions;
    for (int i = 0; i < 400; ++i)
        mentions += "mtllib a.mtl\nmtllib b.mtl\n";
    EXPECT_LT(seconds_for(mentions + face), 40 * once);
}

} // namespace
} // namespace orvex_test
