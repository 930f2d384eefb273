// Binds that are kept from one object to the next: which calls are left out, and that nothing else
// shows of it. The same random sequence of public operations is played twice, with and without;
// pictures, what every draw and every host's own code sees of the API, and what is left there at
// the end have to be the same.

#include "tests/orvex_kit/gl_states.h" // before any other header of OpenGL

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/geometry/shapes/mesh_box.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/render_target.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"

namespace orvex_test {

using namespace orvex;

namespace {

const char* const core_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
in vec4 orvex_TexCoord0;
uniform mat4 orvex_ModelViewProjectionMatrix;
uniform vec4 tint;
out vec4 color;
void main() {
    color = orvex_Color * 0.5 + tint;
    gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
}
[Pixel_Shader]
#version 150
uniform sampler2D picture;
in vec4 color;
out vec4 pixel;
void main() {
    pixel = color + texture(picture, vec2(0.5));
}
)";

const char* const old_text = R"([Vertex_Shader]
#version 120
varying vec4 color;
void main() {
    color = gl_Color + gl_MultiTexCoord0 * 0.25;
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
}
[Pixel_Shader]
#version 120
uniform sampler2D picture;
varying vec4 color;
void main() {
    gl_FragColor = color + texture2D(picture, vec2(0.5));
}
)";

constexpr int side = 32;

/// Looks at the API, and keeps what it saw. Objects go by the order in which they were seen first:
/// two plays give them other names.
class Looks {
public:
    explicit Looks(bool is_compatible)
        : is_compatible(is_compatible) {}

    void look() {
        text.clear();
        look_at_states();
        look_at_units();
        if (is_compatible || number(GL_VERTEX_ARRAY_BINDING) != 0)
            look_at_attributes();
        if (is_compatible)
            look_at_fixed_pipeline();
        seen.push_back(text);
    }

    void note(const char* what) { seen.emplace_back(what); }

    const std::vector<std::string>& all() const { return seen; }

private:
    static GLint number(GLenum name) {
        GLint value = 0;
        glGetIntegerv(name, &value);
        return value;
    }

    template<class Number>
    void add(const std::string& name, Number value) {
        text += name + " " + std::to_string(value) + "\n";
    }

    void add_object(const std::string& kind, const std::string& name, int id) {
        std::map<int, int>& known = objects[kind];
        if (id != 0)
            id = known.try_emplace(id, static_cast<int>(known.size()) + 1).first->second;
        add(name, id);
    }

    void look_at_states() {
        for (const auto& [name, values] : states_here(is_compatible)) {
            if (name.find("TEXTURE_BINDING") != name.npos)
                continue; // with the units
            if (name.find("_BINDING") != name.npos) {
                const bool is_buffer = name.find("_BUFFER_BINDING") != name.npos;
                add_object(is_buffer ? "buffer" : name, name, static_cast<int>(values[0]));
                continue;
            }
            const auto end = std::find_if(values.rbegin(), values.rend(),
                                          [](GLfloat value) { return value != 0.0f; });
            text += name + ":";
            std::for_each(values.begin(), end.base(),
                          [this](GLfloat value) { text += " " + std::to_string(value); });
            text += "\n";
        }
    }

    void look_at_units() {
        const GLint active = number(GL_ACTIVE_TEXTURE);
        for (unsigned int unit = 0; unit < 4; ++unit) {
            glActiveTexture(GL_TEXTURE0 + unit);
            for (const GLenum binding : {GL_TEXTURE_BINDING_1D, GL_TEXTURE_BINDING_2D,
                                         GL_TEXTURE_BINDING_3D, GL_TEXTURE_BINDING_CUBE_MAP})
                add_object("texture", "texture", number(binding));
            if (is_compatible)
                add("textured", glIsEnabled(GL_TEXTURE_2D));
        }
        glActiveTexture(static_cast<GLenum>(active));
    }

