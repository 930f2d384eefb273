#include "tests/support/pixel.h"
#include "vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

const char* const generic_vertex_shader = R"(#version 150
in vec4 position;
in vec4 color;
in vec4 normal;
in vec4 uv0;
in vec4 uv1;
in vec4 tangent;
in vec4 instance;
in vec4 user;
uniform int pick;
out vec4 value;
void main() {
    vec4 values[6] = vec4[6](color, normal, uv0, uv1, tangent, user);
    value = values[pick];
    gl_Position = vec4(position.xyz + instance.xyz, 1.0);
}
)";

const char* const generic_fragment_shader = R"(#version 150
in vec4 value;
out vec4 pixel;
void main() {
    pixel = vec4(value.xyz, 1.0);
}
)";

const char* const fixed_vertex_shader = R"(#version 120
attribute vec4 tangent;
attribute vec4 user;
uniform int pick;
varying vec4 value;
void main() {
    value = gl_Color;
    if (pick == 1) value = vec4(gl_Normal, 1.0);
    if (pick == 2) value = gl_MultiTexCoord0;
    if (pick == 3) value = gl_MultiTexCoord1;
    if (pick == 4) value = tangent;
    if (pick == 5) value = user;
    gl_Position = vec4(gl_Vertex.xyz, 1.0);
}
)";

const char* const fixed_fragment_shader = R"(#version 120
varying vec4 value;
void main() {
    gl_FragColor = vec4(value.xyz, 1.0);
}
)";

/// What a shader can show of a vertex.
enum Pick { color, normal, uv0, uv1, tangent, user };

constexpr int user_location = 11;

GLuint compile(const ORVEX_Renderer_OpenGL_Func& gl, GLenum type, const char* text) {
    const GLuint shader = gl.glCreateShader(type);
    gl.glShaderSource(shader, 1, &text, nullptr);
    gl.glCompileShader(shader);
    GLint compiled = 0;
    gl.glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    EXPECT_TRUE(compiled);
    return shader;
}

/// A program, made without the renderer and in use while it lives.
class Program {
public:
    Program(const ORVEX_Renderer_OpenGL_Func& gl, const char* vertex, const char* fragment)
        : gl(gl)
        , id(gl.glCreateProgram()) {
        const GLuint shaders[] = {compile(gl, GL_VERTEX_SHADER, vertex),
                                  compile(gl, GL_FRAGMENT_SHADER, fragment)};
        const char* const names[] = {"position", "color",   "normal",  "uv0",
                                     "uv1",      "tangent", "instance"};
        for (const GLuint shader : shaders)
            gl.glAttachShader(id, shader);
        const bool fixed = vertex == fixed_vertex_shader;
        for (GLuint location = 0; location < 7; ++location)
            if (!fixed || location == 5)
                gl.glBindAttribLocation(id, location, names[location]);
        gl.glBindAttribLocation(id, user_location, "user");
        gl.glLinkProgram(id);
        for (const GLuint shader : shaders)
            gl.glDeleteShader(shader);
        gl.glUseProgram(id);
    }

    ~Program() {
        gl.glUseProgram(0);
        gl.glDeleteProgram(id);
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void show(Pick what) const { gl.glUniform1i(gl.glGetUniformLocation(id, "pick"), what); }

private:
    const ORVEX_Renderer_OpenGL_Func& gl;
    GLuint id;
};

/// Colours are multiples of 1/5, which bytes hold exactly; interpolation may miss by one.
testing::AssertionResult shows(const Pixel& pixel, const Pixel& expected) {
    for (unsigned long i = 0; i < 3; ++i)
        if (std::abs(pixel[i] - expected[i]) > 1)
            return testing::AssertionFailure()
                   << "(" << pixel[0] << ", " << pixel[1] << ", " << pixel[2] << ")";
    return testing::AssertionSuccess();
}

constexpr Pixel color_pixel{51, 102, 153};
constexpr Pixel normal_pixel{204, 153, 0};
constexpr Pixel uv0_pixel{102, 204, 0};
constexpr Pixel uv1_pixel{51, 51, 255};
constexpr Pixel tangent_pixel{0, 255, 102};
constexpr Pixel user_pixel{153, 51, 204};

/// A triangle over the whole picture with the values above.
void make_picture_triangle(MeshData& store, bool separate) {
    make_triangle(store, separate);
    ASSERT_TRUE(store.alloc_user_vertex_attribs(1));
    store.set_user_attrib_location(0, separate ? user_location : -1);
    for (unsigned long i = 0; i < 3; ++i) {
        store.set_color(i, vec4(0.2f, 0.4f, 0.6f, 1.0f));
        store.set_normal(i, vec3(0.8f, 0.6f, 0.0f));
        store.set_uv0(i, vec4(0.4f, 0.8f, 0.0f, 1.0f));
        store.set_uv1(i, vec4(0.2f, 0.2f, 1.0f, 1.0f));
        store.set_tangent(i, vec4(0.0f, 1.0f, 0.4f, 1.0f));
        store.set_user_attrib(0, i, vec4(0.6f, 0.2f, 0.8f, 1.0f));
    }
    store.user_attribs[0].need_update = false;
}

class Pictures {
protected:
    static void draw_picture(RecordedRenderer& test, MeshData& store) {
        glViewport(0, 0, 256, 256);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glDisable(GL_CULL_FACE);
        glDisable(GL_DEPTH_TEST);
        test.draw_quietly(store);
    }

