// Looks for pixels that change between equal frames: none on healthy hardware. It draws one frame
// again and again; with a number of faults it spoils as many pixels of one more, and they are
// found: artifact_scan [gl2|gl3] [frames] [faults]

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

/// Takes a whole number of at least 0, if its word is there. @return false for another word
static bool take_number(int argc, char** argv, int index, int& number) {
    if (argc <= index)
        return true;
    char* end = argv[index];
    const long value = std::strtol(argv[index], &end, 10);
    number = static_cast<int>(value);
    return end != argv[index] && *end == '\0' && value >= 0 && value <= 1000000000L;
}

static bool is_path(const char* word) {
    return std::strcmp(word, "gl2") == 0 || std::strcmp(word, "gl3") == 0;
}

/// Paints single pixels of the frame, row by row, in a colour that it doesn't have.
static void spoil(kit::View& view, int faults) {
    Renderer& renderer = *view.renderer();
    renderer.set_scissor_state(true);
    for (int i = 0; i < std::min(faults, view.width() * view.height()); ++i) {
        renderer.set_scissor(i % view.width(), i / view.width(), 1, 1);
        renderer.clear_color_buffer(1, 0, 1, 1);
    }
    renderer.set_scissor_state(false);
}

int main(int argc, char** argv) {
    int frames = 20;
    int faults = 0;
    if (argc > 4 || (argc > 1 && !is_path(argv[1])) || !take_number(argc, argv, 2, frames) ||
        !take_number(argc, argv, 3, faults)) {
        std::fputs("usage: artifact_scan [gl2|gl3] [frames] [faults]\n", stderr);
        return 2;
    }
    const kit::Engine engine;
    const bool gl2 = argc > 1 && std::strcmp(argv[1], "gl2") == 0;
    kit::View view(320, 240, {gl2 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Model model("lighthouse.obj");
    if (!view || !model) {
        std::fprintf(stderr, "%s%s\n", view.reason().c_str(), model.reason().c_str());
        return 1;
    }

    const auto scanner = kit::make<ArtifactScanner>();
    bool ok = true;
    for (int i = 0; ok && i < frames + (faults > 0 ? 1 : 0); ++i) {
        view.draw(model);
        spoil(view, i < frames ? 0 : faults);
        ok = scanner->run(view.renderer(), false);
    }
    std::printf("%d artifacts in %d frames, at most %d in one\n",
                scanner->get_total_number_of_artifacts(), frames + (faults > 0 ? 1 : 0),
                scanner->get_max_number_of_artifacts());
    return ok ? 0 : 1;
}