    void look_at_attributes() {
        for (unsigned int i = 0; i < 8; ++i) {
            const auto value = [i](GLenum name) {
                GLint result = 0;
                glGetVertexAttribiv(i, name, &result);
                return result;
            };
            add("enabled", value(GL_VERTEX_ATTRIB_ARRAY_ENABLED));
            add("stride", value(GL_VERTEX_ATTRIB_ARRAY_STRIDE));
            add_object("buffer", "attribute", value(GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING));
        }
    }

    void look_at_fixed_pipeline() {
        const GLint unit = number(GL_CLIENT_ACTIVE_TEXTURE);
        add("client unit", unit);
        for (const GLenum other : {GL_TEXTURE0, GL_TEXTURE1}) {
            glClientActiveTexture(other);
            add("coordinates", glIsEnabled(GL_TEXTURE_COORD_ARRAY));
            add_object("buffer", "coordinates", number(GL_TEXTURE_COORD_ARRAY_BUFFER_BINDING));
        }
        glClientActiveTexture(static_cast<GLenum>(unit));
        for (const GLenum name : {GL_VERTEX_ARRAY, GL_COLOR_ARRAY, GL_NORMAL_ARRAY})
            add("array", glIsEnabled(name));
        for (const GLenum name : {GL_VERTEX_ARRAY_BUFFER_BINDING, GL_COLOR_ARRAY_BUFFER_BINDING,
                                  GL_NORMAL_ARRAY_BUFFER_BINDING})
            add_object("buffer", "pointer", number(name));
        for (const GLenum name : {GL_VERTEX_ARRAY_STRIDE, GL_COLOR_ARRAY_STRIDE})
            add("stride", number(name));
        for (const GLenum name : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR}) {
            GLfloat color[4] = {};
            glGetMaterialfv(GL_FRONT, name, color);
            for (const float channel : color)
                add("material", channel);
        }
    }

    bool is_compatible;
    std::string text;
    std::vector<std::string> seen;
    std::map<std::string, std::map<int, int>> objects;
};

/// A node whose class the engine doesn't know: it looks at the API, and throws if told so.
class HostMesh : public Mesh {
public:
    void _render(Renderer* renderer) override {
        looks->look();
        Mesh::_render(renderer);
        looks->look();
        if (throws)
            throw std::bad_alloc();
    }

    Looks* looks = nullptr;
    bool throws = false;
};

/// A texture of a host's that looks as well.
class HostTexture : public Texture {
public:
    bool bind(Renderer* renderer, unsigned long unit) override {
        if (looks)
            looks->look();
        return Texture::bind(renderer, unit);
    }

    Looks* looks = nullptr;
};

class KeptBinds : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        recorder = std::make_unique<GlRecorder>();
        recorder->set_recording(false);
        renderer = std::make_unique<KeepingRendererOpenGL>();
        renderer->start();
        is_compatible = !is_core_context();
        forget_gl_errors();
    }

    void TearDown() override {
        renderer->kill_all_render_targets();
        renderer.reset();
        recorder.reset();
        GlTest::TearDown();
    }

    GpuProgram* make_program(const char* text) {
        GpuProgram* const program = new GpuProgram;
        program->add_ref();
        EXPECT_TRUE(
            program->load_from_memory(renderer.get(), text, std::char_traits<char>::length(text)));
        return program;
    }

    static void fill(Mesh& mesh, bool separate, float size) {
        mesh.set_vertex_alloc_params(separate, 0);
        mesh.alloc_vertex_data(3);
        mesh.alloc_face_data(1, false);
        for (unsigned long i = 0; i < 3; ++i) {
            mesh.set_vertex_position(i, vec4(i == 1 ? size : 0.0f, i == 2 ? size : 0.0f, 0, 1));
            mesh.set_vertex_color(i, vec4(0.2f * static_cast<float>(i), 0.6f, 0.3f, 1.0f));
        }
        mesh.set_face_indexes(0, 0, 1, 2);
        mesh.set_use_fixed_mvp_matrices_state(false, nullptr);
    }

    std::vector<unsigned char> picture() const {
        std::vector<unsigned char> pixels(4UL * side * side);
        glReadPixels(0, 0, side, side, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        return pixels;
    }

    std::unique_ptr<GlRecorder> recorder;
    std::unique_ptr<KeepingRendererOpenGL> renderer;
    bool is_compatible = false;
};
ORVEX_BOTH_PROFILES(KeptBinds);

