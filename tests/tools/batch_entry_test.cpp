#include "batch/entry_reader.h"

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using batch::Entry;
using batch::EntryReader;

class BatchEntryTest : public testing::Test {
protected:
    Options defaults;
    EntryReader reader{defaults, "out"};

    Entry read_well(const std::string& text) {
        Entry entry;
        EXPECT_EQ(reader.read(text, 7, entry), "") << text;
        return entry;
    }
    std::string refusal_of(const std::string& text) {
        Entry entry;
        return reader.read(text, 7, entry);
    }
};

TEST_F(BatchEntryTest, a_model_alone_has_its_path_as_id_and_name) {
    const Entry entry = read_well(R"({"model": "shop/a b.obj"})");
    EXPECT_EQ(entry.line, 7u);
    EXPECT_EQ(entry.id, "shop/a b.obj");
    EXPECT_EQ(entry.options.model, "shop/a b.obj");
    EXPECT_EQ(entry.output, "shop_a_b.obj.png");
    EXPECT_EQ(entry.options.output, "out/shop_a_b.obj.png");
    EXPECT_EQ(entry.text, R"({"model": "shop/a b.obj"})");
}

TEST_F(BatchEntryTest, a_key_does_what_its_option_does) {
    const Entry entry = read_well(
        R"({"model":"a.obj","id":"x","output":"./p//q.exr","size":"320x200","azimuth":30,)"
        R"("elevation":-4.5,"layers":["color","depth"],"wireframe":true,"background":"red",)"
        R"("normals":"flat","samples":2,"path":"gl2","up":"-z","distance":"2","zoom":1.5,)"
        R"("look":"plain","loader":"soup"})");
    Options same;
    ASSERT_EQ(
        read_options(
            {"a.obj",        "--output",    "out/p/q.exr", "--size",   "320x200",     "--azimuth",
             "30",           "--elevation", "-4.5",        "--layers", "color,depth", "--wireframe",
             "--background", "red",         "--normals",   "flat",     "--samples",   "2",
             "--path",       "gl2",         "--up",        "-z",       "--distance",  "2",
             "--zoom",       "1.5",         "--look",      "plain",    "--loader",    "soup"},
            same),
        "");
    const Options& options = entry.options;
    EXPECT_EQ(entry.id, "x");
    EXPECT_EQ(entry.output, "p/q.exr");
    EXPECT_EQ(options.output, same.output);
    EXPECT_EQ(options.size.width, same.size.width);
    EXPECT_EQ(options.size.height, same.size.height);
    EXPECT_EQ(options.azimuth, same.azimuth);
    EXPECT_EQ(options.elevation, same.elevation);
    EXPECT_EQ(options.layers, same.layers);
    EXPECT_EQ(options.wireframe, same.wireframe);
    EXPECT_EQ(options.background.r, same.background.r);
    EXPECT_EQ(options.normals, same.normals);
    EXPECT_EQ(options.samples, same.samples);
    EXPECT_EQ(options.gl3, same.gl3);
    EXPECT_EQ(options.up, same.up);
    EXPECT_EQ(options.distance, same.distance);
    EXPECT_EQ(options.zoom, same.zoom);
    EXPECT_EQ(options.look, same.look);
    EXPECT_EQ(options.loader, same.loader);
}

TEST_F(BatchEntryTest, options_of_the_command_line_are_defaults_for_each_entry_anew) {
    defaults.azimuth = 90.0f;
    defaults.wireframe = true;
    EntryReader with_defaults(defaults, "");
    Entry entry;
    ASSERT_EQ(with_defaults.read(R"({"model":"a","azimuth":1,"wireframe":false})", 1, entry), "");
    EXPECT_EQ(entry.options.azimuth, 1.0f);
    EXPECT_FALSE(entry.options.wireframe);
    ASSERT_EQ(with_defaults.read(R"({"model":"b"})", 2, entry), "");
    EXPECT_EQ(entry.options.azimuth, 90.0f);
    EXPECT_TRUE(entry.options.wireframe);
    EXPECT_EQ(entry.options.output, "b.png");
}

