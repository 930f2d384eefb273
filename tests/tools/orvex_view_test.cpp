// orvex-view as it is called, on an X server of the test's own: keys are hit, files dropped and
// written, and the window's pixels are looked at.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/keysym.h>

#include "current_folder.h"
#include "program_run.h"
#include "tests/examples/window_program.h"
#include "tests/orvex_kit/sample_models.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"
#include "tests/support/x_server.h"
#include "tests/support/x_window.h"
#include "x_drop.h"

#include <orvex_kit/engine.h>
#include <orvex_kit/model.h>
#include <orvex_kit/orbit.h>

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

constexpr int width = 320;
constexpr int height = 240;

class OrvexView : public testing::Test {
protected:
    TempDir folder;
    std::unique_ptr<WindowProgram> program;
    Picture first;

    void SetUp() override {
        ASSERT_FALSE(XServer::get().display().empty()) << "no X server";
        XAutoRepeatOff(x_connection());
        XSync(x_connection(), False);
    }

    void open(std::vector<std::string> words) {
        words.insert(words.begin(), {ORVEX_VIEW, "--size=320x240"});
        const CurrentFolder here(folder.path());
        program = std::make_unique<WindowProgram>(words, Leaks::passed_over);
        ASSERT_TRUE(program->has_window()) << program->get_output();
    }
    /// What orvex-render draws from where the viewer begins.
    Picture rendered(const std::string& model, const std::vector<std::string>& words = {}) {
        const kit::Engine engine;
        const kit::Model loaded(model);
        const kit::OrbitPlace place = kit::Orbit(loaded.extent()).place();
        const orvex::vec4 eye = kit::Orbit(loaded.extent()).camera({width, height}).eye();
        const auto text_of = [](const orvex::vec4& v) {
            std::array<char, 80> text{};
            std::snprintf(text.data(), text.size(), "[%.9g, %.9g, %.9g]", double(v.x), double(v.y),
                          double(v.z));
            return std::string(text.data());
        };
        const std::string track = R"({"keys": [{"time": 0, "eye": )" + text_of(eye) +
                                  R"(, "target": )" + text_of(place.target) + R"(, "up": )" +
                                  text_of(kit::axes_of(place.angle).up) + "}]}";
        std::vector<std::string> all = {
            model, "--size=320x240", "--track", folder.write("track.json", track),
            "-o",  "frame.raw",      "-q"};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome outcome = run_render(folder.path(), all);
        EXPECT_EQ(outcome.code, 0) << outcome.errors;
        return opaque_picture(content_of(folder.file("frame.raw")));
    }
    static Picture opaque_picture(const std::string& bytes) {
        Picture picture(width, height);
        const std::size_t channels = bytes.size() / std::size_t(width * height);
        for (std::size_t i = 0; i < std::size_t(width * height) && channels >= 3; ++i) {
            for (std::size_t channel = 0; channel < 3; ++channel)
                picture.pixels[4 * i + channel] =
                    static_cast<unsigned char>(bytes[channels * i + channel]);
            picture.pixels[4 * i + 3] = 255;
        }
        return picture;
    }

    testing::AssertionResult comes(const std::function<bool(const Picture&)>& is_wanted) {
        if (program->wait_until(is_wanted))
            return testing::AssertionSuccess();
        write_png(ORVEX_TEST_OUTPUT_DIR "/orvex-view-seen.png", program->pixels());
        return testing::AssertionFailure()
               << "it never came; see orvex-view-seen.png. " << program->get_output();
    }
    testing::AssertionResult comes(const Picture& wanted) {
        write_png(ORVEX_TEST_OUTPUT_DIR "/orvex-view-wanted.png", wanted);
        return comes([&](const Picture& seen) { return seen == wanted; });
    }
    /// Something else than a picture.
    testing::AssertionResult leaves(const Picture& before) {
        return comes(
            [&](const Picture& seen) { return seen.width == before.width && !(seen == before); });
    }
    void tap(unsigned long key) {
        program->press_key(key);
        program->release_key(key);
    }
    void expect_end(unsigned long key = XK_Escape) {
        tap(key);
        EXPECT_EQ(program->exit_code(), 0) << program->get_output();
    }
};

const std::string lighthouse = ORVEX_EXAMPLE_DATA "/lighthouse.obj";

