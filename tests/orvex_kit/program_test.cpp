#include "orvex_kit/program.h"

#include <filesystem>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include <orvex/geometry/shapes/mesh_plane.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/math/mat4.h>
#include <orvex/math/vec2.h>
#include <orvex/math/vec3.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/private/engine_parts.h"
#include "orvex_kit/private/program_source.h"
#include "tests/support/temp_dir.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

/// Fills the view with what a pixel stage makes.
std::string filling(const std::string& pixel_stage) {
    return "[Vertex_Shader]\nvoid main() { gl_Position = vec4(POSITION.xz, 0.0, 1.0); }\n"
           "[Pixel_Shader]\n" +
           pixel_stage;
}

const std::string red_stage = "void main() { COLOR = vec4(1.0, 0.0, 0.0, 1.0); }\n";
const std::string tint_stage = "uniform vec4 tint;\nvoid main() { COLOR = tint; }\n";
const std::string broken_stage = "void main()\n{\n    COLOR = nothing;\n}\n";

class ProgramTest : public testing::TestWithParam<Path> {
protected:
    Engine engine;
    View view{8, 8, options()};
    TempDir folder;

    static ViewOptions options() {
        ViewOptions result;
        result.path = GetParam();
        return result;
    }

    /// What the middle of the view is filled with.
    Pixel shown_by(const Program& program) { return shown_in(view, program); }
    static Pixel shown_in(View& view, const Program& program) {
        const auto plane = make<orvex::MeshPlane>();
        plane->build(nullptr);
        plane->set_opengl_2_3_rendering_states(view.path() == Path::gl2, nullptr);
        const auto camera = flat_camera(8, 8);
        view.begin(*camera);
        if (program) {
            program.gpu()->bind(view.renderer());
            plane->render(view.renderer(), nullptr);
            program.gpu()->unbind(view.renderer());
        }
        view.end();
        return pixel_at(picture_of(view), 4, 4);
    }
};
INSTANTIATE_TEST_SUITE_P(on, ProgramTest, testing::Values(Path::gl3, Path::gl2), path_name);

constexpr Pixel red{255, 0, 0, 255}, green{0, 255, 0, 255}, grey{43, 48, 56, 255};

TEST_P(ProgramTest, of_two_paths_draws_on_each) {
    const Program program = Program::from_text(view, filling(red_stage));
    ASSERT_TRUE(program) << program.reason();
    EXPECT_EQ(program.reason(), "");
    EXPECT_EQ(shown_by(program), red);
}

TEST_P(ProgramTest, with_a_version_is_taken_as_it_stands) {
    const std::string text =
        GetParam() == Path::gl3
            ? "[Vertex_Shader]\n#version 150\nin vec4 orvex_Position;\n"
              "void main() { gl_Position = vec4(orvex_Position.xz, 0.0, 1.0); }\n"
              "[Pixel_Shader]\n#version 150\nout vec4 color;\n"
              "void main() { color = vec4(0.0, 1.0, 0.0, 1.0); }\n"
            : "[Vertex_Shader]\n#version 120\n"
              "void main() { gl_Position = vec4(gl_Vertex.xz, 0.0, 1.0); }\n"
              "[Pixel_Shader]\n#version 120\n"
              "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }\n";
    const Program program = Program::from_text(view, text);
    ASSERT_TRUE(program) << program.reason();
    EXPECT_EQ(shown_by(program), green);
}

TEST_P(ProgramTest, tells_the_line_that_the_compiler_stops_at) {
    const Program program = Program::from_text(view, filling(broken_stage), "toon");
    EXPECT_FALSE(program);
    EXPECT_EQ(program.gpu(), nullptr);
    // The pixel stage's third line.
    EXPECT_EQ(program.reason().substr(0, 8), "toon:6: ") << program.reason();
    EXPECT_NE(program.reason().find("nothing"), std::string::npos) << program.reason();
    EXPECT_EQ(shown_by(program), grey);
}

TEST_P(ProgramTest, tells_the_line_of_a_vertex_stage) {
    const std::string text =
        "// A comment.\n\n[Vertex_Shader]\nvoid main()\n{\n    nonsense();\n}\n"
        "[Pixel_Shader]\n" +
        red_stage;
    const std::string path = folder.write("look.glsl", text);
    const Program program = Program::from_file(view, path);
    EXPECT_FALSE(program);
    EXPECT_EQ(program.reason().substr(0, 13), "look.glsl:6: ") << program.reason();
}

TEST_P(ProgramTest, tells_that_a_text_has_no_stages) {
    const Program program = Program::from_text(view, "void main() {}", "toon");
    EXPECT_FALSE(program);
    EXPECT_EQ(program.reason(),
              "toon: no [Vertex_Shader] with a [Pixel_Shader], and no [Compute_Shader]");
}

