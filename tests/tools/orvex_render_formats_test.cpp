// Pictures in every format, films, comparison with a reference, and what reads and draws.

#include <array>
#include <filesystem>

#include <gtest/gtest.h>

#include <orvex_kit/picture_file.h>

#include "program_run.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using Words = std::vector<std::string>;

/// Runs the program on the sample with a small picture.
Outcome run_small(const TempDir& folder, Words words) {
    words.insert(words.begin(), {sample(), "-s32x24"});
    return run_render(folder.path(), words);
}

Picture picture_in(const TempDir& folder, const std::string& name) {
    Picture picture;
    EXPECT_EQ(read_picture(folder.file(name), picture).reason(), "");
    return picture;
}

bool exists(const TempDir& folder, const std::string& name) {
    return std::filesystem::exists(folder.file(name));
}

/// The bytes of a chunk's field in a PNG, whose header lies at fixed places.
int color_type_of(const std::string& png) {
    return png.size() > 25 ? png[25] : -1;
}

TEST(OrvexRenderFormat, follows_the_suffix_or_what_is_asked_for) {
    struct Row {
        Words words;
        const char* file;
        const char* begin;
    };
    const TempDir folder;
    for (const Row& row :
         {Row{{"-oa.png"}, "a.png", "\x89PNG"}, Row{{"-oa.jpg"}, "a.jpg", "\xff\xd8\xff"},
          Row{{"-oa.npy"}, "a.npy", "\x93NUMPY"}, Row{{"-oa.y4m"}, "a.y4m", "YUV4MPEG2 W32 H24 "},
          Row{{"-oa.dat", "--format=png"}, "a.dat", "\x89PNG"},
          Row{{"--format=png"}, "lighthouse.png", "\x89PNG"}}) {
        const Outcome outcome = run_small(folder, row.words);
        EXPECT_EQ(outcome.code, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, std::string("wrote ") + row.file + "\n");
        EXPECT_EQ(content_of(folder.file(row.file)).rfind(row.begin, 0), 0u) << row.file;
    }
}

TEST(OrvexRenderFormat, keeps_the_picture_whatever_it_is) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa.png"}).code, 0);
    ASSERT_EQ(run_small(folder, {"-oa.raw"}).code, 0);
    const Picture png = picture_in(folder, "a.png");
    const std::string raw = content_of(folder.file("a.raw"));
    ASSERT_EQ(raw.size(), png.size_bytes());
    EXPECT_EQ(raw, std::string(reinterpret_cast<const char*>(png.data()), png.size_bytes()));
}

TEST(OrvexRenderFormat, has_alpha_where_the_background_is_transparent) {
    constexpr int rgb = 2;
    constexpr int rgba = 6;
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa.png"}).code, 0);
    EXPECT_EQ(color_type_of(content_of(folder.file("a.png"))), rgb);
    ASSERT_EQ(run_small(folder, {"-oa.png", "-btransparent"}).code, 0);
    EXPECT_EQ(color_type_of(content_of(folder.file("a.png"))), rgba);
    ASSERT_EQ(run_small(folder, {"-oa.raw", "-btransparent"}).code, 0);
    const std::string raw = content_of(folder.file("a.raw"));
    ASSERT_EQ(raw.size(), 32u * 24 * 4);
    EXPECT_EQ(raw[3], 0);
    EXPECT_EQ(raw[(12 * 32 + 16) * 4 + 3], '\xff');
}

TEST(OrvexRenderFormat, of_standard_output_gets_the_picture_alone) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa.png"}).code, 0);
    const Outcome outcome = run_small(folder, {"-o-", "--format=png"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "wrote standard output\n");
    EXPECT_EQ(outcome.out, content_of(folder.file("a.png")));
}

TEST(OrvexRenderFilm, holds_the_pictures_of_a_turn) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"--film=3", "-oa.raw"}).code, 0);
    std::string all;
    ASSERT_EQ(run_small(folder, {"--turntable=3", "--format=raw"}).code, 0);
    for (const char* name : {"lighthouse-001.raw", "lighthouse-002.raw", "lighthouse-003.raw"})
        all += content_of(folder.file(name));
    EXPECT_EQ(content_of(folder.file("a.raw")), all);
}

TEST(OrvexRenderFilm, goes_to_standard_output_for_encoders) {
    const TempDir folder;
    const Outcome outcome = run_small(folder, {"--film=2", "-o-"});
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "wrote standard output, a film of 2 pictures\n");
    const std::size_t head = outcome.out.find('\n') + 1;
    EXPECT_EQ(outcome.out.rfind("YUV4MPEG2 W32 H24 F25:1", 0), 0u);
    EXPECT_EQ(outcome.out.size(), head + 2 * (6 + 32 * 24 * 3 / 2));
}

