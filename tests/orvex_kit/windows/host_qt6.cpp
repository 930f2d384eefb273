// A view in Qt 6: host_qt6_(widget|window) (gl3|gl2). w takes the widget into another window.

#include <QApplication>
#include <QKeyEvent>

#include "orvex_kit/windows/qt6.h"
#include "window_host.h"

using namespace orvex;

namespace {

[[maybe_unused]] void enter(QWidget& window, QWidget& stage) {
    window.setGeometry(0, 300, 170, 120);
    stage.setParent(&window);
    stage.setGeometry(0, 0, 170, 120);
    window.show();
    stage.show();
    stage.setFocus();
}
[[maybe_unused]] void enter(QWidget&, QWindow&) {}

class Stage : public kit::HOST_BASE {
public:
    ~Stage() override { leave(); }
    QWidget* other = nullptr;

protected:
    void draw(kit::View& view) override { torus.draw(view, frame); }
    void paintGL() override {
        const StateWatch watch;
        kit::HOST_BASE::paintGL();
    }
    void keyPressEvent(QKeyEvent* event) override {
        frame += event->key() == Qt::Key_Space;
        if (event->key() == Qt::Key_Escape)
            QCoreApplication::quit();
        if (event->key() == Qt::Key_W)
            enter(*other, *this);
        update();
    }

private:
    orvex_test::TurningTorus torus;
    int frame = 0;
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const kit::Engine engine;
    QWidget other;
    Stage stage;
    stage.other = &other;
    stage.set_view_options(options_of(argc, argv));
    stage.setGeometry(0, 0, 200, 150);
    stage.show();
    return QApplication::exec();
}
