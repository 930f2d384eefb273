#include "orvex_kit/look.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/renderer/renderer.h>

#include "gl_states.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/model.h"
#include "orvex_kit/program.h"
#include "sample_models.h"
#include "scripted_loader.h"
#include "tests/support/picture.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using Shot = orvex::kit::Picture;

/// All that the kit has.
const std::string own_looks = "lit, matcap, normals, plain, wire";

const std::string vertex_stage =
    "[Vertex_Shader]\nuniform mat4 orvex_ModelViewProjectionMatrix;\n"
    "void main() { gl_Position = orvex_ModelViewProjectionMatrix * POSITION; }\n[Pixel_Shader]\n";
const std::string red_look = vertex_stage + "void main() { COLOR = vec4(1.0, 0.0, 0.0, 1.0); }\n";
const std::string tint_look = vertex_stage + "uniform vec4 tint;\nvoid main() { COLOR = tint; }\n";
const std::string broken_look = vertex_stage + "void main() { nonsense(); }\n";

class LookTest : public testing::TestWithParam<Path> {
protected:
    Engine engine;
    TempDir folder;

    static ViewOptions options(int supersampling = 1) {
        ViewOptions result;
        result.path = GetParam();
        result.supersampling = supersampling;
        return result;
    }
    static Shot shot_of(View& view, const std::string& path, const Angle& angle = {}) {
        orvex::kit::Model model(path);
        view.draw(model, angle);
        return picture_of(view);
    }
};
INSTANTIATE_TEST_SUITE_P(on, LookTest, testing::Values(Path::gl3, Path::gl2), path_name);

/// Pictures side by side.
orvex_test::Picture joined(const std::vector<Shot>& shots) {
    const int width = shots[0].width(), height = shots[0].height();
    orvex_test::Picture all(width * static_cast<int>(shots.size()), height);
    for (std::size_t i = 0; i < shots.size(); ++i)
        for (int y = 0; y < height; ++y)
            std::memcpy(all.at(static_cast<int>(i) * width, y), shots[i].row_data(y),
                        shots[i].row_bytes());
    return all;
}

TEST_P(LookTest, of_each_name_is_as_its_picture_shows) {
    const std::string models[] = {ORVEX_EXAMPLE_DATA "/lighthouse.obj", write_box(folder),
                                  write_ball(folder)};
    for (const std::string& name : Look::names()) {
        View view(160, 160, options());
        ASSERT_EQ(view.set_look(Look::named(name)).reason(), "");
        std::vector<Shot> shots;
        for (const std::string& model : models)
            shots.push_back(shot_of(view, model));
        EXPECT_TRUE(matches_golden("kit-look-" + name, joined(shots))) << name;
    }
}

/// A square from -1 to 1 whose vertices a loader gave a colour, or none.
orvex::kit::Model square_of(const char* name, const TempDir& folder,
                            const std::optional<orvex::vec4>& color) {
    ScriptedLoader::add(name, [color](orvex::Model& model, const std::string&) {
        orvex::Mesh* const mesh = model.create_mesh();
        mesh->alloc_vertex_data(4);
        mesh->alloc_face_data(2, false);
        for (unsigned long i = 0; i < 4; ++i) {
            mesh->set_vertex_position(
                i, orvex::vec4(i % 2 == 0 ? -1.0f : 1.0f, i < 2 ? -1.0f : 1.0f, 0.0f, 1.0f));
            mesh->set_vertex_normal(i, orvex::vec4(0.0f, 0.0f, 1.0f, 0.0f));
        }
        if (color)
            mesh->set_vertices_color(*color, nullptr);
        mesh->set_face_indexes(0, 0, 1, 2);
        mesh->set_face_indexes(1, 1, 3, 2);
        model.add_child(mesh);
        return true;
    });
    ModelOptions options;
    options.loader = name;
    return orvex::kit::Model(folder.write("square.none", "-"), options);
}

