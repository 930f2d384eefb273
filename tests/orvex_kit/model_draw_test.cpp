// Models on their way to pixels, on both paths.

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/gpu/gpu_program_mgr.h>
#include <orvex/kernel/kernel.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/renderer/records/texture_data.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/look.h"
#include "orvex_kit/mesh_numbers.h"
#include "orvex_kit/model.h"
#include "orvex_kit/private/default_arrays.h"
#include "orvex_kit/program.h"
#include "orvex_kit/ref.h"
#include "scripted_loader.h"
#include "tests/support/gl_context.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex::GpuProgram;
using orvex::GpuProgramMgr;
using orvex::kit::Engine;
using orvex::kit::Model;
using orvex::kit::Path;

constexpr int width = 96;
constexpr int height = 72;
const std::string sample = ORVEX_EXAMPLE_DATA "/lighthouse.obj";

/// An off-screen window with a renderer of its own.
class Window {
public:
    explicit Window(Path path)
        : path(path) {
        renderer = orvex::Kernel::get()->load_core_opengl_renderer_plugin(true);
        renderer->initialize();
        window = renderer->create_render_window();
        orvex::RenderWindow_ExtraData request;
        request.gl_major = path == Path::gl3 ? 3 : 2;
        request.gl_minor = path == Path::gl3 ? 2 : 1;
        request.depth_bits = 24;
        EXPECT_TRUE(window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request));
        EXPECT_TRUE(renderer->start());
    }
    ~Window() {
        window->apply_context(true);
        GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
        renderer->stop();
        renderer->kill_all_render_windows();
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    GpuProgram& compile(const std::string& text) {
        GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_memory(
            renderer, text.c_str(), text.size(), "program");
        EXPECT_TRUE(program->is_valid()) << program->get_shader_error_messages();
        return *program;
    }
    GpuProgram& lit() {
        return compile(orvex::kit::program_text_for(path, orvex::kit::Look().text()));
    }

    /// What a model looks like here, as a whole.
    Picture picture_of(Model& model, GpuProgram& program) {
        window->apply_context(true);
        const auto camera = orvex::kit::make<orvex::Camera>();
        orvex::kit::see_all(model.extent(), {}, {width, height}).apply(*camera, width, height);
        camera->bind(renderer, true, true, true, true, path == Path::gl2);
        renderer->clear_color_depth_buffers(0.2f, 0.2f, 0.2f, 1.0f, 1.0f);
        model.draw(*renderer, program, path);
        EXPECT_NO_GL_ERROR();
        return read_frame(width, height);
    }

    orvex::Renderer* renderer = nullptr;

    Path path; ///< to draw on

private:
    orvex::RenderWindow* window = nullptr;
};

/// Whether every pixel has one colour.
bool is_blank(const Picture& picture) {
    for (std::size_t i = 4; i < picture.pixels.size(); ++i)
        if (picture.pixels[i] != picture.pixels[i - 4])
            return false;
    return true;
}

/// Of a channel.
unsigned long sum_of(const Picture& picture, std::size_t channel) {
    unsigned long sum = 0;
    for (std::size_t i = channel; i < picture.pixels.size(); i += 4)
        sum += picture.pixels[i];
    return sum;
}

class ModelDrawTest : public testing::TestWithParam<Path> {
protected:
    const Engine engine{{{}, "", false, false}};
};
INSTANTIATE_TEST_SUITE_P(Paths, ModelDrawTest, testing::Values(Path::gl3, Path::gl2),
                         [](const auto& row) { return row.param == Path::gl3 ? "gl3" : "gl2"; });

TEST_P(ModelDrawTest, draws_the_same_in_one_renderer_after_the_other) {
    Model model(sample);
    ASSERT_TRUE(model) << model.reason();
    Picture first;
    {
        Window window(GetParam());
        GpuProgram& lit = window.lit();
        first = window.picture_of(model, lit);
        EXPECT_FALSE(is_blank(first));
        EXPECT_TRUE(window.picture_of(model, lit) == first);
    }
    Window second(GetParam());
    EXPECT_TRUE(second.picture_of(model, second.lit()) == first);
}

