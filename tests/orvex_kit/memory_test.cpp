// What becomes of pictures and models when memory runs out, and what memory they do without.

#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <vector>

#include <gtest/gtest.h>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/rays/ray_caster.h>
#include <orvex/kernel/core.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/scene/object.h>

#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/frame_stream.h"
#include "orvex_kit/mesh_numbers.h"
#include "orvex_kit/model.h"
#include "orvex_kit/picture_file.h"
#include "orvex_kit/private/engine_parts.h"
#include "orvex_kit/private/face_lists.h"
#include "orvex_kit/private/unnamed_files.h"
#include "orvex_kit/ref.h"
#include "orvex_kit/view.h"
#include "orvex_kit/whole_file.h"
#include "tests/orvex_kit/sample_models.h"
#include "tests/orvex_kit/sample_pictures.h"
#include "tests/support/heap.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex::MeshData;
using orvex::vec4;

constexpr std::size_t large = 4096;

/// What an operation says when it is refused its n-th large block, among arrays or all others.
std::string reason_without(unsigned long n, const std::function<Outcome()>& work,
                           bool single = false) {
    const RefuseArrays refusal({.granted = n, .refused = 1, .min_size = large, .single = single});
    return work().reason();
}

TEST(Memory, that_runs_out_is_told_of_a_new_picture) {
    Picture picture = make_picture(2, 1, 1, Sample::u8);
    EXPECT_EQ(reason_without(0, [&] { return picture.create(100, 50, 4, Sample::f32); }),
              "no memory for a picture of 100x50 pixels: 80000 bytes");
    EXPECT_EQ(picture.width(), 2);
}

TEST(Memory, that_runs_out_is_told_of_a_copy_that_asks) {
    const Picture picture = make_picture(100, 50, 4, Sample::f32);
    Picture copy = make_picture(2, 1, 1, Sample::u8);
    EXPECT_EQ(reason_without(0, [&] { return copy.copy_from(picture); }),
              "no memory for a copy of a picture of 100x50 pixels: 80000 bytes");
    EXPECT_EQ(copy.width(), 2);
    EXPECT_EQ(reason_without(0, [&] { return copy.take_channels(picture, 3); }),
              "no memory for a picture of 100x50 pixels: 60000 bytes");
    EXPECT_EQ(copy.width(), 2);
}

TEST(Memory, that_runs_out_leaves_an_empty_copy) {
    const Picture picture = make_picture(100, 50, 4, Sample::f32);
    const RefuseArrays refusal({.min_size = large});
    EXPECT_TRUE(Picture(picture).is_empty()); // NOLINT(performance-unnecessary-copy-initialization)
    Picture assigned;
    assigned = picture;
    EXPECT_TRUE(assigned.is_empty());
}

TEST(Memory, that_runs_out_is_told_of_a_difference) {
    const Picture picture = make_picture(100, 50, 4, Sample::f32);
    Picture shown = make_picture(2, 1, 1, Sample::u8);
    EXPECT_EQ(reason_without(0, [&] { return show_difference(picture, picture, shown); }),
              "no memory for a picture of 100x50 pixels: 5000 bytes");
    EXPECT_EQ(shown.width(), 2);
}

/// Refuses each large block once until the operation gets all of them.
void expect_told(const std::string& path, const std::function<Outcome()>& work, bool single) {
    for (unsigned long n = 0; n < 1000; ++n) {
        const long before = living_blocks();
        const std::string reason = reason_without(n, work, single);
        if (reason.empty()) {
            EXPECT_GT(n, 0u);
            return;
        }
        EXPECT_EQ(reason.find("can't write " + path + ": "), 0u) << reason;
        EXPECT_NE(reason.find("memory"), std::string::npos) << reason;
        EXPECT_FALSE(std::filesystem::exists(path));
        // The library of OpenEXR may keep what it made for good at its first call.
        EXPECT_LE(living_blocks(), before + 2) << "after block " << n;
    }
    ADD_FAILURE() << "it never got all";
}

