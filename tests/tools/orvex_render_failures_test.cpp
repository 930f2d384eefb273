// Every way in which the program fails, with its message and its exit code.

#include <filesystem>
#include <regex>

#include <gtest/gtest.h>

#include "program_run.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::content_of;
using orvex_test::TempDir;

/// No driver to be found.
const std::vector<std::string> without_driver = {"__EGL_VENDOR_LIBRARY_FILENAMES=/none",
                                                 "__EGL_VENDOR_LIBRARY_DIRS=/none"};

bool is_empty(const TempDir& folder) {
    return std::filesystem::is_empty(folder.path());
}

TEST(OrvexRender, ends_with_2_when_its_command_line_is_wrong) {
    const TempDir folder;
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{},
                                               {"--sise", "4x4", sample()},
                                               {"a", "b"},
                                               {"-s", "4", sample()},
                                               {"-qv", sample()},
                                               {"-o"}}) {
        const Outcome outcome = run_render(folder.path(), words);
        EXPECT_EQ(outcome.code, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(outcome.errors.starts_with("orvex-render: ")) << outcome.errors;
        EXPECT_TRUE(has(outcome.errors, "\nTry 'orvex-render --help'.\n")) << outcome.errors;
    }
    EXPECT_EQ(run_render(folder.path(), {}).errors,
              "orvex-render: no model given\nTry 'orvex-render --help'.\n");
    EXPECT_TRUE(is_empty(folder));
}

#define NO_LOADER ": no loader can read it as a model (" ORVEX_TOOL_FORMATS ")"

/// Without what the importer adds to the formats, where there is one.
std::string without_importer(const std::string& errors) {
    return std::regex_replace(errors, std::regex(", FBX, DAE, BLEND and [0-9]+ more\\)"), ")");
}

TEST(OrvexRender, tells_why_a_model_cant_be_read) {
    const TempDir models;
    const TempDir folder;
    struct Row {
        std::string model;
        const char* reason;
    };
    const std::string cut_3ds("\x4d\x4d\x00\x01\x00\x00 junk", 11);
    for (const Row& row : {
             Row{models.file("none.obj"), ": No such file or directory"},
             Row{models.path(), ": is a folder"},
             Row{models.write("empty.obj", ""), ": the file is empty"},
             Row{models.write("points.obj", "v 0 0 0\nv 1 0 0\n# v 2 0 0"),
                 NO_LOADER ": line 3: the file ends with 2 vertices and no face"},
#ifdef ORVEX_WITH_LIB3DS
             Row{models.write("notes.txt", "Buy milk.\nCall home.\n"),
                 NO_LOADER ": no 3DS file: byte 0 begins another format; no OBJ file: none of its "
                           "2 lines begins with a v"},
             Row{models.write("cut.3ds", cut_3ds), NO_LOADER ": byte 11: the file is cut off"},
#else
             Row{models.write("notes.txt", "Buy milk.\nCall home.\n"),
                 NO_LOADER ": no OBJ file: none of its 2 lines begins with a v"},
             Row{models.write("cut.3ds", cut_3ds),
                 NO_LOADER ": no OBJ file: none of its 1 lines begins with a v"},
#endif
         })
        for (const char* option : {"--wireframe", "--info"}) {
            const Outcome outcome = run_render(folder.path(), {"-q", option, row.model});
            EXPECT_EQ(outcome.code, 1) << row.model;
            EXPECT_EQ(without_importer(outcome.errors),
                      "orvex-render: " + row.model + row.reason + "\n");
            EXPECT_EQ(outcome.out, "");
        }
    EXPECT_TRUE(is_empty(folder));
}