TEST(OrvexRenderFilm, follows_a_track) {
    const TempDir folder;
    folder.write("way.json", R"({"keys": [
        {"time": 1, "eye": [4, 4, 14], "target": [0, 2, 0]},
        {"time": 1.1, "eye": [-4, 4, 14], "target": [0, 2, 0]}]})");
    const Outcome outcome = run_small(folder, {"--track=way.json", "-oa.raw"});
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "wrote a.raw, a film of 3 pictures\n");
    const std::string film = content_of(folder.file("a.raw"));
    constexpr std::size_t size = 32 * 24 * 3;
    ASSERT_EQ(film.size(), 3 * size);
    EXPECT_NE(film.substr(0, size), film.substr(2 * size));
}

TEST(OrvexRenderFilm, tells_what_is_wrong_with_its_track) {
    const TempDir folder;
    folder.write("way.json", R"({"keys": [{"time": "now"}]})");
    const Outcome outcome = run_small(folder, {"--track=way.json"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "orvex-render: way.json: ")) << outcome.errors;
    EXPECT_TRUE(has(outcome.errors, "keys[0]")) << outcome.errors;
}

/// Two tiles, of which one goes from the origin to x = 4 within the seconds from 1 to 3.
void write_moving_model(const TempDir& folder) {
    const std::array<float, 17> numbers = {0,
                                           0,
                                           0,
                                           1,
                                           0,
                                           0,
                                           0,
                                           1,
                                           0,
                                           /* times */ 1,
                                           3,
                                           /* places */ 0,
                                           0,
                                           0,
                                           4,
                                           0,
                                           0};
    folder.write("a.bin", {reinterpret_cast<const char*>(numbers.data()), sizeof numbers});
    folder.write("a.gltf", R"({"asset": {"version": "2.0"}, "scenes": [{"nodes": [0, 1]}],
        "nodes": [{"mesh": 0}, {"mesh": 0, "translation": [2, 3, 0]}],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
        "buffers": [{"uri": "a.bin", "byteLength": 68}],
        "bufferViews": [{"buffer": 0, "byteLength": 68}],
        "accessors": [
            {"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
             "min": [0, 0, 0], "max": [1, 1, 0]},
            {"bufferView": 0, "byteOffset": 36, "componentType": 5126, "count": 2,
             "type": "SCALAR", "min": [1], "max": [3]},
            {"bufferView": 0, "byteOffset": 44, "componentType": 5126, "count": 2, "type": "VEC3"}],
        "animations": [{
            "channels": [{"sampler": 0, "target": {"node": 0, "path": "translation"}}],
            "samplers": [{"input": 1, "output": 2}]}]})");
}

TEST(OrvexRenderTime, chooses_the_moment_of_a_model_that_moves) {
    const TempDir folder;
    write_moving_model(folder);
    const auto picture_at = [&](const Words& more) {
        Words words{"a.gltf", "-qs32x24", "-oa.raw"};
        words.insert(words.end(), more.begin(), more.end());
        const Outcome outcome = run_render(folder.path(), words);
        EXPECT_EQ(outcome.code, 0) << outcome.errors;
        return content_of(folder.file("a.raw"));
    };
    const std::string begin = picture_at({"--time=1"});
    EXPECT_EQ(picture_at({}), begin); // it rests where it begins
    const std::string end = picture_at({"--time=3"});
    EXPECT_NE(end, begin);
    const std::string between = picture_at({"--time=2"});
    EXPECT_NE(between, begin);
    EXPECT_NE(between, end);

    // An entry's moment stands above that of the command line.
    folder.write("m", R"({"model": "a.gltf", "output": "b.raw", "time": 2})"
                      "\n"
                      R"({"model": "a.gltf", "output": "c.raw"})"
                      "\n");
    ASSERT_EQ(run_render(folder.path(), {"--batch=m", "-qs32x24", "--time=3"}).code, 0);
    EXPECT_EQ(content_of(folder.file("b.raw")), between);
    EXPECT_EQ(content_of(folder.file("c.raw")), end);

    const auto facts_at = [&](const std::string& time) {
        return run_render(folder.path(), {"a.gltf", "--info", "--json", "--time=" + time}).out;
    };
    EXPECT_NE(facts_at("1"), facts_at("3"));
}

