#include "fuzz/support/null_gl.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "tests/support/gl_static_functions.h"

namespace orvex_fuzz {

namespace {

constexpr GLint largest_texture = 4096;
constexpr unsigned long largest_buffer = 16ul << 20;

struct Buffer {
    std::vector<unsigned char> bytes;
    bool mapped = false;
};

/// Level 0 of a texture.
struct Picture {
    GLsizei width = 0;
    GLsizei height = 0;
};

/// One array of vertex attributes, as its pointer was set.
struct Pointer {
    GLuint buffer = 0;
    const void* address = nullptr;
    bool enabled = false;
};

struct VertexArray {
    std::map<GLuint, Pointer> pointers; ///< by index; the fixed arrays by their enumerants
    GLuint elements = 0;
};

/// What each context has of its own.
struct Context {
    std::map<GLenum, GLuint> bound_buffers;
    std::map<GLenum, GLuint> bound_textures;
    std::map<GLenum, GLint> pixel_store;
    std::map<GLuint, VertexArray> vaos;
    GLuint vertex_array = 0;
    GLuint framebuffer = 0;
    GLuint program = 0;
    GLint viewport[4] = {0, 0, 64, 64};
};

struct State {
    int major = 4;
    int minor = 6;
    const orvex::PlatformContext* current = nullptr;
    Context* context = nullptr; ///< of the current one
    int num_contexts = 0;
    unsigned int refusals = 0;
    bool starved =
        false; ///< a buffer found no memory: what is drawn from it is the driver's affair
    GLuint last_id = 0;
    GLenum error = GL_NO_ERROR;
    std::map<GLuint, Buffer> buffers;
    std::map<GLuint, Picture> pictures;
    std::map<GLuint, bool> shaders; ///< whether it compiled
};

State& state() {
    static State instance;
    return instance;
}

/// The current context; without one nothing is heard, and nobody asks.
Context& here() {
    return *state().context;
}

bool refuses(NullGl::Refusal what) {
    return state().refusals & what;
}

bool refuse(GLenum error) {
    if (state().error == GL_NO_ERROR)
        state().error = error;
    return false;
}

void now_starving() {
    state().starved = true;
    refuse(GL_OUT_OF_MEMORY);
}

volatile unsigned char sink;

void read(const void* bytes, unsigned long count) {
    const auto* const byte = static_cast<const unsigned char*>(bytes);
    unsigned char sum = 0;
    for (unsigned long i = 0; i < count; ++i)
        sum = static_cast<unsigned char>(sum + byte[i]);
    sink = sum;
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "null GL: %s\n", what);
    std::abort();
}

VertexArray& bound_array() {
    return here().vaos[here().vertex_array];
}

/// The binding of a target: that of indices is the vertex array's.
GLuint& binding(GLenum target) {
    return target == GL_ELEMENT_ARRAY_BUFFER ? bound_array().elements
                                             : here().bound_buffers[target];
}

Buffer* bound_buffer(GLenum target) {
    const auto found = state().buffers.find(binding(target));
    return found == state().buffers.end() ? nullptr : &found->second;
}

unsigned long bytes_per_pixel(GLenum format, GLenum type) {
    const unsigned long channels = format == GL_RGB || format == GL_BGR     ? 3
                                   : format == GL_RGBA || format == GL_BGRA ? 4
                                                                            : 1;
    return channels * (type == GL_UNSIGNED_BYTE ? 1 : type == GL_HALF_FLOAT ? 2 : 4);
}

/// Bytes that a transfer of pixels touches, by what was set of their packing.
unsigned long bytes_of_pixels(GLenum alignment_name, GLsizei width, GLsizei height, GLenum format,
                              GLenum type) {
    if (width <= 0 || height <= 0)
        return 0;
    const auto set = here().pixel_store.find(alignment_name);
    const unsigned long alignment =
        set == here().pixel_store.end() ? 4 : static_cast<unsigned long>(set->second);
    const unsigned long row = static_cast<unsigned long>(width) * bytes_per_pixel(format, type);
    const unsigned long stride = (row + alignment - 1) / alignment * alignment;
    return stride * (static_cast<unsigned long>(height) - 1) + row;
}

bool is_size(GLsizei width, GLsizei height) {
    if (width < 0 || height < 0 || width > largest_texture || height > largest_texture)
        return refuse(GL_INVALID_VALUE);
    return true;
}

void unpack(GLsizei width, GLsizei height, GLenum format, GLenum type, const void* pixels) {
    if (pixels)
        read(pixels, bytes_of_pixels(GL_UNPACK_ALIGNMENT, width, height, format, type));
}

Picture& bound_picture(GLenum target) {
    return state().pictures[here().bound_textures[target]];
}

GLenum texture_target(GLenum target) {
    const bool face =
        target >= GL_TEXTURE_CUBE_MAP_POSITIVE_X && target <= GL_TEXTURE_CUBE_MAP_NEGATIVE_Z;
    return face ? GL_TEXTURE_CUBE_MAP : target;
}

void set_pointer(GLuint index, const void* address) {
    Pointer& pointer = bound_array().pointers[index];
    pointer.buffer = here().bound_buffers[GL_ARRAY_BUFFER];
    pointer.address = address;
}

void set_enabled(GLuint index, bool enabled) {
    bound_array().pointers[index].enabled = enabled;
}

/// A driver reads vertices from where the pointer of every enabled array says.
void look_at_arrays(GLsizei count) {
    if (count <= 0)
        return;
    for (const auto& [index, pointer] : bound_array().pointers)
        if (pointer.enabled && pointer.buffer == 0 &&
            reinterpret_cast<std::uintptr_t>(pointer.address) < 65536)
            fail("draws with an enabled array that points nowhere");
}

void look_at_indices(GLsizei count, GLenum type, const void* indices) {
    look_at_arrays(count);
    const unsigned long size = type == GL_UNSIGNED_INT ? 4 : 2;
    const unsigned long bytes = count > 0 ? static_cast<unsigned long>(count) * size : 0;
    if (bytes == 0)
        return;
    const Buffer* const buffer = bound_buffer(GL_ELEMENT_ARRAY_BUFFER);
    if (!buffer)
        return read(indices, bytes);
    if (!state().starved &&
        reinterpret_cast<std::uintptr_t>(indices) + bytes > buffer->bytes.size())
        fail("draws with indices beyond the end of their buffer");
}

/// A buffer that is deleted leaves the bindings and the vertex array that is bound; others keep it.
void forget_buffer(GLuint deleted) {
    if (deleted == 0)
        return;
    for (auto& [target, id] : here().bound_buffers)
        if (id == deleted)
            id = 0;
    VertexArray& array = bound_array();
    if (array.elements == deleted)
        array.elements = 0;
    for (auto& [index, pointer] : array.pointers)
        if (pointer.buffer == deleted)
            pointer.buffer = 0;
}

void make_ids(GLsizei count, GLuint* ids) {
    for (GLsizei i = 0; i < count; ++i)
        ids[i] = ++state().last_id;
}

void* map(GLenum target, GLintptr offset, GLsizeiptr length) {
    Buffer* const buffer = bound_buffer(target);
    const auto size = buffer ? static_cast<GLsizeiptr>(buffer->bytes.size()) : 0;
    if (refuses(NullGl::maps) || !buffer || buffer->mapped || offset < 0 || length <= 0 ||
        offset > size || length > size - offset) {
        refuse(GL_INVALID_OPERATION);
        return nullptr;
    }
    buffer->mapped = true;
    return buffer->bytes.data() + offset;
}

template<class Value>
void read_values(GLint location, GLsizei count, unsigned long components, const Value* values) {
    if (count < 0)
        refuse(GL_INVALID_VALUE);
    else if (location >= 0)
        read(values, static_cast<unsigned long>(count) * components * sizeof(Value));
}

template<class Result>
Result nothing() {
    return Result();
}

// Parameters have the names of the table, which a function that does nothing doesn't need.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"

/// Every function, doing nothing.
struct Silent {
#define ORVEX_GL_SILENT(result, name, parameters, more)                                            \
    static result GLAPIENTRY name parameters {                                                     \
        return nothing<result>();                                                                  \
    }
    ORVEX_GL_STATIC_FUNCTIONS(ORVEX_GL_SILENT)
    ORVEX_GL_FUNCTIONS(ORVEX_GL_SILENT)
#undef ORVEX_GL_SILENT
#define ORVEX_GL_SILENT(result, name, parameters)                                                  \
    static result GLAPIENTRY name parameters {                                                     \
        return nothing<result>();                                                                  \
    }
    ORVEX_GL_DEBUG_FUNCTIONS(ORVEX_GL_SILENT)
#undef ORVEX_GL_SILENT
};

#pragma GCC diagnostic pop

/// Those that do something, in place of the silent ones of the same name.
struct Spoken : Silent {
    // Buffers
    static void GLAPIENTRY glGenBuffers(GLsizei n, GLuint* ids) { make_ids(n, ids); }
    static void GLAPIENTRY glDeleteBuffers(GLsizei n, const GLuint* ids) {
        for (GLsizei i = 0; i < n; ++i) {
            state().buffers.erase(ids[i]);
            forget_buffer(ids[i]);
        }
    }
    static void GLAPIENTRY glBindBuffer(GLenum target, GLuint id) {
        binding(target) = id;
        if (id != 0)
            state().buffers.try_emplace(id);
    }
    static void GLAPIENTRY glBindBufferBase(GLenum target, GLuint, GLuint id) {
        glBindBuffer(target, id);
    }
    static void GLAPIENTRY glBufferData(GLenum target, GLsizeiptr size, const void* data, GLenum) {
        Buffer* const buffer = bound_buffer(target);
        if (!buffer || size < 0) {
            refuse(GL_INVALID_OPERATION);
            return;
        }
        buffer->mapped = false;
        buffer->bytes.clear();
        const auto bytes = static_cast<unsigned long>(size);
        if (data)
            read(data, bytes);
        if (bytes > largest_buffer || refuses(NullGl::memory))
            now_starving();
        else
            buffer->bytes.resize(bytes);
    }
    static void GLAPIENTRY glBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size,
                                           const void* data) {
        if (is_part(target, offset, size))
            read(data, static_cast<unsigned long>(size));
    }
    static void GLAPIENTRY glGetBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size,
                                              void* data) {
        if (is_part(target, offset, size))
            std::memset(data, 7, static_cast<unsigned long>(size));
    }
    static bool is_part(GLenum target, GLintptr offset, GLsizeiptr size) {
        const Buffer* const buffer = bound_buffer(target);
        const auto whole = buffer ? static_cast<GLsizeiptr>(buffer->bytes.size()) : 0;
        if (!buffer || offset < 0 || size < 0 || offset > whole || size > whole - offset)
            return refuse(GL_INVALID_VALUE);
        return true;
    }
    static void* GLAPIENTRY glMapBuffer(GLenum target, GLenum) {
        const Buffer* const buffer = bound_buffer(target);
        return map(target, 0, buffer ? static_cast<GLsizeiptr>(buffer->bytes.size()) : 0);
    }
    static void* GLAPIENTRY glMapBufferRange(GLenum target, GLintptr offset, GLsizeiptr length,
                                             GLbitfield) {
        return map(target, offset, length);
    }
    static GLboolean GLAPIENTRY glUnmapBuffer(GLenum target) {
        Buffer* const buffer = bound_buffer(target);
        if (!buffer || !buffer->mapped)
            return static_cast<GLboolean>(refuse(GL_INVALID_OPERATION));
        buffer->mapped = false;
        return GL_TRUE;
    }
    static void GLAPIENTRY glGetBufferParameteriv(GLenum target, GLenum name, GLint* value) {
        if (const Buffer* const buffer = bound_buffer(target))
            *value = name == GL_BUFFER_MAPPED ? buffer->mapped : GLint(buffer->bytes.size());
        else
            refuse(GL_INVALID_OPERATION);
    }

    // Arrays and drawing
    static void GLAPIENTRY glGenVertexArrays(GLsizei n, GLuint* ids) { make_ids(n, ids); }
    static void GLAPIENTRY glBindVertexArray(GLuint id) { here().vertex_array = id; }
    static void GLAPIENTRY glDeleteVertexArrays(GLsizei n, const GLuint* ids) {
        for (GLsizei i = 0; i < n; ++i) {
            here().vaos.erase(ids[i]);
            if (here().vertex_array == ids[i])
                here().vertex_array = 0;
        }
    }
    static GLboolean GLAPIENTRY glIsVertexArray(GLuint id) { return here().vaos.contains(id); }
    static void GLAPIENTRY glVertexAttribPointer(GLuint index, GLint, GLenum, GLboolean, GLsizei,
                                                 const void* address) {
        set_pointer(index, address);
    }
    static void GLAPIENTRY glEnableVertexAttribArray(GLuint index) { set_enabled(index, true); }
    static void GLAPIENTRY glDisableVertexAttribArray(GLuint index) { set_enabled(index, false); }
    static void GLAPIENTRY glVertexPointer(GLint, GLenum, GLsizei, const void* address) {
        set_pointer(GL_VERTEX_ARRAY, address);
    }
    static void GLAPIENTRY glColorPointer(GLint, GLenum, GLsizei, const void* address) {
        set_pointer(GL_COLOR_ARRAY, address);
    }
    static void GLAPIENTRY glNormalPointer(GLenum, GLsizei, const void* address) {
        set_pointer(GL_NORMAL_ARRAY, address);
    }
    static void GLAPIENTRY glEnableClientState(GLenum array) {
        if (array != GL_TEXTURE_COORD_ARRAY)
            set_enabled(array, true);
    }
    static void GLAPIENTRY glDisableClientState(GLenum array) { set_enabled(array, false); }
    static void GLAPIENTRY glDrawArrays(GLenum, GLint, GLsizei count) { look_at_arrays(count); }
    static void GLAPIENTRY glDrawArraysInstancedARB(GLenum, GLint, GLsizei count, GLsizei) {
        look_at_arrays(count);
    }
    static void GLAPIENTRY glDrawElements(GLenum, GLsizei count, GLenum type, const void* indices) {
        look_at_indices(count, type, indices);
    }
    static void GLAPIENTRY glDrawElementsInstancedARB(GLenum, GLsizei count, GLenum type,
                                                      const void* indices, GLsizei) {
        look_at_indices(count, type, indices);
    }
    static void GLAPIENTRY glDrawRangeElements(GLenum, GLuint, GLuint, GLsizei count, GLenum type,
                                               const void* indices) {
        look_at_indices(count, type, indices);
    }

    // Programs: a text with "bad" in it doesn't compile
    static GLuint GLAPIENTRY glCreateShader(GLenum) {
        state().shaders[++state().last_id] = true;
        return state().last_id;
    }
    static void GLAPIENTRY glShaderSource(GLuint shader, GLsizei count, const GLchar* const* texts,
                                          const GLint* lengths) {
        bool good = true;
        for (GLsizei i = 0; i < count; ++i) {
            const std::string text = lengths && lengths[i] >= 0
                                         ? std::string(texts[i], std::size_t(lengths[i]))
                                         : std::string(texts[i]);
            good = good && text.find("bad") == std::string::npos;
        }
        state().shaders[shader] = good;
    }
    static void GLAPIENTRY glGetShaderiv(GLuint shader, GLenum name, GLint* value) {
        *value = name == GL_COMPILE_STATUS ? state().shaders[shader] : 9;
    }
    static void GLAPIENTRY glGetShaderInfoLog(GLuint, GLsizei room, GLsizei* length, GLchar* log) {
        write_log(room, length, log);
    }
    static void GLAPIENTRY glGetProgramInfoLog(GLuint, GLsizei room, GLsizei* length, GLchar* log) {
        write_log(room, length, log);
    }
    static void write_log(GLsizei room, GLsizei* length, GLchar* log) {
        const int count = room > 0 ? std::min(room - 1, 8) : 0;
        if (room > 0) {
            std::memset(log, 'e', std::size_t(count));
            log[count] = '\0';
        }
        if (length)
            *length = count;
    }
    static GLuint GLAPIENTRY glCreateProgram() { return ++state().last_id; }
    static void GLAPIENTRY glUseProgram(GLuint program) { here().program = program; }
    static GLboolean GLAPIENTRY glIsProgram(GLuint program) { return program != 0; }
    static void GLAPIENTRY glGetProgramiv(GLuint, GLenum name, GLint* value) {
        *value = name == GL_LINK_STATUS && refuses(NullGl::links) ? 0 : 9;
    }
    static GLint GLAPIENTRY glGetUniformLocation(GLuint, const GLchar* name) {
        return static_cast<GLint>(std::strlen(name) % 5) - 1;
    }
    static GLint GLAPIENTRY glGetAttribLocation(GLuint, const GLchar* name) {
        return static_cast<GLint>(std::strlen(name) % 12) - 1;
    }
    static GLuint GLAPIENTRY glGetUniformBlockIndex(GLuint, const GLchar* name) {
        return std::strcmp(name, "block") == 0 ? 0 : GL_INVALID_INDEX;
    }
    static void GLAPIENTRY glGetActiveUniformBlockiv(GLuint, GLuint, GLenum, GLint* value) {
        *value = 64;
    }

    // Arrays of uniforms
