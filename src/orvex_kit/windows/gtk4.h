#pragma once

/// @file
/// A view in GTK 4's `GtkGLArea`.

#include <functional>
#include <string>
#include <utility>

#include <gtk/gtk.h>

#include "orvex_kit/camera.h"
#include "orvex_kit/windows/host_view.h"

namespace orvex::kit {

/// A view in a `GtkGLArea`, which draws whenever the area is rendered: `gtk_gl_area_queue_render`
/// asks for a frame. GTK's context and its framebuffer are left as they were. When the area comes
/// into another window GTK gives it another context: the view ends with the one before, and the
/// next frame begins another. GTK's contexts are for `Path::gl3`.
///
/// @code
/// kit::GtkView host(area, [&](kit::View& view) { view.draw(model); });
/// @endcode
class GtkView {
public:
    /// @param area  is kept alive, and gets a depth buffer
    /// @param draw  draws a whole frame, with the area's context current
    GtkView(GtkGLArea* area, std::function<void(View&)> draw, const ViewOptions& options = {})
        : area(GTK_GL_AREA(g_object_ref(area)))
        , draw(std::move(draw))
        , host(options) {
        gtk_gl_area_set_has_depth_buffer(area, TRUE);
        signals[0] = g_signal_connect(area, "render", G_CALLBACK(&GtkView::on_render), this);
        signals[1] = g_signal_connect(area, "unrealize", G_CALLBACK(&GtkView::on_unrealize), this);
    }
    /// Ends the view in its own context.
    ~GtkView() {
        for (const gulong signal : signals)
            g_signal_handler_disconnect(area, signal);
        leave();
        g_object_unref(area);
    }
    GtkView(const GtkView&) = delete;
    GtkView& operator=(const GtkView&) = delete;

    /// What the mouse's places are counted in, for `Camera` and `Orbit`.
    Screen screen() const {
        GtkWidget* const widget = GTK_WIDGET(area);
        const int scale = gtk_widget_get_scale_factor(widget);
        return {gtk_widget_get_width(widget) * scale, gtk_widget_get_height(widget) * scale,
                static_cast<double>(scale)};
    }
    View& view() { return host.view(); }                        ///< empty before the first frame
    const std::string& reason() const { return host.reason(); } ///< why there was no frame

private:
    GtkGLArea* area;
    std::function<void(View&)> draw;
    HostView host;
    gulong signals[2] = {};

    static gboolean on_render(GtkGLArea*, GdkGLContext*, gpointer self) {
        auto& owner = *static_cast<GtkView*>(self);
        const Screen now = owner.screen();
        owner.host.frame(now.width, now.height, owner.draw);
        return TRUE;
    }
    static void on_unrealize(GtkWidget*, gpointer self) { static_cast<GtkView*>(self)->leave(); }

    void leave() {
        if (!host.view())
            return;
        gtk_gl_area_make_current(area);
        host.leave();
    }
};

} // namespace orvex::kit
