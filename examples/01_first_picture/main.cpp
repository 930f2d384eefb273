#include <orvex_kit/kit.h>

int main() {
    orvex::kit::Engine engine;
    orvex::kit::View view(1280, 960);
    orvex::kit::Model model("lighthouse.obj");
    view.draw(model);
    return model && view.write("lighthouse.jpg") ? 0 : 1;
}
