// A frame: into a target of several samples, or of several pixels for one, and from there to the
// surface.

#include <algorithm>
#include <cstddef>
#include <string>

#include <orvex/gpu/gpu_program.h>
#include <orvex/renderer/render_target.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>
#include <orvex/scene/viewport.h>

#include "orvex_kit/model.h"
#include "orvex_kit/private/gl_states.h"
#include "orvex_kit/private/view_data.h"

namespace orvex::kit {

View::Data::Data(const ContextWish& wish, const ViewOptions& options)
    : width(wish.width)
    , height(wish.height)
    , camera(make<orvex::Camera>())
    , fineness(std::clamp(options.supersampling, 1, 8))
    , is_window(wish.kind == ContextWish::Kind::window) {
    context->open(wish);
    if (is_open())
        make_target(options.samples);
}

View::Data::~Data() {
    // Programs of the host may live longer, with nothing in them.
    context->close();
}

std::string last_mistake_in(orvex::RenderTarget& target) {
    std::string lines = target.get_error_str();
    lines.erase(lines.find_last_not_of("\r\n") + 1);
    return lines.substr(lines.find_last_of('\n') + 1);
}

void View::Data::make_target(int samples) {
    orvex::Renderer& renderer = *context->renderer;
    const std::string size = std::to_string(drawn_width()) + "x" + std::to_string(drawn_height());
    if (fineness > 1) {
        target = renderer.create_render_target();
        if (std::max(drawn_width(), drawn_height()) <= renderer.get_max_texture_size() &&
            target->create_target(drawn_width(), drawn_height(), PF_RGBA_U8, false, false, true, 0))
            return;
        context->fail(ViewFailure::samples, "no target of " + size + " for a supersampling of " +
                                                std::to_string(fineness) + " (1 needs none)");
        return context->close();
    }
    const int offered = std::min(samples, renderer.get_GL_MAX_SAMPLES());
    if (offered < 2)
        return;
    target = renderer.create_render_target();
    if (make_sampled_texture(offered) ||
        target->create_render_buffer_target(width, height, PF_RGBA_U8, false, 1, true, offered))
        return;
    context->fail(ViewFailure::samples,
                  "no target of " + size + " with " + std::to_string(offered) +
                      " samples per pixel (samples 0 needs none): " + last_mistake_in(*target));
    context->close();
}

/// Programs read samples from textures, from version 3.2 on. A host's own context may be followed
/// by another one, in which the target would have its depth as the engine makes it.
/// @return whether the target is made
bool View::Data::make_sampled_texture(int samples) {
    if (context->path == Path::gl2 || context->is_adopted)
        return false;
    GLint of_color = 0, of_depth = 0;
    glGetIntegerv(GL_MAX_COLOR_TEXTURE_SAMPLES, &of_color);
    glGetIntegerv(GL_MAX_DEPTH_TEXTURE_SAMPLES, &of_depth);
    if (std::min(of_color, of_depth) < samples ||
        !target->create_target(width, height, PF_RGBA_U8, false, false, true, samples))
        return false;
    // A driver may give more than it was asked for.
    store_sampled_depth();
    target->activate();
    glGetIntegerv(GL_SAMPLES, &texture_samples);
    const bool is_complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    target->deactivate();
    if (!is_complete)
        texture_samples = 0;
    return is_complete;
}

/// In 24 bits, as a render buffer has it, for the engine's 32: faces that nearly touch come out the
/// same on both paths.
void View::Data::store_sampled_depth() const {
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, target->get_depth_tex_id_opengl());
    glTexImage2DMultisample(GL_TEXTURE_2D_MULTISAMPLE, target->get_samples(), GL_DEPTH_COMPONENT24,
                            width, height, GL_FALSE);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
}