TEST_F(BatchEntryTest, what_is_no_entry_is_refused_with_a_sentence) {
    struct Row {
        const char* text;
        const char* refusal;
    };
    for (const Row& row : {
             Row{"", "the line ends within an object"},
             Row{R"({"model":"a")", "the line ends within an object"},
             Row{R"({"model":"a"} 1)", "column 15: '1' is no JSON here"},
             Row{R"({model:1})", "column 2: 'm' is no JSON here"},
             Row{R"({"model":"a","zoom":1e999})", "the number that ends at column 25 is too large"},
             Row{R"([])", R"(an object is wanted, such as {"model": "a.obj"})"},
             Row{R"("a.obj")", R"(an object is wanted, such as {"model": "a.obj"})"},
             Row{R"({})", "no model given"},
             Row{R"({"model":""})", "'model' is the path of a model, a text"},
             Row{R"({"model":1})", "'model' is the path of a model, a text"},
             Row{R"({"model":"a\u0000b"})", "'model' has a zero byte"},
             Row{R"({"model":"a","model":"b"})", "'model' stands twice"},
             Row{R"({"model":"a","id":""})", "'id' is a text that isn't empty"},
             Row{R"({"model":"a","id":3})", "'id' is a text that isn't empty"},
             Row{R"({"model":"a","sise":"8x6"})", R"(unknown key "sise"; did you mean 'size'?)"},
             Row{R"({"model":"a","colour of it":1})", R"(unknown key "colour of it")"},
             Row{R"({"model":"a","size":"8"})",
                 "--size can't be '8': WxH in pixels, each from 1 to 16384, is wanted"},
             Row{R"({"model":"a","size":true})",
                 "'size' is a text or a number, as --size takes it: WxH"},
             Row{R"({"model":"a","size":[8,6]})",
                 "'size' is a text or a number, as --size takes it: WxH"},
             Row{R"({"model":"a","layers":{"depth":1}})",
                 "'layers' is a text, a list of texts or a number, as --layers takes it: NAMES"},
             Row{R"({"model":"a","layers":["depth",["normal"]]})",
                 "'layers' is a text, a list of texts or a number, as --layers takes it: NAMES"},
             Row{R"({"model":"a","wireframe":1})", "'wireframe' is true or false"},
             Row{R"({"model":"a","workers":2})",
                 "--workers is about the whole program, not about one model"},
             Row{R"({"model":"a","batch":"b"})",
                 "--batch is about the whole program, not about one model"},
             Row{R"({"model":"a","info":true})",
                 "--info is about the whole program, not about one model"},
             Row{R"({"model":"a","plugin":"p.so"})",
                 "--plugin is about the whole program, not about one model"},
             Row{R"({"model":"a","layers":"color,position"})",
                 "PNG holds no positions: .npy and .exr do"},
             Row{R"({"model":"a","turntable":3,"film":4})",
                 "--turntable, --film and --track exclude each other"},
         })
        EXPECT_EQ(refusal_of(row.text), row.refusal) << row.text;
}

TEST_F(BatchEntryTest, an_output_stays_in_its_folder) {
    for (const char* output :
         {"/a.png", "../a.png", "b/../../a.png", "b/..", "b/../a.png", "a/", ".", "./", "//"})
        EXPECT_EQ(refusal_of(R"({"model":"a","output":")" + std::string(output) + R"("})"),
                  "'output' leaves the output folder: \"" + std::string(output) + '"');
    EntryReader here(defaults, "");
    Entry entry;
    EXPECT_EQ(here.read(R"({"model":"a","output":"-","format":"png"})", 1, entry),
              "'output' is a file: - isn't one here");
    EXPECT_EQ(read_well(R"({"model":"a","output":"..a.png"})").options.output, "out/..a.png");
}

TEST_F(BatchEntryTest, its_name_has_the_suffix_of_what_is_written) {
    EXPECT_EQ(read_well(R"({"model":"a","format":"npy"})").output, "a.npy");
    EXPECT_EQ(read_well(R"({"model":"a","film":3})").output, "a.y4m");
    EXPECT_EQ(read_well(R"({"model":"a","film":3,"format":"raw"})").output, "a.raw");
}