TEST(OrvexRender, tells_why_a_picture_cant_be_written_before_it_begins) {
    const TempDir folder;
    const Outcome outcome = run_render(folder.path(), {sample(), "-o", "none/a.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "orvex-render: can't write none/a.jpg: No such file or directory\n");
}

TEST(OrvexRender, tells_that_a_picture_of_a_turn_cant_be_written) {
    const TempDir folder;
    std::filesystem::create_directory(folder.file("a-002.jpg"));
    const Outcome outcome = run_render(folder.path(), {sample(), "-t3", "-s16x16", "-o", "a.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "orvex-render: can't write a-002.jpg: Is a directory\n"))
        << outcome.errors;
    EXPECT_TRUE(std::filesystem::exists(folder.file("a-001.jpg")));
    EXPECT_FALSE(std::filesystem::exists(folder.file("a-003.jpg")));
}

TEST(OrvexRender, tells_that_there_is_no_context) {
    const TempDir folder;
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{sample()}, {"--gl"}}) {
        const Outcome outcome = run_render(folder.path(), words, without_driver);
        EXPECT_EQ(outcome.code, 1);
        EXPECT_TRUE(has(outcome.errors, "orvex-render: no OpenGL context: no driver is found; the "
                                        "package libgl1-mesa-dri has one\n"))
            << outcome.errors;
    }
    EXPECT_TRUE(is_empty(folder));
}

TEST(OrvexRender, tells_which_path_an_old_driver_draws) {
    const TempDir folder;
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{sample(), "-s16x16", "-oa.jpg"}, {"--gl"}}) {
        const Outcome outcome = run_render(folder.path(), words, {"MESA_GL_VERSION_OVERRIDE=2.1"});
        EXPECT_EQ(outcome.code, 1);
        EXPECT_TRUE(has(outcome.errors, "orvex-render: no OpenGL 3.2 context: the driver offers "
                                        "less; --path gl2 draws with OpenGL 2.1\n"))
            << outcome.errors;
    }
    EXPECT_TRUE(is_empty(folder));
    const Outcome drawn = run_render(folder.path(), {sample(), "-s16x16", "-oa.jpg", "--path=gl2"},
                                     {"MESA_GL_VERSION_OVERRIDE=2.1"});
    EXPECT_EQ(drawn.code, 0) << drawn.errors;
}

// Sanitizers need more address space than any driver.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(OrvexRender, tells_that_a_driver_finds_no_memory) {
    const TempDir folder;
    const Outcome outcome = run_render_limited(folder.path(), "ulimit -v 120000", {sample()});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "orvex-render: no OpenGL context: there isn't enough memory "
                                    "for a driver\n"))
        << outcome.errors;
    EXPECT_TRUE(is_empty(folder));
}
#endif