// ------------------------------------------------------------------------------ which calls

/// A group of three triangles of one store and one program.
class ThreeTriangles {
public:
    ThreeTriangles(GpuProgram* program, Renderer& renderer, bool by_fixed_pipeline)
        : renderer(renderer) {
        root->add_ref();
        for (int i = 0; i < 3; ++i) {
            Mesh* const mesh = new Mesh;
            if (i == 0) {
                mesh->set_vertex_alloc_params(true, 0);
                mesh->alloc_vertex_data(3);
                mesh->alloc_face_data(1, false);
                mesh->set_vertex_position(1, vec4(1, 0, 0, 1));
                mesh->set_vertex_position(2, vec4(0, 1, 0, 1));
                mesh->set_face_indexes(0, 0, 1, 2);
                first = mesh;
            } else {
                mesh->share_mesh_data(nullptr, first);
            }
            mesh->set_position(0.1f * static_cast<float>(i), 0, 0);
            mesh->set_use_fixed_mvp_matrices_state(by_fixed_pipeline, nullptr);
            if (program) {
                Material* const material = new Material;
                material->set_gpu_program(program);
                mesh->add_material(material, nullptr);
            }
            root->add_child(mesh);
        }
    }
    ~ThreeTriangles() {
        root->cleanup(&renderer, nullptr);
        root->release(&renderer, nullptr);
    }
    ThreeTriangles(const ThreeTriangles&) = delete;
    ThreeTriangles& operator=(const ThreeTriangles&) = delete;

    void draw() const { root->render(&renderer, nullptr); }

private:
    Renderer& renderer;
    Object* root = new Object;
    Mesh* first = nullptr;
};

TEST_P(KeptBinds, leave_out_the_pairs_between_objects_of_one_program_and_one_store) {
    GpuProgram* const program = make_program(core_text);
    {
        const ThreeTriangles triangles(program, *renderer, false);
        triangles.draw();
        renderer->set_elided_binds_state(true);
        recorder->set_recording(true);
        triangles.draw();
        GlCalls names = recorder->take_names();
        recorder->set_recording(false);
        std::erase_if(names,
                      [](const std::string& name) { return name == "glGetUniformLocation"; });
        EXPECT_EQ(names, GlCalls({"glUseProgram", "glGetIntegerv", "glUniformMatrix4fv",
                                  "glBindVertexArray", "glDrawElements", "glUniformMatrix4fv",
                                  "glDrawElements", "glUniformMatrix4fv", "glDrawElements",
                                  "glUseProgram", "glBindVertexArray"}));
    }
    program->release(renderer.get(), nullptr);
}

TEST_P(KeptBinds, leave_out_what_client_arrays_and_the_fixed_pipeline_have_already) {
    if (!is_compatible)
        return; // neither is there
    const ThreeTriangles triangles(nullptr, *renderer, true);
    triangles.draw();
    renderer->set_elided_binds_state(true);
    recorder->set_recording(true);
    triangles.draw();
    const GlCalls names = recorder->take_names();
    recorder->set_recording(false);
    EXPECT_EQ(recorder->count("glDrawElements"), 0);
    const auto count = [&names](const char* name) {
        return std::count(names.begin(), names.end(), name);
    };
    EXPECT_EQ(count("glDrawElements"), 3);
    EXPECT_EQ(count("glVertexPointer"), 1);
    EXPECT_EQ(count("glEnableClientState"), count("glDisableClientState"));
    EXPECT_EQ(count("glBindBuffer"), 4);
    EXPECT_EQ(count("glLoadMatrixf"), 4) << "one projection and three views";
}

