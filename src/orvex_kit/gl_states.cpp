#include "orvex_kit/private/gl_states.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace orvex::kit {

namespace {

GLint read_int(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

GLfloat read_float(GLenum name) {
    GLfloat value = 0.0f;
    glGetFloatv(name, &value);
    return value;
}

/// Before 3.0 the extensions are one text.
bool lists(const char* extension) {
    const auto* const all = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return all && std::strstr(all, extension);
}

GLuint id_of(GLint value) {
    return static_cast<GLuint>(value);
}

GLenum enum_of(GLint value) {
    return static_cast<GLenum>(value);
}

} // namespace

GlVersion GlVersion::current() {
    GlVersion version;
    const auto* const text = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    const char* const point = text ? std::strchr(text, '.') : nullptr;
    if (!point)
        return version;
    version.number = 10 * std::atoi(text) + std::atoi(point + 1);
    if (version.number >= 32)
        version.compatibility =
            (read_int(GL_CONTEXT_PROFILE_MASK) & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT) != 0;
    else
        version.compatibility = version.number < 31;
    version.framebuffers = version.number >= 30 || lists("GL_ARB_framebuffer_object");
    version.texture_units =
        std::min(GlTextures::most_units, read_int(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS));
    return version;
}

// Switches

namespace {

struct Switch {
    GLenum name;
    int since;  ///< version
    bool fixed; ///< of compatibility contexts alone
    bool on;    ///< in a fresh context
};

constexpr Switch switches[] = {
    {GL_BLEND, 0, false, false},
    {GL_COLOR_LOGIC_OP, 0, false, false},
    {GL_CULL_FACE, 0, false, false},
    {GL_DEPTH_TEST, 0, false, false},
    {GL_DITHER, 0, false, true},
    {GL_LINE_SMOOTH, 0, false, false},
    {GL_MULTISAMPLE, 0, false, true},
    {GL_POLYGON_OFFSET_FILL, 0, false, false},
    {GL_POLYGON_OFFSET_LINE, 0, false, false},
    {GL_POLYGON_OFFSET_POINT, 0, false, false},
    {GL_POLYGON_SMOOTH, 0, false, false},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, 0, false, false},
    {GL_SAMPLE_ALPHA_TO_ONE, 0, false, false},
    {GL_SAMPLE_COVERAGE, 0, false, false},
    {GL_SCISSOR_TEST, 0, false, false},
    {GL_STENCIL_TEST, 0, false, false},
    {GL_CLIP_DISTANCE0, 0, false, false},
    {GL_CLIP_DISTANCE1, 0, false, false},
    {GL_CLIP_DISTANCE2, 0, false, false},
    {GL_CLIP_DISTANCE3, 0, false, false},
    {GL_CLIP_DISTANCE4, 0, false, false},
    {GL_CLIP_DISTANCE5, 0, false, false},
    {GL_PROGRAM_POINT_SIZE, 20, false, false},
    {GL_FRAMEBUFFER_SRGB, 30, false, false},
    {GL_RASTERIZER_DISCARD, 30, false, false},
    {GL_PRIMITIVE_RESTART, 31, false, false},
    {GL_DEPTH_CLAMP, 32, false, false},
    {GL_SAMPLE_MASK, 32, false, false},
    {GL_TEXTURE_CUBE_MAP_SEAMLESS, 32, false, false},
    {GL_SAMPLE_SHADING, 40, false, false},
    {GL_PRIMITIVE_RESTART_FIXED_INDEX, 43, false, false},
    {GL_ALPHA_TEST, 0, true, false},
    {GL_COLOR_MATERIAL, 0, true, false},
    {GL_COLOR_SUM, 0, true, false},
    {GL_FOG, 0, true, false},
    {GL_INDEX_LOGIC_OP, 0, true, false},
    {GL_LIGHTING, 0, true, false},
    {GL_LINE_STIPPLE, 0, true, false},
    {GL_NORMALIZE, 0, true, false},
    {GL_POINT_SMOOTH, 0, true, false},
    {GL_POINT_SPRITE, 20, true, false},
    {GL_POLYGON_STIPPLE, 0, true, false},
    {GL_RESCALE_NORMAL, 0, true, false},
    {GL_TEXTURE_1D, 0, true, false},
    {GL_TEXTURE_2D, 0, true, false},
    {GL_TEXTURE_3D, 0, true, false},
    {GL_TEXTURE_CUBE_MAP, 0, true, false},
    {GL_VERTEX_PROGRAM_TWO_SIDE, 20, true, false},
};
constexpr int num_switches = static_cast<int>(std::size(switches));
static_assert(num_switches <= GlSwitches::most);

bool is_there(const Switch& one, const GlVersion& version) {
    return version.number >= one.since && (version.compatibility || !one.fixed);
}

} // namespace

