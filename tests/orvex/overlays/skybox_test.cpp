#include "orvex/overlays/skybox.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "orvex/assets/textures/texture.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/texture_data.h"
#include "other_text.h"
#include "overlay_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Sources = std::vector<std::pair<int, std::string>>;

const std::string vs_gl2 =
    "#version 120\nuniform mat4 orvex_ModelViewMatrix;\nuniform mat4 "
    "orvex_ProjectionMatrix;\nvoid main() \n{\n  mat4 r = orvex_ModelViewMatrix;\n  r[3][0] = "
    "0.0;\n  r[3][1] = 0.0;\n  r[3][2] = 0.0;\n  vec4 v = inverse(r) * "
    "inverse(orvex_ProjectionMatrix) * gl_Vertex;\n  gl_TexCoord[0] = v;\n  gl_Position = "
    "gl_Vertex;\n}";
const std::string ps_gl2 =
    "#version 120\nuniform samplerCube cubemap;\nvoid main() \n{\nvec3 uv = "
    "gl_TexCoord[0].xyz;\nuv.x *= -1.0;\n  gl_FragColor = textureCube(cubemap, "
    "normalize(uv.xyz)); \n}";
const std::string vs_gl3 =
    "#version 150\nin vec4 orvex_Position;\nout vec4 Vertex_UV;\nuniform mat4 "
    "orvex_ModelViewMatrix;\nuniform mat4 orvex_ProjectionMatrix;\nvoid main() \n{\n  mat4 r = "
    "orvex_ModelViewMatrix;\n  r[3][0] = 0.0;\n  r[3][1] = 0.0;\n  r[3][2] = 0.0;\n  vec4 v = "
    "inverse(r) * inverse(orvex_ProjectionMatrix) * orvex_Position;\n  Vertex_UV = v;\n  "
    "gl_Position = orvex_Position;\n}";
const std::string ps_gl3 =
    "#version 150\nin vec4 Vertex_UV;\nout vec4 Out_Color;\nuniform samplerCube cubemap;\nvoid "
    "main() \n{\nvec3 uv = Vertex_UV.xyz;\nuv.x *= -1.0;\n  Out_Color = texture(cubemap, "
    "normalize(uv.xyz)); \n}";

/// What draws a skybox that has its program.
const Calls drawing_calls = {"gpu_program_activate",
                             "texture_bind",
                             "gpu_program_update_user_vertex_attrib_locations_mesh",
                             "gpu_program_bind_uniforms",
                             "vertex_buffer_prepare",
                             "vertex_buffer_draw",
                             "vertex_buffer_finish"};

/// What `Object` draws for a skybox with its axes on.
int axes_drawn(const OverlayRenderer& renderer) {
    return renderer.count("render_line");
}

class SkyboxTest : public OverlayTest {
protected:
    SkyboxTest() { sky->set_opengl_2_3_rendering_states(false, nullptr); }
    ~SkyboxTest() override {
        if (sky)
            end();
    }

    void end() { EXPECT_EQ(std::exchange(sky, nullptr)->release(&renderer, nullptr), 0); }

    std::string face(const std::string& name, int size = 2, int value = 7) const {
        const std::string width = std::to_string(size);
        return dir.write(name, "flat " + width + " " + width + " " + std::to_string(value));
    }

    bool load(int size = 2) {
        const std::string path = face("face.png", size);
        const char* const file = path.c_str();
        const bool loaded = sky->load_all_faces_from_files(&renderer, file, file, file, file, file,
                                                           file, PF_RGB_U8);
        if (Texture* const cubemap = sky->get_cubemap()) {
            renderer.name_pointer(cubemap->get_data_ptr(), "cubemap");
            cubemap->get_data_ptr()->needs_gpu_update = false;
        }
        return loaded;
    }

    Skybox* sky = new Skybox;
};

TEST_F(SkyboxTest, is_an_object_with_a_quad_and_nothing_else) {
    EXPECT_EQ(sky->get_type(), NODE_TYPE_SKYBOX);
    EXPECT_EQ(NODE_TYPE_SKYBOX, 25);
    EXPECT_TRUE(sky->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_EQ(sky->get_cubemap(), nullptr);
    EXPECT_EQ(sky->get_cubemap_gpu_program(), nullptr);
    EXPECT_EQ(sky->get_num_children(), 0u) << "the quad is no child";
    sky->render_geometry(&renderer);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1);
}

