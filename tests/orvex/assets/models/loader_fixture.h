#pragma once

/// @file
/// What the tests of the loaders of models share.

#include <string>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;

/// A loader that reads from a folder of the test's own, and the model that it filled last.
template<class Loader>
class LoaderTest : public testing::Test {
protected:
    LoaderTest() { loader_.set_model_dir((dir_.path() + "/").c_str()); }
    ~LoaderTest() override {
        drop_model();
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    }

    void drop_model() {
        if (model_ != nullptr)
            model_->kill(nullptr, nullptr);
        model_ = nullptr;
    }

    void new_model() {
        drop_model();
        model_ = new Model;
        model_->add_ref();
    }

    /// Writes a file of these bytes and loads it into the model.
    bool load_file(const char* name, const std::string& bytes) {
        dir_.write(name, bytes);
        return loader_.load_from_file(model_, name);
    }

    unsigned long num_meshes() const { return model_->get_num_children(); }
    Mesh* mesh_at(unsigned long index) const {
        return static_cast<Mesh*>(model_->get_child(index));
    }

    void expect_core_plugin(const char* name, const char* description) {
        EXPECT_EQ(loader_.get_type(), PLUGIN_TYPE_LOADER_3D);
        EXPECT_STREQ(loader_.get_name(), name);
        EXPECT_STREQ(loader_.get_description(), description);
        EXPECT_STREQ(loader_.get_author(), "orvex");
        EXPECT_EQ(loader_.get_version_major(), 0);
        EXPECT_EQ(loader_.get_version_minor(), 1);
        EXPECT_EQ(loader_.get_version_patch(), 0);
        const std::string build_info = loader_.get_build_info();
        EXPECT_EQ(build_info.find("BUILD_DATE: ["), 0u);
        EXPECT_NE(build_info.find("] - BUILD_TIME: ["), std::string::npos);
        EXPECT_EQ(build_info.back(), ']');
    }

    Loader loader_;
    TempDir dir_;
    Model* model_ = nullptr;
};

} // namespace orvex_test