GlSwitches::GlSwitches()
    : on() {
    for (std::size_t i = 0; i < num_switches; ++i)
        on[i] = switches[i].on;
}

void GlSwitches::read(const GlVersion& version) {
    for (std::size_t i = 0; i < num_switches; ++i)
        if (is_there(switches[i], version))
            on[i] = glIsEnabled(switches[i].name) == GL_TRUE;
}

void GlSwitches::apply(const GlVersion& version) const {
    for (std::size_t i = 0; i < num_switches; ++i) {
        if (!is_there(switches[i], version))
            continue;
        if (on[i])
            glEnable(switches[i].name);
        else
            glDisable(switches[i].name);
    }
}

// Tests

void GlTests::read() {
    source_color = read_int(GL_BLEND_SRC_RGB);
    source_alpha = read_int(GL_BLEND_SRC_ALPHA);
    target_color = read_int(GL_BLEND_DST_RGB);
    target_alpha = read_int(GL_BLEND_DST_ALPHA);
    color_equation = read_int(GL_BLEND_EQUATION_RGB);
    alpha_equation = read_int(GL_BLEND_EQUATION_ALPHA);
    glGetFloatv(GL_BLEND_COLOR, blend_color.data());
    glGetBooleanv(GL_COLOR_WRITEMASK, color_mask.data());
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depth_mask);
    depth_function = read_int(GL_DEPTH_FUNC);
    glGetDoublev(GL_DEPTH_RANGE, depth_range.data());
    front = {read_int(GL_STENCIL_FUNC),           read_int(GL_STENCIL_REF),
             read_int(GL_STENCIL_VALUE_MASK),     read_int(GL_STENCIL_WRITEMASK),
             read_int(GL_STENCIL_FAIL),           read_int(GL_STENCIL_PASS_DEPTH_FAIL),
             read_int(GL_STENCIL_PASS_DEPTH_PASS)};
    back = {read_int(GL_STENCIL_BACK_FUNC),           read_int(GL_STENCIL_BACK_REF),
            read_int(GL_STENCIL_BACK_VALUE_MASK),     read_int(GL_STENCIL_BACK_WRITEMASK),
            read_int(GL_STENCIL_BACK_FAIL),           read_int(GL_STENCIL_BACK_PASS_DEPTH_FAIL),
            read_int(GL_STENCIL_BACK_PASS_DEPTH_PASS)};
    logic_operation = read_int(GL_LOGIC_OP_MODE);
    coverage = read_float(GL_SAMPLE_COVERAGE_VALUE);
    glGetBooleanv(GL_SAMPLE_COVERAGE_INVERT, &coverage_inverted);
}

namespace {

void apply_stencil(GLenum face, const GlTests::Stencil& stencil) {
    glStencilFuncSeparate(face, enum_of(stencil.function), stencil.reference, id_of(stencil.mask));
    glStencilMaskSeparate(face, id_of(stencil.write_mask));
    glStencilOpSeparate(face, enum_of(stencil.fails), enum_of(stencil.depth_fails),
                        enum_of(stencil.passes));
}

} // namespace

void GlTests::apply() const {
    glBlendFuncSeparate(enum_of(source_color), enum_of(target_color), enum_of(source_alpha),
                        enum_of(target_alpha));
    glBlendEquationSeparate(enum_of(color_equation), enum_of(alpha_equation));
    glBlendColor(blend_color[0], blend_color[1], blend_color[2], blend_color[3]);
    glColorMask(color_mask[0], color_mask[1], color_mask[2], color_mask[3]);
    glDepthMask(depth_mask);
    glDepthFunc(enum_of(depth_function));
    glDepthRange(depth_range[0], depth_range[1]);
    apply_stencil(GL_FRONT, front);
    apply_stencil(GL_BACK, back);
    glLogicOp(enum_of(logic_operation));
    glSampleCoverage(coverage, coverage_inverted);
}

// The rasterizer

void GlRaster::read(const GlVersion& version) {
    cull_face = read_int(GL_CULL_FACE_MODE);
    front_face = read_int(GL_FRONT_FACE);
    polygon_mode[1] = 0; // a core context tells one for both sides
    glGetIntegerv(GL_POLYGON_MODE, polygon_mode.data());
    offset_factor = read_float(GL_POLYGON_OFFSET_FACTOR);
    offset_units = read_float(GL_POLYGON_OFFSET_UNITS);
    line_width = read_float(GL_LINE_WIDTH);
    point_size = read_float(GL_POINT_SIZE);
    if (version.number >= 32)
        provoking_vertex = read_int(GL_PROVOKING_VERTEX);
    if (version.number >= 31)
        restart_index = read_int(GL_PRIMITIVE_RESTART_INDEX);
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    glGetIntegerv(GL_SCISSOR_BOX, scissor.data());
    glGetFloatv(GL_COLOR_CLEAR_VALUE, clear_color.data());
    glGetDoublev(GL_DEPTH_CLEAR_VALUE, &clear_depth);
    clear_stencil = read_int(GL_STENCIL_CLEAR_VALUE);
}