/// Keeps the first corner of the last mesh that was drawn.
class CornerRenderer : public OverlayRenderer {
public:
    bool vertex_buffer_draw(MeshData* mesh) override {
        corner = mesh->get_position(0);
        return OverlayRenderer::vertex_buffer_draw(mesh);
    }
    vec4 corner;
};

TEST_F(SkyboxTest, has_a_quad_of_800_by_600_until_it_is_resized) {
    CornerRenderer corners;
    sky->render_geometry(&corners);
    EXPECT_EQ(std::abs(corners.corner.x), 400.0f);
    EXPECT_EQ(std::abs(corners.corner.y), 300.0f);
    EXPECT_EQ(corners.corner.z, 0.0f);
    sky->resize(2.0f, 3.0f);
    sky->render_geometry(&corners);
    EXPECT_EQ(std::abs(corners.corner.x), 1.0f);
    EXPECT_EQ(std::abs(corners.corner.y), 1.5f);
}

TEST_F(SkyboxTest, forwards_the_steps_of_drawing_to_its_quad) {
    sky->render_geometry_prepare(&renderer);
    EXPECT_EQ(renderer.take_names(), Calls({"vertex_buffer_prepare"}));
    sky->render_geometry_draw(&renderer);
    EXPECT_EQ(renderer.take_names(), Calls({"vertex_buffer_draw"}));
    sky->render_geometry_finish(&renderer);
    EXPECT_EQ(renderer.take_names(), Calls({"vertex_buffer_finish"}));
    sky->render_geometry(&renderer);
    EXPECT_EQ(renderer.take_names(),
              Calls({"vertex_buffer_prepare", "vertex_buffer_draw", "vertex_buffer_finish"}));
    sky->_cleanup(&renderer);
    renderer.take_calls();
    sky->render_geometry(&renderer);
    sky->render_geometry_prepare(&renderer);
    sky->render_geometry_draw(&renderer);
    sky->render_geometry_finish(&renderer);
    sky->resize(1.0f, 1.0f);
    EXPECT_EQ(renderer.take_calls(), Calls()) << "the quad went with the clean-up";
}

// -------------------------------------------------------------------------------- cube map

TEST_F(SkyboxTest, loads_six_faces_in_their_order) {
    std::string paths[6];
    const char* files[6];
    for (int i = 0; i < 6; ++i) {
        paths[i] = face("face" + std::to_string(i) + ".png", 4, 10 * i);
        files[i] = paths[i].c_str();
    }
    for (const bool one_by_one : {false, true}) {
        const bool loaded =
            one_by_one ? sky->load_all_faces_from_files(&renderer, files[0], files[1], files[2],
                                                        files[3], files[4], files[5], PF_RGBA_U8)
                       : sky->load_all_faces_from_files(&renderer, files, PF_RGBA_U8);
        ASSERT_TRUE(loaded);
        Texture* const cubemap = sky->get_cubemap();
        EXPECT_EQ(cubemap->get_ref(), 2) << "the manager and the skybox";
        EXPECT_EQ(cubemap->get_pixel_format(), PF_RGBA_U8);
        EXPECT_FALSE(cubemap->get_data_ptr()->gen_mipmaps);
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(cubemap->get_cubemap_image_ptr(CUBEMAP_FACE(i))->get_u8_ptr()[0], 10 * i);
        EXPECT_EQ(renderer.count("texture_cube_load"), 1);
        EXPECT_FALSE(codec->flag);
        renderer.take_calls();
    }
}

TEST_F(SkyboxTest, keeps_the_files_format_where_it_cannot_convert) {
    const std::string path = face("face.png");
    const char* const files[] = {path.c_str(), path.c_str(), path.c_str(),
                                 path.c_str(), path.c_str(), path.c_str()};
    EXPECT_TRUE(sky->load_all_faces_from_files(&renderer, files, PF_NONE));
    EXPECT_EQ(sky->get_cubemap()->get_pixel_format(), PF_RGB_U8);
}

TEST_F(SkyboxTest, replaces_its_cube_map) {
    ASSERT_TRUE(load(2));
    ASSERT_TRUE(load(4));
    EXPECT_EQ(sky->get_cubemap()->get_cubemap_size(), 4u);
    EXPECT_EQ(textures.get_num_resources(), 1u);
    EXPECT_EQ(codec->live(), 6u);
}