TEST(BatchName, is_safe_whatever_the_id) {
    EXPECT_EQ(batch::safe_name_of("a/b:c*d e"), "a_b_c_d_e");
    EXPECT_EQ(batch::safe_name_of("../x"), "_._x");
    EXPECT_EQ(batch::safe_name_of("."), "_");
    EXPECT_EQ(batch::safe_name_of("-a+b=c@d,e.f"), "-a+b=c@d,e.f");
    EXPECT_EQ(batch::safe_name_of("\xc3\xa4\n"), "\xc3\xa4_");
    const std::string a = batch::safe_name_of(std::string(300, 'a'));
    const std::string b = batch::safe_name_of(std::string(301, 'a'));
    EXPECT_EQ(a.size(), 200u);
    EXPECT_EQ(b.size(), 200u);
    EXPECT_NE(a, b);
}

TEST_F(BatchEntryTest, tells_the_files_that_it_writes) {
    const auto names = [](const Entry& entry) {
        std::string text;
        for (const batch::OutputFile& file : output_files_of(entry))
            text += file.name + "=" + file.kind + " ";
        return text;
    };
    EXPECT_EQ(names(read_well(R"({"model":"a"})")), "a.png=picture ");
    EXPECT_EQ(names(read_well(R"({"model":"a","turntable":2})")),
              "a-001.png=picture a-002.png=picture ");
    EXPECT_EQ(names(read_well(R"({"model":"a","film":2})")), "a.y4m=film ");
    EXPECT_EQ(names(read_well(R"({"model":"a","output":"d/a.npy","layers":"color,depth"})")),
              "d/a.npy=color d/a.depth.npy=depth d/a.json=about ");
    EXPECT_EQ(names(read_well(R"({"model":"a","output":"a.exr","layers":"color,depth"})")),
              "a.exr=layers a.json=about ");
    const Entry entry = read_well(R"({"model":"a","turntable":2})");
    EXPECT_EQ(path_of(entry, "a-001.png"), "out/a-001.png");
}

TEST_F(BatchEntryTest, a_line_of_it_makes_the_same_entry_in_another_process) {
    const Entry entry =
        read_well(R"({"model":"\u00e4.obj","output":"b/c.png","azimuth":12.25,"text":"a\nb"})");
    const std::string line = line_of(entry);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EntryReader other(defaults, "out");
    const std::optional<Entry> same = other.entry_of_line(line);
    ASSERT_TRUE(same);
    EXPECT_EQ(same->line, 7u);
    EXPECT_EQ(same->id, entry.id);
    EXPECT_EQ(same->output, entry.output);
    EXPECT_EQ(same->options.model, entry.options.model);
    EXPECT_EQ(same->options.output, entry.options.output);
    EXPECT_EQ(same->options.azimuth, 12.25f);
    EXPECT_EQ(same->options.text, "a\nb");
    EXPECT_EQ(same->text, entry.text);
}

TEST_F(BatchEntryTest, a_path_of_any_bytes_reaches_the_other_process) {
    Entry entry;
    ASSERT_EQ(reader.read_path("x/\xff\"\n.obj", 3, entry), "");
    EXPECT_EQ(entry.id, "x/\xef\xbf\xbd\"\n.obj");
    const std::optional<Entry> same = reader.entry_of_line(line_of(entry));
    ASSERT_TRUE(same);
    EXPECT_EQ(same->options.model, "x/\xff\"\n.obj");
    EXPECT_EQ(same->id, entry.id);
    EXPECT_EQ(same->output, entry.output);
}

TEST_F(BatchEntryTest, what_is_no_line_of_an_entry_makes_none) {
    const std::string line = line_of(read_well(R"({"model":"a"})"));
    for (std::size_t length = 0; length + 1 < line.size(); ++length)
        EXPECT_FALSE(reader.entry_of_line(line.substr(0, length))) << length;
    EXPECT_TRUE(reader.entry_of_line(line.substr(0, line.size() - 1)));
    EXPECT_FALSE(reader.entry_of_line(R"({"line":1,"model":"6g","entry":{"model":"a"}})"));
    EXPECT_FALSE(reader.entry_of_line(R"({"line":1,"model":"612","entry":{"model":"a"}})"));
}

} // namespace

} // namespace orvex_test
