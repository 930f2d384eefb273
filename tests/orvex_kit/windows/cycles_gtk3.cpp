// Cycles of resize, hide and other windows in GTK 3, which has no adapter: a view on the context
// that is current. cycles_gtk3 gl3 [SCALE].

#include <gtk/gtk.h>

#include "cycles.h"
#include "orvex_kit/windows/host_view.h"
#include "window_host.h"

using namespace orvex;

namespace {

struct Host {
    orvex_test::Cycles& cycles;
    GtkWidget* area = GTK_WIDGET(g_object_ref_sink(gtk_gl_area_new()));
    /// GTK keeps some memory of each window that is destroyed: two take turns.
    GtkWidget* windows[2] = {make_window(), make_window()};
    GtkWidget* window = nullptr; ///< the one that shows the area
    bool ends = false;
    kit::HostView host;

    explicit Host(orvex_test::Cycles& cycles)
        : cycles(cycles) {
        g_signal_connect(area, "render", G_CALLBACK(&Host::on_render), this);
        g_signal_connect(area, "unrealize", G_CALLBACK(&Host::on_unrealize), this);
        g_signal_connect(area, "button-press-event", G_CALLBACK(&Host::on_press), this);
        gtk_widget_add_events(area, GDK_BUTTON_PRESS_MASK);
        open(windows[0]);
        // A moment lasts that long at most.
        g_timeout_add(
            5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    }
    ~Host() {
        for (GtkWidget* const one : windows)
            gtk_widget_destroy(one);
        g_object_unref(area);
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    GtkWidget* make_window() {
        GtkWidget* const made = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        g_signal_connect(made, "key-press-event", G_CALLBACK(&Host::on_key), this);
        return made;
    }
    void open(GtkWidget* next) {
        window = next;
        gtk_window_set_default_size(GTK_WINDOW(window), orvex_test::Cycles::width,
                                    orvex_test::Cycles::height);
        gtk_container_add(GTK_CONTAINER(window), area);
        gtk_widget_show_all(window);
    }
    kit::Screen screen() const {
        const int scale = gtk_widget_get_scale_factor(area);
        return {gtk_widget_get_allocated_width(area) * scale,
                gtk_widget_get_allocated_height(area) * scale, static_cast<double>(scale)};
    }
    static gboolean on_render(GtkGLArea*, GdkGLContext*, gpointer self) {
        auto& owner = *static_cast<Host*>(self);
        const kit::Screen now = owner.screen();
        const StateWatch watch;
        owner.host.frame(now.width, now.height, [&](kit::View& view) { owner.cycles.draw(view); });
        return TRUE;
    }
    static void on_unrealize(GtkGLArea* area, gpointer self) {
        gtk_gl_area_make_current(area);
        static_cast<Host*>(self)->host.leave();
    }
    static gboolean on_press(GtkWidget*, GdkEventButton* event, gpointer self) {
        const Host& pressed = *static_cast<Host*>(self);
        pressed.cycles.press(pressed.screen(), event->x, event->y);
        return TRUE;
    }
    static gboolean on_key(GtkWidget*, GdkEventKey* event, gpointer self) {
        static_cast<Host*>(self)->ends |= event->keyval == GDK_KEY_Escape;
        return TRUE;
    }

    void resize(int width, int height) { gtk_window_resize(GTK_WINDOW(window), width, height); }
    void hide() { gtk_widget_hide(window); }
    void show() { gtk_widget_show(window); }
    void change(int cycle) {
        if (cycle % 5 != 4)
            return;
        GtkWidget* const former = window;
        gtk_container_remove(GTK_CONTAINER(former), area);
        gtk_widget_hide(former);
        open(former == windows[0] ? windows[1] : windows[0]);
    }
    static void turn() { g_main_context_iteration(nullptr, TRUE); }
};

} // namespace

int main(int argc, char** argv) {
    if (!gtk_init_check(&argc, &argv))
        return 1;
    const kit::Engine engine;
    orvex_test::Cycles cycles = cycles_of(argc, argv);
    Host host(cycles);
    return cycles.run(host);
}