TEST_F(OrvexView, shows_the_picture_that_orvex_render_draws) {
    const Picture lit = rendered(lighthouse);
    const Picture clay = rendered(lighthouse, {"--look", "matcap"});
    EXPECT_FALSE(lit == clay);
    for (const char* const path : {"--path=gl3", "--path=gl2"}) {
        open({"--bare", path, lighthouse});
        EXPECT_TRUE(comes(lit)) << path;
        tap(XK_l);
        EXPECT_TRUE(comes(clay)) << path;
        tap(XK_1);
        EXPECT_TRUE(comes(lit)) << path;
        expect_end();
        EXPECT_EQ(program->get_output(), "");
    }
}

TEST_F(OrvexView, changes_what_it_shows_by_keys) {
    open({"--bare", lighthouse});
    const Picture lit = rendered(lighthouse);
    EXPECT_TRUE(comes(lit));
    for (const auto& [key, times] : {std::pair{XK_Tab, 7}, {XK_w, 2}, {XK_u, 6}, {XK_h, 2}}) {
        // GLFW takes presses within a millisecond for one.
        for (int i = 0; i < times; ++i) {
            const Picture before = program->pixels();
            tap(static_cast<unsigned long>(key));
            EXPECT_TRUE(leaves(before)) << key << " " << i;
        }
        EXPECT_TRUE(comes(lit)) << key;
    }
    tap(XK_s);
    EXPECT_TRUE(leaves(lit));
    tap(XK_s);
    EXPECT_TRUE(comes(lit));
    program->press_key(XK_Left);
    EXPECT_TRUE(leaves(lit));
    program->release_key(XK_Left);
    tap(XK_Home);
    EXPECT_TRUE(comes(lit));
    program->press_key(XK_Shift_L);
    tap(XK_Tab);
    program->release_key(XK_Shift_L);
    EXPECT_TRUE(leaves(lit));
    tap(XK_Tab);
    EXPECT_TRUE(comes(lit));
    expect_end(XK_q);
}

TEST_F(OrvexView, turns_the_model_with_the_mouse) {
    open({"--bare", lighthouse});
    const Picture lit = rendered(lighthouse);
    program->move_pointer(100, 100);
    EXPECT_TRUE(comes(lit));
    for (const unsigned button : {1u, 2u, 3u}) {
        program->press_button(button);
        program->move_pointer(150, 110);
        program->release_button(button);
        EXPECT_TRUE(leaves(lit)) << button;
        tap(XK_Home);
        EXPECT_TRUE(comes(lit)) << button;
        program->move_pointer(100, 100);
    }
    program->press_button(4);
    program->release_button(4);
    EXPECT_TRUE(leaves(lit));
    expect_end();
}

TEST_F(OrvexView, follows_the_size_of_its_window) {
    open({"--bare", "-b", "#102030", lighthouse});
    program->resize(400, 200);
    EXPECT_TRUE(comes([](const Picture& seen) {
        return seen.width == 400 && seen.height == 200 && seen.at(399, 199)[0] == 0x10 &&
               seen.at(200, 100)[0] != 0x10;
    }));
    program->close();
    EXPECT_EQ(program->exit_code(), 0);
}

TEST_F(OrvexView, shows_what_is_dropped_and_keeps_it_when_the_next_is_none) {
    open({"--bare"});
    EXPECT_TRUE(comes([](const Picture& seen) { return seen.at(0, 0)[0] == 0x2b; }));
    const Picture empty = program->pixels();
    const std::string box = write_box(folder);
    const Picture wanted = rendered(box);
    ASSERT_TRUE(drop_on_window(program->get_window(), "file://" + box + "\r\n"));
    EXPECT_TRUE(comes(wanted));
    const std::string bad = folder.write("a bad one.obj", "nothing");
    ASSERT_TRUE(drop_on_window(program->get_window(),
                               "file://" + folder.path() + "/a%20bad%20one.obj\r\n"));
    // The reason stands along the lower edge.
    EXPECT_TRUE(comes([&](const Picture& seen) {
        return std::equal(seen.pixels.begin(), seen.pixels.begin() + 4 * width * 60,
                          wanted.pixels.begin()) &&
               !(seen == wanted);
    }));
    ASSERT_TRUE(drop_on_window(program->get_window(), "file://" + box + "\r\n"));
    EXPECT_TRUE(comes(wanted));
    expect_end();
    EXPECT_TRUE(has(program->get_output(), "orvex-view: warning: " + bad + ":"))
        << program->get_output();
}

TEST_F(OrvexView, reads_its_model_again_when_it_changes_on_disk) {
    const std::string box = write_box(folder);
    const std::string ball = write_ball(folder);
    const Picture round = rendered(ball);
    const Picture square = rendered(box);
    open({"--bare", box});
    EXPECT_TRUE(comes(square));
    std::filesystem::rename(ball, box);
    EXPECT_TRUE(leaves(square));
    // The eye has stayed where it was.
    tap(XK_Home);
    EXPECT_TRUE(comes(round));
    expect_end();
    EXPECT_TRUE(has(program->get_output(), "box.obj is read again")) << program->get_output();
}