TEST_P(KeptBinds, are_none_unless_a_host_asks_for_them) {
    GpuProgram* const program = make_program(core_text);
    {
        const ThreeTriangles triangles(program, *renderer, false);
        triangles.draw();
        EXPECT_FALSE(renderer->get_elided_binds_state());
        EXPECT_FALSE(renderer->keep_binds(true));
        EXPECT_FALSE(renderer->get_kept_binds_state());
        recorder->set_recording(true);
        triangles.draw();
        EXPECT_EQ(recorder->count("glUseProgram"), 6);
        EXPECT_EQ(recorder->count("glBindVertexArray"), 6);
        recorder->set_recording(false);
    }
    program->release(renderer.get(), nullptr);
}

TEST_P(KeptBinds, end_with_the_setting) {
    GpuProgram* const program = make_program(core_text);
    renderer->set_elided_binds_state(true);
    EXPECT_FALSE(renderer->keep_binds(true));
    EXPECT_TRUE(renderer->keep_binds(true));
    program->bind(renderer.get());
    program->unbind(renderer.get());
    GLint in_use = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &in_use);
    EXPECT_NE(in_use, 0) << "held";
    renderer->set_elided_binds_state(false);
    glGetIntegerv(GL_CURRENT_PROGRAM, &in_use);
    EXPECT_EQ(in_use, 0);
    EXPECT_FALSE(renderer->get_kept_binds_state());
    program->release(renderer.get(), nullptr);
}

// ------------------------------------------------------------------------------ random sequences

/// Numbers that are the same on every machine.
class Numbers {
public:
    explicit Numbers(std::uint32_t seed)
        : state(seed * 2654435761U + 12345U) {}
    unsigned int below(unsigned int end) {
        state = state * 1664525U + 1013904223U;
        return (state >> 8) % end;
    }
    bool one_in(unsigned int count) { return below(count) == 0; }

private:
    std::uint32_t state;
};

/// Nodes of all kinds, and operations on them and on the renderer, chosen by numbers.
class Play {
public:
    Play(KeepingRendererOpenGL& renderer, const std::vector<GpuProgram*>& programs,
         bool is_compatible, std::uint32_t seed, Looks& looks)
        : renderer(renderer)
        , programs(programs)
        , is_compatible(is_compatible)
        , numbers(seed)
        , looks(looks) {
        for (int i = 0; i < 3; ++i)
            make_texture(i);
        for (int i = 0; i < 4; ++i)
            make_material();
        root->add_ref();
        for (int i = 0; i < 10; ++i)
            add_node(i);
        glGenTextures(1, &cube);
        target = renderer.create_render_target();
        target->create_target(side, side, PF_RGBA_U8, false, false, false, 0);
    }

    ~Play() {
        renderer.kill_render_target(target);
        glDeleteTextures(1, &cube);
        root->cleanup(&renderer, nullptr);
        root->release(&renderer, nullptr);
        for (Material* material : materials)
            material->release(&renderer, nullptr);
        for (Texture* texture : textures)
            texture->release(&renderer, nullptr);
    }

    Play(const Play&) = delete;
    Play& operator=(const Play&) = delete;

    void step() {
        if (numbers.one_in(3))
            leave_something();
        switch (numbers.below(4)) {
        case 0:
            return walk();
        case 1:
            return by_itself();
        default:
            return operate();
        }
    }

private:
    /// What a host that calls the API by itself leaves between walks.
    void leave_something() {
        glActiveTexture(GL_TEXTURE0 + numbers.below(3));
        glBindTexture(GL_TEXTURE_CUBE_MAP, numbers.one_in(3) ? 0 : cube);
        if (is_compatible) {
            glMatrixMode(numbers.one_in(2) ? GL_TEXTURE : GL_PROJECTION);
            glClientActiveTexture(GL_TEXTURE0 + numbers.below(2));
        }
    }

