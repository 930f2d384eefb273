#include "pane.h"

#include <new>
#include <utility>

#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/geometry/shapes/mesh_plane.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/renderer/renderer.h>

using namespace orvex;
using namespace orvex::kit;

namespace {

const char* const program_text = R"([Vertex_Shader]
uniform vec4 box;  // left, lower edge, width and height, -1 to 1

void main()
{
    gl_Position = vec4(box.xy + (POSITION.xz * 0.5 + 0.5) * box.zw, 0.0, 1.0);
}
[Pixel_Shader]
uniform sampler2D picture;
uniform vec4 size;      // of the picture, in pixels; 0 for a shade

void main()
{
    vec2 place = vec2(gl_FragCoord.x, size.y - gl_FragCoord.y) / max(size.xy, vec2(1.0));
    COLOR = size.x > 0.0 ? SAMPLE(picture, place) : vec4(0.0, 0.0, 0.0, 0.7);
}
)";

} // namespace

Pane::Pane() = default;

Pane::~Pane() {
    drop_texture();
}

void Pane::drop_texture() {
    if (texture)
        TextureMgr::get()->release_texture(renderer, std::exchange(texture, nullptr), nullptr);
}

std::string Pane::make(View& view) {
    if (program)
        return "";
    renderer = view.renderer();
    program = Program::from_text(view, program_text, "pane");
    square = kit::make<MeshPlane>();
    square->set_build_params(2.0f, 2.0f, 1, 1);
    square->build(nullptr);
    square->set_opengl_2_3_rendering_states(view.path() == Path::gl2, nullptr);
    return program.reason();
}

bool Pane::fill_texture(const Picture& picture) try {
    const auto width = static_cast<unsigned long>(picture.width());
    const auto height = static_cast<unsigned long>(picture.height());
    if (texture && texture->get_width() == width && texture->get_height() == height)
        return texture->update_pixmap_rgba_u8(picture.data());
    drop_texture();
    texture = TextureMgr::get()->create_texture_2d(width, height, PF_RGBA_U8);
    texture->gen_mipmaps(false);
    texture->set_filtering_mode(nullptr, FILTERING_NEAREST);
    texture->set_addressing_mode(nullptr, ADDRESSING_CLAMP);
    return texture->update_pixmap_rgba_u8(picture.data()) &&
           TextureMgr::get()->upload_to_renderer(renderer, texture, 0);
} catch (const std::bad_alloc&) {
    return false;
}

void Pane::draw(View& view, const vec4& box) {
    renderer->set_viewport(0, 0, view.width(), view.height());
    renderer->set_depth_test_state(false);
    renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    renderer->rasterizer_apply_state();
    program.set("box", box);
    program.gpu()->bind(renderer);
    square->render(renderer, nullptr);
    program.gpu()->unbind(renderer);
    renderer->set_depth_test_state(true);
}

std::string Pane::show(View& view, const Picture& picture) {
    if (std::string mistake = make(view); !mistake.empty())
        return mistake;
    if (!fill_texture(picture))
        return "no memory for a picture on the screen";
    program.set("picture", 0);
    program.set("size", vec4(static_cast<float>(picture.width()),
                             static_cast<float>(picture.height()), 0.0f, 0.0f));
    texture->bind(renderer, 0);
    draw(view, {-1.0f, -1.0f, 2.0f, 2.0f});
    return "";
}

std::string Pane::shade(View& view, float left, float top, float width, float height) {
    if (std::string mistake = make(view); !mistake.empty())
        return mistake;
    const float across = 2.0f / static_cast<float>(view.width());
    const float upward = 2.0f / static_cast<float>(view.height());
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    program.set("size", vec4(0.0f, 0.0f, 0.0f, 0.0f));
    draw(view,
         {left * across - 1.0f, 1.0f - (top + height) * upward, width * across, height * upward});
    renderer->set_blend_state(false);
    return "";
}
