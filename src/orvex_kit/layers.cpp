// Layers from one pass into a target of float textures, which the processor sorts into the caller's
// planes:
//
//   0  normal, depth
//   1  object, material, the low 20 bits of the face, and 1 more than its high bits: 0 for nothing
//   2  position, where one is wanted

#include "orvex_kit/layers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <string_view>

#include <orvex/gpu/gpu_program.h>
#include <orvex/renderer/render_target.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/model.h"
#include "orvex_kit/private/model_numbers.h"
#include "orvex_kit/private/view_data.h"

namespace orvex::kit {

namespace {

struct LayerKind {
    const char* name;
    int channels;
    Sample sample;
};

constexpr std::array<LayerKind, 7> kinds = {{{"color", 4, Sample::u8},
                                             {"depth", 1, Sample::f32},
                                             {"normal", 3, Sample::f32},
                                             {"position", 3, Sample::f32},
                                             {"object", 1, Sample::i32},
                                             {"material", 1, Sample::i32},
                                             {"face", 1, Sample::i32}}};
static_assert(kinds.size() == static_cast<std::size_t>(Layer::face) + 1);

const LayerKind& kind_of(Layer layer) {
    static constexpr LayerKind none = {"", 0, Sample::u8};
    const auto place = static_cast<std::size_t>(layer);
    return place < kinds.size() ? kinds[place] : none;
}

} // namespace

const char* name_of(Layer layer) noexcept {
    return kind_of(layer).name;
}

std::optional<Layer> layer_named(const std::string& name) {
    for (std::size_t i = 0; i < kinds.size(); ++i)
        if (name == kinds[i].name)
            return static_cast<Layer>(i);
    return std::nullopt;
}

int channels_of(Layer layer) noexcept {
    return kind_of(layer).channels;
}

Sample sample_of(Layer layer) noexcept {
    return kind_of(layer).sample;
}

namespace {

// On either path by generic attributes, which draw a run of faces alone: client arrays draw all.
const char* const program_text = R"([Vertex_Shader]
#version 150
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
in vec4 orvex_Position;
in vec4 orvex_Normal;
out vec3 eye_position;
out vec3 eye_normal;
out vec3 world_position;

void main()
{
    vec4 position = vec4(orvex_Position.xyz, 1.0);
    eye_position = (orvex_ModelViewMatrix * position).xyz;
    eye_normal = mat3(orvex_ModelViewMatrix) * orvex_Normal.xyz;
    world_position = (orvex_ModelMatrix * position).xyz;
    gl_Position = orvex_ModelViewProjectionMatrix * position;
}
[Pixel_Shader]
#version 150
uniform mat4 orvex_ViewMatrix;
uniform mat4 orvex_ProjectionMatrix;
uniform float faceted;      // 1: the normals are those of the faces
uniform float in_world;     // 1: normals and positions are the world's; 0: the camera's
uniform float object_id;
uniform float material_id;
uniform int first_face;     // of what one call draws
in vec3 eye_position;
in vec3 eye_normal;
in vec3 world_position;

void main()
{
    vec3 face_normal = normalize(cross(dFdx(eye_position), dFdy(eye_position)));
    bool has_normal = faceted < 0.5 && dot(eye_normal, eye_normal) > 0.0;
    vec3 normal = has_normal ? normalize(eye_normal) : face_normal;
    // Without perspective all is seen along one way.
    vec3 seen_along =
        orvex_ProjectionMatrix[3][3] == 1.0 ? vec3(0.0, 0.0, -1.0) : eye_position;
    normal = dot(normal, seen_along) > 0.0 ? -normal : normal;
    vec3 turned = normalize(normal * mat3(orvex_ViewMatrix));
    vec3 downward = vec3(1.0, -1.0, -1.0);
    bool is_world = in_world > 0.5;

    int face = first_face + gl_PrimitiveID;
    gl_FragData[0] = vec4(is_world ? turned : normal * downward, -eye_position.z);
    gl_FragData[1] = vec4(object_id, material_id, float(face & 0xfffff), float(face >> 20) + 1.0);
    gl_FragData[2] = vec4(is_world ? world_position : eye_position * downward, 1.0);
}
)";

} // namespace

/// Draws the layers of one view, once.
class LayerPass {
public:
    LayerPass(View& view, const LayerOptions& options)
        : view(view)
        , data(*view.data)
        , options(options) {}

    Outcome draw(const Camera& camera, const std::vector<Model*>& models,
                 const std::vector<LayerPlane>& planes);

private:
    View& view;
    View::Data& data;
    const LayerOptions& options;
    std::unique_ptr<float[]> numbers; ///< of one texture