#define ORVEX_GL_VECTOR(name, Value, components)                                                   \
    static void GLAPIENTRY name(GLint location, GLsizei count, const Value* values) {              \
        read_values(location, count, components, values);                                          \
    }
    ORVEX_GL_VECTOR(glUniform1iv, GLint, 1)
    ORVEX_GL_VECTOR(glUniform2iv, GLint, 2)
    ORVEX_GL_VECTOR(glUniform3iv, GLint, 3)
    ORVEX_GL_VECTOR(glUniform4iv, GLint, 4)
    ORVEX_GL_VECTOR(glUniform1fv, GLfloat, 1)
    ORVEX_GL_VECTOR(glUniform2fv, GLfloat, 2)
    ORVEX_GL_VECTOR(glUniform3fv, GLfloat, 3)
    ORVEX_GL_VECTOR(glUniform4fv, GLfloat, 4)
    ORVEX_GL_VECTOR(glUniform1dv, GLdouble, 1)
    ORVEX_GL_VECTOR(glUniform2dv, GLdouble, 2)
    ORVEX_GL_VECTOR(glUniform3dv, GLdouble, 3)
    ORVEX_GL_VECTOR(glUniform4dv, GLdouble, 4)
    ORVEX_GL_VECTOR(glUniformHandleui64vARB, GLuint64, 1)
