// Models that the importer reads.

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <orvex_kit/engine.h>
#include <orvex_kit/look.h>
#include <orvex_kit/model.h>
#include <orvex_kit/view.h>

#include "orvex_formats/import/private/import_reader.h"
#include "orvex_formats/private/importer_protocol.h"
#include "orvex_formats/private/refusal.h"
#include "tests/orvex_formats/answers.h"
#include "tests/orvex_formats/archives.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/made_scene.h"
#include "tests/orvex_kit/view_frame.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

Importer real_importer() {
    Importer importer;
    importer.program = ORVEX_IMPORTER;
    return importer;
}

/// Red and green above, blue and white below.
void write_four_colors(const std::string& path) {
    orvex_test::Picture picture(16, 16);
    const unsigned char colors[4][4] = {
        {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 255}};
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            std::copy_n(colors[x / 8 + y / 8 * 2], 4, picture.at(x, y));
    EXPECT_TRUE(write_png(path, picture));
}

std::string refusal_of_file(const std::string& path, const Importer& importer = real_importer()) {
    try {
        read_imported_by(importer, InputFile(path));
    } catch (const Refusal& refusal) {
        return std::string(refusal.is_format_known() ? "" : "other format: ") + refusal.what();
    }
    return "";
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t place = text.find(from);
    EXPECT_NE(place, text.npos) << from;
    return place == text.npos ? text : text.replace(place, from.size(), to);
}

// ------------------------------------------------------------------------------------ models

class ImportTest : public testing::Test {
protected:
    Draft read(const std::string& path) {
        return read_imported_by(real_importer(), InputFile(path));
    }
    Draft read_made(const std::string& format, const std::string& suffix) {
        MadeScene scene;
        const std::string path = folder.file("made" + suffix);
        scene.write(format, path);
        return read(path);
    }

    TempDir folder;
};

struct Made {
    const char* format;
    const char* suffix;
};

/// Whether the first face of a surface looks along z, 1, or against it, -1.
float front_of(const Surface& surface) {
    const auto at = [&](std::size_t corner) {
        return surface.positions[surface.triangles[0][corner]];
    };
    const orvex::vec3 along = at(1) - at(0), up = at(2) - at(0);
    return along.x * up.y - along.y * up.x > 0.0f ? 1.0f : -1.0f;
}

class ImportFormatsTest : public ImportTest, public testing::WithParamInterface<Made> {};
INSTANTIATE_TEST_SUITE_P(of, ImportFormatsTest,
                         testing::Values(Made{"fbxa", ".fbx"}, Made{"collada", ".dae"},
                                         Made{"assbin", ".assbin"}, Made{"x", ".x"}),
                         [](const auto& made) { return std::string(made.param.format); });

TEST_P(ImportFormatsTest, have_their_places_faces_colours_and_pictures) {
    const Draft draft = read_made(GetParam().format, GetParam().suffix);
    ASSERT_EQ(draft.surfaces.size(), 2u);
    EXPECT_TRUE(holds_together(draft));
    const Surface& sign = draft.surfaces[0];
    const Surface& flag = draft.surfaces[1];
    EXPECT_EQ(sign.positions.size(), 4u);
    EXPECT_EQ(sign.triangles.size(), 2u);
    ASSERT_EQ(flag.positions.size(), 3u);
    EXPECT_EQ(flag.triangles.size(), 1u);
    // The node's place is that of its vertices, and the picture's lower edge is its own.
    for (std::size_t i = 0; i < flag.positions.size(); ++i)
        EXPECT_GE(flag.positions[i].y, 3.0f);
    ASSERT_EQ(sign.uvs[0].size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(sign.uvs[0][i].y, sign.positions[i].y / 2.0f);
        EXPECT_EQ(sign.uvs[0][i].x, (sign.positions[i].x + 1.0f) / 2.0f);
    }
    // The writer of X forgets that z leads away from the viewer there.
    EXPECT_EQ(front_of(flag), 1.0f);
    for (const orvex::vec3& normal : flag.normals)
        EXPECT_EQ(normal.z, GetParam().format == std::string("x") ? -1.0f : 1.0f);
    ASSERT_FALSE(sign.triangle_materials.empty());
    const SurfaceMaterial& painted = draft.materials[sign.triangle_materials[0]];
    EXPECT_EQ(painted.textures, std::vector<std::string>{"four.png"});
    EXPECT_EQ(painted.diffuse.y, 1.0f);
}