    std::size_t size() const {
        return static_cast<std::size_t>(data.width) * static_cast<std::size_t>(data.height);
    }
    Outcome draw_colors(const Camera& camera, const std::vector<Model*>& models,
                        const std::vector<LayerPlane>& planes);
    Outcome prepare(unsigned long textures);
    void draw_numbers(const Camera& camera, const std::vector<Model*>& models);
    Outcome take(unsigned texture, const std::vector<LayerPlane>& planes);
};

namespace {

/// Which texture a layer lies in; none for the colours.
int texture_of(Layer layer) {
    switch (layer) {
    case Layer::color:
        break;
    case Layer::depth:
    case Layer::normal:
        return 0;
    case Layer::object:
    case Layer::material:
    case Layer::face:
        return 1;
    case Layer::position:
        return 2;
    }
    return -1;
}

bool is_wanted(const std::vector<LayerPlane>& planes, int texture) {
    return std::any_of(planes.begin(), planes.end(),
                       [=](const LayerPlane& plane) { return texture_of(plane.layer) == texture; });
}

/// A row of a plane, counted from the one on top.
unsigned char* row_of(const LayerPlane& plane, int y) {
    return static_cast<unsigned char*>(plane.rows) + plane.row_bytes * y;
}

/// Why a plane can't be filled; empty if it can.
std::string mistake_in(const LayerPlane& plane, int width) {
    const std::string name = name_of(plane.layer);
    if (name.empty())
        return "a plane of a layer that there isn't";
    if (!plane.rows)
        return "the plane of " + name + " has no memory";
    const auto sample = static_cast<std::ptrdiff_t>(size_of(sample_of(plane.layer)));
    const std::ptrdiff_t needed = width * channels_of(plane.layer) * sample;
    if (std::abs(plane.row_bytes) < needed || plane.row_bytes % sample != 0)
        return "the plane of " + name + " has rows of " + std::to_string(plane.row_bytes) +
               " bytes: " + std::to_string(needed) + " are needed, in steps of " +
               std::to_string(sample);
    return "";
}

/// One pixel of four numbers.
void put_pixel(Layer layer, const float* from, bool is_nothing, unsigned char* to) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    auto* const floats = reinterpret_cast<float*>(to);
    auto* const id = reinterpret_cast<std::int32_t*>(to);
    switch (layer) {
    case Layer::color:
        break;
    case Layer::depth:
        *floats = is_nothing ? infinity : from[3];
        break;
    case Layer::normal:
        std::copy_n(from, 3, floats);
        break;
    case Layer::position:
        if (is_nothing)
            std::fill_n(floats, 3, nan);
        else
            std::copy_n(from, 3, floats);
        break;
    case Layer::object:
        *id = is_nothing ? -1 : static_cast<std::int32_t>(from[0]);
        break;
    case Layer::material:
        *id = is_nothing ? -1 : static_cast<std::int32_t>(from[1]);
        break;
    case Layer::face:
        *id = static_cast<std::int32_t>(from[2]) +
              (static_cast<std::int32_t>(from[3]) - 1) * (is_nothing ? 1 : 1 << 20);
        break;
    }
}

} // namespace

Outcome LayerPass::draw_colors(const Camera& camera, const std::vector<Model*>& models,
                               const std::vector<LayerPlane>& planes) {
    const auto is_color = [](const LayerPlane& plane) { return plane.layer == Layer::color; };
    if (std::none_of(planes.begin(), planes.end(), is_color))
        return Outcome::success();
    view.begin(camera);
    for (Model* const model : models)
        if (model)
            view.add(*model, options.lit_from);
    view.end();
    for (const LayerPlane& plane : planes)
        if (is_color(plane))
            if (Outcome done = data.read(plane.rows, plane.row_bytes); !done)
                return done;
    return Outcome::success();
}

/// The program, the target and the memory.
Outcome LayerPass::prepare(unsigned long textures) {
    // By a program that asks for the number of a face it draws nothing, without error (Mesa 22.3).
    const char* const model = data.context->renderer->get_renderer_model();
    if (model && std::string_view(model).find("softpipe") != std::string_view::npos)
        return Outcome::failure("the driver softpipe draws no layers: unset GALLIUM_DRIVER");
    if (!data.layer_program)
        data.layer_program = Program::from_text(view, program_text, "layers");
    if (!data.layer_program)
        return Outcome::failure(
            view.path() == Path::gl2
                ? "this driver has no shading language 1.50 on path gl2: ask for path gl3"
                : data.layer_program.reason());
    orvex::RenderTarget*& target = data.layer_target;
    if (!target)
        target = data.context->renderer->create_render_target();
    const bool fits = target->get_width() == data.width && target->get_height() == data.height &&
                      data.layer_textures >= textures;
    data.layer_textures = fits ? data.layer_textures : 0;
    if (!fits && !target->create_target_v2(data.width, data.height, PF_RGBA_F32, textures, false,
                                           false, true, 0))
        return Outcome::failure("no target of " + std::to_string(data.width) + "x" +
                                std::to_string(data.height) +
                                " pixels with floats: " + last_mistake_in(*target));
    data.layer_textures = std::max(data.layer_textures, textures);
    numbers.reset(new (std::nothrow) float[size() * 4]);
    return numbers ? Outcome::success() : Outcome::failure("no memory to read layers");
}

