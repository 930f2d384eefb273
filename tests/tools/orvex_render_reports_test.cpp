// What the program prints instead of a picture, and what it says beside one.

#include <filesystem>

#include <gtest/gtest.h>

#include "program_run.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::TempDir;

TEST(OrvexRenderInfo, tells_what_a_model_holds) {
    const TempDir folder;
    folder.write("m.mtl", "newmtl red\nKd 1 0 0\nd 0.5\nmap_Kd none.png\n"
                          "newmtl blue\nKd 0 0 1\nillum 2\nKs 0.1 0.2 0.3\nNs 8\n");
    folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\n"
                          "g left\nusemtl red\nf 1 2 3\ng right\nusemtl blue\nf 2 4 3\nf 1 2 4\n");
    const Outcome outcome = run_render(folder.path(), {"--info", "m.obj"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    for (const char* line :
         {"model: m.obj\n", "\nmeshes: 2\n", "  left: vertices 3, faces 1\n",
          "  right: vertices 4, faces 2\n", "\nvertices: 7\n", "\nfaces: 3\n", "\npoints: 0\n",
          "\nmaterials: 2\n", "  red: diffuse 1 0 0, ", "opacity 0.5, textures 0\n",
          "  blue: diffuse 0 0 1, specular 0.1 0.2 0.3, ", "\ntextures found: 0\n",
          "\ntextures missing: 1\n  none.png: it isn't there\n"})
        EXPECT_TRUE(has(outcome.out, line)) << line << "in\n" << outcome.out;
}

TEST(OrvexRenderInfo, tells_the_sizes_of_textures_and_each_once) {
    const Outcome outcome = run_render("/", {"-i", sample()});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(has(outcome.out, "\nvertices: 6695\nfaces: 9082\npoints: 0\nmaterials: 9\n"))
        << outcome.out;
    EXPECT_TRUE(has(outcome.out, "\ntextures found: 4\n  " ORVEX_EXAMPLE_DATA
                                 "/lighthouse_water.png: 256x256\n"))
        << outcome.out;
    EXPECT_TRUE(has(outcome.out, "\ntextures missing: 0\n"));
}

#ifdef ORVEX_WITH_LIB3DS
TEST(OrvexRenderInfo, tells_of_3ds_files) {
    const Outcome outcome = run_render("/usr/share/glmark2/models", {"-i", "cat.3ds"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(has(outcome.out, "vertices: 7340\nfaces: 14348\npoints: 0\nmaterials: 1\n"))
        << outcome.out;
}
#endif

TEST(OrvexRenderInfo, tells_of_points_and_lines) {
    const TempDir folder;
    folder.write("m.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nl 1 2 3\np 1\n");
    const Outcome outcome = run_render(folder.path(), {"-i", "m.obj"});
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_TRUE(has(outcome.out, "\nfaces: 0\npoints: 1\nlines: 2\nmaterials: 0\n")) << outcome.out;
    EXPECT_FALSE(has(outcome.out, "note:")) << outcome.out;
    EXPECT_TRUE(has(run_render(folder.path(), {"-i", "--json", "m.obj"}).out,
                    "\n  \"points\": 1,\n  \"lines\": 2,\n"));
}

TEST(OrvexRenderInfo, notes_what_is_odd) {
    const TempDir folder;
    folder.write("m.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n");
    EXPECT_TRUE(has(run_render(folder.path(), {"-i", "m.obj"}).out,
                    "\nnote: none of its faces has an area\n"));
}

TEST(OrvexRenderInfo, tells_it_as_json) {
    const TempDir folder;
    std::filesystem::copy(ORVEX_EXAMPLE_DATA "/lighthouse_wood.png", folder.file("wood.png"));
    folder.write("m.mtl", "newmtl r\"e\\d\nKd 1 0 0.1\nd 0.5\nmap_Kd none.png\nmap_Kd WOOD.png\n"
                          "newmtl \xff\xc3\xa4\nKd nan 0 1\n");
    folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1.5 0\nv 1 1 -2e-7\nv nan 0 0\n"
                          "g left\nusemtl r\"e\\d\nf 1 2 3\n"
                          "g right\nusemtl \xff\xc3\xa4\nf 2 4 3\nf 1 2 5\n");
    // The engine's own loader keeps numbers that are none, which JSON has no word for.
    const Outcome outcome = run_render(
        folder.path(), {"--info", "--json", "--loader", "orvex_plugin_core_obj", "m.obj"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.out, R"({
  "model": "m.obj",
  "loader": "orvex_plugin_core_obj",
  "vertices": 9,
  "faces": 3,
  "points": 0,
  "lines": 0,
  "bounds": {
    "min": [0, 0, -2e-07],
    "max": [1, 1.5, 0]
  },
  "up": "y",
  "meshes": [
    {
      "name": "left",
      "vertices": 3,
      "faces": 1,
      "bounds": {
        "min": [0, 0, 0],
        "max": [1, 1.5, 0]
      }
    },
    {
      "name": "right",
      "vertices": 6,
      "faces": 2,
      "bounds": {
        "min": [0, 0, -2e-07],
        "max": [1, 1.5, 0]
      }
    }
  ],
  "materials": [
    {
      "name": "r\"e\\d",
      "ambient": [0.4, 0.4, 0.4, 1],
      "diffuse": [1, 0, 0.1, 1],
      "specular": [0.2, 0.2, 0.2, 1],
      "shininess": 3.072,
      "opacity": 0.5,
      "textures": [
        "none.png",
        "WOOD.png"
      ]
    },
    {
      "name": "\ufffdä",
      "ambient": [0.4, 0.4, 0.4, 1],
      "diffuse": [null, 0, 1, 1],
      "specular": [0.2, 0.2, 0.2, 1],
      "shininess": 3.072,
      "opacity": 1,
      "textures": []
    }
  ],
  "textures": {
    "found": [
      {
        "name": "WOOD.png",
        "path": "wood.png",
        "width": 256,
        "height": 256
      }
    ],
    "missing": [
      {
        "name": "none.png",
        "path": "none.png",
        "reason": "it isn't there"
      }
    ]
  },
  "notes": [
    "1 of its 9 vertices have coordinates that are no finite numbers"
  ]
}
)");
    folder.write("check.py", "import json, sys\njson.load(sys.stdin)\n");
    EXPECT_EQ(std::system(("cd '" + folder.path() +
                           "' && '" ORVEX_RENDER "' --info --json m.obj | python3 check.py")
                              .c_str()),
              0);
}

TEST(OrvexRenderInfo, tells_as_json_what_has_no_bounds) {
    const TempDir folder;
    folder.write("m.obj", "v nan 0 0\nf 1 1 1\n");
    const Outcome outcome = run_render(folder.path(), {"--info", "--json", "m.obj"});
    EXPECT_TRUE(has(outcome.out, "\n  \"bounds\": null,\n")) << outcome.out;
}

TEST(OrvexRenderGl, tells_what_the_context_offers) {
    for (const char* path : {"--path=gl2", "--path=gl3"}) {
        const Outcome outcome = run_render("/", {"--gl", path});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.errors, "");
        const std::string lines("^device: .+\ndriver: .+\nOpenGL: .+\nshading language: .+\n"
                                "largest texture: [1-9][0-9]+\ntexture units: [1-9][0-9]*\n"
                                "samples per pixel: [0-9]+\ncolour attachments: [1-9][0-9]*\n"
                                "vertex attributes: [1-9][0-9]*\nanisotropic filtering: [0-9.]+\n"
                                "instancing: (yes|no)\n(compute work group: [0-9x]+\n)?"
                                "extensions: [1-9][0-9]*\n$");
        EXPECT_TRUE(has_match(outcome.out, lines)) << outcome.out;
    }
}

TEST(OrvexRenderGl, lists_the_extensions_when_verbose) {
    const Outcome outcome = run_render("/", {"--gl", "-v"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(has_match(outcome.out, "\nextensions: [1-9][0-9]*\n  GL_")) << outcome.out;
    EXPECT_TRUE(has(outcome.errors, "plugin_core_opengl")) << outcome.errors;
}

TEST(OrvexRenderDevices, are_listed_with_the_numbers_by_which_they_are_chosen) {
    const Outcome outcome = run_render("/", {"--list-devices"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(has_match(outcome.out, "(^|\n)[0-9]+: [^\n]*, software")) << outcome.out;
}

TEST(OrvexRenderMessages, are_as_many_as_asked_for) {
    const TempDir folder;
    const std::vector<std::string> words = {sample(), "-s16x16", "-oa.jpg"};
    const auto errors_with = [&](const char* option) {
        std::vector<std::string> all = words;
        all.push_back(option);
        const Outcome outcome = run_render(folder.path(), all);
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.out, "");
        return outcome.errors;
    };
    EXPECT_EQ(errors_with("-m0"), "wrote a.jpg\n");
    EXPECT_EQ(errors_with("--quiet"), "");
    const std::string verbose = errors_with("--verbose");
    EXPECT_TRUE(has(verbose, "wrote a.jpg\n"));
    EXPECT_TRUE(has(verbose, "orvex stopped ok."));
}

TEST(OrvexRenderMessages, leave_no_log_file) {
    const TempDir folder;
    run_render(folder.path(), {sample(), "-s16x16", "-oa.jpg"});
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().filename(), "a.jpg");
        ++files;
    }
    EXPECT_EQ(files, 1);
}

TEST(OrvexRenderProgress, is_shown_on_a_terminal) {
    const TempDir folder;
    const Outcome outcome =
        run_render_on_terminal(folder.path(), {sample(), "-t3", "-s16x16", "-oa.jpg"});
    EXPECT_EQ(outcome.code, 0);
    const std::string bar("^\r\\[\\.+\\]  0/3\x1b\\[K"
                          "\r\\[#+\\.+\\]  1/3  [0-9:]+ left\x1b\\[K"
                          "\r\\[#+\\.+\\]  2/3  [0-9:]+ left\x1b\\[K"
                          "\r\\[#+\\]  3/3  [0-9:]+\x1b\\[K\r\n"
                          "wrote 3 pictures, a-001\\.jpg to a-003\\.jpg\r\n$");
    EXPECT_TRUE(has_match(outcome.errors, bar)) << outcome.errors;
}

TEST(OrvexRenderProgress, is_not_shown_elsewhere_nor_when_quiet_nor_for_one_picture) {
    const TempDir folder;
    EXPECT_EQ(run_render(folder.path(), {sample(), "-t2", "-s16x16", "-oa.jpg"}).errors,
              "wrote 2 pictures, a-001.jpg to a-002.jpg\n");
    EXPECT_EQ(
        run_render_on_terminal(folder.path(), {sample(), "-qt2", "-s16x16", "-oa.jpg"}).errors, "");
    EXPECT_EQ(run_render_on_terminal(folder.path(), {sample(), "-s16x16", "-oa.jpg"}).errors,
              "wrote a.jpg\r\n");
}

} // namespace

} // namespace orvex_test