TEST_F(ImportTest, turns_the_left_handed_files_of_x) {
    const Draft draft = read(folder.write(
        "left.x", "xof 0303txt 0032\nMesh {\n 3;\n 0;0;1;,\n 0;1;1;,\n 1;0;1;;\n 1;\n 3;0,1,2;;\n"
                  " MeshNormals {\n 1;\n 0;0;-1;;\n 1;\n 3;0,0,0;;\n }\n}\n"));
    ASSERT_EQ(draft.surfaces.size(), 1u);
    const Surface& surface = draft.surfaces[0];
    EXPECT_EQ(surface.positions[0].z, -1.0f);
    EXPECT_EQ(surface.normals[0].z, 1.0f);
    EXPECT_EQ(front_of(surface), 1.0f);
}

TEST_F(ImportTest, turns_formats_whose_z_points_upward) {
    const Draft draft = read(folder.write(
        "Up.SMD", "version 1\nnodes\n0 \"root\" -1\nend\nskeleton\ntime 0\n0 0 0 0 0 0 0\nend\n"
                  "triangles\nskin.bmp\n0 0 0 0 0 -1 0 0 0\n0 1 0 0 0 -1 0 1 0\n"
                  "0 0 0 1 0 -1 0 0 1\nend\n"));
    ASSERT_EQ(draft.surfaces.size(), 1u);
    const Surface& surface = draft.surfaces[0];
    EXPECT_EQ(front_of(surface), 1.0f);
    EXPECT_EQ(surface.normals[0].z, 1.0f);
    float top = 0.0f;
    for (const orvex::vec3& place : surface.positions)
        top = std::max(top, place.y);
    EXPECT_EQ(top, 1.0f);
}

TEST_F(ImportTest, keeps_names_and_materials_of_fbx) {
    const Draft draft = read_made("fbxa", ".fbx");
    EXPECT_EQ(draft.surfaces[0].name, "sign");
    const SurfaceMaterial& red = draft.materials[draft.surfaces[1].triangle_materials[0]];
    EXPECT_EQ(red.name, "red");
    EXPECT_EQ(red.diffuse.x, 1.0f);
    EXPECT_EQ(red.diffuse.y, 0.0f);
    EXPECT_TRUE(red.textures.empty());
}

TEST_F(ImportTest, turns_fbx_files_whose_z_points_upward) {
    MadeScene scene;
    scene.write("fbxa", folder.file("y.fbx"));
    std::string text = content_of(folder.file("y.fbx"));
    text = replaced(text, "\"UpAxis\", \"int\", \"Integer\", \"\", 1",
                    "\"UpAxis\", \"int\", \"Integer\", \"\", 2");
    text = replaced(text, "\"FrontAxis\", \"int\", \"Integer\", \"\", 2",
                    "\"FrontAxis\", \"int\", \"Integer\", \"\", 1");
    text = replaced(text, "\"FrontAxisSign\", \"int\", \"Integer\", \"\", 1",
                    "\"FrontAxisSign\", \"int\", \"Integer\", \"\", -1");
    const Draft draft = read(folder.write("z.fbx", text));
    // What was at y = 2 lies two to the back; normals, which looked along z, look upward.
    const Surface& sign = draft.surfaces[0];
    for (std::size_t i = 0; i < sign.positions.size(); ++i) {
        EXPECT_EQ(sign.positions[i].y, 0.0f);
        EXPECT_EQ(sign.positions[i].z, -2.0f * sign.uvs[0][i].y);
        EXPECT_EQ(sign.normals[i].y, 1.0f);
    }
}

TEST_F(ImportTest, turns_the_faces_of_mirrored_nodes) {
    MadeScene scene;
    aiMatrix4x4 mirror;
    mirror.a1 = -1.0f;
    scene.add_node("mirrored", 1, mirror);
    scene.write("assbin", folder.file("mirrored.assbin"));
    const Draft draft = read(folder.file("mirrored.assbin"));
    ASSERT_EQ(draft.surfaces.size(), 3u);
    EXPECT_EQ(front_of(draft.surfaces[1]), 1.0f);
    EXPECT_EQ(front_of(draft.surfaces[2]), 1.0f);
    EXPECT_EQ(draft.surfaces[2].normals[0].z, 1.0f);
}