Outcome View::Data::resize(int new_width, int new_height) {
    const auto refusal = [&](const char* why) {
        return Outcome::failure("a view of " + std::to_string(new_width) + "x" +
                                std::to_string(new_height) + " pixels: " + why);
    };
    if (new_width < 1 || new_height < 1)
        return refusal("sides go from 1");
    if (!context->make_current())
        return refusal("its context can't be made current");
    orvex::RenderWindow& window = *context->window;
    if (std::max(new_width, new_height) > context->renderer->get_max_texture_size() / fineness)
        return refusal("the driver has no surface of that size");
    window.update_size(new_width, new_height);
    if (!context->is_adopted && !window.osx_update_context_cocoa()) {
        window.update_size(width, height);
        return refusal("the driver has no surface of that size");
    }
    // A driver may look at a window's size after a swap alone, where another view drew since. One
    // of Wayland copies beyond its buffer's end where nothing was drawn in the new size.
    if (is_window) {
        context->renderer->clear_color_depth_buffers(behind(), 1.0f);
        window.display_framebuffer();
    }
    width = new_width;
    height = new_height;
    if (target)
        target->resize(drawn_width(), drawn_height());
    if (texture_samples > 0)
        store_sampled_depth();
    if (readable)
        readable->resize(width, height);
    return Outcome::success();
}

orvex::vec4 View::Data::behind() const {
    return {background.x * background.w, background.y * background.w, background.z * background.w,
            background.w};
}

void View::Data::enter() {
    orvex::Renderer& renderer = *context->renderer;
    if (!context->is_adopted)
        return;
    // A toolkit draws a widget into a framebuffer of its own, and changes states.
    context->window->set_framebuffer(renderer.fbo_get_current_bound());
    renderer.reset_render_states();
}

void View::Data::begin(orvex::Camera& from) {
    orvex::Renderer& renderer = *context->renderer;
    enter();
    if (target)
        target->activate();
    renderer.rasterizer_set_msaa_state(target && fineness == 1);
    renderer.rasterizer_apply_state();
    // A core context has no fixed matrices to load.
    from.bind(&renderer, true, true, true, true, context->path == Path::gl2);
    if (fineness > 1) {
        const orvex::Viewport& port = from.get_viewport();
        renderer.set_viewport(port.x * fineness, port.y * fineness, port.width * fineness,
                              port.height * fineness);
        renderer.set_line_width(static_cast<float>(fineness));
    }
    renderer.clear_color_depth_buffers(behind(), 1.0f);
}

void View::Data::add(Model& model, const Angle& lit_from) {
    if (has_lines)
        draw_edges(model, lit_from);
    else
        model.draw(*context->renderer, *look.gpu(), context->path, lit_from);
    if (model.num_points() > 0 || model.num_lines() > 0)
        add_points_and_lines(model);
}

namespace {

/// As wide as points have to be to be seen on a picture that is looked at as a whole.
constexpr float point_size = 3.0f;

const char* const points_text = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
uniform float point_size;
OUT vec4 point_color;

void main()
{
    point_color = VERTEX_COLOR;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    gl_PointSize = point_size;
}
[Pixel_Shader]
IN vec4 point_color;

void main()
{
    COLOR = vec4(point_color.rgb, 1.0);
}
)";

} // namespace

void View::Data::add_points_and_lines(Model& model) {
    if (!points)
        points = Program::from_text(context, points_text, "points");
    if (!points)
        return;
    points.set("point_size", point_size * static_cast<float>(fineness));
    model.draw_points(*context->renderer, *points.gpu());
    model.draw_lines(*context->renderer, *points.gpu());
}

/// How many of the depth's smallest steps make one of 24 bits: the engine's textures have 32.
float View::Data::depth_step() const {
    return fineness > 1 ? 256.0f : 1.0f;
}