TEST_P(ProgramTest, tells_that_stages_dont_fit) {
    const Program program = Program::from_text(
        view,
        "[Vertex_Shader]\nOUT vec2 way;\n"
        "void main() { way = vec2(1.0); gl_Position = vec4(POSITION.xz, 0.0, 1.0); }\n"
        "[Pixel_Shader]\nIN vec3 way;\nvoid main() { COLOR = vec4(way, 1.0); }\n",
        "toon");
    EXPECT_FALSE(program);
    EXPECT_EQ(program.reason(), "toon: its stages don't link; the log tells why");
}

TEST_P(ProgramTest, tells_that_a_file_cant_be_read) {
    const Program program = Program::from_file(view, folder.file("none.glsl"));
    EXPECT_FALSE(program);
    EXPECT_EQ(program.reason(), folder.file("none.glsl") + ": No such file or directory");
}

TEST_P(ProgramTest, takes_every_kind_of_value) {
    Program program = Program::from_text(view, filling(R"(
uniform int one;
uniform float half_;
uniform float third;
uniform vec2 pair;
uniform vec3 three;
uniform vec4 four;
uniform mat4 matrix;
void main()
{
    bool right = one == 1 && half_ == 0.5 && third == 0.25 && pair == vec2(1.0, 2.0) &&
                 three == vec3(1.0, 2.0, 3.0) && four == vec4(1.0, 2.0, 3.0, 4.0) &&
                 matrix[3] == vec4(5.0, 6.0, 7.0, 1.0);
    COLOR = right ? vec4(0.0, 1.0, 0.0, 1.0) : vec4(1.0, 0.0, 0.0, 1.0);
}
)"));
    ASSERT_TRUE(program) << program.reason();
    EXPECT_EQ(shown_by(program), red);
    program.set("one", 1);
    program.set("half_", 0.5f);
    program.set("third", 0.25);
    orvex::vec2 pair;
    pair.x = 1.0f;
    pair.y = 2.0f;
    program.set("pair", pair);
    program.set("three", orvex::vec3(1.0f, 2.0f, 3.0f));
    program.set("four", orvex::vec4(1.0f, 2.0f, 3.0f, 4.0f));
    orvex::mat4 matrix;
    matrix.identity();
    matrix.ptr()[12] = 5.0f;
    matrix.ptr()[13] = 6.0f;
    matrix.ptr()[14] = 7.0f;
    program.set("matrix", matrix);
    program.set("nobody", 3);
    EXPECT_EQ(shown_by(program), green);
}

TEST_P(ProgramTest, takes_a_changed_file_with_its_values) {
    const std::string path = folder.write("a.glsl", filling(red_stage));
    Program program = Program::from_file(view, path);
    ASSERT_TRUE(program) << program.reason();
    program.set("tint", orvex::vec4(0.0f, 1.0f, 0.0f, 1.0f));
    EXPECT_FALSE(program.reload_if_changed());
    EXPECT_EQ(shown_by(program), red);
    folder.write("a.glsl", filling(tint_stage));
    EXPECT_TRUE(program.reload_if_changed());
    EXPECT_EQ(program.reason(), "");
    EXPECT_EQ(shown_by(program), green);
    EXPECT_FALSE(program.reload_if_changed());
}

TEST_P(ProgramTest, stays_as_it_was_after_a_broken_edit) {
    const std::string path = folder.write("a.glsl", filling(red_stage));
    Program program = Program::from_file(view, path);
    folder.write("a.glsl", filling(broken_stage));
    EXPECT_FALSE(program.reload_if_changed());
    ASSERT_TRUE(program);
    EXPECT_EQ(program.reason().substr(0, 10), "a.glsl:6: ") << program.reason();
    EXPECT_EQ(shown_by(program), red);
    // Not looked at again before the next edit, and told until then.
    EXPECT_FALSE(program.reload_if_changed());
    EXPECT_NE(program.reason(), "");

    std::filesystem::remove(path);
    EXPECT_FALSE(program.reload_if_changed());
    EXPECT_EQ(program.reason(), path + ": No such file or directory");
    EXPECT_EQ(shown_by(program), red);

    folder.write("a.glsl", filling(tint_stage));
    EXPECT_TRUE(program.reload_if_changed());
    EXPECT_EQ(program.reason(), "");
}

TEST_P(ProgramTest, comes_to_life_with_its_file) {
    const std::string path = folder.file("late.glsl");
    Program program = Program::from_file(view, path);
    EXPECT_FALSE(program);
    folder.write("late.glsl", filling(red_stage));
    EXPECT_TRUE(program.reload_if_changed());
    EXPECT_EQ(shown_by(program), red);
}

TEST_P(ProgramTest, from_a_text_is_never_reloaded) {
    Program program = Program::from_text(view, filling(red_stage));
    EXPECT_FALSE(program.reload_if_changed());
}

TEST_P(ProgramTest, is_empty_when_its_view_has_ended) {
    Program program = Program::from_file(view, folder.write("a.glsl", filling(red_stage)));
    ASSERT_TRUE(program);
    view = View();
    EXPECT_FALSE(program);
    EXPECT_EQ(program.gpu(), nullptr);
    folder.write("a.glsl", filling(tint_stage));
    EXPECT_FALSE(program.reload_if_changed());
    program.set("tint", 1.0f);
}

TEST_P(ProgramTest, leaves_another_views_frame_alone) {
    View other(8, 8, options());
    other.set_background({0.0f, 1.0f, 0.0f, 1.0f});
    const auto camera = flat_camera(8, 8);
    other.begin(*camera);
    {
        const Program program = Program::from_text(view, filling(red_stage));
        EXPECT_TRUE(program) << program.reason();
        EXPECT_EQ(current_renderer(), other.renderer());
    }
    EXPECT_EQ(current_renderer(), other.renderer());
    other.renderer()->clear_color_buffer(1.0f, 0.0f, 0.0f, 1.0f);
    other.end();
    EXPECT_EQ(pixel_at(picture_of(other), 4, 4), red);
    EXPECT_EQ(shown_by(Program()), grey);
}

TEST_P(ProgramTest, moves) {
    Program first = Program::from_text(view, filling(red_stage));
    Program second = std::move(first);
    EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): it is empty, as promised.
    EXPECT_EQ(shown_by(second), red);
    second = Program();
    EXPECT_FALSE(second);
}

