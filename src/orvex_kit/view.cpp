// A frame: into a target of several samples a pixel where there are some, and from there to the
// surface.

#include "orvex_kit/view.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <orvex/renderer/render_target.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/look.h"
#include "orvex_kit/model.h"
#include "orvex_kit/private/turn_upside_down.h"
#include "orvex_kit/private/view_context.h"
#include "orvex_kit/program.h"
#include "orvex_kit/ref.h"

namespace orvex::kit {

class View::Data {
public:
    Data(const ContextWish& wish, const ViewOptions& options);
    ~Data();
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;

    bool is_open() const { return context->is_open(); }
    bool is_opaque() const { return background.w >= 1.0f; }
    Outcome read(Picture& picture);
    Program& program_of_look(View& view);

    std::shared_ptr<ViewContext> context = std::make_shared<ViewContext>();
    orvex::RenderTarget* target = nullptr;   ///< with the samples; null: drawn straight away
    orvex::RenderTarget* readable = nullptr; ///< where a target is read; null: at the surface
    int width = 0;
    int height = 0;
    orvex::vec4 background{0.17f, 0.19f, 0.22f, 1.0f};
    Ref<orvex::Camera> camera = make<orvex::Camera>();
    Program look;

private:
    bool is_window;

    void use_samples(int wanted);
    bool make_readable();
    bool read_target(unsigned char* pixels);
    void read_surface(unsigned char* pixels);
};

View::Data::Data(const ContextWish& wish, const ViewOptions& options)
    : width(wish.width)
    , height(wish.height)
    , is_window(wish.kind == ContextWish::Kind::window) {
    context->open(wish);
    if (is_open())
        use_samples(options.samples);
}

View::Data::~Data() {
    // Programs of the host may live longer, with nothing in them.
    context->close();
}

void View::Data::use_samples(int wanted) {
    orvex::Renderer& renderer = *context->renderer;
    const int offered = std::min(wanted, renderer.get_GL_MAX_SAMPLES());
    if (offered < 2)
        return;
    target = renderer.create_render_target();
    if (target->create_render_buffer_target(width, height, PF_RGBA_U8, false, 1, true, offered))
        return;
    context->fail(ViewFailure::samples,
                  "no target of " + std::to_string(width) + "x" + std::to_string(height) +
                      " with " + std::to_string(offered) +
                      " samples per pixel (samples 0 needs none): " + target->get_error_str());
    context->close();
}

View::View() noexcept = default;

namespace {

ContextWish wish_of(ContextWish::Kind kind, const NativeWindow& window, int width, int height,
                    const ViewOptions& options) {
    return {kind, window, width, height, options.path, options.depth_bits};
}

} // namespace

View::View(int width, int height, const ViewOptions& options)
    : data(std::make_unique<Data>(
          wish_of(ContextWish::Kind::off_screen, {}, width, height, options), options)) {}

View::View(const NativeWindow& window, int width, int height, const ViewOptions& options)
    : data(std::make_unique<Data>(
          wish_of(window.drawable ? ContextWish::Kind::window : ContextWish::Kind::off_screen,
                  window, width, height, options),
          options)) {}

View::View(CurrentContext /*context*/, int width, int height, const ViewOptions& options)
    : data(std::make_unique<Data>(wish_of(ContextWish::Kind::adopted, {}, width, height, options),
                                  options)) {}

View::~View() = default;
View::View(View&& other) noexcept = default;
View& View::operator=(View&& other) noexcept = default;

View::operator bool() const noexcept {
    return data && data->is_open();
}

const std::string& View::reason() const noexcept {
    static const std::string nothing;
    return data ? data->context->reason : nothing;
}

ViewFailure View::failure() const noexcept {
    return data ? data->context->failure : ViewFailure::none;
}

int View::width() const noexcept {
    return *this ? data->width : 0;
}

int View::height() const noexcept {
    return *this ? data->height : 0;
}

int View::samples() const noexcept {
    return *this && data->target ? data->target->get_samples() : 0;
}

Path View::path() const noexcept {
    return data ? data->context->path : Path::gl3;
}

const std::shared_ptr<ViewContext>& View::context() const {
    static const auto none = std::make_shared<ViewContext>();
    return data ? data->context : none;
}

namespace {

Outcome empty_view(const std::string& reason) {
    return Outcome::failure(reason.empty() ? "the view is empty" : "the view is empty: " + reason);
}

} // namespace

void View::set_background(const orvex::vec4& color) noexcept {
    const auto part = [](float value) { return value > 0.0f ? std::min(value, 1.0f) : 0.0f; };
    if (data)
        data->background = orvex::vec4(part(color.x), part(color.y), part(color.z), part(color.w));
}

bool View::make_current() {
    return data && data->context->make_current();
}

orvex::Renderer* View::renderer() const noexcept {
    return data ? data->context->renderer : nullptr;
}

orvex::RenderWindow* View::window() const noexcept {
    return data ? data->context->window : nullptr;
}

Outcome View::resize(int width, int height) {
    if (!*this)
        return empty_view(reason());
    const auto refusal = [&](const std::string& why) {
        return Outcome::failure("a view of " + std::to_string(width) + "x" +
                                std::to_string(height) + " pixels: " + why);
    };
    if (width < 1 || height < 1)
        return refusal("sides go from 1");
    if (!make_current())
        return refusal("its context can't be made current");
    orvex::RenderWindow& window = *data->context->window;
    window.update_size(width, height);
    if (!data->context->is_adopted && !window.osx_update_context_cocoa()) {
        window.update_size(data->width, data->height);
        return refusal("the driver has no surface of that size");
    }
    for (orvex::RenderTarget* const target : {data->target, data->readable})
        if (target)
            target->resize(width, height);
    data->width = width;
    data->height = height;
    return Outcome::success();
}

void View::begin(const Camera& camera) {
    if (!*this)
        return;
    camera.apply(*data->camera, data->width, data->height);
    begin(*data->camera);
}

void View::begin(orvex::Camera& camera) {
    if (!make_current())
        return;
    orvex::Renderer& renderer = *data->context->renderer;
    if (data->context->is_adopted) {
        // A toolkit draws a widget into a framebuffer of its own, and changes states.
        data->context->window->set_framebuffer(renderer.fbo_get_current_bound());
        renderer.reset_render_states();
    }
    if (data->target)
        data->target->activate();
    renderer.rasterizer_set_msaa_state(data->target != nullptr);
    renderer.rasterizer_apply_state();
    // A core context has no fixed matrices to load.
    camera.bind(&renderer, true, true, true, true, path() == Path::gl2);
    // Multiplied by its opacity, the background comes out of the samples as a model's edge does.
    const orvex::vec4& behind = data->background;
    renderer.clear_color_depth_buffers(behind.x * behind.w, behind.y * behind.w,
                                       behind.z * behind.w, behind.w, 1.0f);
}

Program& View::Data::program_of_look(View& view) {
    if (!look)
        look = Program::from_text(view, model_shader(view.path() == Path::gl3), "lit");
    return look;
}

void View::add(Model& model, const Angle& lit_from) {
    if (!*this)
        return;
    Program& look = data->program_of_look(*this);
    if (!look)
        return;
    model.use_program(look.gpu(), path() == Path::gl3);
    model.draw(lit_from);
}

void View::end() {
    if (!*this || !data->target)
        return;
    data->target->deactivate();
    data->context->renderer->fbo_blit(data->target->get_fbo(), 0, 0, data->width, data->height, 0,
                                      0, 0, data->width, data->height, true, false);
}

void View::draw(Model& model, const Angle& angle) {
    if (!*this)
        return;
    Angle from = angle;
    if (from.up == UpAxis::automatic)
        from.up = model.up_axis();
    begin(see_all(model.extent(), from, {data->width, data->height}));
    add(model, from);
    end();
}

void View::present() {
    if (make_current() && !data->context->is_adopted)
        data->context->window->display_framebuffer();
}

namespace {

/// Rows that lie the last first, with colours multiplied by their alpha, as a picture has them.
void straighten(Picture& picture, bool is_opaque) {
    turn_upside_down(picture);
    for (int y = 0; y < picture.height(); ++y) {
        auto* pixel = picture.row<std::uint8_t>(y);
        for (int x = 0; x < picture.width(); ++x, pixel += 4) {
            const int alpha = is_opaque ? 255 : pixel[3];
            pixel[3] = static_cast<std::uint8_t>(alpha);
            for (int i = 0; alpha < 255 && i < 3; ++i)
                pixel[i] = static_cast<std::uint8_t>(
                    alpha == 0 ? 0 : std::min((pixel[i] * 255 + alpha / 2) / alpha, 255));
        }
    }
}

} // namespace

bool View::Data::make_readable() {
    if (!readable)
        readable = context->renderer->create_render_target();
    return readable->get_fbo() != 0 ||
           readable->create_target(width, height, PF_RGBA_U8, false, false, true, 0);
}

/// What was drawn, by a target of one sample a pixel: the surface of a host's may have several, or
/// no alpha.
bool View::Data::read_target(unsigned char* pixels) {
    if (!make_readable())
        return false;
    orvex::Renderer& renderer = *context->renderer;
    const unsigned int source = target && !is_opaque() ? target->get_fbo() : 0;
    renderer.fbo_blit(source, 0, 0, width, height, readable->get_fbo(), 0, 0, width, height, true,
                      false);
    const bool has_read = readable->read_color_pixmap_rgba_u8(pixels);
    renderer.fbo_bind(0);
    return has_read;
}

void View::Data::read_surface(unsigned char* pixels) {
    orvex::Renderer& renderer = *context->renderer;
    int x = 0, y = 0, across = 0, down = 0;
    renderer.get_viewport(&x, &y, &across, &down);
    renderer.set_viewport(0, 0, width, height);
    renderer.get_color_buffer(pixels);
    renderer.set_viewport(x, y, across, down);
}

Outcome View::Data::read(Picture& picture) {
    Picture result;
    if (Outcome made = result.create(width, height, 4, Sample::u8); !made)
        return made;
    const bool is_target_wanted = context->is_adopted || (is_window && target && !is_opaque());
    if (!is_target_wanted)
        read_surface(result.row_data(0));
    else if (!read_target(result.row_data(0)))
        return Outcome::failure("there is no target to read a picture of " + std::to_string(width) +
                                "x" + std::to_string(height) +
                                " pixels by: " + readable->get_error_str());
    straighten(result, is_opaque());
    picture = std::move(result);
    return Outcome::success();
}

Outcome View::read(Picture& picture) {
    if (!make_current())
        return empty_view(reason());
    return data->read(picture);
}

Outcome View::write(const std::string& path, const PictureFileOptions& options) {
    Picture picture;
    if (Outcome done = read(picture); !done)
        return Outcome::failure("can't write " + path + ": " + done.reason());
    if (data->is_opaque())
        if (Outcome done = picture.take_channels(picture, 3); !done)
            return Outcome::failure("can't write " + path + ": " + done.reason());
    return write_picture(picture, path, options);
}

} // namespace orvex::kit
