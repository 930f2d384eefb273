#include "orvex/diagnostics/artifact_scanner.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include <gtest/gtest.h>

#include "frames.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::Frame;
using orvex_test::FrameRenderer;
using orvex_test::FrameTarget;

class ArtifactScannerTest : public testing::Test {
protected:
    void SetUp() override { show(8, 8); }
    void TearDown() override {
        if (scanner)
            scanner->release(nullptr, nullptr);
        EXPECT_EQ(num_textures(), before) << "textures are left";
    }

    static unsigned long num_textures() { return TextureMgr::get()->get_num_resources(); }

    void show(int width, int height) { renderer.frame = Frame(width, height); }
    void spoil(std::initializer_list<unsigned long> pixels) {
        for (const unsigned long pixel : pixels)
            renderer.frame.spoil(pixel);
    }
    bool run(bool flag = false) { return scanner->run(&renderer, flag); }

    /// The three counters.
    std::vector<int> counters() const {
        return {scanner->get_number_of_artifacts(), scanner->get_total_number_of_artifacts(),
                scanner->get_max_number_of_artifacts()};
    }
    static std::vector<int> are(int number, int total, int max) { return {number, total, max}; }

    /// Gives a texture the frame's pixels.
    void copy_frame(Texture& texture) const {
        texture.create_2d(static_cast<unsigned long>(renderer.frame.width),
                          static_cast<unsigned long>(renderer.frame.height), PF_RGBA_U8);
        std::copy(renderer.frame.bytes.begin(), renderer.frame.bytes.end(),
                  texture.get_pixmap_u8_ptr());
    }

    unsigned long before = num_textures();
    FrameRenderer renderer;
    ArtifactScanner* scanner = new ArtifactScanner;
};

TEST_F(ArtifactScannerTest, is_a_node_of_its_own_type) {
    EXPECT_EQ(static_cast<int>(scanner->get_type()), 26);
    EXPECT_TRUE(scanner->is_type_of(NODE_TYPE_NODE));
    EXPECT_EQ(counters(), are(0, 0, 0));
}

TEST_F(ArtifactScannerTest, makes_both_textures_through_the_manager) {
    EXPECT_EQ(num_textures(), before + 2);
}

TEST_F(ArtifactScannerTest, takes_the_first_frame_as_the_reference_and_reports_none) {
    spoil({0, 5, 63});
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(0, 0, 0));
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(0, 0, 0));
    EXPECT_EQ(renderer.reads, 2);
}

TEST_F(ArtifactScannerTest, counts_the_pixels_that_changed) {
    EXPECT_TRUE(run());
    spoil({1, 2, 50});
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(3, 3, 3));
    spoil({1, 2}); // back again
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(1, 4, 3));
}

TEST_F(ArtifactScannerTest, does_not_see_odd_pixels_with_the_flag) {
    EXPECT_TRUE(run(true));
    spoil({1});
    EXPECT_TRUE(run(true));
    EXPECT_EQ(counters(), are(0, 0, 0));
    spoil({2, 3, 4});
    EXPECT_TRUE(run(true));
    EXPECT_EQ(counters(), are(2, 2, 2)) << "not doubled";
    EXPECT_TRUE(run(false));
    EXPECT_EQ(counters(), are(4, 6, 4));
}

TEST_F(ArtifactScannerTest, counts_a_change_of_any_channel_even_of_alpha_alone) {
    EXPECT_TRUE(run());
    for (unsigned long channel = 0; channel < 4; ++channel) {
        renderer.frame.spoil(9, channel, 7);
        EXPECT_TRUE(run());
        EXPECT_EQ(scanner->get_number_of_artifacts(), 1) << channel;
        renderer.frame.spoil(9, channel, 7);
    }
    EXPECT_EQ(scanner->get_total_number_of_artifacts(), 4);
}

TEST_F(ArtifactScannerTest, keeps_adding_until_the_counters_are_reset) {
    EXPECT_TRUE(run());
    spoil({7});
    for (int frame = 1; frame <= 5; ++frame) {
        EXPECT_TRUE(run());
        EXPECT_EQ(counters(), are(1, frame, 1));
    }
    scanner->reset_ref_texture();
    EXPECT_EQ(counters(), are(0, 5, 1)) << "totals stay";
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(0, 5, 1)) << "a new reference";
    scanner->reset_artifacts_counters();
    EXPECT_EQ(counters(), are(0, 0, 0));
}

TEST_F(ArtifactScannerTest, takes_a_new_reference_after_every_kind_of_reset) {
    using Reset = void (*)(ArtifactScanner&);
    static constexpr Reset resets[] = {
        [](ArtifactScanner& on) { on.reset_ref_texture(); },
        [](ArtifactScanner& on) { on.reset_artifacts_counters(); },
        [](ArtifactScanner& on) { on.update_ref_texture(); },
    };
    for (const Reset reset : resets) {
        EXPECT_TRUE(run());
        spoil({3});
        EXPECT_TRUE(run());
        EXPECT_EQ(scanner->get_number_of_artifacts(), 1);
        reset(*scanner);
        EXPECT_EQ(scanner->get_number_of_artifacts(), 0);
        Texture texture;
        copy_frame(texture);
        EXPECT_EQ(scanner->find_artifacts(&texture, false), -1) << "no reference";
        EXPECT_TRUE(run());
        EXPECT_EQ(scanner->get_number_of_artifacts(), 0);
        scanner->update_ref_texture();
        EXPECT_EQ(counters(), are(0, 0, 0));
    }
}

TEST_F(ArtifactScannerTest, has_nothing_to_compare_with_before_the_first_run) {
    Texture texture;
    copy_frame(texture);
    EXPECT_EQ(scanner->find_artifacts(&texture, false), -1);
    EXPECT_FALSE(scanner->is_there_artifact(&texture, false));
}

