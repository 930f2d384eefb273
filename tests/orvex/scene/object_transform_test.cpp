#include <cstring>

#include <gtest/gtest.h>

#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec4.h"
#include "orvex/scene/object.h"
#include "orvex/scene/tripod.h"

namespace orvex_test {

namespace {

using orvex::mat4;
using orvex::Node;
using orvex::Object;
using orvex::quat;
using orvex::vec4;

const mat4 counting(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);

bool same_bits(const mat4& a, const mat4& b) {
    return std::memcmp(a.ptr(), b.ptr(), sizeof(mat4)) == 0;
}

testing::AssertionResult is(const mat4& actual, const mat4& expected) {
    if (same_bits(actual, expected))
        return testing::AssertionSuccess();
    testing::AssertionResult result = testing::AssertionFailure();
    for (int i = 0; i < 16; ++i)
        result << i << ": " << actual.ptr()[i] << " for " << expected.ptr()[i] << '\n';
    return result;
}

mat4 translation(float x, float y, float z) {
    mat4 matrix;
    return matrix.init_translate(x, y, z);
}

TEST(ObjectTransform, three_float_forms_set_w_to_one) {
    Object object;
    object.set_position(1, 2, 3);
    object.set_scale(4, 5, 6);
    EXPECT_EQ(object.get_position(), vec4(1, 2, 3, 1));
    EXPECT_EQ(object.get_position().w, 1.0f);
    EXPECT_EQ(object.get_scale().w, 1.0f);
    EXPECT_EQ(object.get_scale(), vec4(4, 5, 6, 1));
    object.set_position(vec4(1, 2, 3, 7));
    object.set_scale(vec4(4, 5, 6, 8));
    EXPECT_EQ(object.get_position().w, 7.0f);
    EXPECT_EQ(object.get_scale().w, 8.0f);
}

TEST(ObjectTransform, reads_and_writes_its_tripod) {
    Object object;
    object.set_position(1, 2, 3);
    EXPECT_EQ(object.get_tripod()->get_position(), vec4(1, 2, 3, 1));
    object.get_tripod()->set_scale(2, 2, 2);
    EXPECT_EQ(object.get_scale(), vec4(2, 2, 2, 1));
}

TEST(ObjectTransform, is_translation_then_rotation_then_scale) {
    Object object;
    object.set_position(1, 2, 3);
    object.set_orientation_euler_xyz(10, 20, 30);
    object.set_scale(2, 3, 4);
    mat4 rotation;
    mat4 scale;
    rotation.from_quat(object.get_orientation());
    scale.init_scale(2.0f, 3.0f, 4.0f);
    EXPECT_TRUE(is(object.get_transform(), (translation(1, 2, 3) * rotation) * scale));
}

TEST(ObjectTransform, angles_turn_about_x_then_y_then_z) {
    Object object;
    object.set_orientation_euler_xyz(10, 20, 30);
    quat x;
    quat y;
    quat z;
    x.from_euler(10, 0, 0);
    y.from_euler(0, 20, 0);
    z.from_euler(0, 0, 30);
    const quat expected = (x * y) * z;
    const quat actual = object.get_orientation();
    EXPECT_EQ(std::memcmp(&actual, &expected, sizeof(quat)), 0);
}

TEST(ObjectTransform, a_quaternion_set_last_wins_over_angles) {
    Object object;
    object.set_orientation_euler_xyz(10, 20, 30);
    object.set_orientation(quat(0, 0, 1, 0));
    EXPECT_EQ(object.get_orientation().z, 1.0f);
    EXPECT_EQ(object.get_orientation().x, 0.0f);
}

TEST(ObjectTransform, a_matrix_stands_until_a_component_is_set) {
    Object object;
    object.set_position(1, 2, 3);
    object.set_transform(counting);
    EXPECT_TRUE(is(object.get_transform(), counting));
    EXPECT_EQ(object.get_position(), vec4(1, 2, 3, 1));
    object.set_scale(1, 1, 1);
    EXPECT_TRUE(is(object.get_transform(), translation(1, 2, 3)));
}

TEST(ObjectTransform, the_float_form_reads_sixteen_and_ignores_null) {
    Object object;
    object.set_transform(counting.ptr());
    object.set_transform(static_cast<const float*>(nullptr));
    EXPECT_TRUE(is(object.get_transform(), counting));
    object.set_position(1, 2, 3);
    object.set_transform(static_cast<const float*>(nullptr));
    EXPECT_TRUE(is(object.get_transform(), translation(1, 2, 3)));
}

TEST(ObjectAbsolute, a_root_s_position_counts_twice) {
    Object object;
    object.set_position(1, 2, 3);
    const vec4* position = object.get_absolute_position();
    EXPECT_EQ(position->x, 2.0f);
    EXPECT_EQ(position->y, 4.0f);
    EXPECT_EQ(position->z, 6.0f);
    EXPECT_EQ(object.get_absolute_position(), position);
}

TEST(ObjectAbsolute, parents_are_multiplied_from_the_left) {
    Object* root = new Object;
    Object* middle = new Object;
    Object* leaf = new Object;
    root->add_child(middle);
    middle->add_child(leaf);
    root->set_orientation_euler_xyz(10, 20, 30);
    middle->set_position(1, 2, 3);
    leaf->set_scale(2, 3, 4);
    const mat4 expected = root->get_transform() * (middle->get_transform() * leaf->get_transform());
    EXPECT_TRUE(is(leaf->get_absolute_transform(), expected));
    EXPECT_EQ(std::memcmp(leaf->get_absolute_transform_float_ptr(), expected.ptr(), sizeof(mat4)),
              0);
    middle->set_position(4, 5, 6);
    EXPECT_FALSE(same_bits(leaf->get_absolute_transform(), expected));
    root->kill(nullptr, nullptr);
}

TEST(ObjectAbsolute, the_pointer_form_computes_before_it_answers) {
    Object object;
    const float* values = object.get_absolute_transform_float_ptr();
    object.set_position(1, 2, 3);
    EXPECT_EQ(values[12], 0.0f);
    EXPECT_EQ(object.get_absolute_transform_float_ptr(), values);
    EXPECT_EQ(values[12], 1.0f);
}

TEST(ObjectAbsolute, a_parent_that_is_no_object_counts_as_identity) {
    Object* root = new Object;
    Node* plain = new Node;
    Object* leaf = new Object;
    plain->set_type(orvex::NODE_TYPE_OBJECT); // a tag alone makes no object
    root->add_child(plain);
    plain->add_child(leaf);
    root->set_position(1, 0, 0);
    leaf->set_position(0, 2, 0);
    EXPECT_TRUE(is(leaf->get_absolute_transform(), translation(1, 2, 0)));
    root->kill(nullptr, nullptr);
}

TEST(ObjectAbsolute, the_walk_stops_at_a_parent_that_has_ended) {
    Object* root = new Object;
    Object* leaf = new Object;
    root->add_child(leaf);
    root->set_position(1, 0, 0);
    leaf->set_position(0, 2, 0);
    leaf->add_ref();
    Node* const old_root = root;
    root->kill(nullptr, nullptr);
    EXPECT_EQ(leaf->get_parent(), old_root);
    EXPECT_TRUE(is(leaf->get_absolute_transform(), translation(0, 2, 0)));
    EXPECT_EQ(leaf->get_absolute_position()->y, 4.0f);
    leaf->kill(nullptr, nullptr);
}

TEST(ObjectAbsolute, the_walk_ends_in_a_circle_of_parents) {
    Object first;
    Object second;
    first.set_position(1, 0, 0);
    second.set_position(0, 2, 0);
    first.set_parent(&second);
    second.set_parent(&first);
    EXPECT_TRUE(is(first.get_absolute_transform(), translation(1, 2, 0)));
    EXPECT_TRUE(is(second.get_absolute_transform(), translation(1, 2, 0)));
    first.set_parent(&first);
    EXPECT_TRUE(is(first.get_absolute_transform(), translation(1, 0, 0)));
}

TEST(ObjectAbsolute, the_walk_into_a_circle_meets_each_object_once) {
    constexpr int most = 7;
    for (int before = 0; before < most; ++before) {
        for (int around = 1; around <= most; ++around) {
            // A way of `before` objects into a circle of `around`, each a step of its own.
            std::vector<Object> objects(static_cast<std::size_t>(before + around));
            for (std::size_t i = 0; i < objects.size(); ++i) {
                objects[i].set_position(static_cast<float>(1 << i), 0, 0);
                objects[i].set_parent(
                    &objects[i + 1 < objects.size() ? i + 1 : static_cast<std::size_t>(before)]);
            }
            const auto sum = static_cast<float>((1 << objects.size()) - 1);
            EXPECT_TRUE(is(objects[0].get_absolute_transform(), translation(sum, 0, 0)))
                << before << " before a circle of " << around;
        }
    }
}

TEST(ObjectAbsolute, the_walk_follows_the_parents_of_its_moment) {
    Object* const parent = new Object;
    Object* const child = new Object;
    parent->add_child(child);
    parent->set_position(1, 0, 0);
    child->set_position(10, 0, 0);
    parent->set_parent(child);
    child->set_parent(nullptr);
    EXPECT_TRUE(is(parent->get_absolute_transform(), translation(11, 0, 0)));
    parent->kill(nullptr, nullptr);
}

TEST(ObjectAbsolute, a_node_in_two_lists_follows_the_parent_that_adopted_it_last) {
    Object* first = new Object;
    Object* second = new Object;
    Object* leaf = new Object;
    first->set_position(1, 0, 0);
    second->set_position(0, 2, 0);
    first->add_child(leaf);
    second->add_child(leaf);
    EXPECT_TRUE(is(leaf->get_absolute_transform(), translation(0, 2, 0)));
    second->kill(nullptr, nullptr);
    EXPECT_TRUE(is(leaf->get_absolute_transform(), mat4()));
    EXPECT_EQ(first->get_child(0), leaf);
    first->kill(nullptr, nullptr);
}

} // namespace

} // namespace orvex_test
