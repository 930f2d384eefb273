#pragma once

/// @file
/// A render target of the back end: its frame buffer object, and what that hangs on.

#include <cstddef>
#include <string>
#include <vector>

#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/render_target.h"

namespace orvex {

enum class Kinship : unsigned char;
struct ContextState;
struct GlState;
struct RendererOpenGLCtx;

/// A render target as an OpenGL framebuffer object. What each operation does is told in
/// `RenderTarget`.
///
/// `RendererOpenGL` makes it, lists it and deletes it; its destructor cuts the targets that are
/// left from the function table, after which they refuse to work. Only `kill` deletes its GL
/// objects.
///
/// The ids are those of the current context. In another one the framebuffer is put aside, and so
/// are the textures and render buffers unless the two share; what the target has there takes their
/// place. Nothing there yet, they are made as they were made here, without a trace in what is
/// bound.
class RenderTargetOpenGL : public RenderTarget {
public:
    RenderTargetOpenGL();

    bool create_render_buffer_target(int width, int height, PIXEL_FORMAT format, bool,
                                     unsigned long num_buffers, bool, int samples) override;
    bool create_target(int width, int height, PIXEL_FORMAT format, bool, bool linear, bool clamp,
                       int samples) override;
    bool create_target_v2(int width, int height, PIXEL_FORMAT format, unsigned long num_textures,
                          bool, bool linear, bool clamp, int samples) override;
    bool create_target_rect(int width, int height, PIXEL_FORMAT format, bool, bool linear,
                            bool clamp, int samples) override;
    bool create_target_rect_v2(int width, int height, PIXEL_FORMAT format,
                               unsigned long num_textures, bool, bool linear, bool clamp,
                               int samples) override;
    bool create_target_depth(int width, int height, bool linear, bool) override;
    bool create_target_depth_rect(int width, int height, bool linear, bool) override;
    bool clear_color_buffer(int index, float r, float g, float b, float a) override;
    bool clear_depth_buffer(float depth) override;
    bool read_color_pixmap_rgb_u8(unsigned char* pixels) override;
    bool read_color_pixmap_rgba_u8(unsigned char* pixels) override;
    bool kill() override;
    bool activate() override;
    bool deactivate() override;
    bool resize(int width, int height) override;
    unsigned int get_fbo() override;
    unsigned int get_color_tex_id_opengl(int index) override;
    unsigned int get_depth_tex_id_opengl() override;
    void clear_error_str() override { error_str.clear(); }
    const char* get_error_str() override { return error_str.c_str(); }
    unsigned long get_error_str_size() override { return error_str.size(); }

    bool read_color_texture_f32(unsigned int index, unsigned int channels, float* pixels,
                                unsigned long row_length) override;

    unsigned long get_read_back_size(unsigned long channels) override;

    /// The entry points of the renderer; null makes the target inert.
    void _set_opengl_func(ORVEX_Renderer_OpenGL_Func* functions) { gl = functions; }
    /// The renderer's record of the API's state, in which texture unit 0 is kept.
    void _set_opengl_ctx(RendererOpenGLCtx* state) { ctx = state; }
    /// The renderer's knowledge of contexts; null for a target that knows one alone.
    void set_opengl_state(GlState* contexts) { state = contexts; }

private:
    static constexpr std::size_t max_colors = 8;

    /// How a target was made, to be made again in another context.
    enum class Form { none, textures, depth, render_buffers };

    /// What contexts that share have in common.
    struct Objects {
        unsigned int render_buffers[max_colors] = {};
        unsigned int depth_render_buffer = 0;
        unsigned int color_textures[max_colors] = {};
        unsigned int depth_texture = 0;
    };

    /// Objects that were put aside.
    struct ObjectsElsewhere {
        unsigned long long group = 0;
        Objects objects;
        int width = 0;
        int height = 0;
    };