TEST_P(ModelDrawTest, draws_the_same_in_two_renderers_in_turns) {
    Model model(sample);
    Window one(GetParam());
    GpuProgram& lit_of_one = one.lit();
    const Picture first = one.picture_of(model, lit_of_one);
    Window two(GetParam());
    GpuProgram& lit_of_two = two.lit();
    for (int turn = 0; turn < 2; ++turn) {
        EXPECT_TRUE(two.picture_of(model, lit_of_two) == first) << turn;
        EXPECT_TRUE(one.picture_of(model, lit_of_one) == first) << turn;
    }
}

TEST_P(ModelDrawTest, draws_each_of_several_with_what_is_its_own) {
    const TempDir folder;
    const auto load = [&folder](const char* color) {
        folder.write("m.mtl", std::string("newmtl paint\nKd ") + color + "\n");
        return Model(folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                           "usemtl paint\nf 1 2 3\n"));
    };
    Model red = load("1 0 0");
    Model blue = load("0 0 1");
    Window window(GetParam());
    GpuProgram& lit = window.lit();
    const Picture of_red = window.picture_of(red, lit);
    const Picture of_blue = window.picture_of(blue, lit);
    EXPECT_FALSE(of_red == of_blue);
    red = {};
    EXPECT_TRUE(window.picture_of(blue, lit) == of_blue);
    EXPECT_GT(sum_of(of_red, 0), sum_of(of_red, 2));
    EXPECT_GT(sum_of(of_blue, 2), sum_of(of_blue, 0));
}

TEST_P(ModelDrawTest, mixes_texels_and_mip_levels_of_pictures) {
    const TempDir folder;
    ASSERT_TRUE(write_png(folder.file("two.png"), Picture(2, 2)));
    folder.write("m.mtl", "newmtl m\nmap_Kd two.png\n");
    Model model(
        folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 2 0 0\nv 2 1 0\nusemtl m\nf 1 2 3\n"));
    ASSERT_TRUE(model) << model.reason();
    Window window(GetParam());
    window.picture_of(model, window.lit());
    const orvex::Texture* const texture =
        model.node()->get_material_by_index(0)->get_texture_by_index(0);
    ASSERT_NE(texture, nullptr);
    glBindTexture(GL_TEXTURE_2D, texture->get_data_ptr()->opengl_texture_id);
    GLint nearby = 0, far_away = 0;
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, &nearby);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &far_away);
    EXPECT_EQ(nearby, GL_LINEAR);
    EXPECT_EQ(far_away, GL_LINEAR_MIPMAP_LINEAR);
}

TEST_P(ModelDrawTest, draws_with_programs_that_lack_its_uniforms) {
    Model model(sample);
    Window window(GetParam());
    GpuProgram& plain = window.compile(orvex::kit::program_text_for(
        GetParam(), "[Vertex_Shader]\nuniform mat4 orvex_ModelViewProjectionMatrix;\n"
                    "void main() { gl_Position = orvex_ModelViewProjectionMatrix * POSITION; }\n"
                    "[Pixel_Shader]\nvoid main() { COLOR = vec4(1.0, 0.5, 0.0, 1.0); }\n"));
    GpuProgram& lit = window.lit();
    const Picture lit_before = window.picture_of(model, lit);
    const Picture flat = window.picture_of(model, plain);
    EXPECT_FALSE(is_blank(flat));
    std::size_t orange = 0;
    for (std::size_t i = 0; i < flat.pixels.size(); i += 4)
        orange += flat.pixels[i] == 255 && flat.pixels[i + 2] == 0 ? 1 : 0;
    EXPECT_GT(orange, flat.pixels.size() / 4 / 20);
    EXPECT_TRUE(window.picture_of(model, lit) == lit_before);
}

TEST_P(ModelDrawTest, gives_back_what_it_has_in_whatever_order_things_end) {
    {
        Model model(sample);
        Window window(GetParam());
        window.picture_of(model, window.lit());
        model = Model(sample);
        window.picture_of(model, window.lit());
    } // the window first
    Model longer;
    {
        Window window(GetParam());
        Model model(sample);
        window.picture_of(model, window.lit());
        longer = std::move(model);
        window.picture_of(longer, window.lit());
    }
    EXPECT_TRUE(longer);
    longer = {};
}

TEST_P(ModelDrawTest, draws_nothing_of_an_empty_one) {
    Window window(GetParam());
    Model none;
    EXPECT_TRUE(is_blank(window.picture_of(none, window.lit())));
    Model missing("/none.obj");
    EXPECT_TRUE(is_blank(window.picture_of(missing, window.lit())));
}

