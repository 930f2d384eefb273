// Hosts of every kind show the exact picture, frame after frame: in the window, and in each frame
// that they drew on the way. What is exact is drawn by the same engine into an off-screen window.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <X11/keysym.h>

#include <orvex/renderer/render_target.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>

#include "host_scene.h"
#include "tests/examples/host_course.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

constexpr int frames = 20;
constexpr int ahead = 7; ///< the second of two windows

/// A host program, and what it can do.
struct Host {
    std::string name = {};
    std::vector<std::string> command = {}; ///< all but the file
    bool core = false;                     ///< the profile of its contexts
    bool in_object = false;                ///< its toolkit has a framebuffer object for the picture
    bool is_marked = false;                ///< its toolkit paints over the picture
    bool replaces = false;                 ///< w takes the scene to a new window
    bool has_two = false;                  ///< a second window is some frames ahead
    const char* gl_integration = "";       ///< how Qt is to make contexts
};

void PrintTo(const Host& host, std::ostream* out) {
    *out << host.name;
}

/// What one picture is drawn into. The driver turns what goes to a surface upside down, and rounds
/// otherwise there than in a framebuffer object.
struct Canvas {
    bool core;      ///< the profile of the context
    bool in_object; ///< a framebuffer object stands for the window
    int width;
    int height;
    auto operator<=>(const Canvas&) const = default;
};

/// What the scene is to look like: off screen, with the same kind of context.
class Reference {
public:
    explicit Reference(const Canvas& wanted)
        : canvas(wanted)
        , scene(wanted.core)
        , window(scene.renderer->create_render_window()) {
        orvex::RenderWindow_ExtraData request;
        request.gl_major = canvas.core ? 3 : 2;
        request.gl_minor = canvas.core ? 2 : 1;
        request.depth_bits = 24;
        EXPECT_TRUE(window->initialize(nullptr, nullptr, canvas.width, canvas.height, "Off",
                                       nullptr, &request));
        EXPECT_TRUE(scene.enter(window));
        if (canvas.in_object)
            make_object();
    }

    Picture frame(int number) {
        scene.draw(window, number, canvas.width, canvas.height);
        return opaque(read_frame(canvas.width, canvas.height));
    }

private:
    Canvas canvas;
    HostScene scene;
    orvex::RenderWindow* window;

    void make_object() {
        orvex::RenderTarget* const object = scene.renderer->create_render_target();
        EXPECT_TRUE(object->create_target(canvas.width, canvas.height, orvex::PF_RGBA_U8, false,
                                          false, false, 0));
        window->set_framebuffer(object->get_fbo());
    }
};

/// The frames of one canvas, those that a second window shows included.
const std::vector<Picture>& reference(const Canvas& canvas) {
    static std::map<Canvas, std::vector<Picture>> known;
    std::vector<Picture>& pictures = known[canvas];
    if (pictures.empty()) {
        Reference scene(canvas);
        for (int number = 0; number < frames + ahead; ++number)
            pictures.push_back(scene.frame(number));
    }
    return pictures;
}

/// A frame as a host wrote it down.
struct Recorded {
    int frame = 0;
    unsigned int error = 0;
    Picture picture;
};

std::vector<Recorded> read_record(const std::string& path) {
    std::vector<Recorded> record;
    std::ifstream file(path, std::ios::binary);
    int width = 0;
    int height = 0;
    for (Recorded entry;
         file >> entry.frame >> width >> height >> entry.error && file.get() == '\n';
         record.push_back(entry)) {
        entry.picture = Picture(width, height);
        for (int y = height - 1; y >= 0; --y)
            file.read(reinterpret_cast<char*>(entry.picture.at(0, y)),
                      static_cast<std::streamsize>(width) * 4);
        entry.picture = opaque(entry.picture);
    }
    return record;
}

class Hosts : public testing::TestWithParam<Host> {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(begin_host_session(folder.path()));
        setenv("QT_XCB_GL_INTEGRATION", GetParam().gl_integration, 1);
    }

    std::vector<std::string> command() const {
        std::vector<std::string> command = GetParam().command;
        command.push_back(record);
        return command;
    }

    /// What the scene draws, and what is seen of it.
    const Picture& drawn(int number, int width, int height) const {
        return reference({GetParam().core, GetParam().in_object, width,
                          height})[static_cast<std::size_t>(number)];
    }
    Picture expected(int number, int width, int height) const {
        Picture picture = drawn(number, width, height);
        if (GetParam().is_marked)
            for (int y = 4; y < 10; ++y)
                for (int x = 4; x < 14; ++x)
                    std::copy_n(mark, 3, picture.at(x, y));
        return picture;
    }

    HostCourse course() const;
    void expect_exact_record() const;

    static constexpr unsigned char mark[3] = {250, 20, 30};
    TempDir folder;
    const std::string record = folder.file("record");
};

