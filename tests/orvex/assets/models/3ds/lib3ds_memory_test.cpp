#include <gtest/gtest.h>

#include "chunks_3ds.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/geometry/mesh/model.h"
#include "tests/support/heap.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// A load with memory for so many arrays; from then on there is none.
bool load(Loader3D_Lib3ds& loader, Model* model, unsigned long count) {
    const orvex_test::RefuseArrays refused({.granted = count});
    return loader.load_from_file(model, "model.3ds");
}

TEST(Lib3dsMemory, that_runs_out_anywhere_costs_the_meshes_or_the_load_and_nothing_else) {
    const LogCapture log;
    const TempDir dir;
    dir.write("model.3ds", full_file());
    Loader3D_Lib3ds loader;
    loader.set_model_dir((dir.path() + "/").c_str());
    bool is_whole = false;
    bool was_refused = false;
    bool was_partial = false;
    for (unsigned long count = 0; !is_whole; ++count) {
        ASSERT_LT(count, 1000u);
        auto* const model = new Model;
        model->add_ref();
        const bool loaded = load(loader, model, count);
        const unsigned long meshes = model->get_num_children();
        if (!loaded) {
            EXPECT_EQ(meshes, 0u) << count;
            EXPECT_EQ(model->get_num_materials(), 0u) << count;
        }
        is_whole = loaded && meshes == 2;
        was_refused |= !loaded;
        was_partial |= loaded && meshes < 2;
        model->kill(nullptr, nullptr);
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    }
    EXPECT_TRUE(was_refused);
    EXPECT_TRUE(was_partial) << "a mesh that can't be made is left out";
}

} // namespace
} // namespace orvex_test
