// Pictures and textures: decoded, made, uploaded, drawn and written.

#include <cstdio>
#include <fstream>
#include <iterator>

#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

namespace {

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void tell_pixels(Stage& stage, Texture* texture) {
    stage.tell("width", static_cast<double>(texture->get_width()));
    stage.tell("height", static_cast<double>(texture->get_height()));
    const std::size_t bytes = texture->get_width() * texture->get_height() * 3;
    stage.tell("pixels", digest_of(texture->get_pixmap_u8_ptr(), bytes));
}

void release(Stage& stage, Texture* texture) {
    stage.run_quietly("release_texture", [&] {
        TextureMgr::get()->release_texture(stage.renderer, texture, nullptr);
    });
}

Texture* decode(Stage& stage, const char* name) {
    const std::string path = example_data(name);
    return stage.get("create_texture_2d_from_file", [&] {
        return TextureMgr::get()->create_texture_2d_from_file(path.c_str(), false);
    });
}

/// A texture of four by four pixels whose colours all differ.
Texture* make_texture(Stage& stage) {
    Texture* const texture = stage.get(
        "create_texture_2d", [] { return TextureMgr::get()->create_texture_2d(4, 4, PF_RGBA_U8); });
    for (unsigned long y = 0; y < 4; ++y)
        for (unsigned long x = 0; x < 4; ++x)
            texture->set_texel_2d(
                x, y,
                vec4(60.0f * static_cast<float>(x), 60.0f * static_cast<float>(y), 128.0f, 255.0f));
    return texture;
}

} // namespace

void play_picture_file(Stage& stage) {
    stage.start_engine();
    Texture* const texture = decode(stage, "lighthouse_wood.png");
    tell_pixels(stage, texture);
    release(stage, texture);
    stage.close();
}

void play_picture_memory(Stage& stage) {
    const std::string png = bytes_of(example_data("lighthouse_water.png"));
    stage.start_engine();
    Texture* const texture = stage.get("create_texture_2d_from_memory", [&] {
        return TextureMgr::get()->create_texture_2d_from_memory(
            reinterpret_cast<const unsigned char*>(png.data()), png.size(), true);
    });
    tell_pixels(stage, texture);
    release(stage, texture);
    stage.close();
}

void play_picture_jpeg(Stage& stage) {
    const std::string path = scratch_file("written.jpg");
    stage.start_engine();
    Texture* const texture = decode(stage, "lighthouse_stripes.png");
    stage.get("write_texture_2d_to_file",
              [&] { return TextureMgr::get()->write_texture_2d_to_file(texture, path.c_str()); });
    stage.tell("the file", digest_of_file(path));
    release(stage, texture);
    stage.close();
    std::remove(path.c_str());
}

void play_texture_made(Stage& stage) {
    stage.start_engine();
    Texture* const line = stage.get(
        "create_texture_1d", [] { return TextureMgr::get()->create_texture_1d(16, PF_RGBA_U8); });
    Texture* const noise = stage.get("create_texture_2d", [] {
        return TextureMgr::get()->create_texture_2d(16, 16, PF_RGB_U8);
    });
    stage.get("fill_with_noise", [&] {
        return noise->fill_with_noise(256, vec4(0, 0, 0, 0), vec4(255, 255, 255, 255), 7);
    });
    stage.get("flip_vertical", [&] { return noise->flip_vertical(); });
    stage.get("flip_horizontal", [&] { return noise->flip_horizontal(); });
    tell_pixels(stage, noise);
    stage.get("update_pixel_format", [&] { return noise->update_pixel_format(PF_RGBA_U8); });
    stage.tell("format", noise->get_pixel_format());
    release(stage, line);
    release(stage, noise);
    stage.close();
}

void play_texture_cube(Stage& stage) {
    stage.open_window(Path::gl3);
    std::string paths[6];
    const char* files[6];
    const char* const names[] = {"sky_px.png", "sky_nx.png", "sky_py.png",
                                 "sky_ny.png", "sky_pz.png", "sky_nz.png"};
    for (int face = 0; face < 6; ++face) {
        paths[face] = example_data(names[face]);
        files[face] = paths[face].c_str();
    }
    Texture* const cube = stage.get("create_texture_cube_from_files", [&] {
        return TextureMgr::get()->create_texture_cube_from_files(files, false);
    });
    stage.get("upload_to_renderer",
              [&] { return TextureMgr::get()->upload_to_renderer(stage.renderer, cube, 0); });
    stage.tell("size", static_cast<double>(cube->get_cubemap_size()));
    release(stage, cube);
    stage.close();
}

void play_texture_drawn(Stage& stage) {
    stage.open_window(Path::gl3);
    Texture* const texture = make_texture(stage);
    stage.get("upload_to_renderer",
              [&] { return TextureMgr::get()->upload_to_renderer(stage.renderer, texture, 0); });
    MeshQuad* const quad = stage.make<MeshQuad>();
    quad->set_build_params(4.0f, 4.0f);
    stage.build(quad);
    GpuProgram* const program = stage.make_textured_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        texture->bind(stage.renderer, 0);
        program->bind(stage.renderer);
        program->set_uniform_1i(stage.renderer, "picture", 0);
        quad->render(stage.renderer, nullptr);
        program->unbind(stage.renderer);
        texture->unbind(stage.renderer, 0);
    });
    stage.end(quad);
    stage.end(camera);
    release(stage, texture);
    stage.close();
}

void play_screenshot(Stage& stage) {
    const std::string path = scratch_file("screen.jpg");
    stage.open_window(Path::gl3);
    stage.frame([&] { stage.renderer->clear_color_depth_buffers(0.5f, 0.25f, 0.75f, 1, 1); });
    stage.get("do_screenshot",
              [&] { return TextureMgr::get()->do_screenshot(stage.renderer, path.c_str()); });
    stage.tell("the file", digest_of_file(path));
    stage.close();
    std::remove(path.c_str());
}

} // namespace orvex_test