    static void expect_attributes(RecordedRenderer& test, const Program& program,
                                  VERTEX_FORMAT format, MeshData& store) {
        const bool separate = store.separate_vertex_arrays;
        const auto expect = [&](Pick what, const Pixel& pixel) {
            program.show(what);
            draw_picture(test, store);
            EXPECT_TRUE(shows(pixel_at(128, 128), pixel)) << "attribute " << what;
        };
        expect(normal, normal_pixel);
        expect(uv0, uv0_pixel);
        if (format != VERTEX_FORMAT_32) {
            expect(color, color_pixel);
            expect(tangent, tangent_pixel);
        }
        if (format == VERTEX_FORMAT_96)
            expect(uv1, uv1_pixel);
        if (separate)
            expect(user, user_pixel);
    }

    template<class Store>
    static void expect_format(RecordedRenderer& test, const Program& program, bool generic) {
        for (const bool separate : {true, false}) {
            Store store;
            SCOPED_TRACE(testing::Message() << "format " << store.get_vertex_format()
                                            << (separate ? " separate" : " interleaved"));
            make_picture_triangle(store, separate);
            store.set_use_generic_vertex_attribs_state(generic);
            if (!separate)
                store.free_user_vertex_attribs();
            expect_attributes(test, program, store.get_vertex_format(), store);
            test.kill(store);
        }
    }

