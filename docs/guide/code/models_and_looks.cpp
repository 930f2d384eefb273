// What a model holds, what lies under a pixel, and a look of our own: models_and_looks folder/
// picture.jpg

#include <cstdio>
#include <string>

#include <orvex_kit/kit.h>

using namespace orvex;

namespace {

void tell(const kit::Model& model) {
    std::printf("%zu meshes, %zu materials, %zu faces\n", model.meshes().size(),
                model.materials().size(), model.num_faces());
    for (const kit::ModelTexture& texture : model.textures())
        if (!texture.reason.empty())
            std::printf("%s: %s\n", texture.name.c_str(), texture.reason.c_str());
    for (const std::string& note : model.notes())
        std::printf("%s\n", note.c_str());
}

void tell_of_place(const kit::Model& model, const kit::Camera& camera, double x, double y) {
    const auto hit = model.pick(camera.ray(x, y, {480, 360}));
    if (!hit)
        return;
    const std::string& mesh = model.meshes()[hit->mesh].name;
    std::printf("at %.0f, %.0f: the %s, face %zu, %.1f away\n", x, y, mesh.c_str(), hit->face,
                hit->distance);
}

const char* const bands = R"([Vertex_Shader]
uniform mat4 orvex_ModelMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 normal;
void main() {
    normal = mat3(orvex_ModelMatrix) * NORMAL;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform vec4 diffuse_color;
uniform vec4 to_sun;
uniform float steps;
IN vec3 normal;
void main() {
    float share = 0.5 + 0.5 * dot(normalize(normal), to_sun.xyz);
    share = floor(share * steps + 0.5) / steps;
    COLOR = vec4(diffuse_color.rgb * vec3(0.9, 0.7, 0.4) * share, 1.0);
}
)";

bool draw(kit::View& view, kit::Model& model, const kit::Camera& camera) {
    const kit::Outcome taken = view.set_look(kit::Look::from_text(bands, "bands"));
    if (!taken)
        std::fprintf(stderr, "%s\n", taken.reason().c_str());
    view.look().set("steps", 4.0f);
    view.begin(camera);
    view.add(model);
    view.end();
    return static_cast<bool>(taken);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return 1;
    const kit::Engine engine;
    kit::View view(480, 360);
    kit::Model model(std::string(argv[1]) + "lighthouse.obj");
    tell(model);
    const kit::Camera camera = kit::see_all(model.extent(), {}, {view.width(), view.height()});
    tell_of_place(model, camera, 240, 180);
    return draw(view, model, camera) && view.write(argv[2]) ? 0 : 1;
}
