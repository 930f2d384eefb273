#include "orvex/overlays/hud.h"

#include <algorithm>
#include <string>
#include <utility>

#include "orvex/assets/textures/texture.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/texture_data.h"
#include "other_text.h"
#include "overlay_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Sources = std::vector<std::pair<int, std::string>>;

const std::string vs_gl2 =
    "#version 120\nuniform mat4 orvex_ModelViewProjectionMatrix;\nvoid main()\n{\n  gl_Position = "
    "orvex_ModelViewProjectionMatrix * gl_Vertex;\n  gl_TexCoord[0] = gl_MultiTexCoord0; \n}";
const std::string ps_gl2 =
    "#version 120\nuniform sampler2D tex0;\nvoid main()\n{\n  vec2 uv = gl_TexCoord[0].xy; \n  "
    "uv.y *= -1.0; \n  gl_FragColor = texture2D(tex0, uv); \n}";
const std::string vs_gl3 =
    "#version 150\nin vec4 orvex_Position;\nin vec4 orvex_TexCoord0;\nout vec4 Vertex_UV;\nuniform "
    "mat4 orvex_ModelViewProjectionMatrix;\nvoid main()\n{\n  gl_Position = "
    "orvex_ModelViewProjectionMatrix * orvex_Position;\n  Vertex_UV = orvex_TexCoord0;\n}";
const std::string ps_gl3 =
    "#version 150\nuniform sampler2D tex0;\nin vec4 Vertex_UV;\nout vec4 Out_Color;\nvoid "
    "main()\n{\n  vec2 uv = Vertex_UV.xy; \n  uv.y *= -1.0; \n  Out_Color = texture(tex0, uv); "
    "\n}";

/// What draws the hud's quad once everything is there.
const Calls drawing_calls = {
    "get_viewport(pointer, pointer, pointer, pointer)",
    "rasterizer_set_cull_state(false)",
    "rasterizer_set_cull_face(" + std::to_string(POLYGON_FACE_BACK) + ")",
    "rasterizer_set_polygon_mode(" + std::to_string(POLYGON_FACE_FRONT_AND_BACK) + ", " +
        std::to_string(POLYGON_MODE_FILL) + ")",
    "rasterizer_apply_state()",
    "set_depth_test_state(false)",
    "set_blend_state(true)",
    "set_blend_factors(" + std::to_string(BLEND_FACTOR_SRC_ALPHA) + ", " +
        std::to_string(BLEND_FACTOR_ONE_MINUS_SRC_ALPHA) + ")",
    "set_scissor_state(true)",
    "set_viewport(10, 20, 64, 32)",
    "set_scissor(10, 20, 64, 32)",
    "set_projection_matrix((1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1), false)",
    "set_view_matrix((1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 1), false)",
    "gpu_program_activate(program)",
    "texture_bind(picture, 0)",
};

Calls without_signs_of_zeros(Calls calls) {
    for (std::string& call : calls)
        for (const char* const zero : {"-0,", "-0)"})
            for (std::size_t at; (at = call.find(zero)) != std::string::npos;)
                call.erase(at, 1);
    return calls;
}

class HudTest : public OverlayTest {
protected:
    ~HudTest() override { hud.cleanup(&renderer); }

    void init() {
        ASSERT_TRUE(hud.init_texture(&renderer, dir.write("logo.png", "flat 4 2 9").c_str()));
        name_picture();
    }

    void name_picture() {
        auto* const texture = static_cast<Texture*>(textures.get_resource_by_index(0));
        renderer.name_pointer(texture->get_data_ptr(), "picture");
        texture->get_data_ptr()->needs_gpu_update = false;
        renderer.take_calls();
    }

