// Where rays meet a model: every tenth pixel of one camera is asked what it sees, and a point marks
// the place, from yellow for the nearest to red. Another camera shows them from the side, where
// what the first one can't see has none: picking [gl2]

#include <cstdio>
#include <vector>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

constexpr kit::Screen screen{640, 480};

// The points come a little nearer than they are, or the surface would cover half of each.
static const char points_text[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 paint;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    gl_Position.z -= 0.006 * gl_Position.w;
    gl_PointSize = 4.0;
    paint = VERTEX_COLOR;
}
[Pixel_Shader]
IN vec4 paint;
void main() { COLOR = paint; }
)";

static std::vector<kit::Pick> picks_of(const kit::Model& model, const kit::Camera& camera) {
    std::vector<kit::Pick> picks;
    for (int y = 0; y < screen.height; y += 10)
        for (int x = 0; x < screen.width; x += 10)
            if (const std::optional<kit::Pick> pick = model.pick(camera.ray(x, y, screen)))
                picks.push_back(*pick);
    return picks;
}

static kit::Ref<VertexPool> points_at(const std::vector<kit::Pick>& picks, const kit::Camera& eye) {
    kit::Ref<VertexPool> points = kit::make<VertexPool>();
    points->init_pool(picks.size(), false);
    for (unsigned long i = 0; i < picks.size(); ++i) {
        const auto away = static_cast<float>(picks[i].distance);
        const float share = (away - eye.near()) / (eye.far() - eye.near());
        points->set_vertex_position(i, picks[i].point);
        points->set_vertex_color(i, 1.0f, 1.0f - share, 0.2f, 1.0f);
    }
    return points;
}

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(screen.width, screen.height, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Model model("lighthouse.obj");
    kit::Program program = kit::Program::from_text(view, points_text, "points");
    if (!program || !model) {
        std::fprintf(stderr, "%s%s\n", program.reason().c_str(), model.reason().c_str());
        return 1;
    }

    const kit::Lens lens{screen.width, screen.height};
    const kit::Camera front = kit::see_all(model.extent(), {}, lens);
    const kit::Ref<VertexPool> points = points_at(picks_of(model, front), front);

    view.begin(kit::see_all(model.extent(), {75.0f, 35.0f}, lens));
    view.add(model);
    program.gpu()->bind(view.renderer());
    points->render(view.renderer(), nullptr);
    program.gpu()->unbind(view.renderer());
    view.end();

    const kit::Outcome written = view.write("picking.jpg");
    if (!written)
        std::fprintf(stderr, "%s\n", written.reason().c_str());
    return written ? 0 : 1;
}
