// A view, in the words of its header. What it does is told by its record.

#include "orvex_kit/view.h"

#include <algorithm>
#include <utility>

#include <orvex/renderer/render_target.h>
#include <orvex/renderer/render_window.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/look.h"
#include "orvex_kit/model.h"
#include "orvex_kit/private/view_data.h"

namespace orvex::kit {

View::View() noexcept = default;

namespace {

ContextWish wish_of(ContextWish::Kind kind, const NativeWindow& window, int width, int height,
                    const ViewOptions& options) {
    return {kind, window, width, height, options.path, options.depth_bits, options.device};
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
    return *this && data->target ? std::max(data->target->get_samples(), 0) : 0;
}

int View::supersampling() const noexcept {
    return *this ? data->drawn_width() / data->width : 1;
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

/// Why a view can't be made current.
Outcome out_of_reach(const View& view) {
    return view ? Outcome::failure("the context of the view can't be made current")
                : empty_view(view.reason());
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
    return *this ? data->resize(width, height) : empty_view(reason());
}

Outcome View::set_look(const Look& look) {
    if (!*this)
        return empty_view(reason());
    if (!look)
        return Outcome::failure(look.reason());
    Program program = look.path().empty() ? Program::from_text(*this, look.text(), look.name())
                                          : Program::from_file(*this, look.path());
    if (!program)
        return Outcome::failure(program.reason());
    data->look = std::move(program);
    data->has_lines = look.has_lines();
    return Outcome::success();
}

Program& View::look() {
    static Program none;
    if (!*this)
        return none;
    if (!data->look)
        data->look = Program::from_text(*this, Look().text(), Look().name());
    return data->look;
}

void View::begin(const Camera& camera) {
    if (!*this)
        return;
    camera.apply(*data->camera, data->width, data->height);
    begin(*data->camera);
}

void View::begin(orvex::Camera& camera) {
    if (make_current())
        data->begin(camera);
}

void View::add(Model& model, const Angle& lit_from) {
    if (look())
        data->add(model, lit_from);
}

void View::end() {
    if (*this && data->target)
        data->resolve(0);
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

Outcome View::read(Picture& picture) {
    return make_current() ? data->read(picture) : out_of_reach(*this);
}

Outcome View::read(void* rows, std::ptrdiff_t row_bytes) {
    return make_current() ? data->read(rows, row_bytes) : out_of_reach(*this);
}

Outcome View::write(const std::string& path, const PictureFileOptions& options) {
    Picture picture;
    Outcome done = read(picture);
    if (done && data->is_opaque())
        done = picture.take_channels(picture, 3);
    if (!done)
        return Outcome::failure("can't write " + path + ": " + done.reason());
    return write_picture(picture, path, options);
}

} // namespace orvex::kit
