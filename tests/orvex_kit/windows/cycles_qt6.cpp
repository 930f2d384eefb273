// Cycles of resize, hide and, for a widget, other parents in Qt 6:
// cycles_qt6_(widget|window) (gl3|gl2) [SCALE].

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "cycles.h"
#include "orvex_kit/windows/qt6.h"
#include "window_host.h"

using namespace orvex;

namespace {

/// In another window at the middle of ten cycles, in one of its own at their end.
[[maybe_unused]] void change_parent(QWidget& stage, QWidget& other, int cycle) {
    if (cycle % 10 != 4 && cycle % 10 != 9)
        return;
    stage.setParent(cycle % 10 == 4 ? &other : nullptr);
    other.setVisible(cycle % 10 == 4);
    stage.show();
}
[[maybe_unused]] void change_parent(QWindow&, QWidget&, int) {}

class Stage : public kit::HOST_BASE {
public:
    explicit Stage(orvex_test::Cycles& cycles)
        : cycles(cycles) {
        other.resize(400, 300);
    }
    ~Stage() override {
        leave();
        setParent(nullptr);
    }
    /// In another window it is shown again without a new frame, unless that is asked for.
    void show() {
        kit::HOST_BASE::show();
        update();
    }
    void change(int cycle) { change_parent(*this, other, cycle); }
    void turn() { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5); }

    bool ends = false;

protected:
    void draw(kit::View& view) override { cycles.draw(view); }
    void paintGL() override {
        const StateWatch watch;
        kit::HOST_BASE::paintGL();
    }
    void keyPressEvent(QKeyEvent* event) override { ends = ends || event->key() == Qt::Key_Escape; }
    void mousePressEvent(QMouseEvent* event) override {
        cycles.press(screen_of_mouse(), event->position().x(), event->position().y());
    }

private:
    orvex_test::Cycles& cycles;
    QWidget other;
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const kit::Engine engine;
    orvex_test::Cycles cycles = cycles_of(argc, argv);
    Stage stage(cycles);
    stage.set_view_options(options_of(argc, argv));
    stage.resize(cycles.width, cycles.height);
    stage.show();
    return cycles.run(stage);
}
