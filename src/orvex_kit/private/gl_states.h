#pragma once

/// @file
/// States of an OpenGL context, which are read and set as a whole.
///
/// Each group begins with what a fresh context has, `read`s what the current one has, and `apply`s
/// what it holds. Which states there are depends on the version: the groups ask `GlVersion`.

#include <array>

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex::kit {

/// What the current context is.
struct GlVersion {
    int number = 0; ///< 33 for 3.3; 0 without a context
    bool compatibility = false;
    bool framebuffers = false; ///< framebuffer objects are there
    int texture_units = 0;     ///< that are looked at

    static GlVersion current();
};

/// What `glEnable` switches.
struct GlSwitches {
    static constexpr int most = 64;
    std::array<bool, most> on;

    GlSwitches();
    void read(const GlVersion& version);
    void apply(const GlVersion& version) const;
};

/// Blending, masks and tests.
struct GlTests {
    struct Stencil {
        GLint function = GL_ALWAYS, reference = 0, mask = -1, write_mask = -1;
        GLint fails = GL_KEEP, depth_fails = GL_KEEP, passes = GL_KEEP;
    };
    GLint source_color = GL_ONE, source_alpha = GL_ONE;
    GLint target_color = GL_ZERO, target_alpha = GL_ZERO;
    GLint color_equation = GL_FUNC_ADD, alpha_equation = GL_FUNC_ADD;
    std::array<GLfloat, 4> blend_color = {};
    std::array<GLboolean, 4> color_mask = {GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE};
    GLboolean depth_mask = GL_TRUE;
    GLint depth_function = GL_LESS;
    std::array<GLdouble, 2> depth_range = {0.0, 1.0};
    Stencil front, back;
    GLint logic_operation = GL_COPY;
    GLfloat coverage = 1.0f;
    GLboolean coverage_inverted = GL_FALSE;

    void read();
    void apply() const;
};

/// From primitives to fragments, and what a clear fills with.
struct GlRaster {
    GLint cull_face = GL_BACK, front_face = GL_CCW;
    std::array<GLint, 2> polygon_mode = {GL_FILL, GL_FILL};
    GLfloat offset_factor = 0.0f, offset_units = 0.0f;
    GLfloat line_width = 1.0f, point_size = 1.0f;
    GLint provoking_vertex = GL_LAST_VERTEX_CONVENTION;
    GLint restart_index = 0;
    std::array<GLint, 4> viewport = {}, scissor = {};
    std::array<GLfloat, 4> clear_color = {};
    GLdouble clear_depth = 1.0;
    GLint clear_stencil = 0;

    void read(const GlVersion& version);
    void apply(const GlVersion& version) const;
};

/// How pixels lie in memory: 8 values for each direction.
struct GlPixels {
    std::array<GLint, 16> values = {4, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0};

    void read();
    void apply() const;
};

/// Objects that are bound, but for textures.
struct GlBindings {
    struct Block {
        GLint buffer = 0;
        GLint64 start = 0, size = 0;
    };
    GLint program = 0, vertex_array = 0;
    GLint draw_framebuffer = 0, read_framebuffer = 0, render_buffer = 0;
    GLint array_buffer = 0, pack_buffer = 0, unpack_buffer = 0, uniform_buffer = 0;
    std::array<Block, 8> blocks;

    void read(const GlVersion& version);
    void apply(const GlVersion& version) const;
};

/// Textures and samplers, unit by unit.
struct GlTextures {
    static constexpr int most_units = 16;
    static constexpr int targets = 7;
    struct Unit {
        std::array<GLint, targets> textures = {};
        GLint sampler = 0;
    };
    GLint active = GL_TEXTURE0;
    std::array<Unit, most_units> all;

    void read(const GlVersion& version);
    void apply(const GlVersion& version) const;
};

/// What only compatibility contexts have, and their stacks don't keep.
struct GlMatrices {
    GLint mode = GL_MODELVIEW;
    std::array<GLfloat, 16> model_view, projection, texture;

    GlMatrices();
    void read();
    void apply() const;
};

/// For as long as it lives, nothing but a program decides what becomes of a pixel: tests, masks and
/// the rasterizer are those of a fresh context. The viewport stays.
class GlBareDrawing {
public:
    GlBareDrawing();
    ~GlBareDrawing();
    GlBareDrawing(const GlBareDrawing&) = delete;
    GlBareDrawing& operator=(const GlBareDrawing&) = delete;

private:
    GlVersion version;
    GlSwitches switches;
    GlTests tests;
    GlRaster raster;
};

/// All of them.
struct GlStates {
    GlSwitches switches;
    GlTests tests;
    GlRaster raster;
    GlPixels pixels;
    GlTextures textures;
    GlBindings bindings;
    GlMatrices matrices;

    void read(const GlVersion& version);
    void apply(const GlVersion& version) const;
};

} // namespace orvex::kit
