// A ring throws its shadow on a floor: what the lamp sees goes into a target of depths, and the
// second pass compares with it. The targets and states are the engine's: shadow [gl2]

#include <cstdio>
#include <string>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

static const char vertex[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
uniform mat4 orvex_ViewMatrix;
uniform mat4 TextureMatrix; // from the eye's space to the target of depths
uniform vec4 lamp;
OUT vec4 shadow_place;
OUT vec3 normal;
OUT vec3 to_lamp;
invariant gl_Position;
void main() {
    vec4 eye = orvex_ModelViewMatrix * POSITION;
    shadow_place = TextureMatrix * eye;
    normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    to_lamp = (orvex_ViewMatrix * lamp - eye).xyz;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
)";
static const char gl2_shadow[] = "#define SHADOW(map, place) shadow2DProj(map, place).r\n";
static const char gl3_shadow[] = "#define SHADOW(map, place) textureProj(map, place)\n";
static const char pixel[] = R"(
uniform sampler2DShadow shadow_map;
uniform vec3 paint;
IN vec4 shadow_place;
IN vec3 normal;
IN vec3 to_lamp;
void main() {
    float light = max(dot(normalize(normal), normalize(to_lamp)), 0.0);
    COLOR = vec4(paint * (0.2 + 0.8 * light * SHADOW(shadow_map, shadow_place)), 1.0);
}
)";

struct Stage {
    kit::View& view;
    kit::Program program;
    kit::Ref<MeshTorus> ring = kit::make<MeshTorus>();
    kit::Ref<MeshPlane> floor = kit::make<MeshPlane>();

    explicit Stage(kit::View& view)
        : view(view) {
        const bool gl2 = view.path() == kit::Path::gl2;
        program = kit::Program::from_text(
            view, std::string(vertex) + (gl2 ? gl2_shadow : gl3_shadow) + pixel, "shadow");
        ring->set_build_params(1.6f, 0.4f, 64);
        ring->set_orientation_euler_xyz(60, 0, 20);
        ring->set_position(0, 1.9f, 0);
        floor->set_build_params(8, 8, 8, 8);
        for (Mesh* const mesh : {static_cast<Mesh*>(ring.get()), static_cast<Mesh*>(floor.get())}) {
            mesh->set_opengl_2_3_rendering_states(gl2, nullptr);
            mesh->build(nullptr);
        }
    }

    void draw(Mesh& mesh, const vec3& paint) {
        program.set("paint", paint);
        program.gpu()->bind(view.renderer());
        mesh.render(view.renderer(), nullptr);
        program.gpu()->unbind(view.renderer());
    }
    void draw() {
        draw(*ring, {0.9f, 0.45f, 0.15f});
        draw(*floor, {0.75f, 0.75f, 0.7f});
    }
};

/// The scene as the lamp sees it. The bias keeps lit sides from shadowing themselves.
static RenderTarget* make_shadow_map(Stage& stage, Camera& lamp) {
    constexpr int size = 2048;
    Renderer& renderer = *stage.view.renderer();
    RenderTarget* const map = renderer.create_render_target();
    if (!map->create_target_depth(size, size, true, false))
        return nullptr;
    lamp.set_viewport(0, 0, size, size);
    map->activate();
    lamp.bind(&renderer, true, true, true, true, stage.view.path() == kit::Path::gl2);
    renderer.shadow_mapping_enable_zpass_states();
    renderer.set_depth_bias_factors(4.0f, 16.0f);
    renderer.set_depth_bias_state(true);
    stage.draw();
    renderer.set_depth_bias_state(false);
    renderer.shadow_mapping_disable_zpass_states();
    map->deactivate();
    return map;
}

/// Depths first: the pass with the light draws only what is equal to them.
static void draw_lit(Stage& stage, RenderTarget& map, Camera& lamp) {
    Renderer& renderer = *stage.view.renderer();
    renderer.shadow_mapping_enable_zpass_states();
    stage.draw();
    renderer.shadow_mapping_disable_zpass_states();
    stage.program.gpu()->bind(&renderer);
    renderer.shadow_mapping_prepare_light_pass(&map, 0, lamp.get_projection_matrix(),
                                               lamp.get_view_matrix(),
                                               renderer.gpu_program_get_active_program());
    stage.draw();
    renderer.shadow_mapping_finish_light_pass(&map, 0);
}

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(640, 480, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3, 0, 3});
    Stage stage(view);
    if (!stage.program) {
        std::fprintf(stderr, "%s\n", stage.program.reason().c_str());
        return 1;
    }
    const vec4 place(3, 9, 2.5f, 1);
    kit::Camera from_lamp;
    from_lamp.look_at(place, {0, 1, 0, 1});
    from_lamp.set_opening(95);
    from_lamp.set_clip(1, 25);
    const auto lamp = kit::make<Camera>();
    from_lamp.apply(*lamp, 1, 1);
    stage.program.set("lamp", place);
    stage.program.set("shadow_map", 0);
    RenderTarget* const map = make_shadow_map(stage, *lamp);
    if (!map)
        return 1;

    kit::Camera eye;
    eye.look_at({-3.5f, 5.5f, 9.5f, 1}, {0, 0.7f, 0, 1});
    eye.set_opening(50);
    view.set_background({0.45f, 0.55f, 0.65f, 1});
    view.begin(eye);
    draw_lit(stage, *map, *lamp);
    view.end();

    const kit::Outcome written = view.write("shadow.jpg");
    if (!written)
        std::fprintf(stderr, "%s\n", written.reason().c_str());
    return written ? 0 : 1;
}