    void render(bool blend = true) {
        hud.render(&renderer, 10, 20, 64, 32, blend, BLEND_FACTOR_SRC_ALPHA,
                   BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    }

    aux::Hud hud;
};

TEST_F(HudTest, takes_the_shaders_of_the_running_version) {
    init();
    for (const auto& [major, expected] : {std::pair{2, Sources{{0, vs_gl2}, {1, ps_gl2}}},
                                          std::pair{3, Sources{{0, vs_gl3}, {1, ps_gl3}}}}) {
        renderer.api_version_major = major;
        renderer.sources.clear();
        aux::Hud other;
        other.render(&renderer, static_cast<Texture*>(textures.get_resource_by_index(0)), 0, 0, 1,
                     1, false, BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
        EXPECT_EQ(renderer.sources, expected) << "major version " << major;
        other.cleanup(&renderer);
    }
}

TEST_F(HudTest, draws_the_texts_that_a_host_put_in_place) {
    const OtherText vertex(aux::orvex_hud_tex_ortho_proj_vs_gl3, "my vertex");
    const OtherText pixel(aux::orvex_hud_tex_ortho_proj_ps_gl3, "my pixel");
    init();
    render();
    EXPECT_EQ(renderer.sources, (Sources{{0, "my vertex"}, {1, "my pixel"}}));
}

TEST_F(HudTest, makes_its_program_and_quad_at_the_first_draw) {
    init();
    render();
    Calls expected = {"get_opengl_version(pointer, pointer)", "gpu_program_activate(program)",
                      "gpu_program_set_uniform_1i(program, \"tex0\", 0)",
                      "gpu_program_activate(null)"};
    expected.insert(expected.end(), drawing_calls.begin(), drawing_calls.end());
    for (const char* const call :
         {"gpu_program_update_user_vertex_attrib_locations_mesh(program, pointer)",
          "gpu_program_bind_uniforms(program)", "vertex_buffer_prepare(pointer)",
          "vertex_buffer_draw(pointer)", "vertex_buffer_finish(pointer)",
          "set_scissor_state(false)", "set_blend_state(false)", "set_depth_test_state(true)",
          "set_viewport(0, 0, 640, 480)"})
        expected.push_back(call);
    EXPECT_EQ(without_signs_of_zeros(renderer.take_calls()), expected);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(HudTest, makes_nothing_new_at_the_second_draw) {
    init();
    render();
    renderer.take_calls();
    const unsigned long num_programs = programs.get_num_resources();
    hud.render(&renderer, 1, 2, 3, 4, false, BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
    const Calls calls = renderer.take_calls();
    EXPECT_EQ(calls.front(), drawing_calls.front());
    EXPECT_NE(std::find(calls.begin(), calls.end(), "set_viewport(1, 2, 3, 4)"), calls.end());
    EXPECT_NE(std::find(calls.begin(), calls.end(), "set_scissor(1, 2, 3, 4)"), calls.end());
    EXPECT_EQ(programs.get_num_resources(), num_programs);
    EXPECT_EQ(renderer.sources.size(), 2u);
}

TEST_F(HudTest, loads_fixed_matrices_below_version_3_alone) {
    init();
    for (const int major : {2, 3}) {
        hud.cleanup(nullptr);
        init();
        renderer.api_version_major = major;
        render();
        EXPECT_EQ(renderer.count("gl2_matrix_load"), major < 3 ? 1 : 0);
        renderer.take_calls();
    }
}

TEST_F(HudTest, never_sets_factors_without_blending) {
    init();
    render(false);
    EXPECT_EQ(renderer.count("set_blend_factors"), 0);
    EXPECT_EQ(renderer.count("set_blend_state"), 2);
    const Calls calls = renderer.take_calls();
    EXPECT_EQ(std::find(calls.begin(), calls.end(), "set_blend_state(true)"), calls.end());
}

TEST_F(HudTest, leaves_cull_and_polygon_state_as_it_set_them) {
    init();
    render();
    EXPECT_EQ(renderer.count("rasterizer_set_cull_state"), 1);
    EXPECT_EQ(renderer.count("rasterizer_set_polygon_mode"), 1);
    EXPECT_EQ(renderer.count("rasterizer_apply_state"), 1);
    EXPECT_NE(renderer.active_program, nullptr) << "the program stays in use";
}

TEST_F(HudTest, draws_nothing_without_a_texture_or_a_renderer) {
    render();
    hud.render(&renderer, nullptr, 0, 0, 1, 1, true, BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
    EXPECT_EQ(renderer.take_calls(), Calls());
    init();
    hud.render(nullptr, 0, 0, 1, 1, true, BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
    EXPECT_EQ(renderer.take_calls(), Calls());
    EXPECT_EQ(programs.get_num_resources(), 0u);
}

TEST_F(HudTest, draws_a_texture_of_the_host) {
    Texture* const texture = textures.create_texture_2d(2, 2, PF_RGB_U8);
    name_picture();
    hud.render(&renderer, texture, 0, 0, 8, 8, false, BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
    const Calls calls = renderer.take_calls();
    EXPECT_NE(std::find(calls.begin(), calls.end(), "texture_bind(picture, 0)"), calls.end());
    hud.cleanup(&renderer);
    EXPECT_EQ(textures.get_num_resources(), 1u) << "cleanup leaves it to the host";
    textures.release_texture(&renderer, texture, nullptr);
}

// -------------------------------------------------------------------------------- its own texture

TEST_F(HudTest, uploads_the_texture_it_loads) {
    ASSERT_TRUE(hud.init_texture(&renderer, dir.write("logo.png", "flat 4 2 9").c_str()));
    EXPECT_EQ(renderer.take_calls(), Calls({"texture_2d_load(pointer, 0)"}));
    auto* const texture = static_cast<Texture*>(textures.get_resource_by_index(0));
    EXPECT_EQ(texture->get_width(), 4u);
    EXPECT_EQ(texture->get_height(), 2u);
    EXPECT_FALSE(codec->flag) << "the decoder's memory is used as it is";
    EXPECT_EQ(texture->get_ref(), 1);
}

TEST_F(HudTest, replaces_its_texture) {
    init();
    ASSERT_TRUE(hud.init_texture(&renderer, dir.write("other.png", "flat 8 8 1").c_str()));
    ASSERT_EQ(textures.get_num_resources(), 1u);
    EXPECT_EQ(static_cast<Texture*>(textures.get_resource_by_index(0))->get_width(), 8u);
    EXPECT_EQ(codec->live(), 1u);
}

TEST_F(HudTest, reports_a_texture_that_does_not_load) {
    init();
    EXPECT_FALSE(hud.init_texture(&renderer, "no/such.png"));
    EXPECT_EQ(log.messages(), Calls({"<*> - Unable to load texture (no/such.png)."}));
    EXPECT_EQ(textures.get_num_resources(), 0u) << "the one before is gone";
    renderer.take_calls();
    render();
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(HudTest, reports_a_texture_that_does_not_upload) {
    renderer.results["texture_2d_load"] = false;
    const std::string file = dir.write("logo.png", "flat 4 2 9");
    EXPECT_FALSE(hud.init_texture(&renderer, file.c_str()));
    EXPECT_EQ(log.messages(),
              Calls({"<*> - Unable to upload texture (" + file + ") to renderer."}));
    EXPECT_EQ(textures.get_num_resources(), 0u);
    EXPECT_EQ(codec->live(), 0u);
}

TEST_F(HudTest, keeps_its_texture_when_it_is_told_nothing) {
    init();
    EXPECT_FALSE(hud.init_texture(nullptr, "logo.png"));
    EXPECT_FALSE(hud.init_texture(&renderer, nullptr));
    EXPECT_EQ(textures.get_num_resources(), 1u);
    EXPECT_TRUE(log.messages().empty());
}

// -------------------------------------------------------------------------------- failures

TEST_F(HudTest, reports_a_program_that_does_not_compile_at_every_draw) {
    init();
    const OtherText pixel(aux::orvex_hud_tex_ortho_proj_ps_gl3, "bad pixel");
    for (int frame = 0; frame < 2; ++frame) {
        log.clear();
        renderer.take_calls();
        render();
        EXPECT_TRUE(log.has("<*> - orvex_hud_tex_ortho_proj_XXXX GPU program error: \nPixel shader "
                            "error: bad 1"));
        EXPECT_EQ(renderer.take_names(), Calls({"get_opengl_version", "gpu_program_kill"}))
            << "no state is touched";
        EXPECT_EQ(programs.get_num_resources(), 0u);
    }
}

TEST_F(HudTest, reports_a_program_that_fails_without_a_word) {
    init();
    renderer.leaves_log = false;
    const OtherText vertex(aux::orvex_hud_tex_ortho_proj_vs_gl3, "bad vertex");
    render();
    EXPECT_EQ(log.messages(), Calls({"<*> - orvex_hud_tex_ortho_proj_XXXX GPU program has erros"}));
    EXPECT_EQ(programs.get_num_resources(), 0u);
}

TEST_F(HudTest, reports_a_program_that_does_not_link) {
    init();
    renderer.results["gpu_program_activate"] = false;
    render();
    EXPECT_EQ(log.messages(),
              Calls({"<*> - unable to create the GPU program orvex_hud_tex_ortho_proj_XXXX."}));
    EXPECT_EQ(programs.get_num_resources(), 0u);
    EXPECT_EQ(renderer.count("set_depth_test_state"), 0);
}

TEST_F(HudTest, draws_once_the_program_can_be_made) {
    init();
    {
        const OtherText vertex(aux::orvex_hud_tex_ortho_proj_vs_gl3, "bad");
        render();
    }
    renderer.take_calls();
    render();
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1);
}

// -------------------------------------------------------------------------------- end

TEST_F(HudTest, gives_everything_back) {
    init();
    render();
    renderer.take_calls();
    hud.cleanup(&renderer);
    EXPECT_EQ(renderer.take_names(),
              Calls({"gpu_program_kill", "texture_unload", "vertex_buffer_kill"}));
    hud.cleanup(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls()) << "nothing is left to give back";
    render();
    EXPECT_EQ(renderer.take_calls(), Calls()) << "as a new one";
}

TEST_F(HudTest, starts_afresh_after_a_cleanup) {
    init();
    render();
    hud.cleanup(&renderer);
    init();
    render();
    EXPECT_EQ(renderer.count("get_opengl_version"), 1);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 1);
}

TEST_F(HudTest, outlives_what_the_managers_end) {
    init();
    render();
    stop_managers();
    renderer.take_calls();
    render();
    EXPECT_EQ(renderer.take_calls(), Calls()) << "its texture is gone";
    hud.cleanup(&renderer);
    EXPECT_EQ(renderer.take_names(), Calls({"vertex_buffer_kill"}));
}

} // namespace

} // namespace orvex_test
