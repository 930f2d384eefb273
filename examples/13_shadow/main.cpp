// A ring throws its shadow on a floor: the depth of the scene seen from the lamp goes into a depth
// target, and the light pass compares with it. shadow [gl2|gl3] [picture.jpg]

#include "off_screen.h"

using namespace orvex;

namespace {

const char* const vertex = R"(
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
uniform mat4 orvex_ViewMatrix;
uniform mat4 TextureMatrix;  // from the eye's space to the shadow map
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
)";
const char* const pixel_gl2 = R"(
#define SHADOW(map, place) shadow2DProj(map, place).r
)";
const char* const pixel_gl3 = R"(
#define SHADOW(map, place) textureProj(map, place)
)";
const char* const pixel = R"(
uniform sampler2DShadow shadow_map;
uniform vec3 diffuse;
IN vec4 shadow_place;
IN vec3 normal;
IN vec3 to_lamp;
void main() {
    float light = max(dot(normalize(normal), normalize(to_lamp)), 0.0);
    COLOR = vec4(diffuse * (0.2 + 0.8 * light * SHADOW(shadow_map, shadow_place)), 1.0);
}
)";

constexpr int map_size = 1024;
const vec4 lamp_position(3.0f, 9.0f, 2.5f, 1.0f);

class ShadowScene {
public:
    explicit ShadowScene(OffScreen& on)
        : stage(on)
        , renderer(on.renderer)
        , shadow_map(on.renderer->create_render_target()) {
        const std::string text = std::string(on.gl3 ? pixel_gl3 : pixel_gl2) + pixel;
        program = on.make_program("shadow", vertex, text.c_str());
        complete = shadow_map->create_target_depth(map_size, map_size, true, false);
        ring->set_build_params(1.6f, 0.4f, 48);
        ring->set_orientation_euler_xyz(60.0f, 0.0f, 20.0f);
        ring->set_position(0.0f, 1.9f, 0.0f);
        floor->set_build_params(9.0f, 9.0f, 8, 8);
        on.build(ring);
        on.build(floor);
        lamp->set_viewport(0, 0, map_size, map_size);
        lamp->build_projection_persp(95.0f, 1.0f, 1.0f, 25.0f, true);
        lamp->set_view_params(lamp_position, vec4(0, 1, 0, 1), vec4(0, 1, 0, 0), true);
        eye->set_viewport(0, 0, on.width, on.height);
        const float aspect = static_cast<float>(on.width) / static_cast<float>(on.height);
        eye->build_projection_persp(45.0f, aspect, 0.5f, 40.0f, true);
        eye->set_view_params(vec4(-3, 5, 8, 1), vec4(0, 1, 0, 1), vec4(0, 1, 0, 0), true);
    }
    ~ShadowScene() {
        for (Object* const object : {static_cast<Object*>(ring), static_cast<Object*>(floor),
                                     static_cast<Object*>(lamp), static_cast<Object*>(eye)})
            object->kill(renderer, nullptr);
    }
    ShadowScene(const ShadowScene&) = delete;
    ShadowScene& operator=(const ShadowScene&) = delete;

    bool complete = false;

    void draw() {
        make_shadow_map();
        bind(eye);
        renderer->clear_color_depth_buffers(0.45f, 0.55f, 0.65f, 1.0f, 1.0f);
        // Depths first: the light pass draws only what is equal to them.
        renderer->shadow_mapping_enable_zpass_states();
        draw_meshes();
        renderer->shadow_mapping_disable_zpass_states();
        light_pass();
    }

private:
    void bind(Camera* camera) { camera->bind(renderer, true, true, true, true, !stage.gl3); }

    void draw_mesh(Mesh* mesh, float r, float g, float b) {
        program->set_uniform_3f(renderer, "diffuse", r, g, b);
        mesh->render(renderer, nullptr);
    }

    void draw_meshes() {
        program->bind(renderer);
        program->set_uniform_1i(renderer, "shadow_map", 0);
        program->set_uniform_4f(renderer, "lamp", lamp_position.x, lamp_position.y, lamp_position.z,
                                1.0f);
        draw_mesh(ring, 0.9f, 0.45f, 0.15f);
        draw_mesh(floor, 0.75f, 0.75f, 0.7f);
        program->unbind(renderer);
    }

    /// The scene as the lamp sees it. The bias keeps lit sides from shadowing themselves.
    void make_shadow_map() {
        shadow_map->activate();
        bind(lamp);
        renderer->shadow_mapping_enable_zpass_states();
        renderer->set_depth_bias_factors(4.0f, 16.0f);
        renderer->set_depth_bias_state(true);
        draw_meshes();
        renderer->set_depth_bias_state(false);
        renderer->shadow_mapping_disable_zpass_states();
        shadow_map->deactivate();
    }

    void light_pass() {
        program->bind(renderer);
        renderer->shadow_mapping_prepare_light_pass(shadow_map, 0, lamp->get_projection_matrix(),
                                                    lamp->get_view_matrix(),
                                                    renderer->gpu_program_get_active_program());
        program->bind_uniforms(renderer);
        draw_meshes();
        renderer->shadow_mapping_finish_light_pass(shadow_map, 0);
    }

    OffScreen& stage;
    Renderer* renderer;
    RenderTarget* shadow_map;
    GpuProgram* program = nullptr;
    MeshTorus* ring = new MeshTorus;
    MeshPlane* floor = new MeshPlane;
    Camera* lamp = new Camera;
    Camera* eye = new Camera;
};

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), 480, 360);
    if (!stage.started)
        return 1;
    ShadowScene scene(stage);
    if (!scene.complete)
        return 1;
    scene.draw();
    return stage.write(argc > 2 ? argv[2] : "shadow.jpg") ? 0 : 1;
}
