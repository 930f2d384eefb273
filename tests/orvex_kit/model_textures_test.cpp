// Where textures are found, as people's files name them, with real files.

#include <filesystem>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/model.h"
#include "orvex_kit/private/texture_search.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

namespace fs = std::filesystem;
using namespace orvex::kit;

const std::string not_there = "it isn't there";
const std::string not_allowed =
    "it lies outside the model's folder, where nothing is read unless that is allowed";

/// A folder with a model's folder in it, whose files are pictures.
class TextureSearchTest : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(model_folder() + "textures/Brick Walls"); }

    std::string model_folder() const { return root.file("house/"); }

    /// Makes a picture; the path goes from the folder around that of the model.
    std::string picture(const std::string& path) const {
        fs::copy_file(ORVEX_EXAMPLE_DATA "/lighthouse_wood.png", root.file(path));
        return root.file(path);
    }

    FoundTexture find(const std::string& name, bool allow_outside = false) const {
        return find_texture(model_folder(), name, allow_outside);
    }
    void expect_found(const std::string& name, const std::string& path,
                      bool allow_outside = false) const {
        const FoundTexture found = find(name, allow_outside);
        EXPECT_EQ(found.path, path) << name;
        EXPECT_EQ(found.reason, "") << name;
    }
    void expect_missing(const std::string& name, const std::string& reason) const {
        const FoundTexture found = find(name);
        EXPECT_EQ(found.reason, reason) << name;
    }

    const TempDir root;
};

TEST_F(TextureSearchTest, finds_what_lies_beside_the_model_or_below) {
    const std::string wood = picture("house/wood.png");
    const std::string wall = picture("house/textures/wall.png");
    expect_found("wood.png", wood);
    expect_found("  wood.png\t\r", wood);
    expect_found("./wood.png", model_folder() + "./wood.png");
    expect_found("textures/wall.png", wall);
    expect_found("\"wood.png\"", wood);
    expect_found(wood, wood);
}

TEST_F(TextureSearchTest, finds_from_the_current_folder) {
    picture("house/wood.png");
    const fs::path before = fs::current_path();
    fs::current_path(model_folder());
    const FoundTexture found = find_texture("", "WOOD.png", false);
    const FoundTexture outside = find_texture("", "../house/../wood.png", false);
    fs::current_path(before);
    EXPECT_EQ(found.path, "wood.png");
    EXPECT_EQ(found.reason, "");
    EXPECT_EQ(outside.path, "wood.png");
}

TEST_F(TextureSearchTest, takes_backslashes_for_slashes) {
    const std::string wall = picture("house/textures/wall.png");
    expect_found("textures\\wall.png", wall);
    expect_found(".\\textures\\wall.png", model_folder() + "./textures/wall.png");
    // But a name that has one is taken as it is.
    const std::string odd = picture("house/odd\\name.png");
    expect_found("odd\\name.png", odd);
}

TEST_F(TextureSearchTest, looks_beside_the_model_for_paths_of_other_machines) {
    const std::string wood = picture("house/wood.png");
    const std::string wall = picture("house/textures/wall.png");
    expect_found("C:\\Users\\me\\house\\wood.png", wood);
    expect_found("d:/art/wood.png", wood);
    expect_found("C:wood.png", wood);
    expect_found("\\\\server\\share\\wood.png", wood);
    expect_found("/home/me/wood.png", wood);
    expect_found("C:\\art\\textures\\wall.png", wall);
    expect_found("../../wood.png", wood);
    // The longest end of a path counts.
    const std::string other = picture("house/wall.png");
    expect_found("C:\\art\\textures\\wall.png", wall);
    expect_found("C:\\art\\wall.png", other);
}

TEST_F(TextureSearchTest, takes_letters_in_either_case) {
    const std::string wall = picture("house/textures/Brick Walls/Old.PNG");
    expect_found("TEXTURES/brick walls/old.png", wall);
    expect_found("c:\\x\\Textures\\BRICK WALLS\\OLD.png", wall);
    // The very letters count first, then those that come first.
    const std::string small = picture("house/wood.png");
    const std::string large = picture("house/WOOD.png");
    expect_found("wood.png", small);
    expect_found("WOOD.png", large);
    expect_found("Wood.png", large);
}

