#pragma once

/// @file
/// A view in Qt 6: a base for widgets and windows of OpenGL.

#include <cmath>
#include <memory>
#include <string>

#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QOpenGLWindow>

#include "orvex_kit/camera.h"
#include "orvex_kit/windows/host_view.h"

namespace orvex::kit {

/// A widget or window of Qt's in which a view draws; `QtWidget` and `QtWindow` stand for the two.
/// `update` asks for a frame. Qt's context and its framebuffer are left as they were, so that a
/// `QPainter` may paint over it. When the widget comes into another window Qt gives it another
/// context: the view ends with the one before, and the next frame begins another.
///
/// Derived classes say what is drawn, and begin their destructor with `leave`; the `Engine` ends
/// after them. For `Path::gl3` the format is to ask for OpenGL 3.2 or later.
///
/// @code
/// class Stage : public kit::QtWidget {
///     void draw(kit::View& view) override { view.draw(model); }
/// };
/// @endcode
template<class Base>
class QtView : public Base {
public:
    using Base::Base;
    ~QtView() override { leave(); }

    /// Takes effect when the next view begins: before the first frame, as a rule. 0 samples where
    /// the format asks for some.
    void set_view_options(const ViewOptions& wanted) { options = wanted; }
    /// What the mouse's places are counted in, for `kit::Camera` and `Orbit`.
    Screen screen_of_mouse() const {
        const double scale = Base::devicePixelRatio();
        return {static_cast<int>(std::lround(Base::width() * scale)),
                static_cast<int>(std::lround(Base::height() * scale)), scale};
    }
    /// Why there was no frame; empty if there was.
    const std::string& reason() const {
        static const std::string nothing;
        return host ? host->reason() : nothing;
    }

protected:
    /// A whole frame, with the context current.
    virtual void draw(View& view) = 0;
    /// Ends the view, as a derived class does before its members end.
    void leave() {
        QObject::disconnect(context_end);
        if (!host || !host->view())
            return;
        Base::makeCurrent();
        host->leave();
        Base::doneCurrent();
    }

    /// Draws a frame by `draw`, when Qt wants one.
    void paintGL() override {
        if (!host)
            begin();
        const Screen now = screen_of_mouse();
        host->frame(now.width, now.height, [this](View& view) { draw(view); });
    }

private:
    ViewOptions options;
    std::unique_ptr<HostView> host;
    QMetaObject::Connection context_end;

    void begin() {
        host = std::make_unique<HostView>(options);
        context_end =
            QObject::connect(Base::context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
                leave();
                host.reset();
            });
    }
};

using QtWidget = QtView<QOpenGLWidget>; ///< among other widgets
using QtWindow = QtView<QOpenGLWindow>; ///< a window of its own

} // namespace orvex::kit