    /// A framebuffer that was put aside.
    struct FramebufferElsewhere {
        unsigned long long context = 0;
        unsigned int id = 0;
    };

    class BindingsKept;

    /// Makes the ids those of the current context; 0 for what the target doesn't have there.
    void enter_context();
    /// The same, and makes what is missing.
    void enter_and_make();
    void step_into(const ContextState& here);
    bool has_textures_here() const;
    bool has_elsewhere() const;
    void put_framebuffer_aside();
    void put_objects_aside();
    void take_objects_up(unsigned long long group_number);
    void take_framebuffer_up(unsigned long long context_number);
    void bury_elsewhere();
    void make_here();
    void make_framebuffer();
    bool bind_own();
    void delete_objects();
    bool make_texture_target(GLenum target);
    bool make_depth_target(GLenum target);
    bool make_render_buffer_target();
    void attach_depth(GLenum target) const;
    GLenum form_target() const;

    /// Names one of the target's objects, which exists by now, after the target.
    void label(GLenum kind, unsigned int object, const char* use) const;
    void label(GLenum kind, unsigned int object, const char* use, std::size_t index) const;

    bool _create_target(GLenum target, int new_width, int new_height, PIXEL_FORMAT pixel_format,
                        unsigned long num_textures, bool linear, bool clamp, int new_samples);
    bool _create_target_depth(GLenum target, int new_width, int new_height, bool linear);
    bool _create_fbo();

    bool can_make_textures(int wanted_samples) const;
    bool can_make_render_buffers() const;
    bool can_resize() const;
    bool can_delete() const;
    bool has_objects() const;
    bool start_over(bool rectangle_textures);
    unsigned int window_framebuffer() const;

    void store_texture(GLenum target, int stored_samples, GLint internal, GLint pixels,
                       GLint type) const;
    void store_depth_texture(GLenum target, int stored_samples) const;
    void store_render_buffer(unsigned int id, GLenum internal) const;
    bool make_color_texture(GLenum target, std::size_t index);
    bool make_depth_texture(GLenum target);
    void attach_textures(GLenum target) const;
    bool make_render_buffers();
    void attach_render_buffers() const;
    bool make_textures(GLenum target);
    bool check_status(const char* message);
    bool give_up();
    void leave(GLenum target);
    void delete_render_buffers();
    void resize_render_buffers() const;
    void resize_textures() const;
    bool read_color_pixmap(GLenum channels, unsigned char* pixels);

    Form form = Form::none;
    bool unmade = false;            ///< it was made elsewhere, and not in the current context yet
    unsigned long long context = 0; ///< number of the context of `fbo`; 0 for none yet
    unsigned long long group = 0;   ///< number of the group of contexts of the other ids
    Kinship group_kinship = {};     ///< how its contexts are known
    std::vector<FramebufferElsewhere> framebuffers_elsewhere;
    std::vector<ObjectsElsewhere> objects_elsewhere;
    unsigned int fbo = 0;
    bool rectangle = false;
    unsigned int render_buffers[max_colors] = {};
    unsigned long num_render_buffers = 0;
    unsigned int depth_render_buffer = 0;
    unsigned int color_textures[max_colors] = {};
    unsigned long num_color_textures = 0;
    int texture_samples = 0;        // a rectangle is asked for with samples that it can't have
    unsigned int color_texture = 0; // the first of them
    int color_filter = GL_NEAREST;
    int color_wrap = GL_CLAMP;
    int internal_format = GL_RGBA;
    int format = GL_RGBA;
    int pixel_type = GL_UNSIGNED_BYTE;
    unsigned int depth_texture = 0;
    int depth_filter = GL_NEAREST;
    int depth_wrap = GL_CLAMP;
    ORVEX_Renderer_OpenGL_Func* gl = nullptr;
    RendererOpenGLCtx* ctx = nullptr;
    GlState* state = nullptr;
    std::string error_str;
};

} // namespace orvex
