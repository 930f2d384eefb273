// The gallery's picture of orvex-view: the sample model in four of its views, as a window shows
// them.

#include <algorithm>
#include <cstdio>
#include <vector>

#include <orvex_kit/engine.h>
#include <orvex_kit/picture_file.h>

#include "viewer.h"

using namespace orvex::kit;

namespace {

constexpr int width = 400;
constexpr int height = 300;

void press(Viewer& viewer, std::initializer_list<Key> keys) {
    for (const Key key : keys) {
        viewer.press(key);
        viewer.release(key);
    }
}

/// Draws the viewer into a part of the picture. @return what went wrong; empty if nothing did
std::string add(Viewer& viewer, View& view, Picture& whole, int column, int row) {
    viewer.draw(view);
    Picture frame, colors;
    if (const Outcome read = view.read(frame); !read)
        return read.reason();
    if (const Outcome taken = colors.take_channels(frame, 3); !taken)
        return taken.reason();
    for (int y = 0; y < height; ++y)
        std::copy_n(colors.row_data(y), colors.row_bytes(),
                    whole.row_data(row * height + y) +
                        static_cast<std::size_t>(column) * colors.row_bytes());
    return "";
}

std::string draw(const std::string& model, Picture& whole) {
    const Engine engine;
    View view(width, height);
    Options options;
    options.model = model;
    Viewer viewer(options);
    std::string mistake = viewer.open();
    viewer.resize({width, height, 1.0}, 0.7f);
    const auto next = [&](std::initializer_list<Key> keys, int column, int row) {
        press(viewer, keys);
        if (mistake.empty())
            mistake = add(viewer, view, whole, column, row);
    };
    next({}, 0, 0);
    next({Key::tab}, 1, 0);
    next({Key::tab, Key::tab, Key::tab}, 0, 1);
    next({Key::tab, Key::tab, Key::tab, key_of('2'), key_of('h')}, 1, 1);
    return mistake;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: orvex_view_gallery MODEL PICTURE\n", stderr);
        return 2;
    }
    Picture whole;
    Outcome done = whole.create(2 * width, 2 * height, 3, Sample::u8);
    const std::string mistake = done ? draw(argv[1], whole) : "";
    if (done && mistake.empty())
        done = write_picture(whole, argv[2], {PictureFormat::by_suffix, 82});
    const std::string reason = mistake.empty() ? done.reason() : mistake;
    if (!reason.empty())
        std::fprintf(stderr, "orvex_view_gallery: %s\n", reason.c_str());
    return reason.empty() ? 0 : 1;
}