TEST(Memory, that_runs_out_is_told_of_a_picture_file) {
    const TempDir folder;
    const Picture picture = noise_picture(100, 100, 3, Sample::u8);
    const std::string png = folder.file("x.png");
    expect_told(
        png, [&] { return write_picture(picture, png); }, false);
    for (const char* const name : {"x.jpg", "x.y4m"}) {
        const std::string path = folder.file(name);
        expect_told(
            path, [&] { return write_picture(picture, path); }, true);
    }
}

TEST(Memory, that_runs_out_is_told_of_layers) {
    if (!can_write_format(PictureFormat::exr))
        return;
    const TempDir folder;
    const Picture picture = noise_picture(100, 100, 3, Sample::u8);
    const std::string warm = folder.file("warm.exr"), path = folder.file("x.exr");
    ASSERT_EQ(write_picture(picture, warm).reason(), "");
    expect_told(
        path, [&] { return write_picture(picture, path); }, true);
}

TEST(Memory, that_runs_out_is_told_of_a_reference) {
    const TempDir folder;
    const std::string path = folder.file("x.png");
    ASSERT_EQ(write_picture(noise_picture(100, 100, 3, Sample::u8), path).reason(), "");
    Picture picture = make_picture(2, 1, 1, Sample::u8);
    std::string reason, last;
    unsigned long n = 0;
    do {
        last = reason;
        reason = reason_without(n++, [&] { return read_picture(path, picture); });
        EXPECT_EQ(picture.width(), reason.empty() ? 100 : 2);
    } while (!reason.empty() && n < 100);
    EXPECT_EQ(reason, "");
    EXPECT_EQ(last,
              "can't read " + path + ": no memory for a picture of 100x100 pixels: 30000 bytes");
}

TEST(Memory, that_runs_out_leaves_no_engine_half_begun) {
    const TempDir folder;
    folder.write("broken.so", "no library");
    setenv("ORVEX_PLUGIN_PATH", folder.path().c_str(), 1);
    int thrown = 0;
    for (unsigned long n = 0; n < 400; ++n)
        for (const bool single : {true, false}) {
            try {
                const RefuseArrays refusal({.granted = n, .refused = 1, .single = single});
                const Engine engine;
                EXPECT_TRUE(engine);
            } catch (const std::bad_alloc&) {
                ++thrown;
            }
            EXPECT_FALSE(engine_runs()) << n;
            EXPECT_EQ(orvex::core::log_get_default(), nullptr) << n;
        }
    EXPECT_GE(thrown, 1);
    unsetenv("ORVEX_PLUGIN_PATH");
}

TEST(Memory, that_runs_out_leaves_signals_as_they_were_before_a_new_file) {
    const TempDir folder;
    use_unnamed_files(false);
    // What earlier files have left for others to use is used.
    std::vector<std::unique_ptr<WholeFile>> others;
    for (int i = 0; i < 10; ++i) {
        others.push_back(std::make_unique<WholeFile>(folder.file(std::to_string(i))));
        ASSERT_EQ(others.back()->begin().reason(), "");
    }
    const std::string path = folder.file("x");
    WholeFile file(path);
    {
        const RefuseArrays refusal({.min_size = large, .single = true});
        EXPECT_THROW(static_cast<void>(file.begin()), std::bad_alloc);
    }
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGTERM), 0);
    EXPECT_EQ(file.begin().reason(), "");
    EXPECT_EQ(file.put("x").reason(), "");
    EXPECT_EQ(file.finish().reason(), "");
    EXPECT_EQ(content_of(path), "x");
    use_unnamed_files(true);
}

/// A model of one triangle with two textures, one of which is missing.
std::string write_model(const TempDir& folder) {
    EXPECT_EQ(write_picture(noise_picture(20, 20, 3, Sample::u8), folder.file("t.png")).reason(),
              "");
    folder.write("m.mtl", "newmtl a\nmap_Kd C:\\x\\T.png\nmap_Kd none.png\n");
    return folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl a\nf 1 2 3\n");
}