TEST(OrvexRenderLayers, have_a_file_each_as_arrays) {
    const TempDir folder;
    const Outcome outcome =
        run_small(folder, {"-ox.npy", "--layers=color,depth,normal,position,object,material,face"});
    ASSERT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "wrote x.npy in 7 layers, told of by x.json\n");
    struct Row {
        const char* file;
        const char* kind;
    };
    for (const Row& row :
         {Row{"x.npy", "'descr': '|u1', 'fortran_order': False, 'shape': (24, 32, 4)"},
          Row{"x.depth.npy", "'descr': '<f4', 'fortran_order': False, 'shape': (24, 32)"},
          Row{"x.normal.npy", "'descr': '<f4', 'fortran_order': False, 'shape': (24, 32, 3)"},
          Row{"x.position.npy", "'descr': '<f4', 'fortran_order': False, 'shape': (24, 32, 3)"},
          Row{"x.object.npy", "'descr': '<i4', 'fortran_order': False, 'shape': (24, 32)"},
          Row{"x.material.npy", "'descr': '<i4', 'fortran_order': False, 'shape': (24, 32)"},
          Row{"x.face.npy", "'descr': '<i4', 'fortran_order': False, 'shape': (24, 32)"}})
        EXPECT_TRUE(has(content_of(folder.file(row.file)), row.kind)) << row.file;
}

TEST(OrvexRenderLayers, are_told_of_beside_them) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-ox.png", "--layers=depth,object"}).code, 0);
    const std::string text = content_of(folder.file("x.json"));
    for (const char* part :
         {"\"size\": [32, 24]", "\"intrinsics\": [", "\"pose\": [",
          "\"near\": ", "\"far\": ", "\"depth\": \"x.depth.png\"", "\"object\": \"x.object.png\"",
          "\"depth_scale\": ", "\"objects\": [", "\"materials\": [", "\"stone\""})
        EXPECT_TRUE(has(text, part)) << part << " in " << text;
    EXPECT_FALSE(exists(folder, "x.png"));
}

TEST(OrvexRenderLayers, that_a_png_cant_hold_are_refused) {
    const TempDir folder;
    const Outcome outcome = run_small(folder, {"-ox.png", "--layers=color,position"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_FALSE(exists(folder, "x.png"));
    EXPECT_EQ(outcome.errors, "orvex-render: PNG holds no positions: .npy and .exr do\n");
    EXPECT_FALSE(exists(folder, "x.json"));
}

TEST(OrvexRenderLayers, are_drawn_by_either_path) {
    const TempDir folder;
    for (const char* path : {"--path=gl2", "--path=gl3"}) {
        const Outcome outcome = run_small(folder, {"-ox.npy", "--layers=object", path});
        EXPECT_EQ(outcome.code, 0) << path << outcome.errors;
    }
}

TEST(OrvexRenderLayers, of_nothing_are_an_error) {
    const TempDir folder;
    folder.write("far.obj", "v 0 0 0\nv 0 0 0\nv 0 0 0\nf 1 2 3\n");
    const Outcome outcome =
        run_render(folder.path(), {"far.obj", "-s8x8", "-ox.npy", "--layers=depth"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "nothing of far.obj can be seen: ")) << outcome.errors;
}

TEST(OrvexRenderFilm, has_an_end_whatever_its_track) {
    const TempDir folder;
    folder.write("way.json", R"({"keys": [
        {"time": 0, "eye": [4, 4, 14], "target": [0, 2, 0]},
        {"time": 1e15, "eye": [-4, 4, 14], "target": [0, 2, 0]}]})");
    const Outcome outcome = run_small(folder, {"--track=way.json"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors,
              "orvex-render: way.json: takes longer than a film of 100000 pictures\n");
}

TEST(OrvexRenderReference, is_met_by_the_same_picture) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa.png"}).code, 0);
    const Outcome outcome = run_small(folder, {"-ob.png", "--ref=a.png"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "wrote b.png\n");
    EXPECT_FALSE(exists(folder, "b-difference.png"));
}

TEST(OrvexRenderReference, shows_where_another_picture_differs) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa.png", "-b#102030"}).code, 0);
    const Outcome outcome = run_small(folder, {"-ob.png", "-b#112030", "--ref=a.png"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "orvex-render: not as a.png: ")) << outcome.errors;
    EXPECT_TRUE(has(outcome.errors, "; b-difference.png shows where\n")) << outcome.errors;
    const Picture shown = picture_in(folder, "b-difference.png");
    EXPECT_EQ(shown.width(), 32);
    EXPECT_GT(shown.row<std::uint8_t>(0)[0], 0);
    EXPECT_EQ(shown.row<std::uint8_t>(12)[3 * 16], 0);
    EXPECT_EQ(run_small(folder, {"-ob.png", "-b#112030", "--ref=a.png", "--tolerance=1"}).code, 0);
}

TEST(OrvexRenderReference, of_another_size_differs) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa.png"}).code, 0);
    const Outcome outcome =
        run_render(folder.path(), {sample(), "-s24x32", "-ob.png", "--ref=a.png"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "orvex-render: not as a.png: ")) << outcome.errors;
    EXPECT_FALSE(exists(folder, "b-difference.png"));
}

