/// @file
/// Loads a 3D loader and an image codec from shared libraries, loads a model through them, and
/// unloads them again. No window, no GPU.
///
///     plugin_host <loader library> <codec library> <directory of tent.soup>

#include <cstdio>
#include <string>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/base/image_codec.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/kernel/aux.h>
#include <orvex/kernel/core.h>
#include <orvex/kernel/kernel.h>

namespace {

/// A plugin is only loaded by the kernel: its host initializes and starts it.
orvex::Plugin* load(const char* library) {
    orvex::Plugin* const plugin = orvex::Kernel::get()->load_plugin(library, false, false);
    if (!plugin || !plugin->initialize() || !plugin->start()) {
        std::fprintf(stderr, "%s: not a plugin\n", library);
        return nullptr;
    }
    std::printf("loaded %s: %s\n", plugin->get_name(), plugin->get_description());
    return plugin;
}

bool show_model(const std::string& directory) {
    orvex::Model* const model =
        orvex::aux::load_model_from_file("tent.soup", directory.c_str(), directory.c_str());
    if (!model) {
        std::fprintf(stderr, "%stent.soup: not loaded\n", directory.c_str());
        return false;
    }
    std::printf("tent.soup: %lu triangles\n", model->get_num_faces(model));
    auto* const texture =
        static_cast<orvex::Texture*>(orvex::TextureMgr::get()->get_resource_by_index(0));
    if (texture)
        std::printf("its texture: %lu by %lu pixels\n", texture->get_width(),
                    texture->get_height());
    model->kill(nullptr, nullptr);
    return texture != nullptr;
}

bool run(const char* loader_library, const char* codec_library, const std::string& directory) {
    orvex::Plugin* const loader = load(loader_library);
    auto* const codec = orvex::ImageCodec::from_plugin(load(codec_library));
    if (!loader || !codec)
        return false;
    orvex::TextureMgr::get()->register_image_codec_plugin(codec);
    const bool shown = show_model(directory);

    // Decoded pixels are the codec's memory: they go back before the codec does.
    orvex::MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    orvex::TextureMgr::get()->release_all_textures(nullptr, nullptr);
    orvex::Kernel::get()->unload_plugin(loader);
    orvex::Kernel::get()->unload_plugin(codec);
    std::printf("unloaded both\n");
    return shown;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s <loader library> <codec library> <directory>/\n", argv[0]);
        return 2;
    }
    orvex::core::start("plugin_host.log", false, nullptr, nullptr);
    const bool ok = run(argv[1], argv[2], argv[3]);
    orvex::core::stop("bye");
    return ok ? 0 : 1;
}