/// The faces first, a little farther away than their edges, in the background's colours.
void View::Data::draw_edges(Model& model, const Angle& lit_from) {
    orvex::Renderer& renderer = *context->renderer;
    const auto draw_as = [&](RENDERER_POLYGON_MODE mode, float bias) {
        renderer.rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, mode);
        renderer.rasterizer_set_depth_bias(bias, bias * depth_step());
        renderer.rasterizer_apply_state();
        renderer.set_depth_bias_state(bias > 0.0f);
        look.set("laying_faces", mode == POLYGON_MODE_FILL ? 1.0f : 0.0f);
        model.draw(renderer, *look.gpu(), context->path, lit_from);
    };
    look.set("behind", behind());
    draw_as(POLYGON_MODE_FILL, 1.0f);
    draw_as(POLYGON_MODE_LINE, 0.0f);
    renderer.rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    renderer.rasterizer_apply_state();
}

namespace {

// The mean of n by n pixels of 8 bits, in whole numbers that no driver rounds otherwise: a quarter
// keeps the quotient away from the next whole number.
const char* const box_text = R"([Vertex_Shader]
void main()
{
    gl_Position = vec4(POSITION.xz, 0.0, 1.0);
}
[Pixel_Shader]
uniform sampler2D drawn;
uniform vec4 size;  // n, and the sides of what was drawn

void main()
{
    vec2 corner = floor(gl_FragCoord.xy) * size.x + 0.5;
    vec4 sum = vec4(0.0);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            if (float(x) < size.x && float(y) < size.x)
                sum += floor(SAMPLE(drawn, (corner + vec2(x, y)) / size.yz) * 255.0 + 0.5);
    float count = size.x * size.x;
    COLOR = floor((sum + floor(count / 2.0) + 0.25) / count) / 255.0;
}
)";

// The mean of the samples of a pixel, whose number stands before it: a loop of a known length is
// none to a driver's compiler.
const char* const samples_text = R"([Vertex_Shader]
void main()
{
    gl_Position = vec4(POSITION.xz, 0.0, 1.0);
}
[Pixel_Shader]
uniform sampler2DMS drawn;

void main()
{
    vec4 sum = vec4(0.0);
    for (int i = 0; i < samples; ++i)
        sum += texelFetch(drawn, ivec2(gl_FragCoord.xy), i);
    COLOR = sum / float(samples);
}
)";

/// The program for a number of samples.
std::string samples_text_for(int samples) {
    const std::string begin = "[Pixel_Shader]\n";
    std::string text = samples_text;
    text.insert(text.find(begin) + begin.size(),
                "const int samples = " + std::to_string(samples) + ";\n");
    return text;
}

} // namespace

bool View::Data::make_mean() {
    mean = Program::from_text(context, fineness > 1 ? box_text : samples_text_for(texture_samples),
                              "mean");
    square = std::make_unique<WholeSquare>(*context);
    return static_cast<bool>(mean);
}

/// Draws the means into the framebuffer that is bound.
void View::Data::average() {
    orvex::Renderer& renderer = *context->renderer;
    if (fineness > 1) {
        renderer.set_viewport(0, 0, width, height);
        renderer.set_line_width(1.0f);
    }
    // A host's own drawing may have left states.
    const GlBareDrawing bare;
    renderer.set_viewport(0, 0, width, height);
    mean.set("drawn", 0);
    if (fineness > 1)
        mean.set("size",
                 orvex::vec4(static_cast<float>(fineness), static_cast<float>(drawn_width()),
                             static_cast<float>(drawn_height()), 0.0f));
    mean.gpu()->bind(&renderer);
    renderer.render_target_bind_color_tex(target, 0, 0);
    square->render();
    mean.gpu()->unbind(&renderer);
}

/// A driver's blit has to make the programs that take means of samples, in every process; those of
/// a program are found in the driver's cache.
void View::Data::resolve(unsigned int fbo) {
    orvex::Renderer& renderer = *context->renderer;
    target->deactivate();
    const bool is_averaged = (fineness > 1 || texture_samples > 0) && (mean || make_mean());
    if (!is_averaged) {
        renderer.fbo_blit(target->get_fbo(), 0, 0, width, height, fbo, 0, 0, width, height, true,
                          false);
        return;
    }
    if (fbo != 0)
        renderer.fbo_bind(fbo);
    average();
}

} // namespace orvex::kit