void LayerPass::draw_numbers(const Camera& camera, const std::vector<Model*>& models) {
    orvex::Renderer& renderer = *data.context->renderer;
    data.enter();
    data.layer_target->activate();
    renderer.rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    renderer.rasterizer_set_msaa_state(false);
    renderer.rasterizer_apply_state();
    camera.apply(*data.camera, data.width, data.height);
    data.camera->bind(&renderer, true, true, true, true, view.path() == Path::gl2);
    renderer.clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 0.0f, 1.0f);
    data.layer_program.set("in_world", options.space == LayerSpace::world ? 1.0f : 0.0f);
    FirstNumbers first;
    for (Model* const model : models)
        if (model)
            first = ModelNumbers::draw(*model, renderer, *data.layer_program.gpu(), first);
    data.layer_target->deactivate();
}

/// Sorts one texture into the planes that lie in it, from the lowest row on.
Outcome LayerPass::take(unsigned texture, const std::vector<LayerPlane>& planes) {
    const auto width = static_cast<std::size_t>(data.width);
    if (!data.layer_target->read_color_texture_f32(texture, 4, numbers.get(), width))
        return Outcome::failure("the driver doesn't give the layers back");
    for (const LayerPlane& plane : planes) {
        if (texture_of(plane.layer) != static_cast<int>(texture))
            continue;
        const std::size_t step =
            size_of(sample_of(plane.layer)) * static_cast<std::size_t>(channels_of(plane.layer));
        for (int y = 0; y < data.height; ++y) {
            const float* from = numbers.get() + static_cast<std::size_t>(y) * width * 4;
            unsigned char* to = row_of(plane, data.height - 1 - y);
            // Each texture tells by itself where nothing is: no surface has depth 0, or w 0.
            for (std::size_t x = 0; x < width; ++x, from += 4, to += step)
                put_pixel(plane.layer, from, from[3] == 0.0f, to);
        }
    }
    return Outcome::success();
}

Outcome LayerPass::draw(const Camera& camera, const std::vector<Model*>& models,
                        const std::vector<LayerPlane>& planes) {
    for (const LayerPlane& plane : planes)
        if (std::string mistake = mistake_in(plane, data.width); !mistake.empty())
            return Outcome::failure(std::move(mistake));
    if (Outcome done = draw_colors(camera, models, planes); !done)
        return done;
    const bool has_positions = is_wanted(planes, 2);
    if (!has_positions && !is_wanted(planes, 0) && !is_wanted(planes, 1))
        return Outcome::success();
    if (Outcome ready = prepare(has_positions ? 3 : 2); !ready)
        return ready;
    draw_numbers(camera, models);
    for (const unsigned texture : {0u, 1u, 2u})
        if (is_wanted(planes, static_cast<int>(texture)))
            if (Outcome done = take(texture, planes); !done)
                return done;
    return Outcome::success();
}

Outcome draw_layers(View& view, const Camera& camera, const std::vector<Model*>& models,
                    const std::vector<LayerPlane>& planes, const LayerOptions& options) {
    if (!view)
        return Outcome::failure("layers of an empty view" +
                                (view.reason().empty() ? "" : ": " + view.reason()));
    if (!view.make_current())
        return Outcome::failure("the context of the view can't be made current");
    return LayerPass(view, options).draw(camera, models, planes);
}

Outcome draw_layers(View& view, const Camera& camera, const std::vector<Model*>& models,
                    const std::vector<Layer>& layers, std::vector<Picture>& pictures,
                    const LayerOptions& options) {
    std::vector<Picture> fresh(layers.size());
    std::vector<LayerPlane> planes;
    for (std::size_t i = 0; view && i < layers.size(); ++i) {
        if (Outcome made = fresh[i].create(view.width(), view.height(), channels_of(layers[i]),
                                           sample_of(layers[i]));
            !made)
            return made;
        planes.push_back(
            {layers[i], fresh[i].data(), static_cast<std::ptrdiff_t>(fresh[i].row_bytes())});
    }
    if (Outcome done = draw_layers(view, camera, models, planes, options); !done)
        return done;
    pictures = std::move(fresh);
    return Outcome::success();
}

} // namespace orvex::kit
