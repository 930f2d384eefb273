// The scene in a GtkGLArea: host_gtk (core|compatibility) [FILE]
//
// The space bar shows the next frame, w moves the area into a new window, Escape ends it.

#include <cstring>
#include <memory>

#include <gtk/gtk.h>

#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>

#include "host_scene.h"

namespace {

struct Host {
    bool core = true;
    std::unique_ptr<HostRecord> record;
    std::unique_ptr<HostScene> scene;
    orvex::RenderWindow* window = nullptr; ///< the scene's
    GtkWidget* toplevel = nullptr;
    GtkWidget* area = nullptr;
    int frame = 0;
    bool failed = false;
};

void fail(Host& host, const char* reason) {
    std::fprintf(stderr, "host_gtk: %s\n", reason);
    host.failed = true;
    gtk_main_quit();
}

/// The area has a new context, at first and whenever it comes into another window.
void on_realize(GtkGLArea* area, gpointer data) {
    Host& host = *static_cast<Host*>(data);
    gtk_gl_area_make_current(area);
    if (gtk_gl_area_get_error(area))
        return fail(host, gtk_gl_area_get_error(area)->message);
    if (!host.scene) {
        host.scene = std::make_unique<HostScene>(host.core);
        host.window = host.scene->renderer->create_render_window();
    }
    if (!host.window->osx_init_with_cocoa_nsgl_ctx(gtk_gl_area_get_context(area)))
        return fail(host, "no context to adopt");
    if (!host.scene->enter(host.window))
        fail(host, "the scene doesn't load");
}

/// The context ends after this.
void on_unrealize(GtkGLArea* area, gpointer data) {
    Host& host = *static_cast<Host*>(data);
    gtk_gl_area_make_current(area);
    if (host.scene)
        host.scene->leave(host.window);
}

gboolean on_render(GtkGLArea* area, GdkGLContext*, gpointer data) {
    Host& host = *static_cast<Host*>(data);
    GtkWidget* const widget = GTK_WIDGET(area);
    const int scale = gtk_widget_get_scale_factor(widget);
    const int width = scale * gtk_widget_get_allocated_width(widget);
    const int height = scale * gtk_widget_get_allocated_height(widget);
    // GTK draws the area into a framebuffer of its own, which is bound now.
    host.window->set_framebuffer(host.scene->renderer->fbo_get_current_bound());
    host.window->update_size(width, height);
    host.scene->draw(host.window, host.frame, width, height);
    host.record->add(host.frame, width, height);
    disturb_states();
    return TRUE;
}

/// Everything on the GPU ends while the context is still there.
void stop(Host& host) {
    gtk_gl_area_make_current(GTK_GL_AREA(host.area));
    host.scene.reset();
    gtk_main_quit();
}

gboolean on_close(GtkWidget*, GdkEvent*, gpointer data) {
    stop(*static_cast<Host*>(data));
    return TRUE;
}

gboolean on_key(GtkWidget*, GdkEventKey* event, gpointer data);

void open_window(Host& host) {
    host.toplevel = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_default_size(GTK_WINDOW(host.toplevel), 200, 150);
    g_signal_connect(host.toplevel, "key-press-event", G_CALLBACK(on_key), &host);
    g_signal_connect(host.toplevel, "delete-event", G_CALLBACK(on_close), &host);
}

void move_to_new_window(Host& host) {
    GtkWidget* const former = host.toplevel;
    g_object_ref(host.area);
    gtk_container_remove(GTK_CONTAINER(former), host.area);
    open_window(host);
    gtk_container_add(GTK_CONTAINER(host.toplevel), host.area);
    g_object_unref(host.area);
    gtk_widget_destroy(former);
    gtk_widget_show_all(host.toplevel);
}

gboolean on_key(GtkWidget*, GdkEventKey* event, gpointer data) {
    Host& host = *static_cast<Host*>(data);
    if (event->keyval == GDK_KEY_space) {
        ++host.frame;
        gtk_gl_area_queue_render(GTK_GL_AREA(host.area));
    } else if (event->keyval == GDK_KEY_w) {
        move_to_new_window(host);
    } else if (event->keyval == GDK_KEY_Escape) {
        stop(host);
    }
    return TRUE;
}

void open_area(Host& host) {
    host.area = gtk_gl_area_new();
    gtk_gl_area_set_has_depth_buffer(GTK_GL_AREA(host.area), TRUE);
    gtk_gl_area_set_auto_render(GTK_GL_AREA(host.area), FALSE);
    g_signal_connect(host.area, "realize", G_CALLBACK(on_realize), &host);
    g_signal_connect(host.area, "unrealize", G_CALLBACK(on_unrealize), &host);
    g_signal_connect(host.area, "render", G_CALLBACK(on_render), &host);
    gtk_container_add(GTK_CONTAINER(host.toplevel), host.area);
    gtk_widget_show_all(host.toplevel);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: host_gtk (core|compatibility) [FILE]\n", stderr);
        return 2;
    }
    Host host;
    host.core = std::strcmp(argv[1], "core") == 0;
    host.record = std::make_unique<HostRecord>(argc > 2 ? argv[2] : nullptr);
    // GTK asks for a core context, unless it is told otherwise before it starts.
    if (!host.core)
        g_setenv("GDK_GL", "legacy", TRUE);
    if (!gtk_init_check(nullptr, nullptr)) {
        std::fputs("host_gtk: no display\n", stderr);
        return 1;
    }
    open_window(host);
    open_area(host);
    gtk_main();
    return host.failed ? 1 : 0;
}