    static void expect_all_formats(RecordedRenderer& test, const Program& program, bool generic) {
        expect_format<MeshData>(test, program, generic);
        expect_format<MeshData_64>(test, program, generic);
        expect_format<MeshData_32>(test, program, generic);
        expect_format<MeshData_PhysXCloth>(test, program, generic);
    }
};

class VertexBufferPictures : public VertexBuffersTest, protected Pictures {};
ORVEX_BOTH_PROFILES(VertexBufferPictures);

TEST_P(VertexBufferPictures, show_every_attribute_of_every_format) {
    const Program program(renderer->gl, generic_vertex_shader, generic_fragment_shader);
    expect_all_formats(*this, program, true);
    EXPECT_EQ(context().take_errors(), std::vector<std::string>());
}

TEST_P(VertexBufferPictures, show_what_changed) {
    const Program program(renderer->gl, generic_vertex_shader, generic_fragment_shader);
    program.show(color);
    for (const bool separate : {true, false}) {
        MeshData store;
        make_picture_triangle(store, separate);
        store.free_user_vertex_attribs();
        draw_picture(*this, store);
        for (unsigned long i = 0; i < 3; ++i)
            store.set_color(i, vec4(1.0f, 0.0f, 0.0f, 1.0f));
        draw_picture(*this, store);
        EXPECT_TRUE(shows(pixel_at(128, 128), color_pixel)) << "nothing was marked";
        store.colors_need_update = true;
        draw_picture(*this, store);
        EXPECT_TRUE(shows(pixel_at(128, 128), {255, 0, 0}));
        kill(store);
    }
}

TEST_P(VertexBufferPictures, show_each_instance_in_its_place) {
    const Program program(renderer->gl, generic_vertex_shader, generic_fragment_shader);
    program.show(color);
    MeshData store;
    make_picture_triangle(store, true);
    store.set_position(0, vec3(-0.2f, -0.2f, 0.0f));
    store.set_position(1, vec3(0.2f, -0.2f, 0.0f));
    store.set_position(2, vec3(0.0f, 0.2f, 0.0f));
    make_instances(store, store.instance_positions, 2);
    store.instance_positions.data[0] = vec4(-0.5f, 0.0f, 0.0f, 1.0f);
    store.instance_positions.data[1] = vec4(0.5f, 0.0f, 0.0f, 1.0f);
    store.instance_positions_need_update = true;
    draw_picture(*this, store);
    EXPECT_TRUE(shows(pixel_at(64, 128), color_pixel));
    EXPECT_TRUE(shows(pixel_at(192, 128), color_pixel));
    EXPECT_TRUE(shows(pixel_at(128, 128), black));
    store.instance_positions.data[1] = vec4(0.0f, 0.0f, 0.0f, 1.0f);
    store.instance_positions_need_update = true;
    draw_picture(*this, store);
    EXPECT_TRUE(shows(pixel_at(192, 128), black));
    EXPECT_TRUE(shows(pixel_at(128, 128), color_pixel));
    kill(store);
    EXPECT_EQ(context().take_errors(), std::vector<std::string>());
}

TEST_P(VertexBufferPictures, show_a_record_that_grew) {
    const Program program(renderer->gl, generic_vertex_shader, generic_fragment_shader);
    program.show(color);
    for (const bool separate : {true, false}) {
        MeshData store;
        make_triangle(store, separate, 0);
        draw_picture(*this, store);
        ASSERT_TRUE(store.alloc_vertex_data(6));
        const float corners[6][2] = {{-1, -1}, {1, -1}, {1, 1}, {1, 1}, {-1, 1}, {-1, -1}};
        for (unsigned long i = 0; i < 6; ++i) {
            store.set_position(i, vec3(corners[i][0], corners[i][1], 0.0f));
            store.set_color(i, vec4(0.2f, 0.4f, 0.6f, 1.0f));
        }
        draw_picture(*this, store);
        EXPECT_TRUE(shows(pixel_at(200, 60), color_pixel));
        EXPECT_TRUE(shows(pixel_at(60, 200), color_pixel));
        kill(store);
    }
}

TEST_P(VertexBufferPictures, show_lines_and_faces_in_turn) {
    const Program program(renderer->gl, generic_vertex_shader, generic_fragment_shader);
    program.show(color);
    MeshData store;
    make_picture_triangle(store, true);
    draw_picture(*this, store);
    EXPECT_TRUE(shows(pixel_at(10, 10), color_pixel));
    store.set_position(0, vec3(-0.99f, -0.5f, 0.0f));
    store.set_position(1, vec3(0.99f, -0.5f, 0.0f));
    store.positions_need_update = true;
    ASSERT_TRUE(store.alloc_quad_edge_data(2));
    store.quad_edges[1] = 1;
    store.render_wireframe_quad = true;
    draw_picture(*this, store);
    EXPECT_TRUE(shows(pixel_at(128, 128), black));
    const bool on_line =
        shows(pixel_at(128, 64), color_pixel) || shows(pixel_at(128, 63), color_pixel);
    EXPECT_TRUE(on_line);
    store.render_wireframe_quad = false;
    draw_picture(*this, store);
    EXPECT_TRUE(shows(pixel_at(100, 128), color_pixel));
    kill(store);
    EXPECT_EQ(context().take_errors(), std::vector<std::string>());
}

class ClientArrayPictures : public ClientArraysTest, protected Pictures {};

TEST_F(ClientArrayPictures, show_every_attribute_of_every_format) {
    const Program program(renderer->gl, fixed_vertex_shader, fixed_fragment_shader);
    expect_all_formats(*this, program, false);
    EXPECT_EQ(gl.take_errors(), std::vector<std::string>());
}

TEST_F(ClientArrayPictures, show_colours_through_the_fixed_pipeline) {
    for (const bool separate : {true, false}) {
        MeshData store;
        make_client_triangle(store, separate);
        for (unsigned long i = 0; i < 3; ++i)
            store.set_color(i, vec4(0.2f, 0.4f, 0.6f, 1.0f));
        draw_picture(*this, store);
        EXPECT_TRUE(shows(pixel_at(128, 128), color_pixel));
        kill(store);
    }
    EXPECT_EQ(gl.take_errors(), std::vector<std::string>());
}

TEST_F(ClientArrayPictures, survive_records_without_colours_after_a_kill) {
    const Program program(renderer->gl, fixed_vertex_shader, fixed_fragment_shader);
    MeshData colored;
    make_client_triangle(colored, false);
    draw_picture(*this, colored);
    kill(colored);
    MeshData_32 plain;
    make_client_triangle(plain, false);
    for (unsigned long i = 0; i < 3; ++i)
        plain.set_uv0(i, vec4(0.4f, 0.8f, 0.0f, 1.0f));
    plain.uv0_need_update = true;
    program.show(uv0);
    draw_picture(*this, plain);
    EXPECT_TRUE(shows(pixel_at(128, 128), uv0_pixel));
    kill(plain);
}

} // namespace

} // namespace orvex_test