TEST(Memory, that_runs_out_leaves_nothing_of_a_model) {
    const TempDir folder;
    const std::string path = write_model(folder);
    const Engine engine({{}, "", false, false});
    orvex::Material* const of_host = orvex::MaterialMgr::get()->create_material("a");
    { const Model warm(path); }
    const long before = living_blocks();
    int thrown = 0, loaded = 0;
    for (unsigned long n = 0; n < 400; ++n)
        for (const bool single : {true, false}) {
            try {
                const RefuseArrays refusal({.granted = n, .refused = 1, .single = single});
                const Model model(path);
                model.pick(orvex::Ray{{0.2f, 0.2f, 1, 1}, {0, 0, -1, 0}});
                loaded += model ? 1 : 0;
            } catch (const std::bad_alloc&) {
                ++thrown;
            }
            ASSERT_EQ(orvex::MaterialMgr::get()->get_num_resources(), 1u) << n;
            EXPECT_EQ(orvex::MaterialMgr::get()->get_resource_by_index(0), of_host);
            EXPECT_EQ(of_host->get_ref(), 1) << n;
            ASSERT_EQ(orvex::TextureMgr::get()->get_num_resources(), 0u) << n;
        }
    EXPECT_GT(thrown, 50);
    EXPECT_GT(loaded, 50);
    EXPECT_LE(living_blocks(), before + 8); // of texts that the engine's loaders keep
    const Model model(path);
    EXPECT_TRUE(model) << model.reason();
}

TEST(Memory, that_runs_out_leaves_picking_its_long_way) {
    const TempDir folder;
    const std::string path = write_model(folder);
    const Engine engine({{}, "", false, false});
    const Model model(path);
    const orvex::Ray ray{{0.2f, 0.2f, 1, 1}, {0, 0, -1, 0}};
    for (unsigned long n = 0; n < 20; ++n) {
        const RefuseArrays refusal({.granted = n, .refused = 1, .single = true});
        const std::optional<Pick> pick = model.pick(ray);
        ASSERT_TRUE(pick) << n;
        EXPECT_EQ(pick->distance, 1.0);
    }
}

/// A grid of squares from 0 to 1, of so many faces that several threads share in its tree.
Model large_grid() {
    constexpr unsigned side = 110;
    std::vector<float> places;
    std::vector<unsigned> corners;
    for (unsigned y = 0; y <= side; ++y)
        for (unsigned x = 0; x <= side; ++x)
            places.insert(places.end(), {float(x) / side, float(y) / side, 0.0f});
    for (unsigned y = 0; y < side; ++y)
        for (unsigned x = 0; x < side; ++x) {
            const unsigned low = y * (side + 1) + x, high = low + side + 1;
            corners.insert(corners.end(), {low, low + 1, high + 1, low, high + 1, high});
        }
    MeshNumbers numbers;
    numbers.num_vertices = places.size() / 3;
    numbers.positions = {places.data()};
    numbers.num_faces = corners.size() / 3;
    numbers.faces = {corners.data(), Number::u32};
    return Model::from_numbers(numbers);
}