TEST_F(TextureSearchTest, passes_over_the_options_of_a_map) {
    const std::string wood = picture("house/my wood.png");
    for (const char* name :
         {"-s 2 2 -o 0 0 my wood.png", "-s 2 my wood.png", "-s 1 1 1 my wood.png",
          "-blendu on -blendv off -clamp on my wood.png", "-bm 0.5 my wood.png",
          "-mm 0 1   my wood.png", "-imfchan l my wood.png", "-texres 512 my wood.png",
          "-type sphere my wood.png", "-t 1e-3 -.5 +2 my wood.png ",
          "-cc on -boost 3 \"my wood.png\"", "-s 2 2 C:\\art\\My Wood.PNG"})
        expect_found(name, wood);
    const std::string three = picture("house/3");
    expect_found("-o 1 2 3", three);
    const std::string dash = picture("house/-s 2 2.png");
    expect_found("-s 2 2.png", dash);
    expect_missing("-x 2 my wood.png", not_there);
}

TEST_F(TextureSearchTest, tells_what_isnt_there_and_where_it_looked) {
    EXPECT_EQ(find("none.png").path, model_folder() + "none.png");
    expect_missing("none.png", not_there);
    EXPECT_EQ(find("-s 2 2 a\\none.png").path, model_folder() + "a/none.png");
    EXPECT_EQ(find("C:\\a\\none.png").path, model_folder() + "none.png");
    expect_missing("C:\\a\\none.png", not_there);
    expect_missing("textures", not_there);
    expect_missing("textures/", not_there);
    expect_missing("   ", "it is named by nothing");
    expect_missing("/", not_there);
    expect_missing("..", not_there);
}

TEST_F(TextureSearchTest, reads_nothing_outside_the_folder_unless_allowed) {
    const std::string secret = picture("secret.png");
    picture("other.png");
    expect_missing("../secret.png", not_allowed);
    expect_missing("..\\secret.png", not_allowed);
    expect_missing("textures/../../secret.png", not_allowed);
    expect_missing(secret, not_allowed);
    expect_found("../secret.png", model_folder() + "../secret.png", true);
    expect_found("..\\secret.png", model_folder() + "../secret.png", true);
    expect_found(secret, secret, true);
    // What has the name of the folder in front isn't in it.
    fs::create_directory(root.file("house2"));
    const std::string near = picture("house2/near.png");
    expect_missing("../house2/near.png", not_allowed);
    expect_missing(near, not_allowed);
}

TEST_F(TextureSearchTest, takes_links_for_what_they_lead_to) {
    picture("secret.png");
    const std::string wood = picture("house/wood.png");
    fs::create_symlink("../secret.png", model_folder() + "link.png");
    fs::create_directory_symlink("..", model_folder() + "up");
    fs::create_symlink("wood.png", model_folder() + "inner.png");
    fs::create_symlink("none.png", model_folder() + "broken.png");
    expect_missing("link.png", not_allowed);
    expect_missing("LINK.png", not_allowed);
    expect_missing("up/secret.png", not_allowed);
    expect_missing("UP\\SECRET.png", not_allowed);
    expect_missing("broken.png", not_there);
    expect_found("inner.png", model_folder() + "inner.png");
    expect_found("link.png", model_folder() + "link.png", true);
    // A folder that is a link itself is where it leads.
    fs::create_directory_symlink("house", root.file("short"));
    EXPECT_EQ(find_texture(root.file("short/"), "wood.png", false).path,
              root.file("short/wood.png"));
    EXPECT_EQ(find_texture(root.file("short/"), wood, false).path, wood);
}

