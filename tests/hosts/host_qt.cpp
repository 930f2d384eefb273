// The scene in a QOpenGLWidget, with a mark that Qt paints over it:
// host_qt (core|compatibility) [FILE]
//
// The space bar shows the next frame, w moves the widget into a new window, Escape ends it.

#include <cstring>
#include <memory>

#include <QApplication>
#include <QKeyEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QPainter>
#include <QVBoxLayout>

#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>

#include "host_scene.h"

namespace {

class SceneWidget : public QOpenGLWidget {
public:
    SceneWidget(bool core_profile, const char* file)
        : core(core_profile)
        , record(file) {
        setFocusPolicy(Qt::StrongFocus);
    }

    /// Everything on the GPU ends while the context is still there.
    ~SceneWidget() override {
        if (context())
            disconnect(context(), nullptr, this, nullptr);
        makeCurrent();
        scene.reset();
        doneCurrent();
    }

    bool failed = false;

protected:
    /// The widget has a new context, at first and whenever it comes into another window.
    void initializeGL() override {
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] { leave(); });
        if (!scene) {
            scene = std::make_unique<HostScene>(core);
            handle = scene->renderer->create_render_window();
        }
        if (!handle->osx_init_with_cocoa_nsgl_ctx(context()) || !scene->enter(handle)) {
            std::fputs("host_qt: no context to draw in\n", stderr);
            failed = true;
            QCoreApplication::exit(1);
        }
    }

    void paintGL() override {
        const int pixels_wide = static_cast<int>(width() * devicePixelRatioF());
        const int pixels_high = static_cast<int>(height() * devicePixelRatioF());
        // Qt draws the widget into a framebuffer of its own.
        handle->set_framebuffer(defaultFramebufferObject());
        handle->update_size(pixels_wide, pixels_high);
        scene->draw(handle, frame, pixels_wide, pixels_high);
        record.add(frame, pixels_wide, pixels_high);
        if (!core)
            free_arrays();
        QPainter painter(this);
        painter.fillRect(4, 4, 10, 6, QColor(250, 20, 30));
        painter.end();
        disturb_states();
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Space) {
            ++frame;
            update();
        } else if (event->key() == Qt::Key_W) {
            move_to_new_window();
        } else if (event->key() == Qt::Key_Escape) {
            QCoreApplication::quit();
        }
    }

private:
    bool core;
    HostRecord record;
    std::unique_ptr<HostScene> scene;
    orvex::RenderWindow* handle = nullptr; ///< the scene's
    int frame = 0;

    /// The context ends after this.
    void leave() {
        makeCurrent();
        scene->leave(handle);
        doneCurrent();
    }

    /// Where vertex arrays are the context's own, Qt paints from memory, by numbers that the engine
    /// has in use.
    void free_arrays() {
        QOpenGLFunctions& gl = *context()->functions();
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        for (GLuint i = 0; i < 8; ++i)
            gl.glDisableVertexAttribArray(i);
    }

    void move_to_new_window();
};

/// A window that is all widget.
void open_window(SceneWidget& widget) {
    auto* const window = new QWidget;
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&widget);
    window->resize(200, 150);
    window->show();
    widget.setFocus();
}

void SceneWidget::move_to_new_window() {
    QWidget* const former = parentWidget();
    open_window(*this);
    former->deleteLater();
}

QSurfaceFormat format_of(bool core) {
    QSurfaceFormat format;
    format.setDepthBufferSize(24);
    if (core) {
        format.setVersion(3, 2);
        format.setProfile(QSurfaceFormat::CoreProfile);
    }
    return format;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: host_qt (core|compatibility) [FILE]\n", stderr);
        return 2;
    }
    const bool core = std::strcmp(argv[1], "core") == 0;
    QSurfaceFormat::setDefaultFormat(format_of(core));
    const char* const file = argc > 2 ? argv[2] : nullptr;
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(true);
    auto* const widget = new SceneWidget(core, file);
    open_window(*widget);
    const int result = QApplication::exec();
    const bool failed = widget->failed;
    delete widget->window();
    return failed ? 1 : result;
}
