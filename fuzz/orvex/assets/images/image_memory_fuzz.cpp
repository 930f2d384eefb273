// Decodes bytes as a picture, as it stands and mirrored. Pixels that come out must be there in
// full, belong to the codec once, and can be written again.

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "fuzz/support/target.h"
#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/renderer/records/image.h"
#include "orvex/renderer/renderer_types.h"

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

/// Touches every byte, so that a missing one is noticed.
unsigned sum(const unsigned char* bytes, unsigned long count) {
    unsigned total = 0;
    for (unsigned long i = 0; i < count; ++i)
        total += bytes[i];
    return total;
}

orvex::ImageCodecStb& codec() {
    static auto* const instance = [] {
        // Small, so that time goes into many pictures and not into large ones.
        orvex::ImageCodecStb::set_memory_limit(2ul << 20);
        return new orvex::ImageCodecStb;
    }();
    return *instance;
}

volatile unsigned kept;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<unsigned char> bytes(data, data + size);
    orvex::Image image;
    if (codec().load_image_from_memory(&image, bytes.data(), bytes.size(), false)) {
        require(image.pixel_format == orvex::PF_RGB_U8 && !image.pixmap_u8);
        kept = sum(image.pixmap_external, image.width * image.height * 3);
        if (image.width * image.height <= 4096)
            codec().save_image_to_file(&image, "/dev/null");
        require(codec().free_image_resources(&image));
        require(!codec().free_image_resources(&image));
    }
    orvex::Image mirrored;
    if (codec().load_image_from_memory(&mirrored, bytes.data(), bytes.size(), true)) {
        require(mirrored.width == mirrored.height && !mirrored.pixmap_external);
        kept = sum(mirrored.pixmap_u8, mirrored.width * mirrored.width * 3);
    }
    return 0;
}