#undef ORVEX_GL_VECTOR
    static void GLAPIENTRY glUniformMatrix3fv(GLint location, GLsizei count, GLboolean,
                                              const GLfloat* values) {
        read_values(location, count, 9, values);
    }
    static void GLAPIENTRY glUniformMatrix4fv(GLint location, GLsizei count, GLboolean,
                                              const GLfloat* values) {
        read_values(location, count, 16, values);
    }

    // Textures and pixels
    static void GLAPIENTRY glGenTextures(GLsizei n, GLuint* ids) {
        make_ids(n, ids);
    }
    static void GLAPIENTRY glBindTexture(GLenum target, GLuint id) {
        here().bound_textures[target] = id;
    }
    static void GLAPIENTRY glDeleteTextures(GLsizei n, const GLuint* ids) {
        for (GLsizei i = 0; i < n; ++i)
            state().pictures.erase(ids[i]);
    }
    static void GLAPIENTRY glPixelStorei(GLenum name, GLint value) {
        here().pixel_store[name] = value;
    }
    static void GLAPIENTRY glTexImage1D(GLenum target, GLint, GLint, GLsizei width, GLint,
                                        GLenum format, GLenum type, const void* pixels) {
        if (!is_size(width, 1))
            return;
        bound_picture(target) = {width, 1};
        unpack(width, 1, format, type, pixels);
    }
    static void GLAPIENTRY glTexImage2D(GLenum target, GLint, GLint, GLsizei width, GLsizei height,
                                        GLint, GLenum format, GLenum type, const void* pixels) {
        if (!is_size(width, height))
            return;
        bound_picture(texture_target(target)) = {width, height};
        unpack(width, height, format, type, pixels);
    }
    static void GLAPIENTRY glTexSubImage1D(GLenum target, GLint, GLint x, GLsizei width,
                                           GLenum format, GLenum type, const void* pixels) {
        if (is_within(target, x, 0, width, 1))
            unpack(width, 1, format, type, pixels);
    }
    static void GLAPIENTRY glTexSubImage2D(GLenum target, GLint, GLint x, GLint y, GLsizei width,
                                           GLsizei height, GLenum format, GLenum type,
                                           const void* pixels) {
        if (is_within(target, x, y, width, height))
            unpack(width, height, format, type, pixels);
    }
    static bool is_within(GLenum target, GLint x, GLint y, GLsizei width, GLsizei height) {
        const Picture picture = bound_picture(texture_target(target));
        if (x < 0 || y < 0 || width < 0 || height < 0 || x > picture.width || y > picture.height ||
            width > picture.width - x || height > picture.height - y)
            return refuse(GL_INVALID_VALUE);
        return true;
    }
    static void GLAPIENTRY glGetTexImage(GLenum target, GLint, GLenum format, GLenum type,
                                         void* pixels) {
        const Picture picture = bound_picture(texture_target(target));
        std::memset(
            pixels, 5,
            bytes_of_pixels(GL_PACK_ALIGNMENT, picture.width, picture.height, format, type));
    }
    static void GLAPIENTRY glReadPixels(GLint, GLint, GLsizei width, GLsizei height, GLenum format,
                                        GLenum type, void* pixels) {
        if (width < 0 || height < 0)
            refuse(GL_INVALID_VALUE);
        else
            std::memset(pixels, 6, bytes_of_pixels(GL_PACK_ALIGNMENT, width, height, format, type));
    }

    static void GLAPIENTRY glGetTexLevelParameteriv(GLenum target, GLint, GLenum name,
                                                    GLint* value) {
        const Picture picture = bound_picture(texture_target(target));
        *value = name == GL_TEXTURE_WIDTH ? picture.width : picture.height;
    }
    static GLboolean GLAPIENTRY glIsTexture(GLuint id) {
        return state().pictures.contains(id);
    }

    // Framebuffers
    static void GLAPIENTRY glGenFramebuffers(GLsizei n, GLuint* ids) {
        make_ids(n, ids);
    }
    static void GLAPIENTRY glGenRenderbuffers(GLsizei n, GLuint* ids) {
        make_ids(n, ids);
    }
    static void GLAPIENTRY glBindFramebuffer(GLenum, GLuint id) {
        here().framebuffer = id;
    }
    static GLenum GLAPIENTRY glCheckFramebufferStatus(GLenum) {
        return GL_FRAMEBUFFER_COMPLETE;
    }
    static void GLAPIENTRY glDrawBuffers(GLsizei n, const GLenum* buffers) {
        read(buffers, static_cast<unsigned long>(n) * sizeof(GLenum));
    }

    // Questions
    static GLenum GLAPIENTRY glGetError() {
        return std::exchange(state().error, GL_NO_ERROR);
    }
    static const GLubyte* GLAPIENTRY glGetString(GLenum name) {
        return text_of(name);
    }
    static const GLubyte* GLAPIENTRY glGetStringi(GLenum, GLuint) {
        return text("GL_ARB_texture_float");
    }
    static void GLAPIENTRY glGetIntegerv(GLenum name, GLint* values) {
        answer(name, values);
    }
    static void GLAPIENTRY glGetFloatv(GLenum, GLfloat* value) {
        *value = 16.0f;
    }
    static void GLAPIENTRY glGetPointerv(GLenum, GLvoid** value) {
        *value = nullptr;
    }
    static void GLAPIENTRY glGetIntegeri_v(GLenum, GLuint, GLint* value) {
        *value = 1024;
    }
    static void GLAPIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
        const GLint values[] = {x, y, width, height};
        if (width >= 0 && height >= 0)
            std::copy(std::begin(values), std::end(values), here().viewport);
    }

    static const GLubyte* text(const char* letters) {
        return reinterpret_cast<const GLubyte*>(letters);
    }
    static const GLubyte* text_of(GLenum name) {
        static std::string version;
        version = std::to_string(state().major) + '.' + std::to_string(state().minor) + " null";
        if (name == GL_VERSION)
            return text(version.c_str());
        if (name == GL_EXTENSIONS)
            return text("GL_ARB_framebuffer_object GL_ARB_vertex_array_object "
                        "GL_ARB_texture_float GL_EXT_framebuffer_object");
        return text(name == GL_SHADING_LANGUAGE_VERSION ? "1.20" : "null");
    }
    static void answer(GLenum name, GLint* values) {
        const State& now = state();
        switch (name) {
        case GL_VIEWPORT:
        case GL_SCISSOR_BOX:
            std::copy(std::begin(here().viewport), std::end(here().viewport), values);
            break;
        case GL_MAX_VIEWPORT_DIMS:
            values[0] = values[1] = largest_texture;
            break;
        case GL_MAX_TEXTURE_SIZE:
            *values = largest_texture;
            break;
        case GL_MAJOR_VERSION:
            *values = now.major;
            break;
        case GL_MINOR_VERSION:
            *values = now.minor;
            break;
        case GL_NUM_EXTENSIONS:
            *values = 1;
            break;
        case GL_FRAMEBUFFER_BINDING:
            *values = GLint(here().framebuffer);
            break;
        case GL_CURRENT_PROGRAM:
            *values = GLint(here().program);
            break;
        case GL_VERTEX_ARRAY_BINDING:
            *values = GLint(here().vertex_array);
            break;
        default:
            answer_more(name, values);
        }
    }
    static void answer_more(GLenum name, GLint* value) {
        if (name == GL_ARRAY_BUFFER_BINDING)
            *value = GLint(here().bound_buffers[GL_ARRAY_BUFFER]);
        else if (name == GL_ELEMENT_ARRAY_BUFFER_BINDING)
            *value = GLint(binding(GL_ELEMENT_ARRAY_BUFFER));
        else if (name == GL_TEXTURE_BINDING_2D)
            *value = GLint(here().bound_textures[GL_TEXTURE_2D]);
        else if (name == GL_PACK_ALIGNMENT || name == GL_UNPACK_ALIGNMENT)
            *value = here().pixel_store.contains(name) ? here().pixel_store[name] : 4;
        else if (name == GL_PIXEL_UNPACK_BUFFER_BINDING || name == GL_PIXEL_PACK_BUFFER_BINDING ||
                 name == GL_UNPACK_ROW_LENGTH || name == GL_UNPACK_SKIP_ROWS ||
                 name == GL_UNPACK_SKIP_PIXELS || name == GL_UNPACK_IMAGE_HEIGHT ||
                 name == GL_PACK_ROW_LENGTH || name == GL_PACK_SKIP_ROWS ||
                 name == GL_PACK_SKIP_PIXELS)
            *value = 0;
        else
            *value = 16;
    }
};