    void make_texture(int i) {
        auto* const texture = i == 2 ? new HostTexture : new Texture;
        texture->add_ref();
        texture->create_2d(2, 2, PF_RGBA_U8);
        for (unsigned long k = 0; k < 4; ++k)
            texture->set_texel_2d(k / 2, k % 2, vec4(0.3f * static_cast<float>(i), 0.1f, 0.3f, 1));
        texture->upload(&renderer);
        if (auto* const own = dynamic_cast<HostTexture*>(texture))
            own->looks = &looks;
        textures.push_back(texture);
    }

    void make_material() {
        Material* const material = new Material;
        material->add_ref();
        material->set_gpu_program(programs[numbers.below(static_cast<unsigned>(programs.size()))]);
        for (unsigned int i = numbers.below(3); i > 0; --i)
            material->add_texture(textures[numbers.below(3)]);
        material->set_texture_unit_offset(numbers.below(2));
        material->set_use_fixed_material_colors_state(is_compatible && numbers.one_in(2));
        material->set_ambient(vec4(0.1f * static_cast<float>(numbers.below(3)), 0, 0, 1));
        materials.push_back(material);
    }

    void add_mesh(Mesh& mesh, int i) {
        if (!meshes.empty() && numbers.one_in(2)) {
            mesh.share_mesh_data(nullptr,
                                 meshes[numbers.below(static_cast<unsigned>(meshes.size()))]);
        } else {
            mesh.set_vertex_alloc_params(numbers.one_in(2), 0);
            mesh.alloc_vertex_data(3);
            if (!numbers.one_in(4)) {
                mesh.alloc_face_data(1, false);
                mesh.set_face_indexes(0, 0, 1, 2);
            }
            const float size = 0.3f + 0.2f * static_cast<float>(numbers.below(4));
            mesh.set_vertex_position(0, vec4(0, 0, 0, 1));
            mesh.set_vertex_position(1, vec4(size, 0, 0, 1));
            mesh.set_vertex_position(2, vec4(0, size, 0, 1));
            for (unsigned long k = 0; k < 3; ++k)
                mesh.set_vertex_color(k, vec4(0.3f, 0.1f * static_cast<float>(i), 0.5f, 1));
        }
        meshes.push_back(&mesh);
        dress(mesh);
    }

    void dress(Object& object) {
        object.set_position(0.2f * static_cast<float>(numbers.below(9)) - 0.9f,
                            0.2f * static_cast<float>(numbers.below(9)) - 0.9f, 0);
        object.set_use_fixed_mvp_matrices_state(is_compatible && numbers.one_in(2), nullptr);
        if (!is_compatible || !numbers.one_in(4))
            object.add_material(materials[numbers.below(4)], nullptr);
    }

    void add_node(int i) {
        Node* node = nullptr;
        switch (numbers.below(10)) {
        case 0: {
            auto* const host = new HostMesh;
            host->looks = &looks;
            host->throws = numbers.one_in(4);
            add_mesh(*host, i);
            node = host;
            break;
        }
        case 1:
            node = new Model;
            break;
        case 2: {
            auto* const line = new Polyline;
            line->init_polyline_data(&renderer);
            line->initialize(2, LINE_RENDER_MODE_LINES);
            line->set_vertex_position(1, 1.0f, 1.0f, 0.0f);
            dress(*line);
            node = line;
            break;
        }
        case 3: {
            auto* const pool = new VertexPool;
            pool->init_pool(2, numbers.one_in(2));
            pool->set_vertex_position(1, 0.5f, 0.5f, 0, 1);
            dress(*pool);
            node = pool;
            break;
        }
        case 4:
            node = new Object;
            break;
        default: {
            Mesh* const mesh = numbers.one_in(4) ? new MeshBox : new Mesh;
            add_mesh(*mesh, i);
            node = mesh;
            break;
        }
        }
        nodes.push_back(node);
        // Below the root, or below what came before
        Node* const parent =
            numbers.one_in(3) ? nodes[numbers.below(static_cast<unsigned>(i + 1))] : root;
        (parent == node ? root : parent)->add_child(node);
    }

