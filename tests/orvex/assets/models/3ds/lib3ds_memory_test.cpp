#include <cstdlib>

#include <gtest/gtest.h>

#include "chunks_3ds.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/assets/models/3ds/private/lib3ds_memory.h"
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

/// Blocks that lib3ds is still granted, on this thread; below 0 all of them.
thread_local long granted_to_lib3ds = -1;

void* take_memory(void* block, std::size_t size) {
    if (granted_to_lib3ds == 0)
        return nullptr;
    granted_to_lib3ds -= granted_to_lib3ds > 0;
    return std::realloc(block, size);
}

/// Lets lib3ds's memory run out behind so many blocks.
class RefuseLib3ds {
public:
    explicit RefuseLib3ds(long granted) {
        granted_to_lib3ds = granted;
        lib3ds_set_memory(take_memory);
    }
    ~RefuseLib3ds() {
        lib3ds_set_memory(nullptr);
        granted_to_lib3ds = -1;
    }
    RefuseLib3ds(const RefuseLib3ds&) = delete;
    RefuseLib3ds& operator=(const RefuseLib3ds&) = delete;
};

TEST(Lib3dsMemory, that_lib3ds_itself_is_refused_fails_the_load_and_leaves_nothing) {
    ASSERT_TRUE(lib3ds_set_memory) << "this lib3ds has no memory of its own: scripts/get_lib3ds.sh";
    const LogCapture log;
    const TempDir dir;
    Loader3D_Lib3ds loader;
    loader.set_model_dir((dir.path() + "/").c_str());
    auto* const model = new Model;
    model->add_ref();
    // With nodes of its own, and without any.
    for (const std::string& bytes : {full_file(), file_3ds(mesh("lone", triangle()))}) {
        dir.write("model.3ds", bytes);
        long granted = 0;
        for (bool is_loaded = false; !is_loaded; ++granted) {
            ASSERT_LT(granted, 1000);
            const RefuseLib3ds refused(granted);
            is_loaded = loader.load_from_file(model, "model.3ds");
            if (!is_loaded) {
                EXPECT_EQ(model->get_num_children(), 0u) << granted;
                EXPECT_EQ(model->get_num_materials(), 0u) << granted;
                EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 0u) << granted;
                EXPECT_STRNE(loader.get_failure_reason(), "") << granted;
            }
        }
        EXPECT_GT(granted, 5);
        EXPECT_GT(model->get_num_children(), 0u);
        while (model->get_num_children() > 0)
            model->remove_child(model->get_child(0));
        model->remove_all_materials(nullptr, nullptr);
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    }
    model->kill(nullptr, nullptr);
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