TEST_P(LookTest, shows_the_colours_that_vertices_have_of_their_own) {
    View view(32, 32, options());
    ASSERT_EQ(view.set_look(Look::named("plain")).reason(), "");
    const auto camera = flat_camera(32, 32);
    const auto middle_of_square = [&](const char* name, const std::optional<orvex::vec4>& color) {
        orvex::kit::Model model = square_of(name, folder, color);
        EXPECT_TRUE(model) << model.reason();
        view.begin(*camera);
        view.add(model);
        view.end();
        return pixel_at(picture_of(view), 16, 16);
    };
    const Pixel bare = middle_of_square("without", std::nullopt);
    EXPECT_EQ(middle_of_square("red", orvex::vec4(1.0f, 0.0f, 0.0f, 1.0f)),
              (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(middle_of_square("white", orvex::vec4(1.0f, 1.0f, 1.0f, 1.0f)), bare);
    EXPECT_EQ(bare, (Pixel{178, 178, 204, 255})) << "the colour of what has none";
    ASSERT_EQ(view.set_look(Look::named("lit")).reason(), "");
    const Pixel lit = middle_of_square("lit_red", orvex::vec4(1.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_GT(lit[0], 2 * lit[1]);
}

TEST_P(LookTest, gives_each_face_of_a_mesh_its_own_material) {
    folder.write("m.mtl", "newmtl a\nKd 1 0 0\nnewmtl b\nKd 0 1 0\nnewmtl c\nKd 0 0 1\nd 0.5\n");
    View view(64, 64, options());
    ASSERT_EQ(view.set_look(Look::named("plain")).reason(), "");
    orvex::kit::Model model(folder.write(
        "m.obj", "mtllib m.mtl\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nv 0 0 1\nv 1 0 1\n"
                 "v 1 1 1\nusemtl a\nf 1 2 3\nusemtl b\nf 1 3 4\nusemtl c\nf 5 6 7\n"));
    ASSERT_EQ(model.meshes().size(), 1u);
    const auto camera = flat_camera(64, 64);
    view.begin(*camera);
    view.add(model);
    view.end();
    const Shot shot = picture_of(view);
    EXPECT_EQ(pixel_at(shot, 48, 60), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixel_at(shot, 4, 10), (Pixel{0, 255, 0, 255}));
    const Pixel mixed = pixel_at(shot, 56, 24);
    EXPECT_NEAR(mixed[0], 128, 1);
    EXPECT_EQ(mixed[1], 0);
    EXPECT_NEAR(mixed[2], 128, 1);
}

TEST_P(LookTest, is_lit_at_first) {
    View view(64, 64, options());
    const std::string box = write_box(folder);
    const Shot at_first = shot_of(view, box);
    ASSERT_EQ(view.set_look(Look::named("plain")).reason(), "");
    EXPECT_NE(shot_of(view, box), at_first);
    ASSERT_EQ(view.set_look(Look::named("lit")).reason(), "");
    EXPECT_EQ(shot_of(view, box), at_first);
}

TEST_P(LookTest, of_a_hosts_own_comes_from_a_file) {
    View view(16, 16, options());
    const Look look = Look::from_file(folder.write("red.glsl", red_look));
    ASSERT_TRUE(look) << look.reason();
    EXPECT_EQ(look.name(), "red.glsl");
    EXPECT_EQ(look.text(), red_look);
    ASSERT_EQ(view.set_look(look).reason(), "");
    const std::string square = write_square(folder);
    EXPECT_EQ(pixel_at(shot_of(view, square, {0, 0}), 8, 8), (Pixel{255, 0, 0, 255}));

    view.look().set("tint", orvex::vec4(0.0f, 1.0f, 0.0f, 1.0f));
    folder.write("red.glsl", tint_look);
    EXPECT_TRUE(view.look().reload_if_changed());
    EXPECT_EQ(pixel_at(shot_of(view, square, {0, 0}), 8, 8), (Pixel{0, 255, 0, 255}));
}

TEST_P(LookTest, that_doesnt_compile_is_told_and_not_taken) {
    View view(16, 16, options());
    ASSERT_EQ(view.set_look(Look::from_text(red_look)).reason(), "");
    const Outcome outcome = view.set_look(Look::from_text(broken_look, "toon"));
    EXPECT_EQ(outcome.reason().substr(0, 8), "toon:5: ") << outcome.reason();
    EXPECT_EQ(view.set_look(Look::named("neon")).reason(),
              "there is no look 'neon'; there are " + own_looks);
    EXPECT_EQ(pixel_at(shot_of(view, write_square(folder), {0, 0}), 8, 8), (Pixel{255, 0, 0, 255}));
}

/// A small square behind a large one.
TEST_P(LookTest, of_wires_shows_no_edge_behind_a_face) {
    const std::string front = "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nf 1 2 3\nf 1 3 4\n";
    const std::string back = "v -.3 -.6 -1\nv .6 -.6 -1\nv .6 .6 -1\nf 5 6 7\n";
    View view(64, 64, options());
    ASSERT_EQ(view.set_look(Look::named("wire")).reason(), "");
    const auto camera = flat_camera(64, 64);
    const auto shot = [&](const std::string& text) {
        orvex::kit::Model model(folder.write("m.obj", text));
        view.begin(*camera);
        view.add(model);
        view.end();
        return picture_of(view);
    };
    const Shot one = shot(front);
    EXPECT_EQ(shot(front + back), one);
    EXPECT_EQ(pixel_at(one, 40, 48), (Pixel{43, 48, 56, 255}));
    EXPECT_GT(pixel_at(one, 32, 31)[0], 100); // the diagonal
    // Of models too, whatever their order.
    orvex::kit::Model behind(
        folder.write("b.obj", "v -.3 -.6 -1\nv .6 -.6 -1\nv .6 .6 -1\nf 1 2 3\n"));
    orvex::kit::Model before(folder.write("f.obj", front));
    view.begin(*camera);
    view.add(behind);
    view.add(before);
    view.end();
    EXPECT_EQ(picture_of(view), one);
}

TEST_P(LookTest, of_wires_stands_out_from_the_background) {
    for (const int n : {1, 2}) {
        View view(64, 64, options(n));
        ASSERT_EQ(view.set_look(Look::named("wire")).reason(), "");
        view.set_background({1.0f, 1.0f, 1.0f, 1.0f});
        const Shot dark = shot_of(view, write_square(folder), {0, 0});
        EXPECT_EQ(pixel_at(dark, 40, 48), (Pixel{255, 255, 255, 255})) << n;
        EXPECT_LT(pixel_at(dark, 32, 31)[0], 150) << n;
        view.set_background({0.0f, 0.0f, 0.0f, 0.0f});
        const Shot clear = shot_of(view, write_square(folder), {0, 0});
        EXPECT_EQ(pixel_at(clear, 40, 48), (Pixel{0, 0, 0, 0})) << n;
    }
}

/// The means of n by n pixels, to the nearest.
Shot averaged(const Shot& fine, int n) {
    Shot result;
    EXPECT_EQ(result.create(fine.width() / n, fine.height() / n, 4, Sample::u8).reason(), "");
    for (int y = 0; y < result.height(); ++y)
        for (int x = 0; x < result.width() * 4; ++x) {
            int sum = 0;
            for (int i = 0; i < n * n; ++i)
                sum += fine.row<std::uint8_t>(y * n + i / n)[(x / 4 * n + i % n) * 4 + x % 4];
            result.row<std::uint8_t>(y)[x] = static_cast<std::uint8_t>((sum + n * n / 2) / (n * n));
        }
    return result;
}

TEST_P(LookTest, is_supersampled_by_the_mean_of_the_pixels) {
    const std::string box = write_box(folder);
    for (const int n : {2, 3, 8}) {
        View view(40, 30, options(n));
        ASSERT_TRUE(view) << view.reason();
        EXPECT_EQ(view.supersampling(), n);
        EXPECT_EQ(view.samples(), 0);
        const Shot smooth = shot_of(view, box);
        ViewOptions plain = options();
        plain.samples = 0;
        View fine(40 * n, 30 * n, plain);
        EXPECT_EQ(fine.supersampling(), 1);
        EXPECT_EQ(smooth, averaged(shot_of(fine, box), n)) << n;
    }
}

TEST_P(LookTest, is_supersampled_in_another_size_with_alpha) {
    View view(8, 8, options(2));
    ASSERT_EQ(view.resize(20, 10).reason(), "");
    view.set_background({1.0f, 0.0f, 0.0f, 0.2f});
    const Shot shot = empty_frame(view);
    EXPECT_EQ(shot.width(), 20);
    EXPECT_EQ(pixel_at(shot, 19, 0), (Pixel{255, 0, 0, 51}));
    EXPECT_EQ(pixel_at(shot, 0, 9), (Pixel{255, 0, 0, 51}));
}

TEST_P(LookTest, is_supersampled_as_far_as_there_is_room) {
    EXPECT_EQ(View(8, 8, options(0)).supersampling(), 1);
    EXPECT_EQ(View(8, 8, options(100)).supersampling(), 8);
    const View vast(8192, 4, options(8));
    EXPECT_FALSE(vast);
    EXPECT_EQ(vast.failure(), ViewFailure::samples);
    EXPECT_EQ(vast.reason(), "no target of 65536x32 for a supersampling of 8 (1 needs none)");
    View view(8, 8, options(8));
    EXPECT_EQ(view.resize(8192, 4).reason(),
              "a view of 8192x4 pixels: the driver has no surface of that size");
}

/// As a host's own drawing may leave them.
void leave_states() {
    for (const GLenum state : {GL_BLEND, GL_CULL_FACE, GL_DEPTH_TEST, GL_STENCIL_TEST})
        glEnable(state);
    glBlendFunc(GL_ONE, GL_ONE);
    glCullFace(GL_FRONT_AND_BACK);
    glDepthFunc(GL_NEVER);
    glStencilFunc(GL_NEVER, 0, 255);
    glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glPolygonOffset(1.0f, 2.0f);
}

TEST_P(LookTest, comes_out_of_samples_whatever_states_a_host_has_left) {
    const std::string box = write_box(folder);
    for (const int n : {1, 2}) {
        View view(40, 30, options(n));
        orvex::kit::Model model(box);
        const Shot usual = shot_of(view, box);
        view.begin(see_all(model.extent(), {}, {40, 30}));
        view.add(model);
        leave_states();
        view.renderer()->get_opengl_error();
        GlStates before = states_here(GetParam() == Path::gl2);
        view.end();
        GlStates after = states_here(GetParam() == Path::gl2);
        // The target is no longer drawn into, and a pixel is one again.
        for (const char* const moves :
             {"GL_DRAW_FRAMEBUFFER_BINDING", "GL_READ_FRAMEBUFFER_BINDING", "GL_DRAW_BUFFER",
              "GL_READ_BUFFER", "GL_VIEWPORT", "GL_LINE_WIDTH", "GL_MULTISAMPLE"}) {
            before.erase(moves);
            after.erase(moves);
        }
        EXPECT_EQ(after, before) << n;
        EXPECT_EQ(picture_of(view), usual) << n;
    }
}

TEST_P(LookTest, of_a_view_that_is_empty_is_none) {
    View view;
    EXPECT_EQ(view.set_look(Look()).reason(), "the view is empty");
    EXPECT_FALSE(view.look());
    EXPECT_EQ(view.supersampling(), 1);
}

TEST(Look, is_one_of_those_that_have_names) {
    std::string names;
    for (const std::string& name : Look::names()) {
        names += (names.empty() ? "" : ", ") + name;
        const Look look = Look::named(name);
        EXPECT_TRUE(look) << look.reason();
        EXPECT_EQ(look.name(), name);
        EXPECT_EQ(look.path(), "");
        EXPECT_EQ(look.has_lines(), name == "wire");
        EXPECT_NE(look.text().find("[Pixel_Shader]"), std::string::npos);
    }
    EXPECT_EQ(Look().name(), "lit");
    EXPECT_EQ(names, own_looks);
}

TEST(Look, is_empty_without_a_file) {
    const TempDir folder;
    const Look look = Look::from_file(folder.file("none.glsl"));
    EXPECT_FALSE(look);
    EXPECT_EQ(look.reason(), folder.file("none.glsl") + ": No such file or directory");
    EXPECT_EQ(look.text(), "");
}

} // namespace

} // namespace orvex_test