TEST_F(ArtifactScannerTest, compares_a_hosts_own_texture_and_leaves_the_counters) {
    EXPECT_TRUE(run());
    Texture texture;
    copy_frame(texture);
    EXPECT_EQ(scanner->find_artifacts(&texture, false), 0);
    EXPECT_FALSE(scanner->is_there_artifact(&texture, false));
    texture.get_pixmap_u8_ptr()[5 * 4] = 1;
    EXPECT_EQ(scanner->find_artifacts(&texture, false), 1);
    EXPECT_EQ(scanner->find_artifacts(&texture, true), 0);
    EXPECT_TRUE(scanner->is_there_artifact(&texture, false));
    EXPECT_FALSE(scanner->is_there_artifact(&texture, true));
    texture.get_pixmap_u8_ptr()[6 * 4] = 1;
    EXPECT_TRUE(scanner->is_there_artifact(&texture, true));
    EXPECT_EQ(counters(), are(0, 0, 0));
}

TEST_F(ArtifactScannerTest, has_no_number_for_a_texture_without_bytes) {
    EXPECT_TRUE(run());
    Texture empty;
    Texture floats;
    floats.create_2d(8, 8, PF_RGBA_F32);
    Texture nothing;
    nothing.cleanup_texture_data(nullptr);
    for (Texture* const texture : {static_cast<Texture*>(nullptr), &empty, &floats, &nothing}) {
        EXPECT_EQ(scanner->find_artifacts(texture, false), -1);
        EXPECT_FALSE(scanner->is_there_artifact(texture, false));
    }
}

TEST_F(ArtifactScannerTest, compares_as_many_pixels_as_both_frames_have) {
    show(8, 4);
    EXPECT_TRUE(run());
    show(8, 8);
    spoil({31, 32, 63});
    EXPECT_TRUE(run());
    EXPECT_EQ(scanner->get_number_of_artifacts(), 1) << "pixel 31 is the last of the reference";
    show(4, 4);
    spoil({15});
    EXPECT_TRUE(run());
    EXPECT_EQ(scanner->get_number_of_artifacts(), 1);
    Texture narrow;
    narrow.create_2d(4, 4, PF_RGB_U8);
    std::fill_n(narrow.get_pixmap_u8_ptr(), 4 * 4 * 3, static_cast<unsigned char>(1));
    EXPECT_EQ(scanner->find_artifacts(&narrow, false), 12) << "of three bytes a pixel it has fewer";
}

TEST_F(ArtifactScannerTest, changes_nothing_when_the_frame_cannot_be_read) {
    EXPECT_FALSE(scanner->run(nullptr, false));
    FrameTarget target(Frame(4, 4));
    target.readable = false;
    scanner->set_render_target(&target);
    EXPECT_FALSE(run());
    target.readable = true;
    EXPECT_TRUE(run());
    target.frame.spoil(2);
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(1, 1, 1));
    target.readable = false;
    EXPECT_FALSE(run());
    EXPECT_EQ(counters(), are(1, 1, 1));
    target.readable = true;
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(1, 2, 1)) << "still the first reference";
}

TEST_F(ArtifactScannerTest, takes_no_empty_frame_as_the_reference) {
    show(0, 0);
    EXPECT_FALSE(run());
    show(8, 8);
    spoil({1});
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(0, 0, 0)) << "this one is the reference";
}

TEST_F(ArtifactScannerTest, reads_a_render_target_without_a_renderer) {
    FrameTarget target(Frame(6, 3));
    scanner->set_render_target(&target);
    EXPECT_TRUE(scanner->run(nullptr, false));
    target.frame.spoil(17, 3, 0);
    EXPECT_TRUE(scanner->run(nullptr, false));
    EXPECT_EQ(counters(), are(1, 1, 1));
    EXPECT_EQ(renderer.reads, 0);
    scanner->set_render_target(nullptr);
    EXPECT_FALSE(scanner->run(nullptr, false)) << "the frame buffer again";
    EXPECT_TRUE(run());
}

TEST_F(ArtifactScannerTest, gives_its_textures_back_in_cleanup_and_starts_afresh) {
    EXPECT_TRUE(run());
    spoil({1});
    EXPECT_TRUE(run());
    EXPECT_TRUE(scanner->cleanup(&renderer, nullptr));
    EXPECT_EQ(num_textures(), before);
    EXPECT_EQ(counters(), are(0, 0, 0));
    EXPECT_TRUE(scanner->cleanup(nullptr, nullptr)) << "twice";
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(0, 0, 0));
    EXPECT_EQ(num_textures(), before + 2);
    spoil({2});
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(1, 1, 1));
}

TEST_F(ArtifactScannerTest, outlives_its_textures) {
    EXPECT_TRUE(run());
    TextureMgr::get()->release_all_textures(nullptr, nullptr);
    before = 0;
    Texture texture;
    copy_frame(texture);
    EXPECT_EQ(scanner->find_artifacts(&texture, false), -1);
    EXPECT_FALSE(scanner->is_there_artifact(&texture, false));
    scanner->release(nullptr, nullptr);
    scanner = nullptr;
}

TEST_F(ArtifactScannerTest, goes_on_with_new_textures_when_the_manager_ended_the_old_ones) {
    EXPECT_TRUE(run());
    TextureMgr::get()->release_all_textures(nullptr, nullptr);
    before = 0;
    spoil({1});
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(0, 0, 0)) << "a new reference";
    spoil({1});
    EXPECT_TRUE(run());
    EXPECT_EQ(counters(), are(1, 1, 1));
}

} // namespace
} // namespace orvex_test