HostCourse Hosts::course() const {
    HostCourse course;
    course.frames = frames;
    course.grows_at = 6;
    course.shrinks_at = 9;
    course.replaced_at = GetParam().replaces ? 13 : -1;
    course.second_ahead = GetParam().has_two ? ahead : -1;
    course.name = "host";
    course.wanted = [this](int number, int width, int height) {
        return expected(number, width, height);
    };
    return course;
}

void Hosts::expect_exact_record() const {
    const std::vector<Recorded> entries = read_record(record);
    EXPECT_GE(entries.size(), static_cast<std::size_t>(frames));
    for (const Recorded& entry : entries) {
        const Picture& picture = entry.picture;
        ASSERT_GE(entry.frame, 0);
        ASSERT_LT(entry.frame, frames + ahead);
        EXPECT_EQ(entry.error, 0u) << "frame " << entry.frame;
        EXPECT_TRUE(picture == drawn(entry.frame, picture.width, picture.height))
            << "frame " << entry.frame << " in " << picture.width << " by " << picture.height;
    }
}

TEST_P(Hosts, show_the_exact_picture_frame_after_frame) {
    WindowProgram program(command(), Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    play(program, course());
    hit(program, XK_Escape);
    EXPECT_EQ(program.exit_code(), 0);
    // A toolkit may miss something of its own on a bare machine; a line of the engine's is a fault.
    EXPECT_EQ(program.get_output().find(" <"), std::string::npos) << program.get_output();
    expect_exact_record();
}

std::string host_name(const testing::TestParamInfo<Host>& info) {
    return info.param.name;
}

std::vector<Host> on_both_profiles(const Host& host) {
    std::vector<Host> hosts;
    for (const std::string profile : {"core", "compatibility"}) {
        hosts.push_back(host);
        hosts.back().core = profile == "core";
        hosts.back().name = host.name.empty() ? profile : host.name + "_" + profile;
        hosts.back().command.insert(hosts.back().command.begin() + 1, profile);
    }
    return hosts;
}

void append(std::vector<Host>& to, const std::vector<Host>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

std::vector<Host> of_toolkits() {
    std::vector<Host> hosts = on_both_profiles(
        {.name = "gtk", .command = {HOST_GTK}, .in_object = true, .replaces = true});
    Host qt = {.command = {HOST_QT}, .in_object = true, .is_marked = true, .replaces = true};
    for (const char* const integration : {"glx", "egl"}) {
        qt.name = std::string("qt_") + integration;
        qt.gl_integration = integration == std::string("glx") ? "xcb_glx" : "xcb_egl";
        append(hosts, on_both_profiles(qt));
    }
    return hosts;
}

/// With contexts that GLFW makes in either way, and those of the engine.
std::vector<Host> with_two_windows() {
    std::vector<Host> hosts;
    for (const std::string maker : {"glx", "egl", "engine"})
        for (const std::string sharing : {"shared", "apart"})
            append(hosts, on_both_profiles({.name = maker + "_" + sharing,
                                            .command = {HOST_TWO_WINDOWS, maker, sharing},
                                            .has_two = true}));
    return hosts;
}

std::vector<Host> that_replace_their_window() {
    std::vector<Host> hosts;
    for (const std::string maker : {"glx", "egl", "engine"})
        append(hosts,
               on_both_profiles(
                   {.name = maker, .command = {HOST_REPLACED_WINDOW, maker}, .replaces = true}));
    return hosts;
}

INSTANTIATE_TEST_SUITE_P(of_toolkits, Hosts, testing::ValuesIn(of_toolkits()), host_name);
INSTANTIATE_TEST_SUITE_P(with_two_windows, Hosts, testing::ValuesIn(with_two_windows()), host_name);
INSTANTIATE_TEST_SUITE_P(that_replace_their_window, Hosts,
                         testing::ValuesIn(that_replace_their_window()), host_name);
INSTANTIATE_TEST_SUITE_P(without_exceptions_and_types, Hosts,
                         testing::ValuesIn(on_both_profiles({.command = {HOST_PLAIN}})), host_name);

} // namespace

} // namespace orvex_test