TEST(OrvexRender, tells_that_it_reads_no_standard_input) {
    const TempDir folder;
    const Outcome outcome = run_render(folder.path(), {"-"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "orvex-render: a model is read from a file, not from standard input: "
                              "name one\n");
}

TEST(OrvexRender, tells_of_a_model_without_a_context) {
    const TempDir folder;
    const Outcome outcome = run_render(folder.path(), {"-i", sample()}, without_driver);
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_TRUE(has(outcome.out, "meshes: 12\n"));
}

TEST(OrvexRender, tells_what_is_wrong_with_a_font) {
    const TempDir folder;
    folder.write("empty.xml", "");
    folder.write("junk.xml", "no XML");
    folder.write("bare.xml", "<font><common base=\"1\"/></font>");
    folder.write("sheetless.xml",
                 "<font><common lineHeight=\"9\" scaleW=\"8\" scaleH=\"8\"/><pages><page "
                 "id=\"0\" file=\"none.png\"/></pages></font>");
    struct Row {
        const char* font;
        const char* reason;
    };
    for (const Row& row :
         {Row{"none.xml", "none.xml: No such file or directory"},
          Row{"empty.xml", "empty.xml: the file is empty"},
          Row{"junk.xml", "junk.xml: no BMFont XML with a line height"},
          Row{"bare.xml", "bare.xml: no BMFont XML with a line height"},
          Row{"sheetless.xml", "sheetless.xml: its sheet none.png can't be read as a picture"}}) {
        const Outcome outcome = run_render(
            folder.path(), {sample(), "-s16x16", "-x", "text", "--font", row.font, "-oa.jpg"});
        EXPECT_EQ(outcome.code, 1) << row.font;
        EXPECT_EQ(outcome.errors, std::string("orvex-render: ") + row.reason + "\n");
    }
}

TEST(OrvexRender, tells_that_a_text_has_too_many_lines) {
    const TempDir folder;
    std::string text;
    for (int i = 0; i < 300; ++i)
        text += "line\n";
    const Outcome outcome = run_render(folder.path(), {sample(), "-s16x16", "-x", text, "-oa.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "orvex-render: the text has too many lines\n");
}

TEST(OrvexRender, tells_that_it_cant_print) {
    const TempDir folder;
    for (const char* words : {"--help", "--version", "--gl"}) {
        const std::string command = std::string("exec '") + ORVEX_RENDER + "' " + words +
                                    " >/dev/full 2>'" + folder.file("errors") + "'";
        EXPECT_NE(std::system(command.c_str()), 0) << words;
        EXPECT_EQ(content_of(folder.file("errors")),
                  "orvex-render: can't write to standard output\n");
    }
}

TEST(OrvexRender, draws_on_without_its_textures) {
    const TempDir folder;
    folder.write("m.mtl", "newmtl red\nKd 1 0 0\nmap_Kd none.png\n");
    folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl red\nf 1 2 3\n");
    const Outcome outcome = run_render(folder.path(), {"m.obj", "-s16x16"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "orvex-render: warning: texture none.png: it isn't there\n"
                              "wrote m.jpg\n");
    EXPECT_EQ(run_render(folder.path(), {"m.obj", "-s16x16", "-q"}).errors, "");
}

TEST(OrvexRender, tells_a_picture_that_cant_be_decoded_from_a_missing_one) {
    const TempDir folder;
    folder.write("bad.png", "no picture");
    folder.write("m.mtl", "newmtl red\nKd 1 0 0\nmap_Kd bad.png\n");
    folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl red\nf 1 2 3\n");
    const Outcome outcome = run_render(folder.path(), {"m.obj", "-s16x16"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(outcome.errors.starts_with("orvex-render: warning: texture bad.png: it is no "
                                           "picture that can be decoded"))
        << outcome.errors;
    EXPECT_TRUE(has(run_render(folder.path(), {"-i", "m.obj"}).out,
                    "\ntextures missing: 1\n  bad.png: it is no picture that can be decoded"));
}

TEST(OrvexRender, tells_why_nothing_of_a_model_can_be_seen) {
    struct Row {
        const char* text;
        const char* reason;
    };
    for (const Row& row : {
             Row{"v 1 1 1\nv 1 1 1\nv 1 1 1\nf 1 2 3\n",
                 "none of its faces has an area; all 3 of its vertices lie at one point"},
             Row{"v nan 0 0\nv 1 nan 0\nv 0 1 nan\nf 1 2 3\n",
                 "none of its faces has an area; 3 of its 3 vertices have coordinates that are no "
                 "finite numbers"},
             Row{"v 1e30 0 0\nv 0 1e30 0\nv 0 0 1e30\nf 1 2 3\n",
                 "its coordinates are too large to draw with, beyond 1e15"},
             Row{"v 1e-30 0 0\nv 0 1e-30 0\nv 0 0 1e-30\nf 1 2 3\n",
                 "it is too small to draw, less than 1e-15 across"},
             Row{"v 0 0 0\nv 1 0 0\nv 0 1 0\nf 7 8 9\n",
                 "none of its faces has an area; all 3 of its vertices lie at one point, the "
                 "origin, as they do where faces name vertices that the file doesn't have, or "
                 "count them backwards"},
         })
        for (const char* words : {"-q", "-t2"}) {
            const TempDir folder;
            folder.write("m.obj", row.text);
            const Outcome outcome = run_render(folder.path(), {"m.obj", "-s32x32", words});
            EXPECT_EQ(outcome.code, 1) << row.text;
            EXPECT_TRUE(has(outcome.errors, std::string("orvex-render: nothing of m.obj can be "
                                                        "seen: ") +
                                                row.reason + "\n"))
                << outcome.errors;
            EXPECT_FALSE(has(outcome.errors, "wrote")) << outcome.errors;
        }
}

TEST(OrvexRender, tells_that_a_model_lies_outside_of_what_is_seen) {
    const TempDir folder;
    folder.write("m.mtl", "newmtl gone\nd 0\n");
    folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl gone\nf 1 2 3\n");
    folder.write("apart.obj", "v -5 0 0\nv -5 1 0\nv -4.9 0 0\nv 5 0 0\nv 5 1 0\nv 4.9 0 0\n"
                              "f 1 2 3\nf 4 5 6\n");
    const auto errors_of = [&folder](const std::vector<std::string>& words) {
        const Outcome outcome = run_render(folder.path(), words);
        EXPECT_EQ(outcome.code, 1);
        return outcome.errors;
    };
    EXPECT_TRUE(has(
        errors_of({"m.obj", "-s32x32"}),
        "can be seen: its faces are seen edge-on, are transparent, or look like the background\n"));
    EXPECT_TRUE(has(errors_of({"apart.obj", "-s32x32", "-z20"}),
                    "can be seen: all of its vertices lie outside the picture: a smaller --zoom or "
                    "a larger --distance helps\n"));
}

TEST(OrvexRender, names_the_option_that_needs_no_samples) {
    const TempDir folder;
    for (const char* const path : {"--path=gl2", "--path=gl3"}) {
        const Outcome outcome =
            run_render(folder.path(), {sample(), "-s16384x16384", "-m64", "-oa.jpg", path});
        EXPECT_EQ(outcome.code, 1);
        EXPECT_TRUE(has_match(outcome.errors, "^[^\r\n]* samples per pixel "
                                              "\\(--samples 0 needs none\\): [^\r\n]*\n$"))
            << outcome.errors;
    }
}

TEST(OrvexRender, warns_of_what_its_font_has_no_glyph_for) {
    const TempDir folder;
    const Outcome fine = run_render(
        folder.path(), {sample(), "-s64x64", "-x", "Tür Ω Ж", "--text-size=4", "-oa.jpg", "-q"});
    EXPECT_EQ(fine.code, 0);
    EXPECT_EQ(fine.errors, "");
    const Outcome outcome = run_render(
        folder.path(), {sample(), "-s64x64", "-x", "漢\\n字漢", "--text-size=4", "-oa.jpg", "-t2"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(has(outcome.errors,
                    "orvex-render: warning: the font has no glyph for U+6F22, U+5B57\nwrote "))
        << outcome.errors << "and once";
}

TEST(OrvexRender, warns_of_a_text_that_runs_out_of_the_picture) {
    const TempDir folder;
    const std::string warning = "orvex-render: warning: the text runs out of the picture\n";
    const std::string wide = "A line that is too wide for so small a picture";
    for (const std::string& text : {wide, std::string("a\nb\nc\nd")}) {
        const Outcome outcome =
            run_render(folder.path(), {sample(), "-s64x64", "-x", text, "-oa.jpg", "-t2"});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_TRUE(has(outcome.errors, warning)) << outcome.errors;
    }
    const Outcome narrow = run_render(folder.path(), {sample(), "-s64x64", "-x", "abc", "-oa.jpg"});
    EXPECT_FALSE(has(narrow.errors, warning)) << narrow.errors;
}

TEST(OrvexRender, makes_do_with_the_samples_that_there_are) {
    const TempDir folder;
    const Outcome outcome = run_render(folder.path(), {sample(), "-s16x16", "-m64", "-oa.jpg"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(
        has(outcome.errors, "orvex-render: warning: 64 samples per pixel aren't offered here; "))
        << outcome.errors;
}

} // namespace

} // namespace orvex_test
