// A view in GTK 4: host_gtk4 gl3. w takes the area into another window.

#include "orvex_kit/windows/gtk4.h"

#include "window_host.h"

using namespace orvex;

namespace {

struct Host {
    orvex_test::TurningTorus torus;
    GtkWidget* area = gtk_gl_area_new();
    GtkWidget* windows[2] = {};
    int frame = 0;
    bool ends = false;

    void open(int number, int width, int height) {
        windows[number] = gtk_window_new();
        gtk_window_set_decorated(GTK_WINDOW(windows[number]), FALSE);
        gtk_window_set_default_size(GTK_WINDOW(windows[number]), width, height);
        GtkEventController* const keys = gtk_event_controller_key_new();
        g_signal_connect(keys, "key-pressed", G_CALLBACK(&Host::on_key), this);
        gtk_widget_add_controller(windows[number], keys);
        gtk_window_set_child(GTK_WINDOW(windows[number]), area);
        gtk_window_present(GTK_WINDOW(windows[number]));
    }
    static gboolean on_key(GtkEventControllerKey*, guint key, guint, GdkModifierType,
                           gpointer self) {
        auto& host = *static_cast<Host*>(self);
        host.frame += key == GDK_KEY_space;
        host.ends = host.ends || key == GDK_KEY_Escape;
        if (key == GDK_KEY_w) {
            gtk_window_set_child(GTK_WINDOW(host.windows[0]), nullptr);
            host.open(1, 170, 120);
        }
        gtk_gl_area_queue_render(GTK_GL_AREA(host.area));
        return TRUE;
    }
};

} // namespace

int main() {
    if (!gtk_init_check())
        return 1;
    const kit::Engine engine;
    Host host;
    const kit::GtkView view(GTK_GL_AREA(host.area),
                            [&](kit::View& shown) { host.torus.draw(shown, host.frame); });
    host.open(0, 200, 150);
    while (!host.ends)
        g_main_context_iteration(nullptr, TRUE);
    return 0;
}