/// Without a current context nothing is heard, as with the system's stubs.
template<auto function>
struct Heard;

template<class Result, class... Arguments, Result (*function)(Arguments...)>
struct Heard<function> {
    static Result GLAPIENTRY call(Arguments... arguments) {
        return state().current ? function(arguments...) : nothing<Result>();
    }
};

struct Entry {
    const char* name;
    void* address;
};

const std::vector<Entry>& entries() {
    static const std::vector<Entry> table = {
#define ORVEX_GL_ROW(result, name, parameters, more)                                               \
    {#name, reinterpret_cast<void*>(&Heard<&Spoken::name>::call)},
        ORVEX_GL_FUNCTIONS(ORVEX_GL_ROW)
#undef ORVEX_GL_ROW
    };
    return table;
}

// An entry may be asked for under its name with another suffix.
std::string_view stem(std::string_view name) {
    return name.ends_with("ARB") || name.ends_with("EXT") ? name.substr(0, name.size() - 3) : name;
}

class NullContext final : public orvex::PlatformContext {
public:
    NullContext()
        : number(static_cast<std::uintptr_t>(++state().num_contexts)) {}
    ~NullContext() override {
        if (is_current())
            release_current();
    }
    void* handle() const override { return reinterpret_cast<void*>(number * 16); }
    const void* native() const override { return handle(); }
    bool is_current() const override { return state().current == this; }
    bool make_current() override {
        state().current = this;
        state().context = &own;
        return true;
    }
    bool release_current() override {
        state().current = nullptr;
        state().context = nullptr;
        return true;
    }
    bool present() override { return true; }
    void set_swap_interval(int) override {}
    bool resize(int width, int height) override { return width < 16384 && height < 16384; }

private:
    std::uintptr_t number;
    Context own;
};

} // namespace

