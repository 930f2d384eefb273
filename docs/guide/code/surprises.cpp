// What surprises people, shown in numbers. No window, no renderer.

#include <cmath>
#include <cstdio>

#include <orvex/orvex.h>

using namespace orvex;

namespace {

class Counted : public Object {
public:
    int drawn = 0;

    void _render(Renderer*) override { ++drawn; }
};

void a_model_draws_twice() {
    Model* model = new Model;
    Counted* part = new Counted;
    model->add_child(part);

    model->render(nullptr, nullptr);
    std::printf("by the model: %d times\n", part->drawn);

    part->drawn = 0;
    for (unsigned long i = 0; i < model->get_num_children(); ++i)
        model->get_child(i)->render(nullptr, model->get_child(i));
    std::printf("by its children: %d time\n", part->drawn);
    model->kill(nullptr, nullptr);
}

void a_trailing_node_says_how_far() {
    Object* root = new Object;
    Object* leaf = new Object;
    root->add_child(leaf);

    root->set_render_state(false, nullptr);
    std::printf("null reaches the node alone: the leaf is %s\n",
                leaf->get_render_state() ? "shown" : "hidden");
    root->set_render_state(false, root);
    std::printf("itself reaches the subtree: the leaf is %s\n",
                leaf->get_render_state() ? "shown" : "hidden");
    root->kill(nullptr, nullptr);
}

void a_pitch_is_a_step() {
    Camera* camera = new Camera;
    camera->set_pitch(30.0f);
    camera->set_pitch(30.0f);
    const double height = camera->get_view_vector().y;
    std::printf("two steps of 30 degrees look up by %.0f\n", std::asin(height) * 57.29578);
    camera->release(nullptr, nullptr);
}

} // namespace

int main() {
    a_model_draws_twice();
    a_trailing_node_says_how_far();
    a_pitch_is_a_step();
    return 0;
}