void GlRaster::apply(const GlVersion& version) const {
    glCullFace(enum_of(cull_face));
    glFrontFace(enum_of(front_face));
    if (version.compatibility) {
        glPolygonMode(GL_FRONT, enum_of(polygon_mode[0]));
        glPolygonMode(GL_BACK, enum_of(polygon_mode[1]));
    } else {
        glPolygonMode(GL_FRONT_AND_BACK, enum_of(polygon_mode[0]));
    }
    glPolygonOffset(offset_factor, offset_units);
    glLineWidth(line_width);
    glPointSize(point_size);
    if (version.number >= 32)
        glProvokingVertex(enum_of(provoking_vertex));
    if (version.number >= 31)
        glPrimitiveRestartIndex(id_of(restart_index));
    glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
    glScissor(scissor[0], scissor[1], scissor[2], scissor[3]);
    glClearColor(clear_color[0], clear_color[1], clear_color[2], clear_color[3]);
    glClearDepth(clear_depth);
    glClearStencil(clear_stencil);
}

// What comes between a program and its pixels

GlBareDrawing::GlBareDrawing()
    : version(GlVersion::current()) {
    switches.read(version);
    tests.read();
    raster.read(version);
    GlRaster fresh;
    fresh.viewport = raster.viewport;
    fresh.scissor = raster.scissor;
    GlSwitches().apply(version);
    GlTests().apply();
    fresh.apply(version);
}

GlBareDrawing::~GlBareDrawing() {
    switches.apply(version);
    tests.apply();
    raster.apply(version);
}

// Pixels

namespace {

constexpr std::array<GLenum, 16> pixel_names = {
    GL_PACK_ALIGNMENT,      GL_PACK_ROW_LENGTH,    GL_PACK_SKIP_ROWS,    GL_PACK_SKIP_PIXELS,
    GL_PACK_IMAGE_HEIGHT,   GL_PACK_SKIP_IMAGES,   GL_PACK_SWAP_BYTES,   GL_PACK_LSB_FIRST,
    GL_UNPACK_ALIGNMENT,    GL_UNPACK_ROW_LENGTH,  GL_UNPACK_SKIP_ROWS,  GL_UNPACK_SKIP_PIXELS,
    GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_SKIP_IMAGES, GL_UNPACK_SWAP_BYTES, GL_UNPACK_LSB_FIRST};

} // namespace

void GlPixels::read() {
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = read_int(pixel_names[i]);
}

void GlPixels::apply() const {
    for (std::size_t i = 0; i < values.size(); ++i)
        glPixelStorei(pixel_names[i], values[i]);
}

// Objects

void GlBindings::read(const GlVersion& version) {
    program = read_int(GL_CURRENT_PROGRAM);
    array_buffer = read_int(GL_ARRAY_BUFFER_BINDING);
    if (version.number >= 30)
        vertex_array = read_int(GL_VERTEX_ARRAY_BINDING);
    if (version.framebuffers) {
        draw_framebuffer = read_int(GL_DRAW_FRAMEBUFFER_BINDING);
        read_framebuffer = read_int(GL_READ_FRAMEBUFFER_BINDING);
        render_buffer = read_int(GL_RENDERBUFFER_BINDING);
    }
    if (version.number >= 21) {
        pack_buffer = read_int(GL_PIXEL_PACK_BUFFER_BINDING);
        unpack_buffer = read_int(GL_PIXEL_UNPACK_BUFFER_BINDING);
    }
    if (version.number < 31)
        return;
    uniform_buffer = read_int(GL_UNIFORM_BUFFER_BINDING);
    for (GLuint i = 0; i < blocks.size(); ++i) {
        glGetIntegeri_v(GL_UNIFORM_BUFFER_BINDING, i, &blocks[i].buffer);
        if (version.number >= 32) {
            glGetInteger64i_v(GL_UNIFORM_BUFFER_START, i, &blocks[i].start);
            glGetInteger64i_v(GL_UNIFORM_BUFFER_SIZE, i, &blocks[i].size);
        }
    }
}

namespace {

void apply_block(GLuint place, const GlBindings::Block& block) {
    if (block.size > 0)
        glBindBufferRange(GL_UNIFORM_BUFFER, place, id_of(block.buffer),
                          static_cast<GLintptr>(block.start), static_cast<GLsizeiptr>(block.size));
    else
        glBindBufferBase(GL_UNIFORM_BUFFER, place, id_of(block.buffer));
}

} // namespace

