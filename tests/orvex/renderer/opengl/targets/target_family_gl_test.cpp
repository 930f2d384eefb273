#include "orvex/renderer/opengl/targets/private/target_family.h"

#include <memory>

#include <gtest/gtest.h>

#include "orvex/renderer/render_target.h"
#include "tests/orvex/renderer/opengl/families_fixture.h"

namespace orvex_test {

using namespace orvex;
namespace {

class TargetFamilies : public FamilyTest {};

TEST_P(TargetFamilies, find_and_kill_only_what_they_list) {
    TargetFamily targets(state);
    TargetFamily others(state);
    RenderTarget* const target = targets.create();
    EXPECT_EQ(targets.find(target->get_id()), target);
    EXPECT_EQ(others.find(target->get_id()), nullptr);
    EXPECT_FALSE(others.kill(target));
    EXPECT_FALSE(targets.kill(nullptr));
    EXPECT_TRUE(targets.kill(target));
    EXPECT_EQ(targets.size(), 0U);
    targets.create();
    targets.create();
    targets.kill_all();
    EXPECT_EQ(targets.size(), 0U);
}

TEST_P(TargetFamilies, leave_targets_without_power_to_whoever_holds_them) {
    fill();
    std::unique_ptr<RenderTarget> left;
    {
        TargetFamily targets(state);
        left.reset(targets.create());
        EXPECT_TRUE(left->activate());
        EXPECT_TRUE(left->kill());
    }
    EXPECT_FALSE(left->activate());
}

TEST_P(TargetFamilies, copy_nothing_with_an_empty_table_or_onto_itself) {
    const TargetFamily targets(state);
    EXPECT_FALSE(targets.copy_color(1, 2, 4, 4));
    EXPECT_FALSE(targets.blit(1, 0, 0, 4, 4, 2, 0, 0, 4, 4, true, true));
    targets.bind(1);
    EXPECT_TRUE(recorder->calls().empty());
    fill();
    EXPECT_FALSE(targets.copy_color(1, 1, 4, 4));
    EXPECT_TRUE(recorder->calls().empty());
}

ORVEX_BOTH_PROFILES(TargetFamilies);

} // namespace
} // namespace orvex_test