    void walk() {
        Node* const from = numbers.one_in(2) ? root : nodes[numbers.below(10)];
        try {
            from->render(&renderer, nullptr);
        } catch (const std::bad_alloc&) {
            looks.note("thrown");
        }
        looks.look();
    }

    /// A host that draws without a walk.
    void by_itself() {
        const bool was_keeping = renderer.keep_binds(true);
        for (unsigned int i = numbers.below(12); i > 0; --i)
            one_of_its_own();
        if (numbers.one_in(3))
            walk_inside();
        renderer.keep_binds(was_keeping);
        looks.look();
    }

    void walk_inside() {
        try {
            root->render(&renderer, nullptr);
        } catch (const std::bad_alloc&) {
            looks.note("thrown");
        }
    }

    Mesh* any_mesh() {
        return meshes.empty() ? nullptr
                              : meshes[numbers.below(static_cast<unsigned>(meshes.size()))];
    }

    void one_of_its_own() {
        Mesh* const mesh = any_mesh();
        Material* const material = materials[numbers.below(4)];
        GpuProgram* const program = programs[numbers.below(static_cast<unsigned>(programs.size()))];
        const unsigned int chosen = numbers.below(18);
        switch (chosen) {
        case 0:
            return material->bind(&renderer);
        case 1:
            return material->unbind(&renderer);
        case 2:
            if (program)
                program->bind(&renderer);
            return;
        case 3:
            renderer.gpu_program_activate(nullptr);
            return;
        case 4:
            renderer.texture_bind(numbers.one_in(2) ? textures[0]->get_data_ptr() : nullptr,
                                  numbers.below(3));
            return;
        case 5:
            if (program)
                program->set_uniform_4f(nullptr, "tint",
                                        0.1f * static_cast<float>(numbers.below(9)), 0, 0, 1);
            return;
        case 6:
            if (program && numbers.one_in(3))
                program->set_vertex_attrib_name(12, "nothing"); // links again
            return;
        case 7:
            if (is_compatible)
                renderer.material_set_ambient(vec4(0.2f, 0.3f, 0, 1));
            return;
        case 8:
            if (is_compatible)
                renderer.set_texture2d_state(numbers.one_in(2));
            return;
        case 9:
            return operate();
        default:
            break;
        }
        if (!mesh)
            return;
        if (chosen == 10)
            mesh->set_vertex_position(
                1, vec4(0.4f, 0.1f * static_cast<float>(numbers.below(5)), 0, 1));
        else if (chosen == 11)
            mesh->render_geometry_prepare(&renderer);
        else if (chosen == 12 && can_draw())
            mesh->render_geometry_draw(&renderer);
        else if (chosen == 13)
            mesh->render_geometry_finish(&renderer);
        else if (chosen == 14)
            renderer.vertex_buffer_kill(mesh->get_mesh_data());
        else if (chosen == 15 && can_draw())
            mesh->render_geometry(&renderer);
        else if (mesh->get_num_materials() > 0 || is_compatible)
            mesh->Mesh::_render(&renderer);
    }

    /// A core context draws nothing without a program, and says so.
    bool can_draw() { return is_compatible || renderer.gpu_program_get_active_program(); }

    void operate() {
        switch (numbers.below(12)) {
        case 0:
            renderer.set_blend_factors(BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
            return renderer.set_blend_state(numbers.one_in(2));
        case 1:
            renderer.rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK,
                                                 numbers.one_in(2) ? POLYGON_MODE_LINE
                                                                   : POLYGON_MODE_FILL);
            return renderer.rasterizer_apply_state();
        case 2:
            renderer.rasterizer_set_cull_state(numbers.one_in(2));
            return renderer.rasterizer_apply_state();
        case 3:
            return static_cast<void>(numbers.one_in(2) ? target->activate() : target->deactivate());
        case 4:
            return static_cast<void>(renderer.reset_texture_unit(numbers.below(3)));
        case 5:
            return renderer.set_viewport(0, 0, side - static_cast<int>(numbers.below(8)), side);
        case 6:
            return renderer.clear_depth_buffer(1.0f);
        case 7:
            return static_cast<void>(textures[1]->upload(&renderer));
        case 8:
            return static_cast<void>(renderer.get_opengl_error());
        case 9: {
            unsigned char pixels[4 * side * side];
            target->read_color_pixmap_rgba_u8(pixels);
            return;
        }
        case 10: {
            mat4 view;
            view.init_translate(0.1f * static_cast<float>(numbers.below(4)), 0, 0);
            return renderer.set_view_matrix(view, is_compatible);
        }
        default:
            return static_cast<void>(renderer.texture_bind(textures[1]->get_data_ptr(), 1));
        }
    }

