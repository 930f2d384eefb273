// Cycles of resize, hide and other windows in GTK 4: cycles_gtk4 gl3 [SCALE].

#include <memory>

#include "orvex_kit/windows/gtk4.h"

#include "cycles.h"
#include "window_host.h"

using namespace orvex;

namespace {

struct Host {
    orvex_test::Cycles& cycles;
    GtkWidget* area = GTK_WIDGET(g_object_ref_sink(gtk_gl_area_new()));
    GtkWidget* window = nullptr;
    bool ends = false;
    std::unique_ptr<kit::GtkView> host;

    explicit Host(orvex_test::Cycles& cycles)
        : cycles(cycles) {
        g_signal_connect(area, "render", G_CALLBACK(&Host::watch), this);
        host = std::make_unique<kit::GtkView>(GTK_GL_AREA(area),
                                              [this](kit::View& view) { this->cycles.draw(view); });
        GtkGesture* const clicks = gtk_gesture_click_new();
        g_signal_connect(clicks, "pressed", G_CALLBACK(&Host::on_press), this);
        gtk_widget_add_controller(area, GTK_EVENT_CONTROLLER(clicks));
        open(cycles.width, cycles.height);
        // A moment lasts that long at most.
        g_timeout_add(
            5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    }
    ~Host() {
        host.reset();
        gtk_window_destroy(GTK_WINDOW(window));
        g_object_unref(area);
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void open(int width, int height) {
        window = gtk_window_new();
        gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
        GtkEventController* const keys = gtk_event_controller_key_new();
        g_signal_connect(keys, "key-pressed", G_CALLBACK(&Host::on_key), this);
        gtk_widget_add_controller(window, keys);
        gtk_window_set_child(GTK_WINDOW(window), area);
        resize(width, height);
        gtk_window_present(GTK_WINDOW(window));
    }
    /// Looks at the states around what the view does.
    static gboolean watch(GtkGLArea* area, GdkGLContext* context, gpointer self) {
        gboolean is_drawn = FALSE;
        g_signal_handlers_block_by_func(area, reinterpret_cast<gpointer>(&Host::watch), self);
        {
            const StateWatch watch;
            g_signal_emit_by_name(area, "render", context, &is_drawn);
        }
        g_signal_handlers_unblock_by_func(area, reinterpret_cast<gpointer>(&Host::watch), self);
        return is_drawn;
    }
    static void on_press(GtkGestureClick*, int, double x, double y, gpointer self) {
        const Host& pressed = *static_cast<Host*>(self);
        pressed.cycles.press(pressed.host->screen(), x, y);
    }
    static gboolean on_key(GtkEventControllerKey*, guint key, guint, GdkModifierType,
                           gpointer self) {
        static_cast<Host*>(self)->ends |= key == GDK_KEY_Escape;
        return TRUE;
    }

    void resize(int width, int height) {
        gtk_window_set_default_size(GTK_WINDOW(window), width, height);
    }
    void hide() {
        gtk_widget_set_visible(window, FALSE);
        while (gtk_widget_get_mapped(area))
            turn();
    }
    void show() { gtk_widget_set_visible(window, TRUE); }
    void change(int cycle) {
        if (cycle % 5 != 4)
            return;
        GtkWidget* const former = window;
        gtk_window_set_child(GTK_WINDOW(former), nullptr);
        open(orvex_test::Cycles::width, orvex_test::Cycles::height);
        gtk_window_destroy(GTK_WINDOW(former));
    }
    static void turn() { g_main_context_iteration(nullptr, TRUE); }
};

} // namespace

int main(int argc, char** argv) {
    if (!gtk_init_check())
        return 1;
    const kit::Engine engine;
    orvex_test::Cycles cycles = cycles_of(argc, argv);
    Host host(cycles);
    return cycles.run(host);
}