TEST(OrvexRenderReference, that_is_missing_ends_with_3) {
    const TempDir folder;
    folder.write("text.png", "no picture");
    for (const char* name : {"none.png", "text.png"}) {
        const Outcome outcome = run_small(folder, {"-ob.png", "--ref", name});
        EXPECT_EQ(outcome.code, 3);
        EXPECT_TRUE(has(outcome.errors, "orvex-render: no reference: ")) << outcome.errors;
        EXPECT_TRUE(has(outcome.errors, name)) << outcome.errors;
        EXPECT_FALSE(exists(folder, "b.png"));
    }
}

TEST(OrvexRenderReference, isnt_written_over) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa.png"}).code, 0);
    const Outcome outcome = run_small(folder, {"-oa.png", "--ref=a.png"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "orvex-render: can't write a.png: the picture is made from it\n");
}

TEST(OrvexRenderReference, isnt_written_over_by_its_difference) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-oa-difference.png", "-bred"}).code, 0);
    const std::string before = content_of(folder.file("a-difference.png"));
    const Outcome outcome = run_small(folder, {"-oa.png", "--ref=a-difference.png"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors,
              "orvex-render: can't write a-difference.png: the picture is made from it\n");
    EXPECT_EQ(content_of(folder.file("a-difference.png")), before);
}

TEST(OrvexRenderLook, comes_from_the_kit_or_from_a_file) {
    const TempDir folder;
    ASSERT_EQ(run_small(folder, {"-olit.png"}).code, 0);
    ASSERT_EQ(run_small(folder, {"-onormals.png", "--look=normals"}).code, 0);
    EXPECT_NE(picture_in(folder, "lit.png"), picture_in(folder, "normals.png"));
    folder.write("red.glsl",
                 "[Vertex_Shader]\nuniform mat4 orvex_ModelViewProjectionMatrix;\n"
                 "void main() { gl_Position = orvex_ModelViewProjectionMatrix * POSITION; }\n"
                 "[Pixel_Shader]\nvoid main() { COLOR = vec4(1, 0, 0, 1); }\n");
    const Outcome outcome = run_small(folder, {"-ored.png", "--look=red.glsl"});
    ASSERT_EQ(outcome.code, 0) << outcome.errors;
    const Picture red = picture_in(folder, "red.png");
    const std::uint8_t* const middle = red.row<std::uint8_t>(12) + 3 * 16;
    EXPECT_EQ(middle[0], 255);
    EXPECT_EQ(middle[1], 0);
}

TEST(OrvexRenderLook, that_doesnt_compile_tells_its_lines) {
    const TempDir folder;
    folder.write("bad.glsl", "[Vertex_Shader]\nvoid main() { gl_Position = oops; }\n"
                             "[Pixel_Shader]\nvoid main() { COLOR = vec4(1.0); }\n");
    const Outcome outcome = run_small(folder, {"--look=bad.glsl"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "bad.glsl:2: ")) << outcome.errors;
    EXPECT_EQ(run_small(folder, {"--look=none.glsl"}).code, 1);
}

TEST(OrvexRenderLoader, is_the_only_one_that_is_asked) {
    const TempDir folder;
    EXPECT_EQ(run_small(folder, {"-oa.png", "--loader=orvex_plugin_core_obj"}).code, 0);
    for (const Words& words : {Words{"-ob.png", "--loader=none"}, Words{"-i", "--loader=none"}}) {
        const Outcome outcome = run_small(folder, words);
        EXPECT_EQ(outcome.code, 1);
        EXPECT_TRUE(has(outcome.errors, "none")) << outcome.errors;
    }
    EXPECT_FALSE(exists(folder, "b.png"));
}

TEST(OrvexRenderPlugin, reads_its_models) {
    const TempDir folder;
    const Outcome outcome = run_render(folder.path(), {ORVEX_SOUP_DATA "/tent.soup", "-s32x24",
                                                       "-oa.png", "--plugin", ORVEX_SOUP_LOADER});
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_TRUE(exists(folder, "a.png"));
}

TEST(OrvexRenderPlugin, that_isnt_one_is_refused) {
    const TempDir folder;
    for (const Words& words :
         {Words{"-oa.png", "--plugin=none.so"}, Words{"-i", "--plugin=none.so"}}) {
        const Outcome outcome = run_small(folder, words);
        EXPECT_EQ(outcome.code, 1);
        EXPECT_TRUE(has(outcome.errors, "orvex-render: none.so: it can't be loaded as a plugin"))
            << outcome.errors;
    }
}

TEST(OrvexRenderDevice, stands_above_the_environment) {
    const TempDir folder;
    EXPECT_EQ(run_render(folder.path(), {sample(), "-s32x24", "--device=software"},
                         {"ORVEX_GL_DEVICE=99"})
                  .code,
              0);
    EXPECT_EQ(run_small(folder, {"--device=99"}).code, 1);
}

} // namespace

} // namespace orvex_test
