// An OBJ load that meets the end of memory: false, and everything as it was before.

#include <string>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/obj/loader_3d_obj.h"
#include "orvex/assets/models/obj/private/text_stream.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "tests/support/heap.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

class ObjMemory : public testing::Test {
protected:
    ObjMemory() {
        dir.write("m.mtl", "newmtl red\nKd 1 0 0\nmap_Kd a_name_beyond_what_a_string_holds.png\n"
                           "newmtl blue\nKd 0 0 1\n");
        dir.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\ng a_group_of_some_length\n"
                           "usemtl red\nf 1 2 3\nf 1 3 2\ng another_group_of_some_length\n"
                           "usemtl blue\nf 1 2 3\nv 0x1p-3 0 0\n");
        loader.set_model_dir((dir.path() + "/").c_str());
        // What lives before the load stays.
        model->add_ref();
        model->add_child(model->create_mesh());
        model->add_material(MaterialMgr::get()->create_material("kept"), nullptr);
    }
    ~ObjMemory() override {
        model->kill(nullptr, nullptr);
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    }

    void expect_untouched(unsigned long granted) const {
        EXPECT_EQ(model->get_num_children(), 1u) << granted;
        EXPECT_EQ(model->get_num_materials(), 1u) << granted;
        EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 1u) << granted;
        EXPECT_STREQ(loader.get_failure_reason(), "memory ran out") << granted;
    }

    /// A load whose memory runs out once, behind so many blocks.
    bool load_with(unsigned long granted, bool single) {
        const RefuseArrays refused({.granted = granted, .refused = 1, .single = single});
        return loader.load_from_file(model, "m.obj");
    }

    /// Loads with memory for one block more each time, until there is enough.
    /// @return how many blocks that took
    unsigned long load_with_growing_memory(unsigned long granted, bool single) {
        for (;; ++granted) {
            if (load_with(granted, single))
                return granted;
            expect_untouched(granted);
            if (HasFailure() || granted == 10000)
                return granted;
        }
    }

    const LogCapture log;
    const TempDir dir;
    Loader3D_OBJ loader;
    Model* const model = new Model;
};

TEST_F(ObjMemory, that_runs_out_at_any_single_block_gives_back_what_was_added) {
    EXPECT_GT(load_with_growing_memory(0, true), 50u);
    EXPECT_EQ(model->get_num_children(), 3u);
    EXPECT_EQ(model->get_num_materials(), 3u);
    EXPECT_STREQ(loader.get_failure_reason(), "");
}

TEST_F(ObjMemory, that_runs_out_at_any_array_gives_back_what_was_added) {
    // The first array is the file itself, the second its library, which only costs the colours.
    EXPECT_FALSE(load_with(0, false));
    EXPECT_EQ(model->get_num_children(), 1u);
    constexpr unsigned long behind_the_files = 2;
    EXPECT_GT(load_with_growing_memory(behind_the_files, false), 6u);
    ASSERT_EQ(model->get_num_children(), 3u);
    auto& first = *static_cast<Mesh*>(model->get_child(1));
    EXPECT_EQ(first.get_num_vertices(nullptr), 6u);
    EXPECT_EQ(first.get_num_faces(nullptr), 2u);
}

TEST_F(ObjMemory, is_asked_for_in_proportion_to_the_file) {
    // A first face of many corners says nothing of the lines behind it.
    std::string text = "v 0 0 0\nf";
    for (int corner = 0; corner < 70; ++corner)
        text += " 1";
    text += "\n";
    while (text.size() < 1000000)
        text += "v 1 2 3\n";
    dir.write("fan.obj", text);
    const RefuseArrays refused({.min_size = 4 * text.size(), .single = true});
    EXPECT_TRUE(loader.load_from_file(model, "fan.obj")) << loader.get_failure_reason();
}

/// Blocks that are asked for while floats and whole numbers are read.
unsigned long blocks_to_read(const std::string& floats, const std::string& ints) {
    TextStream float_text(floats.c_str(), floats.size());
    TextStream int_text(ints.c_str(), ints.size());
    const CountAllocations counted;
    float number = 0.0f;
    int whole = 0;
    while (float_text.read_float(number)) {
    }
    while (int_text.read_int(whole)) {
    }
    return counted.count();
}

TEST(ObjNumbers, of_any_length_are_read_without_a_stream_of_the_c_library) {
    EXPECT_EQ(blocks_to_read("0.12345678901234567890123 1e-40 1.00000005960464477539062 +7",
                             "99999999999999999999 -00000000000000000000012"),
              0ul);
    EXPECT_GT(blocks_to_read("0x1p-3", ""), 0ul) << "one that the library reads";
}

} // namespace
} // namespace orvex_test