TEST(Memory, that_runs_out_while_several_threads_sort_leaves_picking_its_long_way) {
    const Engine engine({{}, "", false, false});
    for (unsigned long n = 0; n < 80; ++n) {
        const Model model = large_grid();
        ASSERT_GE(model.num_faces(), 20'000u) << model.reason();
        const RefuseArrays refusal({.granted = n, .refused = 1, .single = true});
        // All over the grid, so that no part of the tree is missing.
        for (unsigned i = 0; i < 64; ++i) {
            const unsigned x = 5 + 13 * (i % 8), y = 5 + 13 * (i / 8);
            const orvex::Ray ray{{(float(x) + 0.7f) / 110, (float(y) + 0.3f) / 110, 1, 1},
                                 {0, 0, -1, 0}};
            const std::optional<Pick> pick = model.pick(ray);
            ASSERT_TRUE(pick) << n << " " << i;
            EXPECT_EQ(pick->distance, 1.0) << n;
            EXPECT_EQ(pick->face, 2 * (y * 110 + x)) << n;
        }
    }
}

TEST(Memory, that_runs_out_in_a_draw_leaves_the_next_one_whole) {
    const TempDir folder;
    const Engine engine({{}, "", false, false});
    folder.write("m.mtl", "newmtl red\nKd 1 0 0\nnewmtl green\nKd 0 1 0\n");
    const std::string path =
        folder.write("m.obj", "mtllib m.mtl\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                              "usemtl red\nf 1 2 3\nusemtl green\nf 1 3 4\n");
    const auto seen = [](View& view, Model& model) {
        Picture picture;
        view.draw(model, {0.0f, 0.0f});
        EXPECT_EQ(view.read(picture).reason(), "");
        return picture;
    };
    for (const Path drawn_on : {Path::gl3, Path::gl2}) {
        View view(16, 16, {drawn_on, 0});
        Model warm(path);
        const Picture usual = seen(view, warm);
        for (unsigned long n = 0; n < 30; ++n) {
            Model model(path);
            try {
                const RefuseArrays refusal({.granted = n, .refused = 1});
                view.draw(model, {0.0f, 0.0f});
            } catch (const std::bad_alloc&) {
                // told to the host
            }
            EXPECT_EQ(compare(seen(view, model), usual).reason, "") << n;
        }
    }
}

/// Counts those that are there.
class Counted : public orvex::Object {
public:
    explicit Counted(int& there)
        : there(there) {
        ++there;
    }
    ~Counted() override { --there; }

private:
    int& there;
};

TEST(Memory, that_runs_out_leaves_the_end_of_a_tree_to_the_engine) {
    for (unsigned long n = 0; n < 6; ++n) {
        int there = 0;
        Ref<Counted> root = make<Counted>(there);
        orvex::Node* lowest = root.get();
        for (int depth = 0; depth < 20; ++depth)
            for (int i = 0; i < 2; ++i) {
                lowest->add_child(make<Counted>(there).get());
                lowest = lowest->get_child(lowest->get_num_children() - 1);
            }
        EXPECT_EQ(there, 41);
        const RefuseArrays refusal({.granted = n, .refused = 1, .single = true});
        root.reset();
        EXPECT_EQ(there, 0) << n;
    }
}

// ------------------------------------------------------------------------------- lists of faces

/// The first mesh of a model.
MeshData& store_of(const Model& model) {
    return *static_cast<orvex::Mesh*>(model.node()->get_child(0))->get_mesh_data();
}

/// What the lists of faces hold.
struct FaceFacts {
    std::vector<float> normals;
    std::vector<int> materials;
};

FaceFacts facts_of(const MeshData& mesh) {
    FaceFacts facts;
    for (unsigned long i = 0; i < mesh.num_faces; ++i) {
        const vec4& normal = mesh.face_normals[i];
        facts.normals.insert(facts.normals.end(), {normal.x, normal.y, normal.z, normal.w});
        facts.materials.push_back(mesh.face_materials[i]);
    }
    return facts;
}

/// How many arrays a model makes for a host who asks for its node.
unsigned long arrays_made_for_node(const Model& model) {
    const CountAllocations arrays;
    return model.node() ? arrays.count() : 0;
}

TEST(FaceLists, that_no_draw_reads_take_memory_only_for_who_asks_for_the_node) {
    const TempDir folder;
    const std::string path = write_box(folder);
    const Engine engine({{}, "", false, false});
    for (const Path drawn_on : {Path::gl3, Path::gl2}) {
        View view(16, 16, {drawn_on, 0});
        ASSERT_TRUE(view) << view.reason();
        const Model untouched(path);
        EXPECT_EQ(arrays_made_for_node(untouched), 0u);
        const FaceFacts as_loaded = facts_of(store_of(untouched));
        Model model(path);
        view.draw(model);
        EXPECT_EQ(arrays_made_for_node(model), 2u);
        EXPECT_EQ(facts_of(store_of(model)).normals, as_loaded.normals);
        EXPECT_EQ(facts_of(store_of(model)).materials.size(), as_loaded.materials.size());
        // Who has asked once may look at any time.
        view.draw(model);
        EXPECT_EQ(arrays_made_for_node(model), 0u);
    }
}

TEST(FaceLists, stay_where_they_say_more_than_the_faces) {
    const Ref<orvex::Mesh> owned = make<orvex::Mesh>();
    orvex::Mesh& mesh = *owned;
    ASSERT_TRUE(mesh.alloc_vertex_data(4));
    ASSERT_TRUE(mesh.alloc_face_data(2, false));
    mesh.set_vertex_position(1, vec4(1.0f, 0.0f, 0.0f, 1.0f));
    mesh.set_vertex_position(2, vec4(0.0f, 1.0f, 0.0f, 1.0f));
    mesh.set_vertex_position(3, vec4(0.0f, 0.0f, 1.0f, 1.0f));
    mesh.set_face_indexes(0, 0, 1, 2);
    mesh.set_face_indexes(1, 0, 9, 3); // a vertex that isn't there
    MeshData& store = *mesh.get_mesh_data();
    FaceLists lists;
    lists.put_away(store); // as they were made: of one value each
    EXPECT_EQ(store.face_normals, nullptr);
    EXPECT_EQ(store.face_materials, nullptr);
    lists.bring_back(store);
    ASSERT_NE(store.face_normals, nullptr);
    EXPECT_EQ(store.face_normals[1].w, vec4().w);

    mesh.compute_faces_normal(nullptr);
    store.face_materials[1] = 7;
    const FaceFacts computed = facts_of(store);
    EXPECT_EQ(computed.normals[2], 1.0f);
    lists.put_away(store);
    EXPECT_EQ(store.face_normals, nullptr);
    EXPECT_NE(store.face_materials, nullptr);
    lists.bring_back(store);
    ASSERT_NE(store.face_normals, nullptr);
    EXPECT_EQ(facts_of(store).normals, computed.normals);
    EXPECT_EQ(facts_of(store).materials, computed.materials);

    store.face_normals[1].w += 1.0f;
    lists.put_away(store);
    EXPECT_NE(store.face_normals, nullptr);
    lists.bring_back(store);
}

TEST(FaceLists, stay_away_where_memory_runs_out) {
    const TempDir folder;
    const std::string path = write_box(folder);
    const Engine engine({{}, "", false, false});
    View view(16, 16, {Path::gl3, 0});
    Model model(path);
    view.draw(model);
    const orvex::Model* node = nullptr;
    {
        const RefuseArrays refusal({});
        node = model.node();
    }
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(store_of(model).face_normals, nullptr);
    EXPECT_EQ(store_of(model).face_materials, nullptr);
    view.draw(model);
    EXPECT_TRUE(model.pick(orvex::Ray{{0.2f, 0.3f, 9, 1}, {0, 0, -1, 0}}));
}

TEST(FaceLists, of_a_mesh_without_faces_are_none) {
    const Ref<orvex::Mesh> mesh = make<orvex::Mesh>();
    ASSERT_TRUE(mesh->alloc_vertex_data(3));
    MeshData& store = *mesh->get_mesh_data();
    FaceLists lists;
    lists.put_away(store);
    lists.bring_back(store);
    EXPECT_EQ(store.face_normals, nullptr);
    EXPECT_EQ(store.face_materials, nullptr);
}

TEST(FaceLists, serve_updates_that_make_normals) {
    const Engine engine({{}, "", false, false});
    View view(16, 16, {Path::gl3, 0});
    std::vector<float> places{0, 0, 0, 1, 0, 0, 0, 1, 0};
    MeshNumbers numbers;
    numbers.num_vertices = 3;
    numbers.positions = {places.data()};
    numbers.shading = Normals::smooth;
    Model model = Model::from_numbers(numbers);
    ASSERT_TRUE(model) << model.reason();
    view.draw(model);
    places = {0, 0, 0, 0, 0, 1, 0, 1, 0};
    MeshNumbers others;
    others.positions = {places.data()};
    EXPECT_EQ(model.update(others).reason(), "");
    EXPECT_EQ(store_of(model).get_normal(1).x, -1.0f);
}

} // namespace

} // namespace orvex_test
