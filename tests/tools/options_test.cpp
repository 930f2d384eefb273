#include "options.h"

#include <gtest/gtest.h>

#include <orvex_kit/look.h>

namespace orvex_test {

namespace {

using namespace orvex::kit;
using Words = std::vector<std::string>;

Options read_well(const Words& words) {
    Options options;
    EXPECT_EQ(read_options(words, options), "");
    return options;
}

TEST(Options, need_a_model_alone) {
    const Options options = read_well({"m.obj"});
    EXPECT_EQ(options.model, "m.obj");
    EXPECT_EQ(options.size.width, 1280);
    EXPECT_EQ(options.size.height, 960);
    EXPECT_EQ(options.samples, 4);
    EXPECT_EQ(options.azimuth, 25.0f);
    EXPECT_EQ(options.elevation, 20.0f);
    EXPECT_EQ(options.up, UpAxis::automatic);
    EXPECT_TRUE(options.gl3);
    EXPECT_FALSE(options.wireframe || options.info || options.gl || options.quiet ||
                 options.verbose);
}

TEST(Options, are_read_by_their_names) {
    const Options options =
        read_well({"--output",    "a.jpeg",       "--size",       "8x6",         "--background",
                   "red",         "--wireframe",  "--normals",    "flat",        "--samples",
                   "2",           "--path",       "gl2",          "--azimuth",   "-90",
                   "--elevation", "45.5",         "--distance",   "2",           "--zoom",
                   "0.5",         "--up",         "-z",           "--turntable", "12",
                   "--text",      "hello",        "--text-place", "top",         "--text-size",
                   "30",          "--text-color", "#00f",         "--font",      "f.xml",
                   "--verbose",   "m.obj"});
    EXPECT_EQ(options.output, "a.jpeg");
    EXPECT_EQ(options.size.width, 8);
    EXPECT_EQ(options.size.height, 6);
    EXPECT_EQ(options.background.r, 1.0f);
    EXPECT_TRUE(options.wireframe);
    EXPECT_EQ(options.normals, Normals::flat);
    EXPECT_EQ(options.samples, 2);
    EXPECT_FALSE(options.gl3);
    EXPECT_EQ(options.azimuth, -90.0f);
    EXPECT_EQ(options.elevation, 45.5f);
    EXPECT_EQ(options.distance, 2.0f);
    EXPECT_EQ(options.zoom, 0.5f);
    EXPECT_EQ(options.up, UpAxis::minus_z);
    EXPECT_EQ(options.turntable, 12);
    EXPECT_EQ(options.text, "hello");
    EXPECT_EQ(options.text_place, "top");
    EXPECT_EQ(options.text_size, 30);
    EXPECT_EQ(options.text_color.b, 1.0f);
    EXPECT_EQ(options.font, "f.xml");
    EXPECT_TRUE(options.verbose);
}

TEST(Options, are_read_by_their_letters) {
    const Options options = read_well({"-oa.jpg", "-s8x6", "-bred", "-wq", "-nsmooth", "-m0", "-a1",
                                       "-e2", "-d3", "-z4", "-ux", "-t5", "-xhi", "m.obj"});
    EXPECT_EQ(options.output, "a.jpg");
    EXPECT_EQ(options.size.height, 6);
    EXPECT_TRUE(options.wireframe && options.quiet);
    EXPECT_EQ(options.normals, Normals::smooth);
    EXPECT_EQ(options.samples, 0);
    EXPECT_EQ(options.azimuth, 1.0f);
    EXPECT_EQ(options.elevation, 2.0f);
    EXPECT_EQ(options.distance, 3.0f);
    EXPECT_EQ(options.zoom, 4.0f);
    EXPECT_EQ(options.up, UpAxis::x);
    EXPECT_EQ(options.turntable, 5);
    EXPECT_EQ(options.text, "hi");
    EXPECT_TRUE(read_well({"-i", "m.obj"}).info);
    EXPECT_TRUE(read_well({"-h"}).help);
    EXPECT_TRUE(read_well({"-V"}).version);
    EXPECT_TRUE(read_well({"-v", "m.obj"}).verbose);
}

TEST(Options, of_help_and_version_need_no_model) {
    EXPECT_TRUE(read_well({"--help", "--quiet", "--verbose"}).help);
    EXPECT_TRUE(read_well({"--version"}).version);
    EXPECT_TRUE(read_well({"--gl"}).gl);
}

/// The names of the kit's looks, as they are told.
std::string looks() {
    std::string names;
    for (const std::string& name : Look::names())
        names += (names.empty() ? "" : ", ") + name;
    return names;
}

TEST(Options, tell_what_is_wrong) {
    struct Row {
        Words words;
        std::string mistake;
    };
    for (const Row& row : {
             Row{{}, "no model given"},
             Row{{"--quiet"}, "no model given"},
             Row{{""}, "unexpected argument '': a file is wanted"},
             Row{{"a", "b"}, "unexpected argument 'b': one model is wanted"},
             Row{{"-qv", "m"}, "--quiet and --verbose exclude each other"},
             Row{{"--info", "--gl", "m"}, "--info, --gl and --list-devices exclude each other"},
             Row{{"--gl", "m"}, "--gl takes no model"},
             Row{{"--list-devices", "m"}, "--list-devices takes no model"},
             Row{{"--list-devices", "--gl"}, "--info, --gl and --list-devices exclude each other"},
             Row{{"--info", "m", "-oa.jpg"},
                 "--info draws no picture: there is nothing for --output"},
             Row{{"-oa.gif", "m"},
                 "--output can't be 'a.gif' without a --format: a name that ends in png, jpg, npy, "
                 "exr, raw or y4m is wanted"},
             Row{{"-o.jpg", "m"},
                 "--output can't be '.jpg' without a --format: a name that ends in png, jpg, npy, "
                 "exr, raw or y4m is wanted"},
             Row{{"-o", "", "m"},
                 "--output can't be '': a file, or - for standard output, is wanted"},
             Row{{"--format=gif", "m"},
                 "--format can't be 'gif': png, jpg, npy, exr, raw or y4m is wanted"},
             Row{{"-o-", "m"}, "--output - needs a --format"},
             Row{{"--turntable=2", "--film=2", "m"},
                 "--turntable, --film and --track exclude each other"},
             Row{{"--turntable=2", "-o-", "m"},
                 "--turntable writes a file a picture: --film writes one to standard output"},
             Row{{"--film=2", "-oa.png", "m"}, "a film is written as y4m or raw"},
             Row{{"--film=2", "--format=png", "m"}, "a film is written as y4m or raw"},
             Row{{"--film=0", "m"},
                 "--film can't be '0': a whole number from 1 to 100000 is wanted"},
             Row{{"--ref=a.png", "--turntable=2", "m"}, "--ref compares one picture"},
             Row{{"--ref=a.png", "--film=2", "m"}, "--ref compares one picture"},
             Row{{"--track=a.json", "--film=2", "m"},
                 "--turntable, --film and --track exclude each other"},
             Row{{"--track=a.json", "-oa.png", "m"}, "a film is written as y4m or raw"},
             Row{{"--ref=a.png", "--track=a.json", "m"}, "--ref compares one picture"},
             Row{{"--look=shiny", "m"},
                 "--look can't be 'shiny': " + looks() + " or a file is wanted"},
             Row{{"--layers=depth,depth", "-oa.npy", "m"},
                 "--layers can't be 'depth,depth': some of color, depth, normal, position, object, "
                 "material and face, each once, with commas between, is wanted"},
             Row{{"--layers=depth", "m"}, "--layers need an --output that is a file"},
             Row{{"--layers=depth", "-o-", "--format=npy", "m"},
                 "--layers need an --output that is a file"},
             Row{{"--layers=depth", "-oa.jpg", "m"}, "--layers are written as png, npy or exr"},
             Row{{"--layers=depth", "-oa.dat", "--format=npy", "m"},
                 "--layers are written as the suffix says, whatever --format"},
             Row{{"--layers=depth", "-oa.npy", "--turntable=2", "m"},
                 "--layers are those of one picture"},
             Row{{"--layers=depth", "-oa.npy", "--text=a", "m"},
                 "--layers have no place for --text"},
             Row{{"--layers=depth", "-oa.npy", "--ref=a.png", "m"},
                 "--layers have no place for --ref"},
             Row{{"--tolerance=2", "m"}, "--tolerance needs a --ref"},
             Row{{"--tolerance=256", "m"},
                 "--tolerance can't be '256': a whole number from 0 to 255 is wanted"},
             Row{{"--ref=", "m"}, "--ref can't be '': a file is wanted"},
             Row{{"--plugin=", "m"}, "--plugin can't be '': a file is wanted"},
             Row{{"--loader=", "m"}, "--loader can't be '': a name is wanted"},
             Row{{"--time=soon", "m"},
                 "--time can't be 'soon': a number of seconds from -1000000 to 1000000 is wanted"},
             Row{{"--device=", "m"}, "--device can't be '': a device is wanted"},
             Row{{"-s4", "m"},
                 "--size can't be '4': WxH in pixels, each from 1 to 16384, is wanted"},
             Row{{"--background=pink", "m"},
                 "--background can't be 'pink': #rgb, #rrggbb, transparent or one of black, white, "
                 "gray, red, "
                 "green, blue, "
                 "cyan, magenta, orange, yellow is wanted"},
             Row{{"--text-color=pink", "m"},
                 "--text-color can't be 'pink': #rgb, #rrggbb or one of black, white, gray, red, "
                 "green, blue, "
                 "cyan, magenta, orange, yellow is wanted"},
             Row{{"--samples=65", "m"},
                 "--samples can't be '65': a whole number from 0 to 64 is wanted"},
             Row{{"--path=gl4", "m"}, "--path can't be 'gl4': gl2 or gl3 is wanted"},
             Row{{"--normals=none", "m"},
                 "--normals can't be 'none': file, smooth or flat is wanted"},
             Row{{"--azimuth=north", "m"},
                 "--azimuth can't be 'north': an angle in degrees is wanted"},
             Row{{"--elevation=91", "m"},
                 "--elevation can't be '91': an angle from -90 to 90 degrees is wanted"},
             Row{{"--distance=0", "m"},
                 "--distance can't be '0': a factor from 0.01 to 1000 is wanted"},
             Row{{"--zoom=-1", "m"}, "--zoom can't be '-1': a factor from 0.01 to 1000 is wanted"},
             Row{{"--up=w", "m"},
                 "--up can't be 'w': one of auto, x, y, z, -x, -y and -z is wanted"},
             Row{{"--turntable=0", "m"},
                 "--turntable can't be '0': a whole number from 1 to 100000 is wanted"},
             Row{{"--text=", "m"}, "--text can't be '': a text is wanted"},
             Row{{"--text-place=middle", "m"},
                 "--text-place can't be 'middle': a place such as top or bottom-left is wanted"},
             Row{{"--text-size=3", "m"},
                 "--text-size can't be '3': a whole number from 4 to 1000 is wanted"},
             Row{{"--font=", "m"}, "--font can't be '': a file is wanted"},
         }) {
        Options options;
        EXPECT_EQ(read_options(row.words, options), row.mistake);
    }
}

TEST(Options, accept_every_place_of_a_text) {
    for (const char* place : {"top-left", "top", "top-right", "left", "center-left", "center",
                              "center-right", "right", "bottom-left", "bottom", "bottom-right"})
        EXPECT_EQ(read_well({"m", "--text-place", place}).text_place, place);
}

TEST(Options, accept_every_axis) {
    struct Row {
        const char* word;
        UpAxis up;
    };
    for (const Row& row : {Row{"auto", UpAxis::automatic}, Row{"x", UpAxis::x}, Row{"y", UpAxis::y},
                           Row{"z", UpAxis::z}, Row{"-x", UpAxis::minus_x},
                           Row{"-y", UpAxis::minus_y}, Row{"-z", UpAxis::minus_z}})
        EXPECT_EQ(read_well({"m", "--up", row.word}).up, row.up) << row.word;
}

TEST(Options, name_the_picture_after_the_model) {
    struct Row {
        Words words;
        const char* output;
    };
    for (const Row& row :
         {Row{{"m.obj"}, "m.jpg"}, Row{{"a.b/m"}, "m.jpg"}, Row{{"a/m.x.3ds"}, "m.x.jpg"},
          Row{{"/.hidden"}, ".hidden.jpg"}, Row{{"m.obj", "-oa/b.JPEG"}, "a/b.JPEG"},
          Row{{"m.obj", "--format=png"}, "m.png"}, Row{{"m.obj", "--format=npy"}, "m.npy"},
          Row{{"m.obj", "--format=raw"}, "m.raw"}, Row{{"m.obj", "--film=2"}, "m.y4m"},
          Row{{"m.obj", "-oa.b", "--format=png"}, "a.b"}})
        EXPECT_EQ(output_of(read_well(row.words)), row.output);
}

TEST(Options, choose_the_format_of_the_picture) {
    struct Row {
        Words words;
        PictureFormat format;
    };
    for (const Row& row :
         {Row{{"m"}, PictureFormat::jpeg}, Row{{"m", "-oa.PNG"}, PictureFormat::png},
          Row{{"m", "-o-", "--format=npy"}, PictureFormat::npy},
          Row{{"m", "-oa.png", "--format=jpg"}, PictureFormat::jpeg},
          Row{{"m", "--film=2", "-o-"}, PictureFormat::y4m},
          Row{{"m", "--film=2", "-oa.raw"}, PictureFormat::raw}})
        EXPECT_EQ(format_of(read_well(row.words)), row.format);
}

TEST(Options, of_comparison_and_machine_are_read) {
    const Options options = read_well({"m", "--ref", "a.png", "--tolerance", "3", "--plugin",
                                       "p.so", "--loader", "own", "--device", "software"});
    EXPECT_EQ(options.reference, "a.png");
    EXPECT_EQ(options.tolerance, 3);
    EXPECT_EQ(options.plugin, "p.so");
    EXPECT_EQ(options.loader, "own");
    EXPECT_FALSE(options.time);
    EXPECT_EQ(read_well({"m.obj", "--time", "-1.5"}).time, -1.5f);
    EXPECT_EQ(options.device, "software");
}

TEST(Options, take_looks_by_name_and_by_file) {
    EXPECT_EQ(read_well({"m"}).look, "lit");
    for (const char* look : {"matcap", "wire", "toon.glsl", "./toon"})
        EXPECT_EQ(read_well({"m", "-l", look}).look, look);
}

TEST(Options, name_layers) {
    EXPECT_TRUE(read_well({"m"}).layers.empty());
    EXPECT_EQ(read_well({"m", "-oa.npy", "--layers=face,color"}).layers,
              (std::vector<Layer>{Layer::face, Layer::color}));
}

TEST(Options, leave_a_background_transparent) {
    EXPECT_EQ(read_well({"m", "-btransparent"}).background.a, 0.0f);
    EXPECT_EQ(read_well({"m", "-bred"}).background.a, 1.0f);
    EXPECT_EQ(read_well({"m"}).background.a, 1.0f);
}

TEST(Options, put_a_film_into_one_file) {
    EXPECT_EQ(outputs_of(read_well({"m.obj", "--film=20"})), Words{"m.y4m"});
    EXPECT_EQ(pictures_of(read_well({"m.obj", "--film=20"})), 20);
    EXPECT_EQ(pictures_of(read_well({"m.obj", "--turntable=20"})), 20);
    EXPECT_EQ(pictures_of(read_well({"m.obj"})), 1);
    EXPECT_EQ(outputs_of(read_well({"m.obj", "--track=a.json"})), Words{"m.y4m"});
    EXPECT_TRUE(is_film(read_well({"m.obj", "--track=a.json"})));
    EXPECT_FALSE(is_film(read_well({"m.obj", "--turntable=2"})));
    EXPECT_TRUE(is_turn(read_well({"m.obj", "--turntable=2"})));
    EXPECT_FALSE(is_turn(read_well({"m.obj", "--track=a.json"})));
}

TEST(Options, put_the_difference_beside_the_picture) {
    EXPECT_EQ(difference_of(read_well({"a/m.obj", "-oout/b.jpg"})), "out/b-difference.png");
    EXPECT_EQ(difference_of(read_well({"a/m.obj", "-o-", "--format=png"})), "m-difference.png");
}

TEST(Options, number_the_pictures_of_a_turn) {
    EXPECT_EQ(outputs_of(read_well({"m.obj"})), Words{"m.jpg"});
    EXPECT_EQ(outputs_of(read_well({"m.obj", "-t1"})), Words{"m-001.jpg"});
    EXPECT_EQ(outputs_of(read_well({"m.obj", "-t3", "-oa.b/c.jpg"})),
              (Words{"a.b/c-001.jpg", "a.b/c-002.jpg", "a.b/c-003.jpg"}));
    const Words many = outputs_of(read_well({"m.obj", "-t1000"}));
    EXPECT_EQ(many.front(), "m-0001.jpg");
    EXPECT_EQ(many.back(), "m-1000.jpg");
}

TEST(Options, explain_themselves_in_lines_of_eighty_characters) {
    const std::string help = help_text();
    EXPECT_EQ(help.rfind("usage: orvex-render [options] MODEL\n", 0), 0u);
    std::size_t begin = 0;
    for (std::size_t end = help.find('\n'); end != help.npos; end = help.find('\n', begin)) {
        EXPECT_LE(end - begin, 80u) << help.substr(begin, end - begin);
        begin = end + 1;
    }
    EXPECT_EQ(begin, help.size());
}

} // namespace

} // namespace orvex_test