NullGl::NullGl() {
    state() = State();
    orvex::set_window_platform(this);
}

NullGl::~NullGl() {
    orvex::set_window_platform(nullptr);
    state() = State();
}

void NullGl::set_refusals(unsigned int refusals) {
    state().refusals = refusals;
}

void NullGl::set_version(int major, int minor) {
    state().major = major;
    state().minor = minor;
}

std::unique_ptr<orvex::PlatformContext>
NullGl::create_context(const orvex::ContextRequest& request) {
    if (request.width > 16384 || request.height > 16384)
        return nullptr;
    const bool core = request.profile == orvex::CONTEXT_PROFILE_CORE_3_2;
    if (core && state().major < 3)
        set_version(3, 2);
    return std::make_unique<NullContext>();
}

std::unique_ptr<orvex::PlatformContext> NullGl::adopt_current_context(void*) {
    return nullptr;
}

const void* NullGl::current_context() {
    return state().current ? state().current->native() : nullptr;
}

void NullGl::get_version(int& major, int& minor) {
    major = 1;
    minor = 5;
}

void* NullGl::get_proc_address(const char* name) {
    for (const Entry& entry : entries())
        if (stem(entry.name) == stem(name))
            return entry.address;
    return nullptr;
}

} // namespace orvex_fuzz

// The engine's archive refers to these by name, and the linker takes the program's own.
#define ORVEX_GL_DEFINITION(result, name, parameters, arguments)                                   \
    extern "C" result GLAPIENTRY name parameters {                                                 \
        return orvex_fuzz::Heard<&orvex_fuzz::Spoken::name>::call arguments;                       \
    }
ORVEX_GL_STATIC_FUNCTIONS(ORVEX_GL_DEFINITION)

// Two that the table of the tests doesn't have, which records neither.
ORVEX_GL_DEFINITION(void, glGetTexLevelParameteriv,
                    (GLenum target, GLint level, GLenum name, GLint* value),
                    (target, level, name, value))
ORVEX_GL_DEFINITION(GLboolean, glIsTexture, (GLuint id), (id))
#undef ORVEX_GL_DEFINITION