TEST(Program, of_an_empty_view_tells_so) {
    View view;
    const Program program = Program::from_text(view, filling(red_stage), "toon");
    EXPECT_FALSE(program);
    EXPECT_EQ(program.reason(), "toon: its view is empty");
}

TEST_P(ProgramTest, tells_that_another_thread_has_its_context) {
    {
        const TakenContext taken(view);
        const Program program = Program::from_text(view, filling(red_stage), "toon");
        EXPECT_FALSE(program);
        EXPECT_EQ(program.reason(), "toon: the context of its view can't be made current");
    }
    EXPECT_EQ(shown_by(Program::from_text(view, filling(red_stage))), red);
}

TEST(Program, does_nothing_when_empty) {
    Program program;
    EXPECT_FALSE(program);
    EXPECT_EQ(program.reason(), "");
    EXPECT_EQ(program.gpu(), nullptr);
    EXPECT_FALSE(program.reload_if_changed());
    program.set("tint", 1);
}

TEST(Program, may_outlive_the_engine) {
    auto engine = std::make_unique<Engine>();
    View view(8, 8);
    const Program program = Program::from_text(view, filling(red_stage));
    ASSERT_TRUE(program) << program.reason();
    engine.reset();
    EXPECT_FALSE(program);
}

TEST(ProgramSource, puts_nothing_before_stages_that_name_their_own_inputs) {
    const std::string geometry = "[Geometry_Shader]\nlayout(points) in;\n";
    for (const Path path : {Path::gl3, Path::gl2}) {
        const ProgramSource source(geometry, path);
        EXPECT_EQ(source.text(), geometry);
        EXPECT_EQ(source.told("\nGeometry shader error: 0:2(1): no\n", "t"), "t:2: no");
    }
}

TEST(ProgramSource, understands_what_compilers_write) {
    const ProgramSource source("x\n[Vertex_Shader]\na\n[Pixel_Shader]\nb\n#version 330\n",
                               Path::gl2);
    struct Row {
        const char* message;
        const char* told;
    };
    for (const Row& row : {
             Row{"\nPixel shader error: 0:3(12): error: no b\n", "t:6: error: no b"},
             Row{"\nPixel shader error: 0(3) : error C1: no b\n", "t:6: error C1: no b"},
             Row{"\nPixel shader error: ERROR: 0:3: no b\n", "t:6: no b"},
             Row{"\nPixel shader error: no more memory\n", "t: no more memory"},
             Row{"\nPixel shader error: 0:1(1): x\n0:2(1): y\n\n", "t:4: x\nt:5: y"},
             // What stands in the head is on no line of the text.
             Row{"\nVertex shader error: 0:2(10): error: no 1.20\n", "t: error: no 1.20"},
             Row{"", ""},
         })
        EXPECT_EQ(source.told(row.message, "t"), row.told);
}

} // namespace

} // namespace orvex_test