TEST_F(ImportTest, takes_pictures_within_a_file) {
    MadeScene scene;
    write_four_colors(folder.file("four.png"));
    const std::string png = content_of(folder.file("four.png"));
    scene.add_picture({png.begin(), png.end()}, "four");
    const aiString name("*0");
    scene.material(0).RemoveProperty(AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.material(0).AddProperty(&name, AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.write("assbin", folder.file("within.assbin"));
    const Draft draft = read(folder.file("within.assbin"));
    ASSERT_EQ(draft.pictures.size(), 1u);
    EXPECT_EQ(std::string(draft.pictures[0].bytes.begin(), draft.pictures[0].bytes.end()), png);
    EXPECT_EQ(draft.materials[0].textures, std::vector<std::string>{draft.pictures[0].name});
}

TEST_F(ImportTest, takes_pixels_within_a_file_up_to_the_largest_picture) {
    const struct {
        unsigned width, height;
        bool is_taken;
    } pictures[] = {{2, 3, true},      {300, 1, true},    {16384, 1, true}, {1, 16384, true},
                    {16385, 1, false}, {1, 16385, false}, {0, 1, false}};
    MadeScene scene;
    for (const auto& picture : pictures)
        scene.add_pixels(picture.width, picture.height);
    scene.write("assbin", folder.file("pixels.assbin"));
    const Draft draft = read(folder.file("pixels.assbin"));
    ASSERT_EQ(draft.pictures.size(), std::size(pictures));
    for (std::size_t i = 0; i < std::size(pictures); ++i) {
        const auto& [width, height, is_taken] = pictures[i];
        const std::vector<unsigned char>& bytes = draft.pictures[i].bytes;
        constexpr std::size_t head = 18;
        ASSERT_EQ(bytes.size(), is_taken ? head + 4 * width * height : 0) << i;
        if (!is_taken)
            continue;
        EXPECT_EQ(bytes[12] + 256u * bytes[13], width) << i;
        EXPECT_EQ(bytes[14] + 256u * bytes[15], height) << i;
        EXPECT_EQ(std::vector<unsigned char>(bytes.end() - 4, bytes.end()),
                  (std::vector<unsigned char>{255, 0, 0, 128}));
    }
}

TEST_F(ImportTest, looks_for_pictures_in_the_folder_of_the_model_alone) {
    write_four_colors(folder.file("four.png"));
    const struct {
        const char* told;
        const char* meant;
    } names[] = {{"C:\\work\\four.png", "four.png"},  {"/somewhere/four.png", "four.png"},
                 {"../../four.png", "four.png"},      {".\\four.png", "four.png"},
                 {"maps\\five.png", "maps/five.png"}, {"/etc/passwd", "passwd"},
                 {"http://host/six.png", "six.png"}};
    for (const auto& name : names) {
        MadeScene scene;
        const aiString path(name.told);
        scene.material(0).RemoveProperty(AI_MATKEY_TEXTURE_DIFFUSE(0));
        scene.material(0).AddProperty(&path, AI_MATKEY_TEXTURE_DIFFUSE(0));
        scene.write("assbin", folder.file("named.assbin"));
        const Draft draft = read(folder.file("named.assbin"));
        EXPECT_EQ(draft.materials[0].textures, std::vector<std::string>{name.meant}) << name.told;
    }
}

TEST_F(ImportTest, notes_pictures_that_lie_elsewhere_once) {
    const TempDir outside;
    write_four_colors(outside.file("four.png"));
    ASSERT_EQ(symlink(outside.file("four.png").c_str(), folder.file("link.png").c_str()), 0);
    MadeScene scene;
    const aiString name("link.png");
    scene.material(0).RemoveProperty(AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.material(0).AddProperty(&name, AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.material(1).AddProperty(&name, AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.write("assbin", folder.file("link.assbin"));
    const Draft draft = read(folder.file("link.assbin"));
    EXPECT_EQ(draft.notes,
              std::vector<std::string>{"the picture \"link.png\" was left out: a link leads out of "
                                       "the model's folder, where nothing is read"});
    EXPECT_TRUE(draft.materials[0].textures.empty());
    EXPECT_TRUE(draft.materials[1].textures.empty());
}

TEST_F(ImportTest, tells_a_picture_within_a_file_from_one_beside_it_of_its_name) {
    write_four_colors(folder.file("picture 0"));
    for (const char* const path : {"picture 0", "../elsewhere/picture 0", "./picture 0"}) {
        MadeScene scene;
        const std::string png = content_of(folder.file("picture 0"));
        scene.add_picture({png.begin(), png.end()}, "");
        const aiString beside(path), within("*0");
        scene.material(0).RemoveProperty(AI_MATKEY_TEXTURE_DIFFUSE(0));
        scene.material(0).AddProperty(&beside, AI_MATKEY_TEXTURE_DIFFUSE(0));
        scene.material(1).AddProperty(&within, AI_MATKEY_TEXTURE_DIFFUSE(0));
        scene.write("assbin", folder.file("both.assbin"));
        const Draft draft = read(folder.file("both.assbin"));
        EXPECT_EQ(draft.materials[0].textures, std::vector<std::string>{"./picture 0"}) << path;
        EXPECT_EQ(draft.materials[1].textures, std::vector<std::string>{"picture 0"}) << path;
    }
}

TEST_F(ImportTest, leaves_out_pictures_within_a_file_that_would_hide_one_beside_it) {
    write_four_colors(folder.file("four.png"));
    MadeScene scene;
    const std::string png = content_of(folder.file("four.png"));
    scene.add_picture({png.begin(), png.end()}, "bumps");
    const aiString name("*0");
    const ai_real metallic = 0.25;
    scene.material(0).AddProperty(&metallic, 1, AI_MATKEY_METALLIC_FACTOR);
    scene.material(0).AddProperty(&name, AI_MATKEY_TEXTURE(aiTextureType_NORMALS, 0));
    scene.write("assbin", folder.file("both.assbin"));
    const Draft draft = read(folder.file("both.assbin"));
    EXPECT_EQ(draft.notes,
              std::vector<std::string>{"pictures within the file, of a material whose colour is "
                                       "one beside it, were left out"});
    EXPECT_EQ(draft.materials[0].textures, std::vector<std::string>{"four.png"});
    ASSERT_TRUE(draft.materials[0].physical);
    EXPECT_EQ(draft.materials[0].physical->base_color_texture.image, "four.png");
    EXPECT_EQ(draft.materials[0].physical->normal_texture.image, "");
}

TEST_F(ImportTest, leaves_out_textures_that_are_formulas_with_a_note) {
    MadeScene scene;
    const aiString path("Procedural,num=0,type=Voronoi");
    scene.material(0).RemoveProperty(AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.material(0).AddProperty(&path, AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.write("assbin", folder.file("formula.assbin"));
    const Draft draft = read(folder.file("formula.assbin"));
    EXPECT_TRUE(draft.materials[0].textures.empty());
    EXPECT_EQ(draft.notes, std::vector<std::string>{"textures that are formulas were left out"});
}

TEST_F(ImportTest, has_the_physical_values_of_a_material) {
    MadeScene scene;
    const ai_real metallic = 0.25, roughness = 0.5;
    const aiString normals("normals.png");
    scene.material(1).AddProperty(&metallic, 1, AI_MATKEY_METALLIC_FACTOR);
    scene.material(1).AddProperty(&roughness, 1, AI_MATKEY_ROUGHNESS_FACTOR);
    scene.material(1).AddProperty(&normals, AI_MATKEY_TEXTURE(aiTextureType_NORMALS, 0));
    scene.write("assbin", folder.file("physical.assbin"));
    const Draft draft = read(folder.file("physical.assbin"));
    EXPECT_FALSE(draft.materials[0].physical);
    ASSERT_TRUE(draft.materials[1].physical);
    const orvex::PhysicalMaterial& physical = *draft.materials[1].physical;
    EXPECT_EQ(physical.metallic, 0.25f);
    EXPECT_EQ(physical.roughness, 0.5f);
    EXPECT_EQ(physical.base_color.x, 1.0f);
    EXPECT_EQ(physical.base_color.y, 0.0f);
    EXPECT_EQ(physical.normal_texture.image, "normals.png");
    // The place of the colour's picture stays its own.
    EXPECT_EQ(draft.materials[1].textures, (std::vector<std::string>{"white", "normals.png"}));
}

TEST_F(ImportTest, has_a_white_picture_beside_a_file_of_that_name) {
    folder.write("white", "?");
    MadeScene scene;
    const aiString name("white");
    const ai_real metallic = 0.25;
    scene.material(0).RemoveProperty(AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.material(0).AddProperty(&name, AI_MATKEY_TEXTURE_DIFFUSE(0));
    scene.material(1).AddProperty(&metallic, 1, AI_MATKEY_METALLIC_FACTOR);
    scene.material(1).AddProperty(&name, AI_MATKEY_TEXTURE(aiTextureType_NORMALS, 0));
    scene.write("assbin", folder.file("white.assbin"));
    const Draft draft = read(folder.file("white.assbin"));
    EXPECT_EQ(draft.materials[0].textures, std::vector<std::string>{"white"});
    EXPECT_EQ(draft.materials[1].textures, (std::vector<std::string>{"white ", "white"}));
    ASSERT_EQ(draft.pictures.size(), 1u);
    EXPECT_EQ(draft.pictures[0].name, "white ");
}

TEST_F(ImportTest, lets_a_material_shine_as_its_picture_where_it_tells_no_colour) {
    MadeScene scene;
    const aiString lamp("lamp.png");
    const aiColor3D orange(1.0f, 0.5f, 0.0f);
    for (const unsigned i : {0u, 1u})
        scene.material(i).AddProperty(&lamp, AI_MATKEY_TEXTURE(aiTextureType_EMISSIVE, 0));
    scene.material(1).AddProperty(&orange, 1, AI_MATKEY_COLOR_EMISSIVE);
    scene.write("assbin", folder.file("lamp.assbin"));
    const Draft draft = read(folder.file("lamp.assbin"));
    const auto emissive_of = [&draft](std::size_t i) {
        const orvex::vec3& emissive = draft.materials.at(i).physical.value().emissive;
        return std::array<float, 3>{emissive.x, emissive.y, emissive.z};
    };
    EXPECT_EQ(emissive_of(0), (std::array<float, 3>{1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(emissive_of(1), (std::array<float, 3>{1.0f, 0.5f, 0.0f}));
}

// --- Cameras and motion

TEST_F(ImportTest, has_the_cameras_where_their_nodes_stand) {
    MadeScene scene;
    aiMatrix4x4 raised;
    aiMatrix4x4::Translation(aiVector3D(0, 3, 0), raised);
    scene.add_node("eye", 1, raised);
    aiCamera& camera = scene.add_camera("eye");
    camera.mPosition = {1, 0, 5};
    camera.mLookAt = {0, 0, -2};
    camera.mUp = {0, 3, 1};
    camera.mHorizontalFOV = AI_MATH_HALF_PI_F;
    camera.mAspect = 2.0f;
    camera.mClipPlaneNear = 0.5f;
    camera.mClipPlaneFar = 50.0f;
    aiCamera& plan = scene.add_camera("mast");
    plan.mOrthographicWidth = 6.0f;
    plan.mAspect = 3.0f;
    scene.write("assbin", folder.file("seen.assbin"));
    const Draft draft = read(folder.file("seen.assbin"));
    ASSERT_GE(draft.cameras.size(), 1u);
    const Viewpoint& view = draft.cameras[0];
    EXPECT_EQ(view.name, "eye");
    EXPECT_EQ(view.eye.x, 1.0f);
    EXPECT_EQ(view.eye.y, 3.0f);
    EXPECT_EQ(view.eye.z, 5.0f);
    EXPECT_EQ(view.forward.z, -1.0f);
    EXPECT_EQ(view.up.y, 1.0f);
    EXPECT_EQ(view.up.z, 0.0f);
    EXPECT_NEAR(view.opening, 53.1301f, 1e-3f); // whose tangent is half as large at half of it
    EXPECT_EQ(view.height, 0.0f);
    EXPECT_EQ(view.aspect, 2.0f);
    EXPECT_EQ(view.near, 0.5f);
    EXPECT_EQ(view.far, 50.0f);
    for (const std::string& note : draft.notes)
        EXPECT_EQ(note.find("camera"), note.npos) << note;
}

TEST_F(ImportTest, has_the_cameras_of_collada_but_for_how_they_see) {
    MadeScene().write("collada", folder.file("made.dae"));
    std::string text = content_of(folder.file("made.dae"));
    text = replaced(text, "<library_geometries>",
                    "<library_cameras><camera id=\"c\"><optics><technique_common><perspective>"
                    "<xfov>90</xfov><aspect_ratio>2</aspect_ratio><znear>0.25</znear>"
                    "<zfar>80</zfar></perspective></technique_common></optics></camera>"
                    "</library_cameras><library_geometries>");
    text = replaced(text, "</visual_scene>",
                    "<node id=\"eye\" name=\"eye\"><matrix>1 0 0 0 0 1 0 2 0 0 1 9 0 0 0 1</matrix>"
                    "<instance_camera url=\"#c\"/></node></visual_scene>");
    const Draft draft = read(folder.write("seen.dae", text));
    ASSERT_EQ(draft.cameras.size(), 1u);
    EXPECT_EQ(draft.cameras[0].eye.y, 2.0f);
    EXPECT_EQ(draft.cameras[0].eye.z, 9.0f);
    EXPECT_EQ(draft.cameras[0].forward.z, -1.0f);
    // Assimp loses it.
    EXPECT_NEAR(draft.cameras[0].opening, 26.2313f, 1e-3f);
    EXPECT_NE(std::find(draft.notes.begin(), draft.notes.end(),
                        "how wide cameras open was lost: they open by 45 degrees"),
              draft.notes.end());
}

TEST_F(ImportTest, leaves_out_cameras_that_see_nothing_with_a_note) {
    MadeScene scene;
    scene.add_camera("mast").mHorizontalFOV = 0.0f;
    scene.add_camera("nowhere");
    scene.add_camera("sign").mLookAt = {0, 0, 0};
    scene.write("assbin", folder.file("blind.assbin"));
    const Draft draft = read(folder.file("blind.assbin"));
    EXPECT_TRUE(draft.cameras.empty());
    EXPECT_EQ(std::count(draft.notes.begin(), draft.notes.end(),
                         "a camera that sees nothing was left out"),
              1);
}

class ImportTimeTest : public ImportTest {
protected:
    Draft read_at(std::optional<float> time) {
        return read_imported_by(real_importer(), InputFile(folder.file("moved.assbin")), time);
    }
    /// The flag's corner at the origin of its node, and the one along x.
    static void expect_flag(const Surface& flag, const orvex::vec3& origin,
                            const orvex::vec3& along) {
        ASSERT_EQ(flag.positions.size(), 3u);
        const orvex::vec3 &first = flag.positions[0], &second = flag.positions[1];
        EXPECT_NEAR(first.x, origin.x, 1e-5f);
        EXPECT_NEAR(first.y, origin.y, 1e-5f);
        EXPECT_NEAR(second.x, along.x, 1e-5f);
        EXPECT_NEAR(second.y, along.y, 1e-5f);
    }
};

TEST_F(ImportTimeTest, stands_where_the_first_animation_has_it_at_a_moment) {
    MadeScene scene;
    scene.add_motion("mast", {0, 0, 0}, {4, 0, 0});
    scene.write("assbin", folder.file("moved.assbin"));
    expect_flag(read_at(std::nullopt).surfaces[1], {0, 3, 0}, {1, 3, 0});
    const float half = std::sqrt(0.5f);
    expect_flag(read_at(1.0f).surfaces[1], {2, 0, 0}, {2 + half, half, 0});
    // Both ends stand still.
    expect_flag(read_at(0.0f).surfaces[1], {0, 0, 0}, {1, 0, 0});
    expect_flag(read_at(-5.0f).surfaces[1], {0, 0, 0}, {1, 0, 0});
    expect_flag(read_at(2.0f).surfaces[1], {4, 0, 0}, {4, 1, 0});
    expect_flag(read_at(1e30f).surfaces[1], {4, 0, 0}, {4, 1, 0});
    // What isn't moved stays.
    EXPECT_EQ(read_at(1.0f).surfaces[0].positions[0].x, -1.0f);
}

TEST_F(ImportTimeTest, moves_cameras_with_their_nodes) {
    MadeScene scene;
    scene.add_camera("mast").mLookAt = {1, 0, 0};
    scene.add_motion("mast", {0, 0, 0}, {4, 0, 0});
    scene.write("assbin", folder.file("moved.assbin"));
    const Draft draft = read_at(2.0f);
    ASSERT_EQ(draft.cameras.size(), 1u);
    EXPECT_EQ(draft.cameras[0].eye.x, 4.0f);
    EXPECT_NEAR(draft.cameras[0].forward.y, 1.0f, 1e-6f);
}

TEST_F(ImportTimeTest, moves_vertices_with_the_bones_that_hold_them) {
    MadeScene scene;
    scene.add_bone(0, "mast");
    scene.add_motion("mast", {0, 0, 0}, {4, 0, 0});
    scene.write("assbin", folder.file("moved.assbin"));
    const Surface rest = read_at(std::nullopt).surfaces[0];
    const Surface moved = read_at(2.0f).surfaces[0];
    ASSERT_EQ(moved.positions.size(), rest.positions.size());
    for (std::size_t i = 0; i < moved.positions.size(); ++i) {
        EXPECT_NEAR(moved.positions[i].x, 4.0f - rest.positions[i].y, 1e-5f);
        EXPECT_NEAR(moved.positions[i].y, rest.positions[i].x, 1e-5f);
        EXPECT_NEAR(moved.normals[i].z, 1.0f, 1e-6f);
    }
}

TEST_F(ImportTimeTest, says_what_of_motion_was_left_out) {
    MadeScene scene;
    scene.add_bone(0, "mast");
    scene.add_motion("mast", {0, 0, 0}, {4, 0, 0});
    scene.add_motion("sign", {0, 0, 0}, {4, 0, 0});
    scene.write("assbin", folder.file("moved.assbin"));
    EXPECT_EQ(read_at(std::nullopt).notes,
              (std::vector<std::string>{"animations were left out, as no time was asked for",
                                        "bones were left out: meshes stand as they were made"}));
    EXPECT_EQ(read_at(0.0f).notes,
              std::vector<std::string>{"animations but the first were left out"});
}

// --- Other files

TEST_F(ImportTest, reads_files_beside_the_model_and_no_others) {
    // A scene of this format names the files of its meshes.
    const auto scene_of = [](const std::string& mesh) {
        return "LWSC\r\n1\r\n\r\nLoadObject " + mesh + "\r\nShowObject 8 7\r\n";
    };
    const std::string inner = folder.path() + "/inner";
    ASSERT_EQ(mkdir(inner.c_str(), 0700), 0);
    MadeScene().write("assbin", folder.file("mesh.assbin"));
    MadeScene().write("assbin", inner + "/own.assbin");
    ASSERT_EQ(symlink("../mesh.assbin", (inner + "/link.assbin").c_str()), 0);
    const Draft draft = read(folder.write("inner/scene.lws", scene_of("own.assbin")));
    EXPECT_EQ(draft.surfaces.size(), 2u);
    EXPECT_EQ(draft.files, std::vector<std::string>{inner + "/own.assbin"});
    for (const std::string& name :
         {std::string("../mesh.assbin"), std::string("link.assbin"), folder.file("mesh.assbin")})
        EXPECT_NE(refusal_of_file(folder.write("inner/bad.lws", scene_of(name))), "") << name;
}

TEST_F(ImportTest, refuses_with_the_reason_that_assimp_has) {
    EXPECT_EQ(refusal_of_file(folder.write("a.dae", "<COLLADA")),
              "Unable to read file, malformed XML");
    const std::string reason = refusal_of_file(folder.write("a.fbx", "; FBX 7.5.0\nObjects: {"));
    EXPECT_EQ(reason.rfind("FBX", 0), 0u) << reason;
    EXPECT_NE(refusal_of_file(folder.write("empty.fbx", "")), "");
}

TEST_F(ImportTest, leaves_files_of_other_readers_to_them) {
    for (const char* const name : {"a.obj", "a.stl", "a.gltf", "a.3ds", "a.txt", "fbx"})
        EXPECT_EQ(refusal_of_file(folder.write(name, "x")),
                  "other format: its name isn't that of a format that the importer reads");
    const std::string formats = std::string(", ") + imported_formats() + ",";
    for (const char* const format : {"FBX", "DAE", "X", "B3D", "LWO", "BLEND"})
        EXPECT_NE(formats.find(std::string(", ") + format + ","), formats.npos) << formats;
    EXPECT_EQ(formats.find(", FBX, DAE, BLEND, "), 0u) << formats;
    EXPECT_EQ(formats.find("OBJ"), formats.npos) << formats;
}

TEST_F(ImportTest, bounds_the_memory_of_the_program) {
    MadeScene().write("fbxa", folder.file("made.fbx"));
    std::string text = content_of(folder.file("made.fbx"));
    text += "; " + std::string(64u << 20, 'x') + "\n";
    Importer importer = real_importer();
    importer.most_memory = 60u << 20;
    EXPECT_EQ(refusal_of_file(folder.write("large.fbx", text), importer),
              "the importer took more than 60 MB");
}

TEST_F(ImportTest, bounds_the_size_of_an_answer) {
    MadeScene().write("assbin", folder.file("made.assbin"));
    Importer importer = real_importer();
    importer.most_answer = 600;
    const std::string reason = refusal_of_file(folder.file("made.assbin"), importer);
    EXPECT_EQ(reason.rfind("the model would be far larger than its file", 0), 0u) << reason;
}

TEST_F(ImportTest, keeps_the_program_from_all_but_its_folder) {
    const InputFile input(folder.write("a.fbx", "x"));
    for (const bool has_folder : {true, false})
        try {
            ask_importer(real_importer(), {{"confinement"}, has_folder}, input);
            ADD_FAILURE() << "no refusal";
        } catch (const Refusal& refusal) {
            EXPECT_STREQ(refusal.what(), "reading barred, writing barred, network barred, "
                                         "sockets barred, processes barred, programs barred");
        }
}

TEST_F(ImportTest, checks_what_a_program_answers) {
    Draft draft = small_draft();
    draft.surfaces[0].triangles[0][0] = 77;
    const std::vector<unsigned char> bytes = answer_with(draft);
    // The model's bytes are what the program answers.
    const std::string path =
        folder.write("repeat.fbx", std::string(bytes.begin() + sizeof(AnswerHead), bytes.end()));
    Importer importer;
    importer.program = ORVEX_FAKE_IMPORTER;
    const std::string reason = refusal_of_file(path, importer);
    EXPECT_NE(reason.find("a corner beyond the vertices"), reason.npos) << reason;
}

// ------------------------------------------------------------------------------------ the kit

class KitImportTest : public testing::TestWithParam<orvex::kit::Path> {
protected:
    orvex::kit::Engine engine;
    TempDir folder;
};
INSTANTIATE_TEST_SUITE_P(on, KitImportTest,
                         testing::Values(orvex::kit::Path::gl3, orvex::kit::Path::gl2), path_name);

/// The colours that are seen of a made scene, from above downward.
std::vector<Pixel> colors_of(orvex::kit::Model& model, orvex::kit::Path path) {
    using namespace orvex::kit;
    ViewOptions options;
    options.path = path;
    options.samples = 0;
    View view(64, 128, options);
    EXPECT_EQ(view.set_look(Look::named("plain")).reason(), "");
    view.draw(model, {0.0f, 0.0f});
    const orvex::kit::Picture picture = picture_of(view);
    // The sign is two wide and four high with the flag above it, whatever the frame around.
    std::vector<Pixel> colors;
    for (int y = 0; y < 128; ++y)
        for (int x = 0; x < 64; ++x)
            if (const Pixel pixel = pixel_at(picture, x, y);
                std::find(colors.begin(), colors.end(), pixel) == colors.end())
                for (const Pixel& known : {Pixel{255, 0, 0, 255}, Pixel{0, 255, 0, 255},
                                           Pixel{0, 0, 255, 255}, Pixel{255, 255, 255, 255}})
                    if (pixel == known)
                        colors.push_back(pixel);
    return colors;
}

// The flag's red, the green beside it, and below them blue and white.
const std::vector<Pixel> flag_and_sign = {
    {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 255}};

TEST_P(KitImportTest, draws_fbx_upright_in_its_colours) {
    write_four_colors(folder.file("four.png"));
    MadeScene().write("fbxa", folder.file("made.fbx"));
    orvex::kit::Model model(folder.file("made.fbx"));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.loader(), "orvex_import");
    EXPECT_EQ(model.num_faces(), 3u);
    EXPECT_EQ(model.bounds().max.y, 4.0f);
    EXPECT_EQ(colors_of(model, GetParam()), flag_and_sign);
}

TEST_P(KitImportTest, draws_fbx_that_is_packed) {
    const TempDir elsewhere;
    write_four_colors(elsewhere.file("four.png"));
    MadeScene().write("fbxa", elsewhere.file("made.fbx"));
    const std::string text = content_of(elsewhere.file("made.fbx"));
    orvex::kit::Model zipped(
        folder.write("made.zip", Zip()
                                     .add("house/made.FBX", text)
                                     .add("house/art/FOUR.png", "")
                                     .add("house/four.png", content_of(elsewhere.file("four.png")))
                                     .text()));
    ASSERT_TRUE(zipped) << zipped.reason();
    EXPECT_EQ(zipped.loader(), "orvex_import");
    EXPECT_TRUE(zipped.files().empty() || zipped.files().size() == 1u);
    EXPECT_EQ(colors_of(zipped, GetParam()), flag_and_sign);
    orvex::kit::Model packed(folder.write("made.fbx.gz", gzip(text)));
    ASSERT_TRUE(packed) << packed.reason();
    EXPECT_EQ(packed.num_faces(), 3u);
}

TEST_P(KitImportTest, says_why_an_archive_of_such_formats_isnt_read) {
    using orvex::kit::Model;
    MadeScene().write("fbxa", folder.file("made.fbx"));
    const std::string text = content_of(folder.file("made.fbx"));
    const Model two(folder.write("two.zip", Zip().add("a.fbx", text).add("b.dae", text).text()));
    EXPECT_NE(two.reason().find("an archive of 2 models; such of one are read"), std::string::npos)
        << two.reason();
    const Model none(folder.write("none.zip", Zip().add("a.txt", "text").text()));
    EXPECT_NE(none.reason().find("an archive without a model"), std::string::npos) << none.reason();
    const Model broken(folder.write("broken.zip", Zip().add("a.fbx", "; FBX 7.5.0\nO: {").text()));
    EXPECT_NE(broken.reason().find("FBX"), std::string::npos) << broken.reason();
    // What else lies in the archive, and beside it on the disk, is out of the program's reach.
    MadeScene().write("assbin", folder.file("own.assbin"));
    const std::string scene = "LWSC\r\n1\r\n\r\nLoadObject own.assbin\r\nShowObject 8 7\r\n";
    EXPECT_FALSE(Model(folder.write("scene.zip", Zip().add("scene.lws", scene).text())));
    EXPECT_TRUE(Model(folder.write("scene.lws", scene)));
}

TEST_P(KitImportTest, shows_a_moment_of_a_file_and_its_cameras) {
    using namespace orvex::kit;
    MadeScene scene;
    scene.add_camera("mast").mLookAt = {0, 0, -1};
    scene.add_motion("mast", {0, 3, 0}, {4, 3, 0});
    scene.write("assbin", folder.file("moved.assbin"));
    ModelOptions options;
    options.time = 1.0f;
    const Model model(folder.file("moved.assbin"), options);
    ASSERT_TRUE(model) << model.reason();
    EXPECT_NEAR(model.bounds().max.x, 2.0f + std::sqrt(0.5f), 1e-5f);
    ASSERT_EQ(model.cameras().size(), 1u);
    EXPECT_EQ(model.cameras()[0].name, "mast");
    EXPECT_FALSE(Model(folder.file("moved.assbin")).notes().empty());
}

TEST_P(KitImportTest, lists_what_the_program_reads_behind_the_rest) {
    const std::string formats = orvex::kit::readable_formats();
    EXPECT_GT(formats.find(", FBX"), formats.find(", STL")) << formats;
    EXPECT_NE(formats.find(", FBX"), formats.npos) << formats;
}

} // namespace

} // namespace orvex_test