void GlBindings::apply(const GlVersion& version) const {
    glUseProgram(id_of(program));
    if (version.number >= 30)
        glBindVertexArray(id_of(vertex_array));
    glBindBuffer(GL_ARRAY_BUFFER, id_of(array_buffer));
    if (version.framebuffers) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, id_of(draw_framebuffer));
        glBindFramebuffer(GL_READ_FRAMEBUFFER, id_of(read_framebuffer));
        glBindRenderbuffer(GL_RENDERBUFFER, id_of(render_buffer));
    }
    if (version.number >= 21) {
        glBindBuffer(GL_PIXEL_PACK_BUFFER, id_of(pack_buffer));
        glBindBuffer(GL_PIXEL_UNPACK_BUFFER, id_of(unpack_buffer));
    }
    if (version.number < 31)
        return;
    for (GLuint i = 0; i < blocks.size(); ++i)
        apply_block(i, blocks[i]);
    glBindBuffer(GL_UNIFORM_BUFFER, id_of(uniform_buffer));
}

// Textures

namespace {

struct TextureTarget {
    GLenum name;
    GLenum binding;
    int since;
};

constexpr std::array<TextureTarget, GlTextures::targets> texture_targets = {
    {{GL_TEXTURE_1D, GL_TEXTURE_BINDING_1D, 0},
     {GL_TEXTURE_2D, GL_TEXTURE_BINDING_2D, 0},
     {GL_TEXTURE_3D, GL_TEXTURE_BINDING_3D, 0},
     {GL_TEXTURE_CUBE_MAP, GL_TEXTURE_BINDING_CUBE_MAP, 0},
     {GL_TEXTURE_2D_ARRAY, GL_TEXTURE_BINDING_2D_ARRAY, 30},
     {GL_TEXTURE_RECTANGLE, GL_TEXTURE_BINDING_RECTANGLE, 31},
     {GL_TEXTURE_2D_MULTISAMPLE, GL_TEXTURE_BINDING_2D_MULTISAMPLE, 32}}};

GLenum unit_name(std::size_t unit) {
    return GL_TEXTURE0 + static_cast<GLenum>(unit);
}

} // namespace

void GlTextures::read(const GlVersion& version) {
    active = read_int(GL_ACTIVE_TEXTURE);
    for (std::size_t unit = 0; unit < static_cast<std::size_t>(version.texture_units); ++unit) {
        glActiveTexture(unit_name(unit));
        for (std::size_t i = 0; i < targets; ++i)
            if (version.number >= texture_targets[i].since)
                all[unit].textures[i] = read_int(texture_targets[i].binding);
        if (version.number >= 33)
            all[unit].sampler = read_int(GL_SAMPLER_BINDING);
    }
    glActiveTexture(enum_of(active));
}

void GlTextures::apply(const GlVersion& version) const {
    for (std::size_t unit = 0; unit < static_cast<std::size_t>(version.texture_units); ++unit) {
        glActiveTexture(unit_name(unit));
        for (std::size_t i = 0; i < targets; ++i)
            if (version.number >= texture_targets[i].since)
                glBindTexture(texture_targets[i].name, id_of(all[unit].textures[i]));
        if (version.number >= 33)
            glBindSampler(static_cast<GLuint>(unit), id_of(all[unit].sampler));
    }
    glActiveTexture(enum_of(active));
}

// Matrices

namespace {

constexpr std::array<GLfloat, 16> identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

void load_matrix(GLenum mode, const std::array<GLfloat, 16>& matrix) {
    glMatrixMode(mode);
    glLoadMatrixf(matrix.data());
}

} // namespace

GlMatrices::GlMatrices()
    : model_view(identity)
    , projection(identity)
    , texture(identity) {}

void GlMatrices::read() {
    mode = read_int(GL_MATRIX_MODE);
    glGetFloatv(GL_MODELVIEW_MATRIX, model_view.data());
    glGetFloatv(GL_PROJECTION_MATRIX, projection.data());
    glGetFloatv(GL_TEXTURE_MATRIX, texture.data());
}

void GlMatrices::apply() const {
    load_matrix(GL_MODELVIEW, model_view);
    load_matrix(GL_PROJECTION, projection);
    load_matrix(GL_TEXTURE, texture);
    glMatrixMode(enum_of(mode));
}

// All of them

void GlStates::read(const GlVersion& version) {
    switches.read(version);
    tests.read();
    raster.read(version);
    pixels.read();
    textures.read(version);
    bindings.read(version);
    if (version.compatibility)
        matrices.read();
}

void GlStates::apply(const GlVersion& version) const {
    tests.apply();
    raster.apply(version);
    pixels.apply();
    textures.apply(version);
    bindings.apply(version);
    // Of the unit that is active.
    switches.apply(version);
    if (version.compatibility)
        matrices.apply();
}

} // namespace orvex::kit
