#include "orvex/renderer/render_window.h"

#include "orvex/base/global_id.h"

namespace orvex {

struct RenderWindow::RenderWindowData {
    int id = GenId();
    int width = 0;
    int height = 0;
};

RenderWindow::RenderWindow()
    : data(std::make_unique<RenderWindowData>()) {}

RenderWindow::~RenderWindow() = default;

int RenderWindow::get_id() const {
    return data->id;
}

bool RenderWindow::check_GL_ATI_meminfo() const {
    return gl_ati_meminfo;
}

int RenderWindow::get_width() const {
    return data->width;
}

int RenderWindow::get_height() const {
    return data->height;
}

void RenderWindow::set_size(int width, int height) {
    data->width = width;
    data->height = height;
}

} // namespace orvex