TEST(ModelDraw, goes_from_one_path_to_the_other_and_back) {
    const Engine engine({{}, "", false, false});
    Model model(sample);
    Window core(Path::gl3);
    GpuProgram& core_lit = core.lit();
    const Picture first = core.picture_of(model, core_lit);
    Window old(Path::gl2);
    GpuProgram& old_lit = old.lit();
    EXPECT_TRUE(old.picture_of(model, old_lit) == first);
    EXPECT_TRUE(core.picture_of(model, core_lit) == first);
}

/// A sheet of squares, from the left to the right, each of two faces.
Model strip(std::size_t num_squares) {
    std::vector<float> places;
    std::vector<std::uint32_t> faces;
    for (std::size_t i = 0; i <= num_squares; ++i)
        for (const float y : {0.0f, 1.0f})
            places.insert(places.end(), {static_cast<float>(i) / 60'000.0f, y, 0.0f});
    for (std::uint32_t i = 0; i < num_squares; ++i)
        faces.insert(faces.end(), {2 * i, 2 * i + 2, 2 * i + 1, 2 * i + 1, 2 * i + 2, 2 * i + 3});
    orvex::kit::MeshNumbers numbers;
    numbers.num_vertices = places.size() / 3;
    numbers.positions = {places.data()};
    numbers.num_faces = faces.size() / 3;
    numbers.faces = {faces.data(), orvex::kit::Number::u32};
    numbers.shading = orvex::kit::Normals::smooth;
    return Model::from_numbers(numbers);
}

TEST(ModelDraw, gives_a_software_driver_long_runs_in_portions) {
    const Engine engine({{}, "", false, false});
    Model model = strip(60'000);
    ASSERT_TRUE(model) << model.reason();
    Window window(Path::gl3);
    GpuProgram& numbers = window.compile(orvex::kit::program_text_for(
        Path::gl3, "[Vertex_Shader]\nuniform mat4 orvex_ModelViewProjectionMatrix;\n"
                   "void main() { gl_Position = orvex_ModelViewProjectionMatrix * POSITION; }\n"
                   "[Pixel_Shader]\nvoid main() {\n"
                   "COLOR = vec4(float(gl_PrimitiveID) / 100000.0, 1.0, 0.0, 1.0); }\n"));
    const Picture picture = window.picture_of(model, numbers);
    std::vector<int> seen; // in the middle row, from the left
    for (int x = 0; x < width; ++x) {
        const std::size_t pixel = static_cast<std::size_t>(height / 2 * width + x) * 4;
        if (picture.pixels[pixel + 1] == 255)
            seen.push_back(picture.pixels[pixel]);
    }
    ASSERT_GT(seen.size(), 20u);
    const std::size_t fifth = seen.size() / 5;
    for (std::size_t i = 1; i < fifth * 4; ++i)
        EXPECT_GE(seen[i], seen[i - 1]) << i;
    EXPECT_GT(seen[fifth * 4 - 1], 200);
    EXPECT_LT(seen.back(), 60);
}

/// A program that shows texture coordinates, or colours of vertices.
GpuProgram& program_that_shows(Window& window, const std::string& what) {
    return window.compile(orvex::kit::program_text_for(
        window.path, "[Vertex_Shader]\nuniform mat4 orvex_ModelViewProjectionMatrix;\n"
                     "OUT vec4 seen;\nvoid main() { seen = " +
                         what +
                         ";\ngl_Position = orvex_ModelViewProjectionMatrix * POSITION; }\n"
                         "[Pixel_Shader]\nIN vec4 seen;\nvoid main() { COLOR = seen; }\n"));
}

constexpr const char* texcoord = "vec4(TEXCOORD, 0.0, 1.0)";

TEST_P(ModelDrawTest, draws_what_a_host_writes_into_arrays_that_were_as_they_were_made) {
    Model model = strip(20'000);
    Window window(GetParam());
    GpuProgram& places = program_that_shows(window, texcoord);
    const Picture bare = window.picture_of(model, places);
    EXPECT_EQ(sum_of(bare, 2), sum_of(bare, 0)); // the background alone
    auto* const mesh = static_cast<orvex::Mesh*>(model.node()->get_child(0));
    EXPECT_TRUE(window.picture_of(model, places) == bare);
    for (unsigned long i = 0; i < mesh->get_mesh_data()->num_vertices; ++i)
        mesh->set_vertex_uv(i, orvex::vec4(1.0f, 0.0f, 0.0f, 1.0f), 0);
    const Picture red = window.picture_of(model, places);
    EXPECT_GT(sum_of(red, 0), sum_of(red, 2) * 3 / 2);
    EXPECT_TRUE(window.picture_of(model, places) == red);
}

TEST(ModelDraw, goes_from_one_path_to_the_other_in_one_context) {
    const Engine engine({{}, "", false, false});
    Model model = strip(20'000);
    Window window(Path::gl2); // whose driver knows the other path as well
    GpuProgram& lit = window.lit();
    window.path = Path::gl3;
    GpuProgram& core_lit = window.lit();
    const Picture first = window.picture_of(model, core_lit);
    EXPECT_FALSE(is_blank(first));
    window.path = Path::gl2;
    EXPECT_TRUE(window.picture_of(model, lit) == first);
    auto* const mesh = static_cast<orvex::Mesh*>(model.node()->get_child(0));
    for (unsigned long i = 0; i < mesh->get_mesh_data()->num_vertices; ++i) {
        mesh->set_vertex_uv(i, orvex::vec4(0.1f, 0.2f, 0.3f, 1.0f), 0);
        mesh->set_vertex_uv(i, orvex::vec4(0.1f, 0.2f, 0.3f, 1.0f), 1);
        mesh->set_vertex_tangent(i, orvex::vec4(0.1f, 0.2f, 0.3f, 1.0f));
        mesh->set_vertex_color(i, orvex::vec4(0.1f, 0.2f, 0.3f, 1.0f));
    }
    window.path = Path::gl3;
    EXPECT_TRUE(window.picture_of(model, core_lit) == first);
}

/// The colour that the context gives vertices without one.
std::array<float, 4> color_of_context(Path path) {
    std::array<float, 4> color{};
    if (path == Path::gl3)
        glGetVertexAttribfv(1, GL_CURRENT_VERTEX_ATTRIB, color.data());
    else
        glGetFloatv(GL_CURRENT_COLOR, color.data());
    return color;
}

TEST_P(ModelDrawTest, shows_one_color_of_all_vertices_and_leaves_that_of_the_context) {
    Model model = strip(20'000);
    auto* const mesh = static_cast<orvex::Mesh*>(model.node()->get_child(0));
    Window window(GetParam());
    GpuProgram& colors = program_that_shows(window, "VERTEX_COLOR");
    mesh->set_vertices_color(1.0f, 0.0f, 0.0f, 1.0f, nullptr);
    const std::array<float, 4> set{0.25f, 0.5f, 0.75f, 1.0f};
    if (GetParam() == Path::gl3)
        glVertexAttrib4fv(1, set.data());
    else
        glColor4fv(set.data());
    const Picture red = window.picture_of(model, colors);
    EXPECT_GT(sum_of(red, 0), sum_of(red, 2) * 3 / 2);
    EXPECT_EQ(color_of_context(GetParam()), set);
    for (unsigned long i = 0; i < mesh->get_mesh_data()->num_vertices; ++i)
        mesh->set_vertex_color(i, orvex::vec4(0.0f, 0.0f, 1.0f, 1.0f));
    const Picture blue = window.picture_of(model, colors);
    EXPECT_GT(sum_of(blue, 2), sum_of(blue, 0) * 3 / 2);
    EXPECT_TRUE(window.picture_of(model, colors) == blue);
}

/// A mesh whose arrays stay enabled after it was drawn on path gl2, more vertices than `strip` has,
/// all red and with texture coordinates.
orvex::kit::Ref<orvex::Mesh> interleaved_mesh() {
    auto mesh = orvex::kit::make<orvex::Mesh>();
    mesh->set_vertex_alloc_params(false, 0);
    EXPECT_TRUE(mesh->alloc_vertex_data(60'000));
    EXPECT_TRUE(mesh->alloc_face_data(1, false));
    mesh->set_face_indexes(0, 0, 1, 2);
    for (unsigned long i = 0; i < 60'000; ++i) {
        mesh->set_vertex_color(i, orvex::vec4(1.0f, 0.0f, 0.0f, 1.0f));
        mesh->set_vertex_uv(i, orvex::vec4(0.5f, 0.0f, 0.0f, 1.0f), 0);
    }
    mesh->set_opengl_2_3_rendering_states(true, nullptr);
    return mesh;
}

TEST(ModelDraw, shows_nothing_of_arrays_that_another_mesh_left_enabled) {
    const Engine engine({{}, "", false, false});
    Model model = strip(20'000);
    Window window(Path::gl2);
    const orvex::kit::Ref<orvex::Mesh> other = interleaved_mesh();
    for (const char* const what : {"VERTEX_COLOR", texcoord}) {
        GpuProgram& program = program_that_shows(window, what);
        const Picture alone = window.picture_of(model, program);
        for (const bool keeps : {false, true}) {
            const bool was_keeping = window.renderer->keep_binds(keeps);
            for (int turn = 0; turn < 2; ++turn) {
                program.bind(window.renderer);
                other->render_geometry(window.renderer);
                program.unbind(window.renderer);
                EXPECT_TRUE(window.picture_of(model, program) == alone) << what << keeps << turn;
            }
            window.renderer->keep_binds(was_keeping);
        }
    }
}

TEST_P(ModelDrawTest, draws_long_runs_of_one_mesh_with_what_is_theirs) {
    const TempDir folder;
    folder.write("m.mtl", "newmtl a\nKd 1 0 0\nnewmtl b\nKd 0 0 1\n");
    std::string text = "mtllib m.mtl\n";
    for (int i = 0; i <= 24'000; ++i)
        text += "v " + std::to_string(i / 24'000.0) + " 0 0\nv " + std::to_string(i / 24'000.0) +
                " 1 0\n";
    for (int i = 0; i < 24'000; ++i) {
        if (i % 12'000 == 0)
            text += i == 0 ? "usemtl a\n" : "usemtl b\n";
        const int first = 2 * i + 1;
        for (const int corner : {0, 2, 1})
            text += (corner == 0 ? "f " : " ") + std::to_string(first + corner);
        for (const int corner : {1, 2, 3})
            text += (corner == 1 ? "\nf " : " ") + std::to_string(first + corner);
        text += "\n";
    }
    Model model(folder.write("m.obj", text));
    ASSERT_TRUE(model) << model.reason();
    ASSERT_EQ(model.runs().size(), 2u);
    Window window(GetParam());
    GpuProgram& colors = program_that_shows(window, "VERTEX_COLOR * vec4(0.5, 0.5, 0.5, 1.0)");
    const Picture grey = window.picture_of(model, colors);
    EXPECT_GT(sum_of(grey, 0), grey.pixels.size() / 4 * 60);
    EXPECT_EQ(sum_of(grey, 0), sum_of(grey, 2));
    GpuProgram& lit = window.lit();
    const Picture two = window.picture_of(model, lit);
    EXPECT_FALSE(is_blank(two));
    EXPECT_TRUE(window.picture_of(model, lit) == two);
}

/// Of those pixels that differ from the first one.
unsigned long num_covered(const Picture& picture) {
    unsigned long num = 0;
    for (std::size_t i = 4; i < picture.pixels.size(); i += 4)
        num += std::equal(picture.pixels.begin(), picture.pixels.begin() + 4,
                          picture.pixels.begin() + static_cast<std::ptrdiff_t>(i))
                   ? 0
                   : 1;
    return num;
}

/// Two squares beside each other, each of two faces and a material, over six vertices.
Model two_squares(const TempDir& folder, bool is_of_two_materials) {
    const char* const loader = is_of_two_materials ? "two" : "one";
    ScriptedLoader::add(loader, [is_of_two_materials](orvex::Model& model, const std::string&) {
        orvex::Mesh* const mesh = model.create_mesh();
        mesh->alloc_vertex_data(6);
        for (unsigned long i = 0; i < 6; ++i) {
            mesh->set_vertex_position(
                i, orvex::vec4(static_cast<float>(i % 3), static_cast<float>(i / 3), 0.0f, 1.0f));
            mesh->set_vertex_normal(i, orvex::vec4(0.0f, 0.0f, 1.0f, 0.0f));
        }
        mesh->alloc_face_data(4, false);
        for (unsigned i = 0; i < 2; ++i) {
            mesh->set_face_indexes(2 * i, i, i + 1, i + 4);
            mesh->set_face_indexes(2 * i + 1, i, i + 4, i + 3);
            orvex::Material* const paint = orvex::MaterialMgr::get()->create_material("paint");
            paint->set_diffuse(i == 0 ? 1.0f : 0.0f, 0.0f, i == 0 ? 0.0f : 1.0f, 1.0f);
            mesh->add_material(paint, nullptr);
            for (unsigned long face = 2 * i; face < 4; ++face)
                if (i == 0 || is_of_two_materials)
                    mesh->set_face_material(paint->get_id(), face);
        }
        model.add_child(mesh);
        return true;
    });
    return Model(folder.write("m.squares", "-"), {orvex::kit::Normals::file, false, loader});
}

TEST_P(ModelDrawTest, draws_all_faces_of_runs_whose_faces_share_vertices) {
    const TempDir folder;
    Model one = two_squares(folder, false);
    Model two = two_squares(folder, true);
    ASSERT_EQ(one.runs().size(), 1u);
    ASSERT_EQ(two.runs().size(), 2u);
    Window window(GetParam());
    GpuProgram& lit = window.lit();
    const Picture red = window.picture_of(one, lit);
    const Picture both = window.picture_of(two, lit);
    EXPECT_FALSE(is_blank(red));
    EXPECT_EQ(num_covered(both), num_covered(red));
    EXPECT_GT(sum_of(both, 2), sum_of(red, 2));
}

TEST(DefaultArrays, are_those_that_nobody_has_written_and_come_back_after_a_draw) {
    using orvex::kit::DefaultArrays;
    using orvex::kit::WithoutDefaults;
    orvex::MeshData mesh;
    // So many that the heap always has memory for them that nobody had before
    ASSERT_TRUE(mesh.alloc_vertex_data(2'200'000));
    const orvex::vec4* const uv0 = mesh.uv0.data;
    const orvex::vec4* const tangent = mesh.tangent.data;
    DefaultArrays arrays;
    arrays.look_at(mesh);
    {
        const WithoutDefaults lean(mesh, arrays, Path::gl3);
        EXPECT_EQ(mesh.uv0.data, nullptr);
        EXPECT_EQ(mesh.uv1.data, nullptr);
        EXPECT_EQ(mesh.tangent.data, nullptr);
        EXPECT_NE(mesh.position.data, nullptr);
        EXPECT_EQ(mesh.color.data, nullptr);
    }
    EXPECT_EQ(mesh.uv0.data, uv0);
    EXPECT_EQ(mesh.tangent.data, tangent);
    // One value is enough, wherever it stands; who writes by the mesh raises a flag.
    for (const unsigned long i : {0ul, 1'234'567ul, 2'199'999ul}) {
        mesh.uv0.data[i] = orvex::vec4(0.5f, 0.0f, 0.0f, 1.0f);
        mesh.uv0_need_update = true;
        arrays.look_at(mesh);
        const WithoutDefaults lean(mesh, arrays, Path::gl3);
        EXPECT_EQ(mesh.uv0.data, uv0) << i;
        EXPECT_EQ(mesh.uv1.data, nullptr) << i;
        mesh.uv0_need_update = false;
    }
    struct Row {
        orvex::VertexAttribArray& array;
        bool& flag;
    };
    mesh.uv1_need_update = mesh.tangents_need_update = mesh.colors_need_update = false;
    for (const Row& row :
         {Row{mesh.uv1, mesh.uv1_need_update}, Row{mesh.tangent, mesh.tangents_need_update},
          Row{mesh.color, mesh.colors_need_update}}) {
        const orvex::vec4* const data = row.array.data;
        row.array.data[7] = orvex::vec4(0.5f, 0.0f, 0.0f, 1.0f);
        row.flag = true;
        arrays.look_at(mesh);
        const WithoutDefaults lean(mesh, arrays, Path::gl3);
        EXPECT_EQ(row.array.data, data);
        row.flag = false;
    }
    // Small ones cost too little to be looked at.
    orvex::MeshData small;
    ASSERT_TRUE(small.alloc_vertex_data(100));
    DefaultArrays none;
    none.look_at(small);
    const WithoutDefaults same(small, none, Path::gl3);
    EXPECT_NE(small.uv0.data, nullptr);
}

TEST(ModelDraw, outlives_the_engine_that_drew_it) {
    Model model;
    {
        const Engine engine({{}, "", false, false});
        Window window(Path::gl3);
        model = Model(sample);
        window.picture_of(model, window.lit());
    }
    EXPECT_FALSE(model);
}

} // namespace
} // namespace orvex_test