TEST_F(OrvexView, writes_pictures_to_files) {
    open({"--bare", lighthouse});
    const Picture lit = rendered(lighthouse);
    EXPECT_TRUE(comes(lit));
    tap(XK_p);
    EXPECT_TRUE(leaves(lit));
    const std::optional<Picture> written = read_picture(folder.file("lighthouse-001.png"));
    ASSERT_TRUE(written.has_value());
    EXPECT_TRUE(*written == lit);
    expect_end();
    EXPECT_EQ(program->get_output(), "wrote lighthouse-001.png\n");
}

struct Refusal {
    std::vector<std::string> words;
    int code;
    std::string message;
};

TEST_F(OrvexView, tells_why_it_shows_nothing) {
    const std::string bad = folder.write("bad.obj", "nothing");
    for (const Refusal& row : {
             Refusal{{"/none.obj"}, 1, "orvex-view: /none.obj: No such file or directory\n"},
             Refusal{{bad}, 1, "orvex-view: " + bad + ": no loader can read it as a model"},
             Refusal{{folder.path()}, 1, "orvex-view: " + folder.path() + ": "},
             Refusal{{"-"}, 1, "orvex-view: a model is read from a file"},
             Refusal{{"--look=/none.glsl"}, 1, "orvex-view: "},
             Refusal{{"--plugin=/none.so"}, 1, "orvex-view: /none.so: "},
             Refusal{{"--loader=none", lighthouse}, 1, "orvex-view: "},
             Refusal{{"--lock=lit"},
                     2,
                     "orvex-view: unknown option '--lock'; did you mean '--look'?\n"
                     "Try 'orvex-view --help'.\n"},
             Refusal{{lighthouse, lighthouse}, 2, "orvex-view: unexpected argument"},
         }) {
        std::vector<std::string> command = {ORVEX_VIEW, "-q"};
        command.insert(command.end(), row.words.begin(), row.words.end());
        WindowProgram refused(command, Leaks::passed_over);
        EXPECT_EQ(refused.exit_code(), row.code) << row.message;
        EXPECT_EQ(refused.get_output().substr(0, row.message.size()), row.message);
    }
}

/// Has programs that are started find a driver of OpenGL 2.1.
class OldDriver {
public:
    OldDriver() {
        setenv("MESA_GL_VERSION_OVERRIDE", "2.1", 1);
        setenv("MESA_GLSL_VERSION_OVERRIDE", "120", 1);
    }
    ~OldDriver() {
        unsetenv("MESA_GL_VERSION_OVERRIDE");
        unsetenv("MESA_GLSL_VERSION_OVERRIDE");
    }
};

TEST_F(OrvexView, tells_what_an_old_driver_draws_and_what_it_doesnt) {
    const OldDriver driver;
    WindowProgram refused({ORVEX_VIEW, lighthouse}, Leaks::passed_over);
    EXPECT_EQ(refused.exit_code(), 1);
    EXPECT_TRUE(has_match(refused.get_output(),
                          "^orvex-view: no window: .*; --path gl2 draws with OpenGL 2.1\n$"))
        << refused.get_output();
    open({"--bare", "--path=gl2", lighthouse});
    const Picture lit = rendered(lighthouse, {"--path=gl2"});
    EXPECT_TRUE(comes(lit));
    tap(XK_Tab);
    EXPECT_TRUE(leaves(lit));
    tap(XK_Home);
    EXPECT_TRUE(comes(lit));
    expect_end();
    EXPECT_TRUE(has(program->get_output(), "orvex-view: warning: no layer depth: this driver has "
                                           "no shading language 1.50 on path gl2"))
        << program->get_output();
}

TEST_F(OrvexView, helps_without_a_display) {
    for (const auto& [option, begin] :
         {std::pair{"--help", "usage: orvex-view [options] [MODEL]\n"},
          {"--version", "orvex-view " ORVEX_RENDER_VERSION " (Brell)\n"}}) {
        const Outcome outcome = run_view("/", {option}, {"DISPLAY="});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.out.substr(0, std::strlen(begin)), begin);
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST_F(OrvexView, needs_a_display_and_says_so) {
    const Outcome outcome = run_view(folder.path(), {lighthouse}, {"DISPLAY="});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors.substr(0, 23), "orvex-view: no window: ");
    EXPECT_TRUE(has(outcome.errors, "orvex-render draws without a display")) << outcome.errors;
}

} // namespace

} // namespace orvex_test