TEST_F(SkyboxTest, has_no_cube_map_when_a_face_does_not_load) {
    ASSERT_TRUE(load());
    const std::string path = face("face.png");
    const char* const good = path.c_str();
    EXPECT_FALSE(sky->load_all_faces_from_files(&renderer, good, good, good, good, good,
                                                "no/such.png", PF_RGB_U8));
    EXPECT_EQ(sky->get_cubemap(), nullptr);
    EXPECT_EQ(codec->live(), 0u);
    ASSERT_TRUE(load());
    EXPECT_FALSE(sky->load_all_faces_from_files(&renderer, nullptr, PF_RGB_U8));
    EXPECT_EQ(sky->get_cubemap(), nullptr);
    EXPECT_FALSE(sky->load_all_faces_from_files(&renderer, good, good, nullptr, good, good, good,
                                                PF_RGB_U8));
    EXPECT_EQ(sky->get_cubemap(), nullptr);
    EXPECT_TRUE(log.messages().empty()) << "nothing is logged here";
}

TEST_F(SkyboxTest, keeps_a_cube_map_that_did_not_upload_without_a_reference) {
    renderer.results["texture_cube_load"] = false;
    EXPECT_FALSE(load());
    ASSERT_NE(sky->get_cubemap(), nullptr);
    EXPECT_EQ(sky->get_cubemap()->get_ref(), 1) << "the manager's";
    renderer.results.clear();
    EXPECT_TRUE(load(4));
    EXPECT_EQ(textures.get_num_resources(), 1u) << "the manager gave the first one up";
    EXPECT_EQ(codec->live(), 6u);
}

TEST_F(SkyboxTest, gives_a_cube_map_that_did_not_upload_back_through_the_manager) {
    renderer.results["texture_cube_load"] = false;
    for (const bool host_holds_it : {false, true}) {
        EXPECT_FALSE(load());
        Texture* const cubemap = sky->get_cubemap();
        if (host_holds_it)
            cubemap->add_ref();
        sky->_cleanup(&renderer);
        EXPECT_EQ(textures.get_num_resources(), 0u);
        if (host_holds_it) {
            EXPECT_EQ(cubemap->get_ref(), 1);
            EXPECT_EQ(cubemap->release(&renderer, nullptr), 0);
        }
    }
}

TEST_F(SkyboxTest, uploads_nothing_without_a_renderer) {
    const std::string path = face("face.png");
    const char* const file = path.c_str();
    EXPECT_FALSE(
        sky->load_all_faces_from_files(nullptr, file, file, file, file, file, file, PF_RGB_U8));
    EXPECT_NE(sky->get_cubemap(), nullptr);
}

// -------------------------------------------------------------------------------- drawing

TEST_F(SkyboxTest, draws_only_what_an_object_draws_without_a_cube_map) {
    sky->set_display_tripod_state(true, nullptr);
    sky->render(&renderer, nullptr);
    EXPECT_EQ(axes_drawn(renderer), 3);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 0);
    EXPECT_EQ(programs.get_num_resources(), 0u);
}

TEST_F(SkyboxTest, makes_its_program_at_the_first_draw) {
    for (const bool gl2 : {true, false}) {
        sky->set_opengl_2_3_rendering_states(gl2, nullptr);
        ASSERT_TRUE(load());
        renderer.sources.clear();
        sky->render(&renderer, nullptr);
        EXPECT_EQ(renderer.sources,
                  gl2 ? Sources({{0, vs_gl2}, {1, ps_gl2}}) : Sources({{0, vs_gl3}, {1, ps_gl3}}));
        GpuProgram* const program = sky->get_cubemap_gpu_program();
        EXPECT_STREQ(program->get_name(), gl2 ? "orvex_skybox_gl2_prog" : "orvex_skybox_gl3_prog");
        EXPECT_EQ(program->get_ref(), 2) << "the manager and the skybox";
        sky->render(&renderer, nullptr);
        EXPECT_EQ(renderer.sources.size(), 2u) << "made once";
        sky->set_cubemap_gpu_program(nullptr);
        programs.release_all_resources(&renderer, nullptr);
    }
}

TEST_F(SkyboxTest, draws_the_texts_that_a_host_put_in_place) {
    const OtherText vertex(orvex_skybox_vs_gl3, "my vertex");
    const OtherText pixel(orvex_skybox_ps_gl3, "my pixel");
    ASSERT_TRUE(load());
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.sources, Sources({{0, "my vertex"}, {1, "my pixel"}}));
}

