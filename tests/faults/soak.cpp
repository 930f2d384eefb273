// Does the same for a long time, and looks whether anything grows:
//
//   soak [--minutes N]
//
// A round plays every scenario of the fault tests without a fault, each from the engine's start to
// its stop, and then one long session: frames in which everything is made, drawn and ended, a
// window and a target that change their sizes, and a server that is asked by many clients
// meanwhile. After each round what is held is counted. The first rounds fill what is kept for good;
// from then on nothing may grow.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <malloc.h>
#include <unistd.h>

#include "census.h"
#include "clients.h"
#include "scenarios.h"

using namespace orvex;
using namespace orvex_test;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int frames_of_session = 60;
constexpr int num_clients = 40;
constexpr int rounds_to_warm = 3;
constexpr std::size_t least_rounds = 6;
/// The driver's caches and the heap's holes move a little; a leak of one context a round is more.
constexpr double allowed_heap_bytes = 4 * 1024;
constexpr double allowed_resident_bytes = 64 * 1024;

/// What is held after a round.
struct Sample {
    Census census;
    double heap = 0.0;     ///< bytes that the heap has given out, to the driver as well
    double resident = 0.0; ///< bytes of the process in memory
};

double resident_bytes() {
    std::ifstream file("/proc/self/statm");
    double pages = 0.0;
    double resident = 0.0;
    file >> pages >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

Sample take_sample(const Census& lowest) {
    Sample sample;
    sample.census = settled_census(lowest);
    const auto heap = mallinfo2();
    sample.heap = static_cast<double>(heap.uordblks + heap.hblkhd);
    sample.resident = resident_bytes();
    return sample;
}

/// What one frame of the session makes, draws and ends.
void play_frame(Stage& stage, int frame) {
    MeshTorus* const ring = stage.make<MeshTorus>();
    ring->set_build_params(2.0f, 0.5f, 8 + frame % 9);
    stage.build(ring);
    Texture* const texture = stage.get("create_texture_2d", [&] {
        return TextureMgr::get()->create_texture_2d(8, 8 + static_cast<unsigned long>(frame % 5),
                                                    PF_RGBA_U8);
    });
    stage.get("upload_to_renderer",
              [&] { return TextureMgr::get()->upload_to_renderer(stage.renderer, texture, 0); });
    RenderTarget* const target =
        stage.get("create_render_target", [&] { return stage.renderer->create_render_target(); });
    stage.get("create_target",
              [&] { return target->create_target(32, 32, PF_RGBA_U8, false, true, false, 0); });
    stage.get("resize", [&] { return target->resize(16 + frame % 7, 24); });
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera();
    target->activate();
    stage.begin(camera);
    stage.draw(program, ring);
    target->deactivate();
    stage.begin(camera);
    stage.draw(program, ring);
    stage.window->display_framebuffer();
    stage.end(ring);
    stage.end(camera);
    stage.renderer->kill_all_render_targets();
    TextureMgr::get()->release_texture(stage.renderer, texture, nullptr);
    GpuProgramMgr::get()->release_all_resources(stage.renderer, nullptr);
}

/// The window in another size: its context ends, and with it the renderer's work.
void resize_window(Stage& stage, int size) {
    stage.renderer->stop();
    stage.get("terminate", [&] { return stage.window->terminate(); });
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    stage.get("initialize", [&] {
        return stage.window->initialize(nullptr, nullptr, size, size, "", nullptr, &request);
    });
    stage.get("start", [&] { return stage.renderer->start(); });
}

void obey(SocketCore* core, Socket* client, unsigned char* text, int size, void*) {
    core->send_socket(client, text, size - 1);
}

/// Frames, with a server that answers at the same time.
void play_session(Stage& stage) {
    stage.open_window(Path::gl3);
    TcpServer server;
    server.set_client_proc(obey, nullptr);
    server.threaded_client_callback(true);
    ServedPort port;
    stage.get("run", [&] { return port.start(server, &TcpServer::run); });
    std::thread clients([&] {
        for (int i = 0; i < num_clients; ++i)
            if (ask(port.number(), "a message of the load") != "a message of the load")
                stage.complain("the server", "gives no answer");
    });
    for (int frame = 0; frame < frames_of_session; ++frame) {
        play_frame(stage, frame);
        if (frame % 20 == 19)
            resize_window(stage, 48 + frame);
    }
    clients.join();
    stage.get("send_stop_message", [&] { return ServedPort::stop(server); });
    port.wait();
    server.stop();
    stage.close();
}

/// @return whether it went well
bool play(const Scenario& scenario) {
    Outcome outcome;
    try {
        Stage stage(outcome);
        scenario.play(stage);
    } catch (const Broken&) {
        outcome.broken = true;
    }
    for (const std::string& complaint : outcome.complaints)
        std::printf("%s: %s\n", scenario.name, complaint.c_str());
    return outcome.complaints.empty() && !outcome.broken;
}

bool play_round() {
    bool good = true;
    for (const Scenario& scenario : all_scenarios())
        good = play(scenario) && good;
    return play({"session", play_session}) && good;
}

/// How much a figure grows a round, by least squares.
template<class Figure>
double slope(const std::vector<Sample>& samples, Figure figure) {
    const auto n = static_cast<double>(samples.size());
    double sum_x = 0.0, sum_y = 0.0, sum_xx = 0.0, sum_xy = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto x = static_cast<double>(i);
        const double y = figure(samples[i]);
        sum_x += x;
        sum_y += y;
        sum_xx += x * x;
        sum_xy += x * y;
    }
    return (n * sum_xy - sum_x * sum_y) / (n * sum_xx - sum_x * sum_x);
}

