#include "orvex/renderer/render_window.h"

#include <atomic>

#include "orvex/renderer/private/render_window_data.h"

namespace orvex {

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

void RenderWindow::set_framebuffer(unsigned int id) {
    static std::atomic<unsigned long> turns = 0;
    data->framebuffer = id;
    data->framebuffer_turn = ++turns;
}

unsigned int RenderWindow::get_framebuffer() const {
    return data->framebuffer;
}

unsigned long RenderWindow::get_framebuffer_turn() const {
    return data->framebuffer_turn;
}

} // namespace orvex