TEST_F(SkyboxTest, draws_its_quad_with_program_and_cube_map) {
    ASSERT_TRUE(load());
    renderer.ignored.push_back("gl2_matrix_load");
    renderer.take_calls();
    sky->render(&renderer, nullptr);
    Calls expected = {"gpu_program_activate", "gpu_program_set_uniform_1i"};
    expected.insert(expected.end(), drawing_calls.begin(), drawing_calls.end());
    EXPECT_EQ(renderer.take_names(), expected);
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_names(), drawing_calls);
}

TEST_F(SkyboxTest, feeds_its_program_the_sampler_once) {
    ASSERT_TRUE(load());
    for (int frame = 0; frame < 2; ++frame) {
        renderer.take_calls();
        sky->render(&renderer, nullptr);
        const Calls calls = renderer.take_calls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(),
                             "gpu_program_set_uniform_1i(program, \"cubemap\", 0)"),
                  frame == 0 ? 1 : 0);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "texture_bind(cubemap, 0)"), 1);
    }
}

TEST_F(SkyboxTest, sets_no_render_state) {
    ASSERT_TRUE(load());
    sky->render(&renderer, nullptr);
    for (const std::string& call : renderer.take_calls()) {
        EXPECT_EQ(call.find("set_depth"), std::string::npos) << call;
        EXPECT_EQ(call.find("rasterizer"), std::string::npos) << call;
        EXPECT_EQ(call.find("set_blend"), std::string::npos) << call;
        EXPECT_EQ(call.find("deactivate"), std::string::npos) << call;
    }
    EXPECT_NE(renderer.active_program, nullptr) << "its program stays in use";
}

TEST_F(SkyboxTest, draws_what_an_object_draws_last) {
    ASSERT_TRUE(load());
    sky->set_display_tripod_state(true, nullptr);
    sky->render(&renderer, nullptr);
    const Calls names = renderer.take_names();
    EXPECT_GT(std::find(names.begin(), names.end(), "render_line"),
              std::find(names.begin(), names.end(), "vertex_buffer_finish"));
    EXPECT_EQ(std::count(names.begin(), names.end(), "render_line"), 3);
}

TEST_F(SkyboxTest, draws_nothing_without_a_renderer) {
    ASSERT_TRUE(load());
    sky->render(nullptr, nullptr);
    EXPECT_EQ(programs.get_num_resources(), 0u);
}

TEST_F(SkyboxTest, draws_nothing_with_a_program_that_did_not_compile) {
    const OtherText vertex(orvex_skybox_vs_gl3, "bad");
    ASSERT_TRUE(load());
    sky->set_display_tripod_state(true, nullptr);
    for (int frame = 0; frame < 3; ++frame) {
        renderer.take_calls();
        sky->render(&renderer, nullptr);
        EXPECT_EQ(renderer.count("gpu_program_set_uniform_1i"), 0)
            << "it would go to the program of another";
        EXPECT_EQ(renderer.count("vertex_buffer_draw"), 0);
        EXPECT_EQ(axes_drawn(renderer), 3);
        EXPECT_EQ(renderer.sources.size(), 2u) << "tried once";
    }
    EXPECT_EQ(renderer.active_program, nullptr);
    EXPECT_NE(sky->get_cubemap_gpu_program(), nullptr);
    ASSERT_EQ(log.messages().size(), 2u);
    EXPECT_EQ(log.messages()[1],
              "<*> GPU program orvex_skybox_gl3_prog - Vertex shader error: bad 0");
}

TEST_F(SkyboxTest, draws_nothing_with_a_program_that_does_not_bind) {
    ASSERT_TRUE(load());
    sky->set_cubemap_gpu_program(new GpuProgram);
    renderer.results["gpu_program_activate"] = false;
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("texture_bind"), 0);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 0);
    renderer.results.clear();
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1) << "it may bind later";
}

// -------------------------------------------------------------------------------- host's program

TEST_F(SkyboxTest, draws_with_the_hosts_program_and_leaves_its_uniforms_alone) {
    ASSERT_TRUE(load());
    renderer.ignored.push_back("gl2_matrix_load");
    auto* const program = new GpuProgram;
    sky->set_cubemap_gpu_program(program);
    EXPECT_EQ(sky->get_cubemap_gpu_program(), program);
    EXPECT_EQ(program->get_ref(), 1);
    renderer.take_calls();
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_names(), drawing_calls);
    EXPECT_TRUE(renderer.sources.empty());
}