    KeepingRendererOpenGL& renderer;
    const std::vector<GpuProgram*>& programs;
    bool is_compatible;
    Numbers numbers;
    Looks& looks;
    std::vector<Texture*> textures;
    std::vector<Material*> materials;
    std::vector<Mesh*> meshes;
    std::vector<Node*> nodes;
    Object* root = new Object;
    RenderTarget* target = nullptr;
    GLuint cube = 0;
};

/// What there is to see of a sequence.
struct Seen {
    std::vector<std::string> looks;
    std::vector<unsigned char> pixels;
};

class KeptBindsPlay : public KeptBinds {
protected:
    void SetUp() override {
        KeptBinds::SetUp();
        programs.push_back(make_program(core_text));
        programs.push_back(make_program(core_text));
        if (is_compatible) {
            programs.push_back(make_program(old_text));
            programs.push_back(nullptr);
        }
    }

    void TearDown() override {
        for (GpuProgram* program : programs)
            if (program)
                program->release(renderer.get(), nullptr);
        forget_gl_errors(); // of what sequences ask for in a core context
        KeptBinds::TearDown();
    }

    Seen play(std::uint32_t seed, bool is_eliding) {
        Seen result;
        Looks looks(is_compatible);
        renderer->reset_render_states();
        renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
        renderer->rasterizer_set_cull_state(false);
        renderer->rasterizer_apply_state();
        renderer->set_viewport(0, 0, side, side);
        mat4 identity;
        renderer->set_projection_matrix(identity, is_compatible);
        renderer->set_view_matrix(identity, is_compatible);
        renderer->clear_color_depth_buffers(0.1f, 0.2f, 0.3f, 1.0f, 1.0f);
        {
            Play sequence(*renderer, programs, is_compatible, seed, looks);
            renderer->set_elided_binds_state(is_eliding);
            for (int i = 0; i < 12; ++i)
                sequence.step();
            renderer->set_elided_binds_state(false);
            looks.look();
            renderer->fbo_bind(0);
            result.pixels = picture();
        }
        renderer->reset_all_texture_units();
        forget_gl_errors();
        result.looks = looks.all();
        return result;
    }

    std::vector<GpuProgram*> programs;
};
ORVEX_BOTH_PROFILES(KeptBindsPlay);

TEST_P(KeptBindsPlay, is_seen_by_nobody) {
    // Most mistakes show in the first few; by hand a larger number may be told.
    const char* const told = std::getenv("ORVEX_TEST_SEQUENCES");
    const std::uint32_t num_sequences = told ? static_cast<std::uint32_t>(std::atoi(told)) : 25;
    std::size_t num_seen = 0;
    for (std::uint32_t seed = 0; seed < num_sequences; ++seed) {
        play(seed, false); // leaves what the next begins with
        const Seen full = play(seed, false);
        const Seen elided = play(seed, true);
        ASSERT_EQ(full.pixels, elided.pixels) << "seed " << seed;
        ASSERT_EQ(full.looks.size(), elided.looks.size()) << "seed " << seed;
        for (std::size_t i = 0; i < full.looks.size(); ++i)
            ASSERT_EQ(full.looks[i], elided.looks[i]) << "seed " << seed << ", look " << i;
        num_seen += full.looks.size();
    }
    EXPECT_GT(num_seen, 10u * num_sequences);
}

} // namespace

} // namespace orvex_test
