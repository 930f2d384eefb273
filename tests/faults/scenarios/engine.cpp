// The engine's start and stop, its log, windows and plugins.

#include <cstdio>

#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

void play_core(Stage& stage) {
    const std::string log = scratch_file("core.log");
    stage.start_engine(log.c_str());
    stage.tell("plugins", static_cast<double>(PluginMgr::get()->get_num_plugins()));
    stage.close();
    std::remove(log.c_str());
}

void play_context(Stage& stage) {
    stage.start_engine();
    stage.renderer = stage.get("load_core_opengl_renderer_plugin", [] {
        return Kernel::get()->load_core_opengl_renderer_plugin(true);
    });
    stage.get("Renderer::initialize", [&] { return stage.renderer->initialize(); });
    stage.window =
        stage.get("create_render_window", [&] { return stage.renderer->create_render_window(); });
    stage.get("RenderWindow::initialize", [&] {
        return stage.window->initialize(nullptr, nullptr, 32, 16, "", nullptr, nullptr);
    });
    stage.tell("width", stage.window->get_width());
    stage.get("terminate", [&] { return stage.window->terminate(); });
    stage.run("kill_all_render_windows", [&] { stage.renderer->kill_all_render_windows(); });
    stage.renderer = nullptr; // it wasn't started, and has nothing to stop
    stage.close();
}

void play_window(Stage& stage) {
    stage.open_window(Path::gl3);
    RenderWindow* const second =
        stage.get("create_render_window", [&] { return stage.renderer->create_render_window(); });
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    stage.get("initialize", [&] {
        return second->initialize(nullptr, nullptr, 32, 16, "", stage.window, &request);
    });
    stage.tell("width", second->get_width());
    stage.run("build_opengl_extensions_list", [&] { second->build_opengl_extensions_list(); });
    stage.tell("has extensions", second->get_num_opengl_extensions() > 0);
    stage.get("terminate", [&] { return second->terminate(); });
    stage.get("apply_context", [&] { return stage.window->apply_context(true); });
    stage.frame([&] { stage.renderer->clear_color_depth_buffers(0.5f, 0.25f, 0, 1, 1); });
    stage.close();
}

void play_renderer_gl2(Stage& stage) {
    stage.open_window(Path::gl2);
    int major = 0;
    int minor = 0;
    stage.renderer->get_opengl_version(&major, &minor);
    stage.tell("version", major);
    stage.frame([&] { stage.renderer->clear_color_depth_buffers(0, 0.25f, 0.5f, 1, 1); });
    stage.run("stop", [&] { stage.renderer->stop(); });
    stage.get("start", [&] { return stage.renderer->start(); });
    stage.frame([&] { stage.renderer->clear_color_depth_buffers(0.5f, 0, 0, 1, 1); });
    stage.close();
}

void play_log(Stage& stage) {
    const std::string path = scratch_file("lines.log");
    Log* const log = stage.make<Log>();
    stage.get("open", [&] { return log->open(path.c_str(), false); });
    stage.run("trace", [&] { log->simple_trace(LOG_LEVEL_INFO, "a line"); });
    stage.run("tracef",
              [&] { log->simple_tracef(LOG_LEVEL_ERROR, "%s", std::string(300, 'x').c_str()); });
    stage.run("close", [&] { log->close(); });
    stage.run_quietly("~Log", [&] { delete log; });
    stage.tell("the file", digest_of_file(path));
    std::remove(path.c_str());
}

void play_plugin(Stage& stage) {
    stage.start_engine();
    Plugin* const loader = stage.get(
        "load_plugin", [] { return Kernel::get()->load_plugin(ORVEX_SOUP_LOADER, false, false); });
    stage.get("initialize", [&] { return loader->initialize(); });
    stage.get("start", [&] { return loader->start(); });
    Model* const model = stage.get_quietly("load_model_from_file", [] {
        return aux::load_model_from_file("tent.soup", ORVEX_SOUP_DATA "/", ORVEX_SOUP_DATA "/");
    });
    stage.tell("faces", static_cast<double>(model->get_num_faces(model)));
    stage.end(model);
    stage.run_quietly("release_all_resources",
                      [] { MaterialMgr::get()->release_all_resources(nullptr, nullptr); });
    stage.run("unload_plugin", [&] { Kernel::get()->unload_plugin(loader); });
    stage.close();
}

} // namespace orvex_test
