#include <string>

#include <gtest/gtest.h>

#include "object_tree.h"
#include "orvex/assets/materials/material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/scene/object.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

namespace {

using orvex::Material;
using orvex::Node;
using orvex::Object;
using orvex::Renderer;
using orvex_test::FakeRenderer;
using orvex_test::ObjectTree;

using Tree = ObjectTree<Object>;

/// A material that a test holds for its whole length.
struct HeldMaterial {
    HeldMaterial() { material->add_ref(); }
    HeldMaterial(const HeldMaterial&) = delete;
    HeldMaterial& operator=(const HeldMaterial&) = delete;
    ~HeldMaterial() { material->release(nullptr, nullptr); }
    int others() const { return material->get_ref() - 1; }

    Material* material = new Material;
};

TEST(ObjectMaterials, the_same_one_twice_keeps_one_entry_and_one_reference) {
    const HeldMaterial held;
    Object object;
    EXPECT_TRUE(object.add_material(held.material, nullptr));
    EXPECT_TRUE(object.add_material(held.material, nullptr));
    EXPECT_EQ(object.get_num_materials(), 1u);
    EXPECT_EQ(held.others(), 1);
    EXPECT_FALSE(object.add_material(nullptr, &object));
    object.remove_all_materials(nullptr, nullptr);
}

TEST(ObjectMaterials, adding_reaches_the_subtree_even_where_it_is_not_new_here) {
    const HeldMaterial held;
    Tree tree;
    tree.root->add_material(held.material, nullptr);
    EXPECT_EQ(held.others(), 1);
    EXPECT_TRUE(tree.root->add_material(held.material, tree.root));
    EXPECT_EQ(held.others(), 3);
    EXPECT_EQ(tree.leaf->get_num_materials(), 1u);
    EXPECT_EQ(tree.hidden->get_num_materials(), 0u);
}

TEST(ObjectMaterials, are_found_by_id_index_and_name) {
    const HeldMaterial first;
    const HeldMaterial second;
    Object object;
    first.material->set_name("brick");
    second.material->set_name("brick");
    object.add_material(first.material, nullptr);
    object.add_material(second.material, nullptr);
    EXPECT_EQ(object.get_material(second.material->get_id()), second.material);
    EXPECT_EQ(object.get_material(object.get_id()), nullptr);
    EXPECT_EQ(object.get_material_by_index(1), second.material);
    EXPECT_EQ(object.get_material_by_index(2), nullptr);
    EXPECT_EQ(object.get_material_by_name("brick"), first.material);
    EXPECT_EQ(object.get_material_by_name("bric"), nullptr);
    EXPECT_EQ(object.get_material_by_name("bricks"), nullptr);
    EXPECT_EQ(object.get_material_by_name(nullptr), nullptr);
    object.remove_all_materials(nullptr, nullptr);
}

TEST(ObjectMaterials, names_are_compared_over_127_characters) {
    const HeldMaterial held;
    Object object;
    const std::string stem(127, 'x');
    held.material->set_name((stem + "one").c_str());
    object.add_material(held.material, nullptr);
    EXPECT_EQ(object.get_material_by_name((stem + "two").c_str()), held.material);
    EXPECT_EQ(object.get_material_by_name((stem.substr(1) + "two").c_str()), nullptr);
    object.remove_all_materials(nullptr, nullptr);
}

TEST(ObjectMaterials, remove_takes_one_out_of_this_object_alone) {
    const HeldMaterial first;
    const HeldMaterial second;
    const HeldMaterial third;
    Tree tree;
    for (Material* material : {first.material, second.material, third.material})
        tree.root->add_material(material, tree.root);
    EXPECT_TRUE(tree.root->remove_material(second.material, tree.root));
    EXPECT_EQ(second.others(), 2);
    EXPECT_EQ(tree.root->get_material_by_index(0), first.material);
    EXPECT_EQ(tree.root->get_material_by_index(1), third.material);
    EXPECT_EQ(tree.child->get_num_materials(), 3u);
    EXPECT_FALSE(tree.root->remove_material(second.material, nullptr));
    EXPECT_FALSE(tree.root->remove_material(nullptr, nullptr));
}

/// Notes which renderer it was cleaned up with.
class EndingMaterial : public Material {
public:
    explicit EndingMaterial(Renderer*& seen)
        : seen(seen) {}
    bool _cleanup(Renderer* renderer) override {
        seen = renderer;
        return Material::_cleanup(renderer);
    }
    Renderer*& seen;
};

TEST(ObjectMaterials, remove_has_no_renderer_in_hand_and_remove_all_has) {
    FakeRenderer renderer;
    Renderer* seen = &renderer;
    Object object;
    Material* material = new EndingMaterial(seen);
    object.add_material(material, nullptr);
    object.remove_material(material, nullptr);
    EXPECT_EQ(seen, nullptr);
    object.add_material(new EndingMaterial(seen), nullptr);
    object.remove_all_materials(&renderer, nullptr);
    EXPECT_EQ(seen, &renderer);
}

TEST(ObjectMaterials, remove_all_reaches_the_subtree) {
    const HeldMaterial held;
    Tree tree;
    tree.root->add_material(held.material, tree.root);
    tree.root->remove_all_materials(nullptr, nullptr);
    EXPECT_EQ(held.others(), 2);
    tree.root->remove_all_materials(nullptr, tree.root);
    EXPECT_EQ(held.others(), 0);
}

TEST(ObjectMaterials, cleanup_gives_them_back_and_may_run_again) {
    FakeRenderer renderer;
    const HeldMaterial held;
    Tree tree;
    tree.root->add_material(held.material, tree.root);
    EXPECT_TRUE(tree.root->_cleanup(&renderer));
    EXPECT_EQ(held.others(), 2);
    EXPECT_TRUE(tree.root->cleanup(&renderer, nullptr));
    EXPECT_EQ(held.others(), 0);
}

/// Notes which unit it was bound to last.
class UnitTexture : public orvex::Texture {
public:
    bool bind(Renderer*, unsigned long unit) override {
        bound_to = unit;
        return true;
    }
    unsigned long bound_to = 99;
};

TEST(ObjectMaterials, the_texture_unit_offset_goes_to_every_material_of_the_subtree) {
    FakeRenderer renderer;
    const HeldMaterial here;
    const HeldMaterial below;
    UnitTexture* first = new UnitTexture;
    UnitTexture* second = new UnitTexture;
    here.material->add_texture(first);
    below.material->add_texture(second);
    Tree tree;
    tree.root->add_material(here.material, nullptr);
    tree.leaf->add_material(below.material, nullptr);

    tree.root->set_all_materials_texture_unit_offset(3, nullptr);
    here.material->bind_textures(&renderer);
    below.material->bind_textures(&renderer);
    EXPECT_EQ(first->bound_to, 3u);
    EXPECT_EQ(second->bound_to, 0u);

    tree.root->set_all_materials_texture_unit_offset(5, tree.root);
    below.material->bind_textures(&renderer);
    EXPECT_EQ(second->bound_to, 5u);
}

TEST(ObjectMaterials, waiting_texture_names_are_processed_in_the_whole_subtree) {
    const orvex_test::LogCapture log;
    const HeldMaterial here;
    const HeldMaterial below;
    Tree tree;
    here.material->async_loading_add_texture_filename("none.png");
    below.material->async_loading_add_texture_filename("missing.png");
    tree.root->add_material(here.material, nullptr);
    tree.leaf->add_material(below.material, nullptr);
    EXPECT_TRUE(tree.root->async_texture_loading_process_all_materials(
        nullptr, "/no/such/folder/", orvex::PF_NONE, false, nullptr));
    EXPECT_EQ(here.material->async_loading_get_num_texture_filenames(), 0u);
    EXPECT_EQ(below.material->async_loading_get_num_texture_filenames(), 1u);
    EXPECT_TRUE(tree.root->async_texture_loading_process_all_materials(
        nullptr, "/no/such/folder/", orvex::PF_NONE, false, tree.root));
    EXPECT_EQ(below.material->async_loading_get_num_texture_filenames(), 0u);
}

} // namespace

} // namespace orvex_test
