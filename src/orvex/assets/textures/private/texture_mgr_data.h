#pragma once

#include <cstddef>
#include <vector>

#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/renderer/records/image.h"

namespace orvex {

struct TextureMgr::TextureMgrData {
    /// In order of registration; each holds one reference.
    std::vector<ImageCodec*> image_codecs;
    /// The codec that decoded the last file, asked first about the next one; without a reference.
    ImageCodec* last_image_codec = nullptr;
    /// The codec that writes; holds a second reference.
    ImageCodec* default_image_codec = nullptr;
    /// Reused between screenshots.
    Image screenshot_image;

    /// The first codec for which `attempt(codec)` is true: the last one to have decoded something,
    /// which may be asked twice, then all in their order. Null if there is none.
    template<class Attempt>
    ImageCodec* find_decoder(Attempt attempt) const {
        if (last_image_codec && attempt(*last_image_codec))
            return last_image_codec;
        for (std::size_t i = 0; i < image_codecs.size(); ++i) {
            ImageCodec* const codec = image_codecs[i];
            if (attempt(*codec))
                return codec;
        }
        return nullptr;
    }
};

/// Opens the manager to the textures.
struct TextureMgr::Access {
    /// Asks each codec to free the image's decoded pixels until one says true.
    static bool free_image_resources(Image& image);
    /// @name The steps shared by files and memory blocks, each a kind of source.
    /// @{
    static bool load_image(TextureMgr& mgr, Texture& texture, const auto& source);
    static bool load_cubemap_face(TextureMgr& mgr, Texture* texture, CUBEMAP_FACE face,
                                  const auto& source);
    /// @}
    /// Drops a codec that ends, without releasing it.
    static void forget(Plugin* plugin);
};

} // namespace orvex
