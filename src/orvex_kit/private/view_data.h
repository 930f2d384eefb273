#pragma once

/// @file
/// What a view consists of.

#include <cstddef>
#include <memory>
#include <string>

#include <orvex/math/vec4.h>

#include "orvex_kit/private/view_context.h"
#include "orvex_kit/private/whole_square.h"
#include "orvex_kit/program.h"
#include "orvex_kit/ref.h"
#include "orvex_kit/view.h"

namespace orvex {
class Camera;
class RenderTarget;
} // namespace orvex

namespace orvex::kit {

/// Why the last try to make a target failed, which the engine tells in lines.
std::string last_mistake_in(orvex::RenderTarget& target);

/// A context with a target, and what is drawn by.
class View::Data {
public:
    Data(const ContextWish& wish, const ViewOptions& options);
    ~Data();
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;

    bool is_open() const { return context->is_open(); }
    bool is_opaque() const { return background.w >= 1.0f; }
    /// The background as it stands in a target: multiplied by its opacity, so that it comes out of
    /// samples as a model's edge does.
    orvex::vec4 behind() const;

    /// Sides of what is drawn into, in pixels.
    int drawn_width() const { return width * fineness; }
    int drawn_height() const { return height * fineness; }

    /// Takes the context as it is at the begin of a frame.
    void enter();
    void begin(orvex::Camera& camera);
    void add(Model& model, const Angle& lit_from);
    /// Brings what was drawn from the target to the framebuffer that is bound then, or to `fbo`.
    void resolve(unsigned int fbo);
    Outcome read(Picture& picture);
    Outcome read(void* memory, std::ptrdiff_t row_bytes);
    Outcome resize(int new_width, int new_height);

    std::shared_ptr<ViewContext> context = std::make_shared<ViewContext>();
    orvex::RenderTarget* target = nullptr;   ///< drawn into; null: the surface is
    orvex::RenderTarget* readable = nullptr; ///< where a target is read; null: none as yet
    int width = 0;
    int height = 0;
    orvex::vec4 background{0.17f, 0.19f, 0.22f, 1.0f};
    Ref<orvex::Camera> camera;
    Program look;
    Program layer_program;                       ///< empty as yet, or without need
    orvex::RenderTarget* layer_target = nullptr; ///< null as yet
    unsigned long layer_textures = 0;            ///< that it has
    bool has_lines = false;                      ///< the look draws faces as their edges

private:
    int fineness;            ///< pixels drawn for one, each way
    int texture_samples = 0; ///< of a pixel of the target, where programs can read them
    bool is_window;
    Program points; ///< draws clouds, and lines; empty as yet or without need
    Program mean;   ///< brings the pixels or samples drawn together; empty as yet or without need
    std::unique_ptr<WholeSquare> square; ///< that the means are drawn by

    void make_target(int samples);
    bool make_sampled_texture(int samples);
    void store_sampled_depth() const;
    void add_points_and_lines(Model& model);
    float depth_step() const;
    void draw_edges(Model& model, const Angle& lit_from);
    void average();
    bool make_mean();
    bool make_readable();
    Outcome read_pixels(unsigned char* pixels);
    Outcome read_apart(void* memory, std::ptrdiff_t row_bytes);
    bool read_target(unsigned char* pixels);
    void read_surface(unsigned char* pixels);
};

} // namespace orvex::kit
