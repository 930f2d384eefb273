// The viewer's way from the first frame to the last, in a window that a test plays.

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "loop.h"
#include "messages.h"
#include "orvex_kit/engine.h"
#include "tests/orvex_kit/sample_models.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

/// A window off screen, whose time passes by waiting alone. What happens in it comes step by step,
/// one for each wait; behind the last one it is closed.
class PlayedWindow : public ViewerWindow {
public:
    explicit PlayedWindow(Viewer& viewer)
        : viewer(viewer) {}

    double now() override { return time; }
    void wait(double seconds) override {
        waits.push_back(seconds);
        time += seconds > 0.0 ? seconds : 0.01;
        if (next == steps.size())
            viewer.end();
        else
            steps[next++]();
    }
    bool frame(const std::function<void(kit::View&)>& draw) override {
        if (is_hidden || !view)
            return false;
        draw(view);
        ++frames;
        return true;
    }
    std::string reason() const override { return view.reason(); }
    void set_title(const std::string& title) override { titles.push_back(title); }

    void then(std::function<void()> step) { steps.push_back(std::move(step)); }
    void then_nothing(int times) {
        for (int i = 0; i < times; ++i)
            then([] {});
    }

    kit::View view{64, 48};
    bool is_hidden = false;
    int frames = 0;
    std::vector<double> waits;
    std::vector<std::string> titles;

private:
    Viewer& viewer;
    std::vector<std::function<void()>> steps;
    std::size_t next = 0;
    double time = 100.0;
};

class LoopTest : public testing::Test {
protected:
    TempDir folder;
    kit::Engine engine;
    Options options;
    std::unique_ptr<PlayedWindow> window;
    std::unique_ptr<Viewer> viewer;

    void SetUp() override {
        set_wordiness(Wordiness::quiet);
        options.model = write_box(folder);
        viewer = std::make_unique<Viewer>(options);
        ASSERT_EQ(viewer->open(), "");
        window = std::make_unique<PlayedWindow>(*viewer);
        viewer->resize({64, 48, 1.0}, 1.0f);
    }
    void TearDown() override {
        viewer.reset();
        set_wordiness(Wordiness::normal);
    }
};

TEST_F(LoopTest, draws_once_and_nothing_while_nothing_happens) {
    window->then_nothing(100);
    EXPECT_EQ(run(*viewer, *window), "");
    EXPECT_EQ(window->frames, 1);
    for (const double seconds : window->waits)
        EXPECT_GE(seconds, 0.1);
}

TEST_F(LoopTest, draws_once_for_what_happens_between_two_frames) {
    window->then([&] {
        viewer->press(key_of('w'));
        viewer->release(key_of('w'));
        viewer->turn_wheel(1);
    });
    window->then_nothing(3);
    EXPECT_EQ(run(*viewer, *window), "");
    EXPECT_EQ(window->frames, 2);
}

TEST_F(LoopTest, moves_on_by_time_while_a_key_is_held) {
    const orvex::vec4 before = viewer->camera().eye();
    window->then([&] { viewer->press(Key::right); });
    window->then_nothing(10);
    window->then([&] { viewer->release(Key::right); });
    window->then_nothing(5);
    EXPECT_EQ(run(*viewer, *window), "");
    EXPECT_EQ(window->frames, 11);
    // Ten waits of a hundredth of a second, at 90 degrees a second.
    kit::Orbit orbit(viewer->model().extent(), {options.azimuth, options.elevation});
    kit::OrbitKeys held;
    held.right = true;
    orbit.move(held, 0.1);
    const orvex::vec4 after = viewer->camera().eye();
    EXPECT_NE(before.x, after.x);
    EXPECT_NEAR(after.x, orbit.camera({64, 48}).eye().x, 1e-4f);
}

TEST_F(LoopTest, draws_all_the_time_while_it_measures) {
    window->then([&] { viewer->press(key_of('s')); });
    window->then_nothing(20);
    window->then([&] { viewer->press(key_of('s')); });
    window->then_nothing(20);
    EXPECT_EQ(run(*viewer, *window), "");
    EXPECT_EQ(window->frames, 23);
}

TEST_F(LoopTest, waits_for_a_hidden_window) {
    window->is_hidden = true;
    window->then([&] { viewer->press(key_of('s')); });
    window->then([&] { viewer->press(Key::left); });
    window->then_nothing(10);
    window->then([&] {
        EXPECT_EQ(window->frames, 0);
        window->is_hidden = false;
        viewer->release(Key::left);
        viewer->press(key_of('s'));
        viewer->refresh();
    });
    window->then_nothing(3);
    EXPECT_EQ(run(*viewer, *window), "");
    EXPECT_EQ(window->frames, 1);
    for (const double seconds : window->waits)
        EXPECT_GE(seconds, 0.1);
}

TEST_F(LoopTest, takes_up_what_changes_on_disk) {
    window->then_nothing(2);
    window->then([&] { write_ball(folder); });
    window->then([&] { std::filesystem::rename(folder.file("ball.obj"), options.model); });
    window->then_nothing(4);
    EXPECT_EQ(run(*viewer, *window), "");
    EXPECT_EQ(window->frames, 2);
    EXPECT_EQ(viewer->model().num_faces(), 2u * 24 * 12);
}

TEST_F(LoopTest, names_the_model_in_the_frame_of_the_window) {
    window->then([&] { viewer->drop({write_ball(folder)}); });
    window->then_nothing(2);
    EXPECT_EQ(run(*viewer, *window), "");
    EXPECT_EQ(window->titles,
              (std::vector<std::string>{"box.obj - orvex-view", "ball.obj - orvex-view"}));
}

TEST_F(LoopTest, ends_with_the_reason_where_nothing_can_be_drawn) {
    window->view = kit::View(-1, 48);
    window->then_nothing(5);
    EXPECT_EQ(run(*viewer, *window), "a view of -1x48 pixels: sides go from 1");
    EXPECT_TRUE(window->waits.empty());
}

} // namespace

} // namespace orvex_test
