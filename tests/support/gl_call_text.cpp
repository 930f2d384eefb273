#include "gl_call_text.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex_test {

namespace {

struct Name {
    long long value;
    const char* text;
};

#define ORVEX_GL_NAME(name)                                                                        \
    { name, #name }

// From 0x100 on a value has one name among these. Below, it depends on the function.
constexpr Name names[] = {
    ORVEX_GL_NAME(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS),
    ORVEX_GL_NAME(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS),
    ORVEX_GL_NAME(GL_MAX_COLOR_ATTACHMENTS),
    ORVEX_GL_NAME(GL_MAX_COMPUTE_WORK_GROUP_COUNT),
    ORVEX_GL_NAME(GL_MAX_COMPUTE_WORK_GROUP_SIZE),
    ORVEX_GL_NAME(GL_TEXTURE_MIN_FILTER),
    ORVEX_GL_NAME(GL_TEXTURE_MAG_FILTER),
    ORVEX_GL_NAME(GL_MAX_DRAW_BUFFERS),
    ORVEX_GL_NAME(GL_READ_BUFFER),
    ORVEX_GL_NAME(GL_CURRENT_PROGRAM),
    ORVEX_GL_NAME(GL_TRANSFORM_FEEDBACK_BUFFER),
    ORVEX_GL_NAME(GL_PIXEL_UNPACK_BUFFER),
    ORVEX_GL_NAME(GL_PIXEL_PACK_BUFFER),
    ORVEX_GL_NAME(GL_TEXTURE_SWIZZLE_R),
    ORVEX_GL_NAME(GL_LINEAR_MIPMAP_NEAREST),
    ORVEX_GL_NAME(GL_NEAREST_MIPMAP_LINEAR),
    ORVEX_GL_NAME(GL_FRONT_LEFT),
    ORVEX_GL_NAME(GL_BACK_LEFT),
    ORVEX_GL_NAME(GL_STENCIL_INDEX),
    ORVEX_GL_NAME(GL_NEVER),
    ORVEX_GL_NAME(GL_LESS),
    ORVEX_GL_NAME(GL_EQUAL),
    ORVEX_GL_NAME(GL_LEQUAL),
    ORVEX_GL_NAME(GL_GREATER),
    ORVEX_GL_NAME(GL_NOTEQUAL),
    ORVEX_GL_NAME(GL_GEQUAL),
    ORVEX_GL_NAME(GL_ALWAYS),
    ORVEX_GL_NAME(GL_SRC_COLOR),
    ORVEX_GL_NAME(GL_ONE_MINUS_SRC_COLOR),
    ORVEX_GL_NAME(GL_SRC_ALPHA),
    ORVEX_GL_NAME(GL_ONE_MINUS_SRC_ALPHA),
    ORVEX_GL_NAME(GL_DST_ALPHA),
    ORVEX_GL_NAME(GL_ONE_MINUS_DST_ALPHA),
    ORVEX_GL_NAME(GL_DST_COLOR),
    ORVEX_GL_NAME(GL_ONE_MINUS_DST_COLOR),
    ORVEX_GL_NAME(GL_FRONT),
    ORVEX_GL_NAME(GL_BACK),
    ORVEX_GL_NAME(GL_FRONT_AND_BACK),
    ORVEX_GL_NAME(GL_CCW),
    ORVEX_GL_NAME(GL_CULL_FACE),
    ORVEX_GL_NAME(GL_DEPTH_TEST),
    ORVEX_GL_NAME(GL_STENCIL_TEST),
    ORVEX_GL_NAME(GL_VIEWPORT),
    ORVEX_GL_NAME(GL_DITHER),
    ORVEX_GL_NAME(GL_BLEND),
    ORVEX_GL_NAME(GL_SCISSOR_TEST),
    ORVEX_GL_NAME(GL_UNPACK_ALIGNMENT),
    ORVEX_GL_NAME(GL_PACK_ROW_LENGTH),
    ORVEX_GL_NAME(GL_PACK_SKIP_ROWS),
    ORVEX_GL_NAME(GL_PACK_SKIP_PIXELS),
    ORVEX_GL_NAME(GL_PACK_ALIGNMENT),
    ORVEX_GL_NAME(GL_MAX_TEXTURE_SIZE),
    ORVEX_GL_NAME(GL_MAX_VIEWPORT_DIMS),
    ORVEX_GL_NAME(GL_TEXTURE_1D),
    ORVEX_GL_NAME(GL_TEXTURE_2D),
    ORVEX_GL_NAME(GL_TEXTURE_WIDTH),
    ORVEX_GL_NAME(GL_TEXTURE_HEIGHT),
    ORVEX_GL_NAME(GL_AMBIENT),
    ORVEX_GL_NAME(GL_DIFFUSE),
    ORVEX_GL_NAME(GL_SPECULAR),
    ORVEX_GL_NAME(GL_UNSIGNED_BYTE),
    ORVEX_GL_NAME(GL_UNSIGNED_SHORT),
    ORVEX_GL_NAME(GL_INT),
    ORVEX_GL_NAME(GL_UNSIGNED_INT),
    ORVEX_GL_NAME(GL_FLOAT),
    ORVEX_GL_NAME(GL_DOUBLE),
    ORVEX_GL_NAME(GL_SHININESS),
    ORVEX_GL_NAME(GL_MODELVIEW),
    ORVEX_GL_NAME(GL_PROJECTION),
    ORVEX_GL_NAME(GL_TEXTURE),
    ORVEX_GL_NAME(GL_COLOR),
    ORVEX_GL_NAME(GL_DEPTH),
    ORVEX_GL_NAME(GL_DEPTH_COMPONENT),
    ORVEX_GL_NAME(GL_RED),
    ORVEX_GL_NAME(GL_RGB),
    ORVEX_GL_NAME(GL_RGBA),
    ORVEX_GL_NAME(GL_LUMINANCE),
    ORVEX_GL_NAME(GL_POINT),
    ORVEX_GL_NAME(GL_LINE),
    ORVEX_GL_NAME(GL_FILL),
    ORVEX_GL_NAME(GL_VENDOR),
    ORVEX_GL_NAME(GL_RENDERER),
    ORVEX_GL_NAME(GL_VERSION),
    ORVEX_GL_NAME(GL_EXTENSIONS),
    ORVEX_GL_NAME(GL_NEAREST),
    ORVEX_GL_NAME(GL_LINEAR),
    ORVEX_GL_NAME(GL_NEAREST_MIPMAP_NEAREST),
    ORVEX_GL_NAME(GL_LINEAR_MIPMAP_LINEAR),
    ORVEX_GL_NAME(GL_TEXTURE_WRAP_S),
    ORVEX_GL_NAME(GL_TEXTURE_WRAP_T),
    ORVEX_GL_NAME(GL_CLAMP),
    ORVEX_GL_NAME(GL_REPEAT),
    ORVEX_GL_NAME(GL_POLYGON_OFFSET_POINT),
    ORVEX_GL_NAME(GL_POLYGON_OFFSET_LINE),
    ORVEX_GL_NAME(GL_LIGHT0),
    ORVEX_GL_NAME(GL_LIGHT1),
    ORVEX_GL_NAME(GL_LIGHT2),
    ORVEX_GL_NAME(GL_LIGHT3),
    ORVEX_GL_NAME(GL_POLYGON_OFFSET_FILL),
    ORVEX_GL_NAME(GL_RGB8),
    ORVEX_GL_NAME(GL_RGBA8),
    ORVEX_GL_NAME(GL_TEXTURE_BINDING_2D),
    ORVEX_GL_NAME(GL_TEXTURE_3D),
    ORVEX_GL_NAME(GL_TEXTURE_WRAP_R),
    ORVEX_GL_NAME(GL_VERTEX_ARRAY),
    ORVEX_GL_NAME(GL_NORMAL_ARRAY),
    ORVEX_GL_NAME(GL_COLOR_ARRAY),
    ORVEX_GL_NAME(GL_TEXTURE_COORD_ARRAY),
    ORVEX_GL_NAME(GL_MULTISAMPLE),
    ORVEX_GL_NAME(GL_BGR),
    ORVEX_GL_NAME(GL_BGRA),
    ORVEX_GL_NAME(GL_CLAMP_TO_EDGE),
    ORVEX_GL_NAME(GL_TEXTURE_BASE_LEVEL),
    ORVEX_GL_NAME(GL_TEXTURE_MAX_LEVEL),
    ORVEX_GL_NAME(GL_DEPTH_COMPONENT32),
    ORVEX_GL_NAME(GL_MAJOR_VERSION),
    ORVEX_GL_NAME(GL_MINOR_VERSION),
    ORVEX_GL_NAME(GL_NUM_EXTENSIONS),
    ORVEX_GL_NAME(GL_R16F),
    ORVEX_GL_NAME(GL_R32F),
    ORVEX_GL_NAME(GL_MAX_COMPUTE_ATOMIC_COUNTERS),
    ORVEX_GL_NAME(GL_MIRRORED_REPEAT),
    ORVEX_GL_NAME(GL_TEXTURE0),
    ORVEX_GL_NAME(GL_TEXTURE1),
    ORVEX_GL_NAME(GL_TEXTURE2),
    ORVEX_GL_NAME(GL_TEXTURE3),
    ORVEX_GL_NAME(GL_TEXTURE4),
    ORVEX_GL_NAME(GL_TEXTURE5),
    ORVEX_GL_NAME(GL_TEXTURE6),
    ORVEX_GL_NAME(GL_TEXTURE7),
    ORVEX_GL_NAME(GL_TEXTURE_RECTANGLE),
    ORVEX_GL_NAME(GL_TEXTURE_MAX_ANISOTROPY_EXT),
    ORVEX_GL_NAME(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT),
    ORVEX_GL_NAME(GL_TEXTURE_CUBE_MAP),
    ORVEX_GL_NAME(GL_TEXTURE_CUBE_MAP_POSITIVE_X),
    ORVEX_GL_NAME(GL_TEXTURE_CUBE_MAP_NEGATIVE_X),
    ORVEX_GL_NAME(GL_TEXTURE_CUBE_MAP_POSITIVE_Y),
    ORVEX_GL_NAME(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y),
    ORVEX_GL_NAME(GL_TEXTURE_CUBE_MAP_POSITIVE_Z),
    ORVEX_GL_NAME(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z),
    ORVEX_GL_NAME(GL_PROGRAM_POINT_SIZE),
    ORVEX_GL_NAME(GL_VBO_FREE_MEMORY_ATI),
    ORVEX_GL_NAME(GL_TEXTURE_FREE_MEMORY_ATI),
    ORVEX_GL_NAME(GL_RENDERBUFFER_FREE_MEMORY_ATI),
    ORVEX_GL_NAME(GL_RGBA32F),
    ORVEX_GL_NAME(GL_RGB32F),
    ORVEX_GL_NAME(GL_RGBA16F),
    ORVEX_GL_NAME(GL_RGB16F),
    ORVEX_GL_NAME(GL_DEPTH_TEXTURE_MODE),
    ORVEX_GL_NAME(GL_TEXTURE_COMPARE_MODE),
    ORVEX_GL_NAME(GL_TEXTURE_COMPARE_FUNC),
    ORVEX_GL_NAME(GL_COMPARE_R_TO_TEXTURE),
    ORVEX_GL_NAME(GL_POINT_SPRITE),
    ORVEX_GL_NAME(GL_MAX_VERTEX_ATTRIBS),
    ORVEX_GL_NAME(GL_MAX_TEXTURE_IMAGE_UNITS),
    ORVEX_GL_NAME(GL_ARRAY_BUFFER),
    ORVEX_GL_NAME(GL_ELEMENT_ARRAY_BUFFER),
    ORVEX_GL_NAME(GL_ARRAY_BUFFER_BINDING),
    ORVEX_GL_NAME(GL_READ_ONLY),
    ORVEX_GL_NAME(GL_WRITE_ONLY),
    ORVEX_GL_NAME(GL_READ_WRITE),
    ORVEX_GL_NAME(GL_STREAM_DRAW),
    ORVEX_GL_NAME(GL_STREAM_READ),
    ORVEX_GL_NAME(GL_STATIC_DRAW),
    ORVEX_GL_NAME(GL_STATIC_READ),
    ORVEX_GL_NAME(GL_DYNAMIC_DRAW),
    ORVEX_GL_NAME(GL_DYNAMIC_READ),
    ORVEX_GL_NAME(GL_UNIFORM_BUFFER),
    ORVEX_GL_NAME(GL_UNIFORM_BLOCK_DATA_SIZE),
    ORVEX_GL_NAME(GL_FRAGMENT_SHADER),
    ORVEX_GL_NAME(GL_VERTEX_SHADER),
    ORVEX_GL_NAME(GL_COMPILE_STATUS),
    ORVEX_GL_NAME(GL_LINK_STATUS),
    ORVEX_GL_NAME(GL_VALIDATE_STATUS),
    ORVEX_GL_NAME(GL_INFO_LOG_LENGTH),
    ORVEX_GL_NAME(GL_ATTACHED_SHADERS),
    ORVEX_GL_NAME(GL_ACTIVE_UNIFORMS),
    ORVEX_GL_NAME(GL_SHADING_LANGUAGE_VERSION),
    ORVEX_GL_NAME(GL_FRAMEBUFFER_BINDING),
    ORVEX_GL_NAME(GL_READ_FRAMEBUFFER),
    ORVEX_GL_NAME(GL_DRAW_FRAMEBUFFER),
    ORVEX_GL_NAME(GL_FRAMEBUFFER_COMPLETE),
    ORVEX_GL_NAME(GL_COLOR_ATTACHMENT0),
    ORVEX_GL_NAME(GL_COLOR_ATTACHMENT1),
    ORVEX_GL_NAME(GL_COLOR_ATTACHMENT2),
    ORVEX_GL_NAME(GL_COLOR_ATTACHMENT3),
    ORVEX_GL_NAME(GL_DEPTH_ATTACHMENT),
    ORVEX_GL_NAME(GL_FRAMEBUFFER),
    ORVEX_GL_NAME(GL_RENDERBUFFER),
    ORVEX_GL_NAME(GL_MAX_SAMPLES),
    ORVEX_GL_NAME(GL_GEOMETRY_SHADER),
    ORVEX_GL_NAME(GL_TESS_EVALUATION_SHADER),
    ORVEX_GL_NAME(GL_TESS_CONTROL_SHADER),
    ORVEX_GL_NAME(GL_GPU_MEMORY_INFO_TOTAL_AVAILABLE_MEMORY_NVX),
    ORVEX_GL_NAME(GL_GPU_MEMORY_INFO_CURRENT_AVAILABLE_VIDMEM_NVX),
    ORVEX_GL_NAME(GL_SHADER_STORAGE_BUFFER),
    ORVEX_GL_NAME(GL_TEXTURE_2D_MULTISAMPLE),
    ORVEX_GL_NAME(GL_COMPUTE_SHADER),
    ORVEX_GL_NAME(GL_ATOMIC_COUNTER_BUFFER),
    ORVEX_GL_NAME(GL_MAX_COMBINED_ATOMIC_COUNTER_BUFFERS),
    ORVEX_GL_NAME(GL_MAX_VERTEX_ATOMIC_COUNTERS),
    ORVEX_GL_NAME(GL_MAX_TESS_CONTROL_ATOMIC_COUNTERS),
    ORVEX_GL_NAME(GL_MAX_TESS_EVALUATION_ATOMIC_COUNTERS),
    ORVEX_GL_NAME(GL_MAX_GEOMETRY_ATOMIC_COUNTERS),
    ORVEX_GL_NAME(GL_MAX_FRAGMENT_ATOMIC_COUNTERS),
    ORVEX_GL_NAME(GL_MAX_COMBINED_ATOMIC_COUNTERS),
    ORVEX_GL_NAME(GL_MAX_ATOMIC_COUNTER_BUFFER_SIZE),
};

constexpr Name primitives[] = {ORVEX_GL_NAME(GL_POINTS),          ORVEX_GL_NAME(GL_LINES),
                               ORVEX_GL_NAME(GL_LINE_LOOP),       ORVEX_GL_NAME(GL_LINE_STRIP),
                               ORVEX_GL_NAME(GL_TRIANGLES),       ORVEX_GL_NAME(GL_TRIANGLE_STRIP),
                               ORVEX_GL_NAME(GL_TRIANGLE_FAN),    ORVEX_GL_NAME(GL_QUADS),
                               ORVEX_GL_NAME(GL_LINES_ADJACENCY), ORVEX_GL_NAME(GL_PATCHES)};

constexpr Name factors[] = {ORVEX_GL_NAME(GL_ZERO), ORVEX_GL_NAME(GL_ONE)};

constexpr Name attribute_bits[] = {ORVEX_GL_NAME(GL_COLOR_BUFFER_BIT),
                                   ORVEX_GL_NAME(GL_DEPTH_BUFFER_BIT),
                                   ORVEX_GL_NAME(GL_STENCIL_BUFFER_BIT),
                                   ORVEX_GL_NAME(GL_TRANSFORM_BIT), ORVEX_GL_NAME(GL_VIEWPORT_BIT)};

#undef ORVEX_GL_NAME

template<std::size_t count>
const char* find_name(const Name (&table)[count], long long value) {
    for (const Name& name : table)
        if (name.value == value)
            return name.text;
    return nullptr;
}

std::string hexadecimal(long long value) {
    char text[32];
    std::snprintf(text, sizeof(text), "0x%llX", static_cast<unsigned long long>(value));
    return text;
}

std::string real_text(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%g", value);
    return text;
}

bool is_one_of(const std::string& name, std::initializer_list<const char*> list) {
    for (const char* entry : list)
        if (name == entry)
            return true;
    return false;
}

std::string bits(const std::string& function, long long value) {
    if (!is_one_of(function, {"glClear", "glBlitFramebuffer", "glPushAttrib"}))
        return hexadecimal(value);
    std::string text;
    for (const Name& bit : attribute_bits) {
        if ((value & bit.value) != 0) {
            text += (text.empty() ? "" : " | ") + std::string(bit.text);
            value &= ~bit.value;
        }
    }
    if (value != 0 || text.empty())
        text += (text.empty() ? "" : " | ") + hexadecimal(value);
    return text;
}

// What a query writes into is no argument worth telling.
bool is_output_array(const std::string& function) {
    return function.rfind("glGet", 0) == 0;
}

// Digits right behind a stem: "glUniform4fv" has 4 behind "glUniform".
int digit_behind(const std::string& function, const char* stem) {
    const std::size_t length = std::strlen(stem);
    if (function.rfind(stem, 0) != 0 || function.size() <= length)
        return 0;
    const char c = function[length];
    return std::isdigit(static_cast<unsigned char>(c)) != 0 ? c - '0' : 0;
}

template<typename T>
std::string array_text(const void* address, long long length) {
    const T* const values = static_cast<const T*>(address);
    std::string text = "[";
    for (long long i = 0; i < length; ++i) {
        text += i == 0 ? "" : ", ";
        if constexpr (std::is_floating_point_v<T>)
            text += real_text(static_cast<double>(values[i]));
        else
            text += std::to_string(values[i]);
    }
    return text + "]";
}

std::string array_text(const std::string& type, const void* address, long long length) {
    if (type.find("GLfloat") != std::string::npos)
        return array_text<GLfloat>(address, length);
    if (type.find("GLdouble") != std::string::npos)
        return array_text<GLdouble>(address, length);
    if (type.find("GLuint64") != std::string::npos)
        return array_text<GLuint64>(address, length);
    if (type.find("GLint") != std::string::npos)
        return array_text<GLint>(address, length);
    return array_text<GLuint>(address, length);
}

// Offsets into a buffer and null travel as pointers too; no real object lives down there.
bool is_offset(const void* address) {
    return reinterpret_cast<std::uintptr_t>(address) < 0x1000000;
}

bool is_character_text(const std::string& type) {
    return type == "const GLchar*";
}

} // namespace

GlSignature::GlSignature(const char* name, const char* declared)
    : function(name) {
    std::string text(declared);
    text = text.substr(1, text.size() - 2);
    if (text == "void")
        return;
    std::size_t begin = 0;
    while (begin < text.size()) {
        std::size_t end = text.find(',', begin);
        end = end == std::string::npos ? text.size() : end;
        std::string part = text.substr(begin, end - begin);
        part.erase(0, part.find_first_not_of(' '));
        const std::size_t split = part.find_last_of(' ');
        parameters.push_back({part.substr(0, split), part.substr(split + 1)});
        begin = end + 1;
    }
}

std::string GlSignature::enumerant(const Parameter& parameter, long long value) const {
    if (parameter.name == "mode" &&
        !is_one_of(function, {"glCullFace", "glDrawBuffer", "glReadBuffer"})) {
        if (const char* name = find_name(primitives, value))
            return name;
    }
    if (parameter.name == "sfactor" || parameter.name == "dfactor") {
        if (const char* name = find_name(factors, value))
            return name;
    }
    if (const char* name = find_name(names, value))
        return name;
    return value < 0x100 ? std::to_string(value) : hexadecimal(value);
}

std::string GlSignature::argument(const Parameter& parameter, const GlValue& value) const {
    if (value.kind == GlValue::real)
        return real_text(value.number);
    if (value.kind == GlValue::pointer) {
        if (is_offset(value.address))
            return std::to_string(reinterpret_cast<std::uintptr_t>(value.address));
        if (is_character_text(parameter.type))
            return '"' + std::string(static_cast<const char*>(value.address)) + '"';
        return "ptr";
    }
    if (parameter.type == "GLenum")
        return enumerant(parameter, value.whole);
    if (parameter.type == "GLbitfield")
        return bits(function, value.whole);
    if (parameter.type == "GLboolean")
        return value.whole != 0 ? "true" : "false";
    // Texture parameters and internal formats are enumerants in the dress of integers.
    if (is_one_of(parameter.name, {"param", "internalFormat", "internalformat"}) &&
        value.whole >= 0x100)
        return enumerant(parameter, value.whole);
    return std::to_string(value.whole);
}

// How many elements the last argument has that is an array; 0 if it isn't known.
long long GlSignature::array_length(const std::vector<GlValue>& values) const {
    if (is_output_array(function))
        return 0;
    if (!parameters.empty() && parameters[0].name == "n")
        return values[0].whole;
    if (is_one_of(function, {"glLightfv", "glMaterialfv", "glColor4fv", "glVertex4fv"}))
        return 4;
    if (is_one_of(function, {"glLoadMatrixf", "glMultMatrixf"}))
        return 16;
    if (function.rfind("glClearBuffer", 0) == 0)
        return values[0].whole == GL_COLOR ? 4 : 1;
    if (const int size = digit_behind(function, "glUniformMatrix"))
        return size * size * values[1].whole;
    if (const int size = digit_behind(function, "glUniform"))
        return size * values[1].whole;
    if (function.rfind("glUniformHandleui64v", 0) == 0)
        return values[1].whole;
    return digit_behind(function, "glVertexAttrib");
}

std::string GlSignature::text(const std::vector<GlValue>& values) const {
    std::string line = function + "(";
    for (std::size_t i = 0; i < values.size() && i < parameters.size(); ++i) {
        line += i == 0 ? "" : ", ";
        const bool is_array = values[i].kind == GlValue::pointer && i + 1 == values.size() &&
                              i + 1 == parameters.size() && !is_offset(values[i].address) &&
                              parameters[i].type.find("void") == std::string::npos &&
                              parameters[i].type.find("GLchar") == std::string::npos;
        const long long length = is_array ? array_length(values) : 0;
        line += length > 0 ? array_text(parameters[i].type, values[i].address, length)
                           : argument(parameters[i], values[i]);
    }
    return line + ")";
}

} // namespace orvex_test