/// The smallest figure of the last half against the largest of the first: what swings grows in
/// neither, what leaks does.
template<class Figure>
bool grows(const char* name, const std::vector<Sample>& samples, double allowed, Figure figure) {
    const std::size_t half = samples.size() / 2;
    double first = figure(samples[0]);
    for (std::size_t i = 0; i < half; ++i)
        first = std::max(first, figure(samples[i]));
    double last = figure(samples[half]);
    for (std::size_t i = half; i < samples.size(); ++i)
        last = std::min(last, figure(samples[i]));
    const double a_round = slope(samples, figure);
    const bool found = last > first && a_round > allowed;
    std::printf("%-28s %14.0f %14.0f %12.1f %12.1f  %s\n", name, figure(samples.front()),
                figure(samples.back()), a_round, allowed, found ? "GROWS" : "stays");
    return found;
}

bool anything_grows(const std::vector<Sample>& samples) {
    std::printf("%-28s %14s %14s %12s %12s\n", "figure", "first", "last", "a round", "allowed");
    bool found = grows("blocks of the engine", samples, 0, [](const Sample& sample) {
        return static_cast<double>(sample.census.blocks);
    });
    found |= grows("objects of OpenGL", samples, 0, [](const Sample& sample) {
        return static_cast<double>(sample.census.gl_objects);
    });
    found |= grows("contexts and surfaces", samples, 0, [](const Sample& sample) {
        return static_cast<double>(sample.census.egl_objects);
    });
    found |= grows("descriptors", samples, 0, [](const Sample& sample) {
        return static_cast<double>(sample.census.descriptors);
    });
    found |= grows("threads", samples, 0,
                   [](const Sample& sample) { return static_cast<double>(sample.census.threads); });
    found |= grows("bytes of the heap", samples, allowed_heap_bytes,
                   [](const Sample& sample) { return sample.heap; });
    found |= grows("bytes in memory", samples, allowed_resident_bytes,
                   [](const Sample& sample) { return sample.resident; });
    return found;
}

double read_minutes(int argc, char** argv) {
    if (argc == 1)
        return 10.0;
    return argc == 3 && std::strcmp(argv[1], "--minutes") == 0 ? std::atof(argv[2]) : 0.0;
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = read_minutes(argc, argv);
    if (minutes <= 0.0) {
        std::fprintf(stderr, "usage: soak [--minutes N]\n");
        return 2;
    }
    find_engine();
    const Clock::time_point end =
        Clock::now() + std::chrono::seconds(static_cast<long>(minutes * 60.0));
    bool good = true;
    for (int i = 0; i < rounds_to_warm; ++i)
        good = play_round() && good;
    const Census lowest = take_census();
    std::vector<Sample> samples;
    while (Clock::now() < end || samples.size() < least_rounds) {
        good = play_round() && good;
        samples.push_back(take_sample(lowest));
    }
    std::printf("%zu rounds of %zu scenarios and %d frames\n", samples.size(),
                all_scenarios().size(), frames_of_session);
    const bool found = anything_grows(samples);
    return good && !found ? 0 : 1;
}