TEST_F(SkyboxTest, holds_one_program_at_a_time) {
    auto* const first = new GpuProgram;
    first->add_ref();
    auto* const second = new GpuProgram;
    sky->set_cubemap_gpu_program(first);
    EXPECT_EQ(first->get_ref(), 2);
    sky->set_cubemap_gpu_program(first);
    EXPECT_EQ(first->get_ref(), 2);
    sky->set_cubemap_gpu_program(second);
    EXPECT_EQ(first->get_ref(), 1);
    EXPECT_EQ(second->get_ref(), 1);
    sky->set_cubemap_gpu_program(second);
    EXPECT_EQ(sky->get_cubemap_gpu_program(), nullptr) << "it ended between release and hold";
    EXPECT_EQ(first->release(nullptr, nullptr), 0);
}

TEST_F(SkyboxTest, gives_back_the_managers_reference_to_the_hosts_program_and_its_own) {
    for (const bool listed : {true, false}) {
        auto* const program = listed ? programs.create_gpu_program("host's") : new GpuProgram;
        program->add_ref();
        if (!listed)
            program->add_ref();
        sky->set_cubemap_gpu_program(program);
        EXPECT_EQ(program->get_ref(), 3);
        sky->_cleanup(&renderer);
        EXPECT_EQ(sky->get_cubemap_gpu_program(), nullptr);
        EXPECT_EQ(programs.get_num_resources(), 0u);
        EXPECT_EQ(program->get_ref(), 1);
        EXPECT_EQ(program->release(&renderer, nullptr), 0);
    }
}

TEST_F(SkyboxTest, tries_anew_after_the_host_takes_a_failed_program_away) {
    ASSERT_TRUE(load());
    {
        const OtherText vertex(orvex_skybox_vs_gl3, "bad");
        sky->render(&renderer, nullptr);
    }
    sky->set_cubemap_gpu_program(nullptr);
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1);
    programs.release_all_resources(&renderer, nullptr);
}

TEST_F(SkyboxTest, draws_with_the_hosts_program_after_its_own_failed) {
    ASSERT_TRUE(load());
    {
        const OtherText vertex(orvex_skybox_vs_gl3, "bad");
        sky->render(&renderer, nullptr);
    }
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 0);
    sky->set_cubemap_gpu_program(new GpuProgram);
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1);
    programs.release_all_resources(&renderer, nullptr);
}

// -------------------------------------------------------------------------------- end

TEST_F(SkyboxTest, gives_everything_back) {
    ASSERT_TRUE(load());
    sky->render(&renderer, nullptr);
    renderer.take_calls();
    EXPECT_TRUE(sky->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_names(),
              Calls({"vertex_buffer_kill", "texture_unload", "gpu_program_kill"}));
    EXPECT_EQ(sky->get_cubemap(), nullptr);
    EXPECT_EQ(sky->get_cubemap_gpu_program(), nullptr);
    EXPECT_TRUE(sky->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(SkyboxTest, ends_without_a_cleanup_too) {
    ASSERT_TRUE(load());
    sky->render(&renderer, nullptr);
    delete std::exchange(sky, nullptr);
    EXPECT_EQ(textures.get_num_resources(), 0u);
    EXPECT_EQ(programs.get_num_resources(), 0u);
}

TEST_F(SkyboxTest, outlives_the_managers) {
    ASSERT_TRUE(load());
    sky->render(&renderer, nullptr);
    stop_managers();
    renderer.take_calls();
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1) << "it holds what it draws with";
    textures.register_image_codec_plugin(codec); // which takes the decoded pixels back
    end();
}

TEST_F(SkyboxTest, forgets_a_cube_map_that_the_manager_ended) {
    renderer.results["texture_cube_load"] = false;
    EXPECT_FALSE(load());
    stop_managers();
    EXPECT_EQ(sky->get_cubemap(), nullptr);
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 0);
}

TEST_F(SkyboxTest, is_resized_before_anything_else) {
    sky->resize(2.0f, 2.0f);
    ASSERT_TRUE(load());
    sky->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1);
}

} // namespace

} // namespace orvex_test
