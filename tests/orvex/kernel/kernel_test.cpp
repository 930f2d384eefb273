#include "orvex/kernel/kernel.h"

#include <cstring>

#include <sys/utsname.h>

#include "kernel_fixture.h"
#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/image_codec.h"
#include "orvex/base/loader_3d.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/geometry/shapes/mesh_box.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/kernel/core.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/light.h"

namespace orvex_test {

using namespace orvex;
namespace {

TEST_F(KernelTest, is_one_per_process_with_a_version) {
    EXPECT_EQ(Kernel::get(), kernel);
    EXPECT_EQ(kernel->get_version_major(), 0);
    EXPECT_EQ(kernel->get_version_minor(), 9);
    EXPECT_EQ(kernel->get_version_patch(), 0);
    EXPECT_EQ(kernel->get_version_build(), 0);
    EXPECT_STREQ(kernel->get_codename(), "Brell");
}

TEST_F(KernelTest, logs_its_start_from_first_to_last) {
    EXPECT_TRUE(kernel->start());
    ASSERT_GE(log.messages().size(), 2u);
    EXPECT_EQ(log.messages().front(), "<o> orvex v0.9.0 (codename: Brell) is starting up...");
    EXPECT_EQ(log.messages().back(), "<o> orvex started up ok.");
}

TEST_F(KernelTest, starts_once) {
    EXPECT_TRUE(kernel->start());
    const unsigned long plugins = registry->get_num_plugins();
    log.clear();
    EXPECT_TRUE(kernel->start());
    EXPECT_EQ(registry->get_num_plugins(), plugins);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(KernelTest, stop_without_a_start_does_nothing) {
    kernel->plugin_search_path_add_dir("kept/");
    EXPECT_TRUE(kernel->stop());
    EXPECT_TRUE(log.messages().empty());
    EXPECT_TRUE(kernel->plugin_search_path_remove_dir("kept/"));
}

TEST_F(KernelTest, stop_unloads_all_plugins_and_clears_the_search_path) {
    kernel->start();
    kernel->plugin_search_path_add_dir("gone/");
    EXPECT_TRUE(kernel->stop());
    EXPECT_EQ(registry->get_num_plugins(), 0u);
    EXPECT_FALSE(kernel->plugin_search_path_remove_dir("gone/"));
    EXPECT_EQ(log.messages().back(), "<o> orvex stopped ok.");
    log.clear();
    EXPECT_TRUE(kernel->stop());
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(KernelTest, starts_again_after_a_stop_with_plugins_made_anew) {
    kernel->start();
    const unsigned long plugins = registry->get_num_plugins();
    const int first = registry->get_plugin_by_type(PLUGIN_TYPE_LOADER_3D, 0)->get_id();
    kernel->stop();
    EXPECT_TRUE(kernel->start());
    EXPECT_EQ(registry->get_num_plugins(), plugins);
    EXPECT_NE(registry->get_plugin_by_type(PLUGIN_TYPE_LOADER_3D, 0)->get_id(), first);
}

/// A resource that notes its end.
/// A plugin that stops the engine in its own end.
class Stopper : public Plugin {
public:
    explicit Stopper(bool (*stop_engine)())
        : stop_engine(stop_engine) {}

    bool stop() override {
        ++times;
        EXPECT_TRUE(Kernel::get()->is_stopping());
        return times > 1 || stop_engine();
    }

    static inline int times = 0;

private:
    bool (*const stop_engine)();
};

TEST_F(KernelTest, a_stop_within_a_stop_is_true_at_once) {
    bool (*const stops[])() = {[] { return Kernel::get()->stop(); },
                               [] { return core::stop("within"); }};
    for (const auto stop : stops) {
        Stopper::times = 0;
        ASSERT_TRUE(kernel->start());
        registry->insert_plugin(new Stopper(stop));
        log.clear();
        EXPECT_TRUE(kernel->stop());
        EXPECT_EQ(Stopper::times, 1);
        EXPECT_EQ(registry->get_num_plugins(), 0u);
        EXPECT_EQ(log.messages().back(), "<o> orvex stopped ok.");
        EXPECT_FALSE(kernel->is_stopping());
    }
}

template<class Base>
class Noting : public Base {
public:
    Noting(Lines& ends, const char* name)
        : ends(ends)
        , text(name) {}
    ~Noting() override { ends.emplace_back(text); }

private:
    Lines& ends;
    const char* text;
};

TEST_F(KernelTest, stops_materials_then_textures_then_programs) {
    kernel->start();
    Lines ends;
    GpuProgramMgr::get()->add_resource(new Noting<GpuProgram>(ends, "program"));
    TextureMgr::get()->add_resource(new Noting<Texture>(ends, "texture"));
    MaterialMgr::get()->add_resource(new Noting<Material>(ends, "material"));
    for (ResourceMgr* mgr : {static_cast<ResourceMgr*>(GpuProgramMgr::get()),
                             static_cast<ResourceMgr*>(TextureMgr::get()),
                             static_cast<ResourceMgr*>(MaterialMgr::get())})
        mgr->get_resource_by_index(mgr->get_num_resources() - 1)->remove_ref();
    kernel->stop();
    EXPECT_EQ(ends, (Lines{"material", "texture", "program"}));
}

TEST_F(KernelTest, tells_what_system_it_runs_on) {
    kernel->start();
    utsname system{};
    ASSERT_EQ(uname(&system), 0);
    EXPECT_STREQ(kernel->get_platform_name(), "Linux");
    EXPECT_EQ(kernel->get_platform_bitness(), sizeof(void*) == 8 ? 64 : 32);
    EXPECT_STREQ(kernel->get_linux_sysname(), system.sysname);
    EXPECT_STREQ(kernel->get_linux_release(), system.release);
    EXPECT_STREQ(kernel->get_linux_version(), system.version);
    EXPECT_STREQ(kernel->get_linux_machine(), system.machine);
    EXPECT_STREQ(kernel->get_osx_codename(), "");
    EXPECT_STREQ(kernel->get_osx_kern_osrelease(), "");
}

TEST_F(KernelTest, gives_the_parts_of_a_version_that_are_asked_for) {
    kernel->start();
    int major = -1;
    int minor = -1;
    int patch = -1;
    kernel->get_osx_version(&major, nullptr, nullptr);
    kernel->get_osx_version(nullptr, &minor, nullptr);
    kernel->get_osx_version(nullptr, nullptr, &patch);
    kernel->get_osx_version(nullptr, nullptr, nullptr);
    EXPECT_EQ(major, 0);
    EXPECT_EQ(minor, 0);
    EXPECT_EQ(patch, 0);
}

TEST_F(KernelTest, search_path_lists_its_entries_in_order) {
    char buffer[64] = "old";
    EXPECT_TRUE(kernel->plugin_search_path_get(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(kernel->plugin_search_path_add_dir("a/"));
    EXPECT_TRUE(kernel->plugin_search_path_add_dir("b"));
    EXPECT_TRUE(kernel->plugin_search_path_add_dir(""));
    EXPECT_FALSE(kernel->plugin_search_path_add_dir(nullptr));
    EXPECT_TRUE(kernel->plugin_search_path_get(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "a/;b;;");
    EXPECT_TRUE(kernel->plugin_search_path_clear());
    EXPECT_TRUE(kernel->plugin_search_path_get(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
}

TEST_F(KernelTest, search_path_removes_one_entry_at_a_time) {
    for (const char* directory : {"twice/", "once/", "twice/"})
        kernel->plugin_search_path_add_dir(directory);
    char buffer[64] = {};
    EXPECT_TRUE(kernel->plugin_search_path_remove_dir("twice/"));
    kernel->plugin_search_path_get(buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "once/;twice/;");
    EXPECT_TRUE(kernel->plugin_search_path_remove_dir("twice/"));
    kernel->plugin_search_path_get(buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "once/;");
    EXPECT_FALSE(kernel->plugin_search_path_remove_dir("twice/"));
    EXPECT_FALSE(kernel->plugin_search_path_remove_dir("once"));
    EXPECT_FALSE(kernel->plugin_search_path_remove_dir(nullptr));
}

TEST_F(KernelTest, search_path_never_writes_the_last_byte_of_a_buffer) {
    kernel->plugin_search_path_add_dir("abc"); // "abc;"
    struct Row {
        unsigned long size;
        const char* bytes;
    };
    const Row rows[] = {
        {1, "########"}, {2, "a#######"},  {4, "abc#####"},
        {5, "abc;####"}, {6, "abc;\0###"}, {8, "abc;\0\0\0#"},
    };
    for (const Row& row : rows) {
        char buffer[8];
        std::memset(buffer, '#', sizeof buffer);
        EXPECT_TRUE(kernel->plugin_search_path_get(buffer, row.size));
        EXPECT_EQ(std::memcmp(buffer, row.bytes, sizeof buffer), 0) << row.size;
    }
    char buffer[1] = {'#'};
    EXPECT_FALSE(kernel->plugin_search_path_get(buffer, 0));
    EXPECT_EQ(buffer[0], '#');
    EXPECT_FALSE(kernel->plugin_search_path_get(nullptr, 8));
}

/// Which of the classes takes a node for one of its own.
std::vector<const void*> kinds_of(Node* node) {
    return {Camera::from_node(node),   Light::from_node(node),   Mesh::from_node(node),
            Polyline::from_node(node), Texture::from_node(node), VertexPool::from_node(node)};
}

TEST(NodeKinds, are_those_of_the_constructors_whatever_type_a_node_bears) {
    using Kinds = std::vector<const void*>;
    auto* const camera = new Camera;
    auto* const light = new Light;
    auto* const mesh = new MeshBox;
    auto* const line = new Polyline;
    auto* const texture = new Texture;
    auto* const pool = new VertexPool;
    EXPECT_EQ(kinds_of(camera), (Kinds{camera, nullptr, nullptr, nullptr, nullptr, nullptr}));
    EXPECT_EQ(kinds_of(light), (Kinds{nullptr, light, nullptr, nullptr, nullptr, nullptr}));
    EXPECT_EQ(kinds_of(mesh), (Kinds{nullptr, nullptr, mesh, nullptr, nullptr, nullptr}));
    EXPECT_EQ(kinds_of(line), (Kinds{nullptr, nullptr, nullptr, line, nullptr, nullptr}));
    EXPECT_EQ(kinds_of(texture), (Kinds{nullptr, nullptr, nullptr, nullptr, texture, nullptr}));
    EXPECT_EQ(kinds_of(pool), (Kinds{nullptr, nullptr, nullptr, nullptr, nullptr, pool}));

    auto* const impostor = new Object;
    for (const NODE_TYPE type : {NODE_TYPE_CAMERA, NODE_TYPE_LIGHT, NODE_TYPE_MESH,
                                 NODE_TYPE_POLYLINE, NODE_TYPE_TEXTURE, NODE_TYPE_VERTEX_POOL})
        impostor->set_type(type);
    for (Node* const none : {static_cast<Node*>(impostor), static_cast<Node*>(nullptr)})
        EXPECT_EQ(kinds_of(none), Kinds(6));
    for (Node* const node :
         {static_cast<Node*>(camera), static_cast<Node*>(light), static_cast<Node*>(mesh),
          static_cast<Node*>(line), static_cast<Node*>(texture), static_cast<Node*>(pool),
          static_cast<Node*>(impostor)})
        node->kill(nullptr, nullptr);
}

TEST_F(KernelTest, tells_loaders_and_codecs_from_plugins_that_only_bear_their_type) {
    kernel->load_core_loader3d_plugins();
    kernel->load_core_image_codec_plugins();
    Plugin* const loader = registry->get_plugin_by_type(PLUGIN_TYPE_LOADER_3D, 0);
    Plugin* const codec = registry->get_plugin_by_type(PLUGIN_TYPE_IMAGE_CODEC, 0);
    EXPECT_EQ(Loader3D::from_plugin(loader), loader);
    EXPECT_EQ(ImageCodec::from_plugin(codec), codec);
    EXPECT_FALSE(Loader3D::from_plugin(codec) || ImageCodec::from_plugin(loader));
    Plugin impostor;
    for (const PLUGIN_TYPE type : {PLUGIN_TYPE_LOADER_3D, PLUGIN_TYPE_IMAGE_CODEC}) {
        impostor.set_type(type);
        for (Plugin* const none : {&impostor, static_cast<Plugin*>(nullptr)})
            EXPECT_FALSE(Loader3D::from_plugin(none) || ImageCodec::from_plugin(none));
    }
}

} // namespace
} // namespace orvex_test
