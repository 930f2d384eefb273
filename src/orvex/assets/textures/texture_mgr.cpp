// The registry's own part: codecs, new textures, and giving textures back. Loading stands in
// texture_mgr_load.cpp, writing in texture_mgr_output.cpp.

#include "orvex/assets/textures/texture_mgr.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/textures/private/decoded_pixels.h"
#include "orvex/assets/textures/private/texture_mgr_data.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/base/image_codec.h"
#include "orvex/base/plugin_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/base/private/plugin_data.h"
#include "orvex/base/private/plugin_end.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

TextureMgr* TextureMgr::m_ptr_instance = nullptr;

TextureMgr* TextureMgr::get() {
    static TextureMgr* const instance = m_ptr_instance = new TextureMgr;
    return instance;
}

TextureMgr::TextureMgr()
    : data(std::make_unique<TextureMgrData>()) {
    listen_to_plugin_ends(&TextureMgr::Access::forget);
}

TextureMgr::~TextureMgr() = default;

bool TextureMgr::start(Renderer* renderer) {
    ResourceMgr::start(renderer);
    return true;
}

bool TextureMgr::stop(Renderer* renderer) {
    data->last_image_codec = nullptr;
    release_all_textures(renderer, nullptr);
    unregister_all_image_codec_plugins();
    ResourceMgr::stop(renderer);
    return true;
}

// -------------------------------------------------------------------------------- codecs

bool TextureMgr::register_image_codec_plugin(ImageCodec* codec) {
    if (!codec)
        return misuse("TextureMgr::register_image_codec_plugin", "a null codec");
    data->image_codecs.push_back(codec); // may find no memory: first of all
    codec->add_ref();
    if (!data->default_image_codec && std::strstr(codec->get_name(), "stb")) {
        codec->add_ref();
        data->default_image_codec = codec;
    }
    return true;
}

unsigned long TextureMgr::register_all_image_codec_plugins() {
    unsigned long registered = 0;
    const PluginMgr* const plugins = PluginMgr::get();
    // All of them, or none if there is no memory.
    data->image_codecs.reserve(data->image_codecs.size() + plugins->get_num_plugins());
    for (unsigned long i = 0; i < plugins->get_num_plugins(); ++i) {
        const Plugin* const plugin = plugins->get_plugin_by_index(i);
        if (plugin->get_type() == PLUGIN_TYPE_IMAGE_CODEC &&
            register_image_codec_plugin(plugin_as_image_codec(*plugin)))
            ++registered;
    }
    return registered;
}

bool TextureMgr::unregister_all_image_codec_plugins() {
    data->last_image_codec = nullptr;
    if (ImageCodec* const codec = std::exchange(data->default_image_codec, nullptr))
        codec->release();
    while (!data->image_codecs.empty()) {
        ImageCodec* const codec = data->image_codecs.front();
        data->image_codecs.erase(data->image_codecs.begin());
        codec->release();
    }
    return true;
}

void TextureMgr::Access::forget(Plugin* plugin) {
    TextureMgr::TextureMgrData& data = *TextureMgr::get()->data;
    const auto is_ending = [plugin](ImageCodec* codec) {
        return static_cast<Plugin*>(codec) == plugin;
    };
    std::vector<ImageCodec*>& codecs = data.image_codecs;
    codecs.erase(std::remove_if(codecs.begin(), codecs.end(), is_ending), codecs.end());
    if (is_ending(data.last_image_codec))
        data.last_image_codec = nullptr;
    if (is_ending(data.default_image_codec))
        data.default_image_codec = nullptr;
}

bool TextureMgr::Access::free_image_resources(Image& image) {
    for (ImageCodec* codec : TextureMgr::get()->data->image_codecs)
        if (codec->free_image_resources(&image))
            return true;
    // A texture may outlive the manager's codecs.
    return ImageCodecStb::free_decoded_pixels(&image);
}

// -------------------------------------------------------------------------------- textures

namespace {

/// Registers a texture that `fill` has given its pixels. It ends if memory runs out on the way.
template<class Fill>
Texture* create(TextureMgr& mgr, Fill fill) {
    auto texture = std::make_unique<Texture>();
    fill(*texture);
    mgr.add_texture(texture.get());
    return texture.release();
}

} // namespace

Texture* TextureMgr::create_texture() {
    return create(*this, [](Texture&) {});
}

Texture* TextureMgr::create_texture_1d(unsigned long size, PIXEL_FORMAT format) {
    return create(*this, [=](Texture& texture) { texture.create_1d(size, format); });
}

Texture* TextureMgr::create_texture_2d(unsigned long width, unsigned long height,
                                       PIXEL_FORMAT format) {
    return create(*this, [=](Texture& texture) { texture.create_2d(width, height, format); });
}

Texture* TextureMgr::create_texture_cube(unsigned long size, PIXEL_FORMAT format) {
    return create(*this, [=](Texture& texture) { texture.create_cubemap(size, format); });
}

Texture* TextureMgr::create_color_texture_from_render_target(RenderTarget* target,
                                                             unsigned long index) {
    return create(*this, [=](Texture& texture) {
        texture.init_color_texture_from_render_target(target, index);
    });
}

Texture* TextureMgr::create_depth_texture_from_render_target(RenderTarget* target) {
    return create(*this,
                  [=](Texture& texture) { texture.init_depth_texture_from_render_target(target); });
}

bool TextureMgr::add_texture(Texture* texture) {
    return texture ? add_resource(texture) : misuse("TextureMgr::add_texture", "a null texture");
}

namespace {

/// Whether a release for this renderer is about to end the texture together with its pixels. A
/// texture of another renderer stays, and so do pixels that another texture shares.
bool ends_pixels(Renderer* renderer, Texture& texture) {
    const int owner = texture.get_renderer_id();
    const bool released = owner < 1 || !renderer || owner == renderer->getid();
    const TextureData* const data = texture.get_data_ptr();
    return released && texture.get_ref() < 2 && data && data->get_ref() < 2;
}

/// The codecs are asked about the base image whether or not it holds decoded pixels.
void give_back_pixels(Texture& texture) {
    give_back_decoded_pixels(*texture.get_image_ptr());
    give_back_decoded_pixels(*texture.get_data_ptr());
}

} // namespace

bool TextureMgr::release_texture(Renderer* renderer, Texture* texture, Thread* thread) {
    if (!texture)
        return misuse("TextureMgr::release_texture", "a null texture");
    if (ends_pixels(renderer, *texture))
        give_back_pixels(*texture);
    release_resource(renderer, texture, thread);
    return true;
}

bool TextureMgr::release_all_textures(Renderer* renderer, Thread* thread) {
    for (unsigned long i = 0; i < get_num_resources(); ++i) {
        const Resource* const resource = get_resource_by_index(i);
        Texture* const texture = node_as<Texture>(resource);
        if (texture && ends_pixels(renderer, *texture))
            give_back_pixels(*texture);
    }
    release_all_resources(renderer, thread);
    return true;
}

} // namespace orvex
