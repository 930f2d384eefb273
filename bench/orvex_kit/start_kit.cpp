// From the start to a picture on the disk through the kit: start_kit PICTURE [MODEL], without a
// model of the background, in one sample a pixel. Prints the processor's seconds that the model's
// load took.

#include <cstdio>
#include <ctime>

#include <orvex_kit/kit.h>

using namespace orvex::kit;

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    const Engine engine;
    const std::clock_t begin = std::clock();
    Model model;
    if (argc > 2)
        model = Model(argv[2]);
    const double load = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    ViewOptions options;
    if (!model)
        options.samples = 0;
    View view(640, 480, options);
    if (model)
        view.draw(model);
    else
        view.begin(Camera());
    std::printf("%.6f\n", load);
    return view.write(argv[1]) ? 0 : 1;
}
