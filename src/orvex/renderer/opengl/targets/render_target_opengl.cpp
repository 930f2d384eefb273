#include "orvex/renderer/opengl/targets/private/render_target_opengl.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <iterator>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/state/private/bound_state.h"
#include "orvex/renderer/opengl/state/private/renderer_opengl_ctx.h"
#include "orvex/renderer/opengl/textures/private/pixel_packing.h"
#include "orvex/renderer/private/debug_name.h"

// The life of a target, clears and read-back. Ids that can't be deleted now are kept, for a later
// kill.

namespace orvex {

RenderTargetOpenGL::RenderTargetOpenGL() {
    api3d = 1;
}

// Life cycle

void RenderTargetOpenGL::label(GLenum kind, unsigned int object, const char* use) const {
    if (!gl->object_label)
        return;
    const std::string target = "render target " + std::to_string(id);
    const DebugName name(target.c_str());
    label_gl_object(*gl, kind, object, use);
}

void RenderTargetOpenGL::label(GLenum kind, unsigned int object, const char* use,
                               std::size_t index) const {
    if (gl->object_label)
        label(kind, object, (std::string(use) + " " + std::to_string(index)).c_str());
}

bool RenderTargetOpenGL::_create_fbo() {
    gl->glGenFramebuffers(1, &fbo);
    return fbo != 0;
}

bool RenderTargetOpenGL::activate() {
    if (!gl)
        return false;
    BoundState::restore_on_thread();
    enter_and_make();
    return !unmade && has_entries(gl->glGenFramebuffers, gl->glBindFramebuffer) && bind_own();
}

/// @return false where the API has no memory for a framebuffer
bool RenderTargetOpenGL::bind_own() {
    const bool is_new = fbo == 0;
    if (is_new && !_create_fbo())
        return false;
    gl->glBindFramebuffer(GL_FRAMEBUFFER, fbo);
    if (is_new)
        label(GL_FRAMEBUFFER, fbo, "framebuffer");
    return true;
}

bool RenderTargetOpenGL::deactivate() {
    if (!gl || !gl->glBindFramebuffer)
        return false;
    BoundState::restore_on_thread();
    static constexpr GLenum bindings[] = {GL_FRAMEBUFFER, GL_DRAW_FRAMEBUFFER, GL_READ_FRAMEBUFFER};
    const unsigned int window = window_framebuffer();
    for (const GLenum target : bindings)
        gl->glBindFramebuffer(target, window);
    return true;
}

unsigned int RenderTargetOpenGL::window_framebuffer() const {
    return ctx ? ctx->window_framebuffer() : 0;
}

namespace {

template<class Ids>
bool any_set(const Ids& ids) {
    return std::any_of(std::begin(ids), std::end(ids), [](unsigned int id) { return id != 0; });
}

void delete_texture(unsigned int& id) {
    if (id != 0) {
        glDeleteTextures(1, &id);
        id = 0;
    }
}

} // namespace

bool RenderTargetOpenGL::has_objects() const {
    return fbo != 0 || depth_texture != 0 || depth_render_buffer != 0 || any_set(color_textures) ||
           any_set(render_buffers);
}

bool RenderTargetOpenGL::can_delete() const {
    if (!gl)
        return false;
    const bool has_buffers = depth_render_buffer != 0 || any_set(render_buffers);
    return (!has_buffers || gl->glDeleteRenderbuffers) && (fbo == 0 || gl->glDeleteFramebuffers);
}

void RenderTargetOpenGL::delete_render_buffers() {
    for (unsigned int& id : render_buffers) {
        if (id != 0) {
            gl->glDeleteRenderbuffers(1, &id);
            id = 0;
        }
    }
    if (depth_render_buffer != 0) {
        gl->glDeleteRenderbuffers(1, &depth_render_buffer);
        depth_render_buffer = 0;
    }
}

void RenderTargetOpenGL::delete_objects() {
    delete_render_buffers();
    for (unsigned int& id : color_textures)
        delete_texture(id);
    color_texture = 0;
    delete_texture(depth_texture);
}

bool RenderTargetOpenGL::kill() {
    enter_context();
    if (!can_delete()) {
        // The depth texture alone is deleted without the table; an id that can't be is kept.
        if (!gl)
            delete_texture(depth_texture);
        return !has_objects();
    }
    bury_elsewhere();
    form = Form::none;
    unmade = false;
    delete_objects();
    if (fbo != 0) {
        gl->glDeleteFramebuffers(1, &fbo);
        fbo = 0;
    }
    return true;
}

// Errors

bool RenderTargetOpenGL::check_status(const char* message) {
    const GLenum status = gl->glCheckFramebufferStatus(GL_FRAMEBUFFER);
    if (status == GL_FRAMEBUFFER_COMPLETE)
        return true;
    char line[128];
    std::snprintf(line, sizeof(line), "%s - FBO creation error: %.4X\r\n", message, status);
    error_str += line;
    return false;
}

/// A context without memory gives no name; 0 in its place would be the window's, or a texture that
/// all share.
/// @return false
bool RenderTargetOpenGL::give_up() {
    error_str += "RenderTargetOpenGL - no memory for a GL object\r\n";
    return false;
}

// Clears, on whatever is bound

bool RenderTargetOpenGL::clear_color_buffer(int index, float r, float g, float b, float a) {
    if (!gl || !gl->glClearBufferfv)
        return false;
    const float color[4] = {r, g, b, a};
    gl->glClearBufferfv(GL_COLOR, index, color);
    return true;
}

bool RenderTargetOpenGL::clear_depth_buffer(float depth) {
    if (!gl || !gl->glClearBufferfv)
        return false;
    gl->glClearBufferfv(GL_DEPTH, 0, &depth);
    return true;
}

// Read-back

namespace {

bool level_has_size(GLenum target, GLint width, GLint height) {
    GLint actual_width = 0;
    GLint actual_height = 0;
    glGetTexLevelParameteriv(target, 0, GL_TEXTURE_WIDTH, &actual_width);
    glGetTexLevelParameteriv(target, 0, GL_TEXTURE_HEIGHT, &actual_height);
    return actual_width == width && actual_height == height;
}

} // namespace

bool RenderTargetOpenGL::read_color_pixmap(GLenum channels, unsigned char* pixels) {
    enter_context();
    if (!gl || !pixels || samples >= 1 || color_texture == 0)
        return false;
    const GLenum target = rectangle ? GL_TEXTURE_RECTANGLE : GL_TEXTURE_2D;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glBindTexture(target, color_texture);
    // The caller's memory has the size of the target; a texture whose resize the API refused
    // hasn't.
    if (!level_has_size(target, width, height))
        return false;
    glGetTexImage(target, 0, channels, GL_UNSIGNED_BYTE, pixels);
    return true;
}

unsigned long RenderTargetOpenGL::get_read_back_size(unsigned long channels) {
    if (!gl)
        return 0; // nothing will be read
    const auto columns = static_cast<unsigned long>(std::max(width, 0));
    const auto rows = static_cast<unsigned long>(std::max(height, 0));
    const bool was_refused = ctx && std::max(columns, rows) > ctx->max_texture_size;
    return was_refused ? ULONG_MAX : PixelPacking::current().size_of(columns, rows, channels);
}

bool RenderTargetOpenGL::read_color_pixmap_rgb_u8(unsigned char* pixels) {
    return read_color_pixmap(GL_RGB, pixels);
}

bool RenderTargetOpenGL::read_color_pixmap_rgba_u8(unsigned char* pixels) {
    return read_color_pixmap(GL_RGBA, pixels);
}

namespace {

/// Rows of a length of the caller's, aligned as floats are; at its end as the host had it.
class FloatPacking {
public:
    explicit FloatPacking(unsigned long row_length) {
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        glPixelStorei(GL_PACK_ROW_LENGTH, static_cast<GLint>(row_length));
        glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
        glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    }
    ~FloatPacking() {
        glPixelStorei(GL_PACK_ALIGNMENT, static_cast<GLint>(before.alignment));
        glPixelStorei(GL_PACK_ROW_LENGTH, static_cast<GLint>(before.row_length));
        glPixelStorei(GL_PACK_SKIP_PIXELS, static_cast<GLint>(before.skip_pixels));
        glPixelStorei(GL_PACK_SKIP_ROWS, static_cast<GLint>(before.skip_rows));
    }
    FloatPacking(const FloatPacking&) = delete;
    FloatPacking& operator=(const FloatPacking&) = delete;

private:
    const PixelPacking before = PixelPacking::current();
};

} // namespace

bool RenderTargetOpenGL::read_color_texture_f32(unsigned int index, unsigned int channels,
                                                float* pixels, unsigned long row_length) {
    enter_context();
    static constexpr GLenum kinds[] = {0, GL_RED, 0, GL_RGB, GL_RGBA};
    if (!gl || !pixels || samples >= 1 || index >= num_color_textures ||
        color_textures[index] == 0 || channels >= std::size(kinds) || kinds[channels] == 0 ||
        row_length > INT_MAX || static_cast<long>(row_length) < width)
        return false;
    const GLenum target = rectangle ? GL_TEXTURE_RECTANGLE : GL_TEXTURE_2D;
    glBindTexture(target, color_textures[index]);
    if (!level_has_size(target, width, height))
        return false;
    const FloatPacking packing(row_length);
    glGetTexImage(target, 0, kinds[channels], GL_FLOAT, pixels);
    return true;
}

unsigned int RenderTargetOpenGL::get_fbo() {
    enter_and_make();
    return fbo;
}

unsigned int RenderTargetOpenGL::get_depth_tex_id_opengl() {
    enter_and_make();
    return depth_texture;
}

unsigned int RenderTargetOpenGL::get_color_tex_id_opengl(int index) {
    enter_and_make();
    const bool counted = index >= 0 && static_cast<unsigned long>(index) < num_color_textures;
    return counted ? color_textures[index] : color_texture;
}

} // namespace orvex