TEST_F(TextureSearchTest, never_finds_anything_outside_whatever_the_name) {
    picture("secret.png");
    picture("house/wood.png");
    picture("house/textures/wood.png");
    fs::create_symlink("../secret.png", model_folder() + "link.png");
    fs::create_directory_symlink("..", model_folder() + "up");
    const std::string root_of_all = fs::canonical(model_folder()).string() + "/";
    const std::string parts[] = {"..",         ".",         "/",    "\\",       "\\\\",
                                 "C:",         "-s 2 ",     "-o ",  "wood.png", "up",
                                 "link.png",   "\"",        " ",    "textures", "WOOD.PNG",
                                 "secret.png", root.path(), "\xff", "house"};
    std::mt19937 dice(11);
    std::size_t found = 0;
    for (int i = 0; i < 5000; ++i) {
        std::string name;
        for (std::size_t count = dice() % 7; count-- > 0;)
            name += parts[dice() % std::size(parts)];
        const FoundTexture texture = find(name);
        if (!texture.reason.empty())
            continue;
        ++found;
        const std::string real = fs::canonical(texture.path).string();
        EXPECT_EQ(real.compare(0, root_of_all.size(), root_of_all), 0) << name << ": " << real;
    }
    EXPECT_GT(found, 100u);
}

// ------------------------------------------------------------------------------- in a model

class ModelTexturesTest : public TextureSearchTest {
protected:
    /// A model of one triangle whose material has these maps.
    Model load(const std::string& maps, const ModelOptions& options = {}) const {
        root.write("house/m.mtl", "newmtl a\n" + maps + "newmtl b\n" + maps);
        return Model(root.write("house/m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                               "usemtl a\nf 1 2 3\nusemtl b\nf 1 2 3\n"),
                     options);
    }

    const Engine engine{{{}, "", false, false}};
};

TEST_F(ModelTexturesTest, are_told_as_named_and_as_found_each_once) {
    const std::string wood = picture("house/my wood.png");
    const Model model = load("map_Kd -s 2 2 -o 0 0 my wood.png\nmap_Kd C:\\x\\MY WOOD.png\n");
    ASSERT_EQ(model.textures().size(), 1u);
    const ModelTexture& told = model.textures()[0];
    EXPECT_EQ(told.name, "-s 2 2 -o 0 0 my wood.png");
    EXPECT_EQ(told.path, wood);
    EXPECT_EQ(told.reason, "");
    EXPECT_EQ(told.width, 256);
    EXPECT_EQ(told.height, 256);
    ASSERT_EQ(model.materials().size(), 2u);
    for (const ModelMaterial& material : model.materials())
        EXPECT_EQ(material.textures, (std::vector<std::size_t>{0, 0}));
}

TEST_F(ModelTexturesTest, are_told_with_the_reason_if_they_are_missing) {
    picture("secret.png");
    const std::string bad = root.write("house/bad.png", "no picture");
    root.write("house/empty.png", "");
    const Model model = load("map_Kd none.png\nmap_Kd ../secret.png\nmap_Kd bad.png\nmap_Kd "
                             "empty.png\n");
    ASSERT_TRUE(model) << model.reason();
    ASSERT_EQ(model.textures().size(), 4u);
    EXPECT_EQ(model.textures()[0].reason, not_there);
    EXPECT_EQ(model.textures()[1].reason, not_allowed);
    EXPECT_EQ(model.textures()[2].path, bad);
    EXPECT_EQ(model.textures()[2].reason.rfind("it is no picture that can be decoded: ", 0), 0u)
        << model.textures()[2].reason;
    EXPECT_EQ(model.textures()[3].reason, "it can't be read: the file is empty");
    for (const ModelTexture& texture : model.textures())
        EXPECT_EQ(texture.width + texture.height, 0) << texture.name;
    EXPECT_EQ(model.files().size(), 6u);
}

TEST_F(ModelTexturesTest, are_read_outside_where_that_is_allowed) {
    picture("secret.png");
    ModelOptions options;
    options.allow_outside = true;
    const Model model = load("map_Kd ../secret.png\n", options);
    ASSERT_EQ(model.textures().size(), 1u);
    EXPECT_EQ(model.textures()[0].reason, "");
    EXPECT_GT(model.textures()[0].width, 0);
}

} // namespace
} // namespace orvex_test
