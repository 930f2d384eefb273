// The scanner: two textures on the CPU, the reference and the latest frame, and the numbers of
// pixels in which they differ. Both textures belong to the manager, which may end them: they are
// asked for before each use, and made again where that is possible.

#include "orvex/diagnostics/artifact_scanner.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/diagnostics/private/pixel_difference.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/scene/private/node_handle.h"

namespace orvex {

namespace {

/// A texture that only the manager holds: null once the manager has ended it.
class ManagedTexture {
public:
    void set(Texture* texture) { handle = NodeHandle(texture); }
    Texture* get() const { return static_cast<Texture*>(handle.get()); }
    /// Gives it back to the manager, if it is still there.
    void release(Renderer* renderer) {
        if (Texture* const texture = get())
            TextureMgr::get()->release_texture(renderer, texture, nullptr);
        set(nullptr);
    }

private:
    NodeHandle handle;
};

/// Pixels of four bytes that may be read.
struct Pixels {
    const unsigned char* bytes = nullptr;
    unsigned long count = 0;
};

Pixels pixels_of(Texture* texture) {
    const TextureData* const data = texture ? texture->get_data_ptr() : nullptr;
    if (!data || !data->get_u8_ptr())
        return {};
    const unsigned long claimed = data->get_width() * data->get_height();
    return {data->get_u8_ptr(), std::min(claimed, ImageAccess::readable_u8_bytes(*data) / 4)};
}

PixelStep step_of(bool flag) {
    return flag ? PixelStep::second : PixelStep::every;
}

/// Adds as 32-bit numbers do, which wrap around after long enough.
int wrapping_sum(int a, int b) {
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

} // namespace

struct ArtifactScanner::ArtifactScannerData {
    RenderTarget* render_target = nullptr;
    ManagedTexture current_texture;
    ManagedTexture ref_texture;
    bool ref_texture_valid = false;
    int num_artifacts = 0;
    int total_artifacts = 0;
    int max_artifacts = 0;

    /// Nothing without a valid reference.
    Pixels reference() const { return ref_texture_valid ? pixels_of(ref_texture.get()) : Pixels(); }
};

ArtifactScanner::ArtifactScanner()
    : data(std::make_unique<ArtifactScannerData>()) {
    set_type(NODE_TYPE_ARTIFACT_SCANNER);
    data->current_texture.set(TextureMgr::get()->create_texture());
    data->ref_texture.set(TextureMgr::get()->create_texture());
}

ArtifactScanner::~ArtifactScanner() = default;

void ArtifactScanner::set_render_target(RenderTarget* target) {
    data->render_target = target;
}

bool ArtifactScanner::read_frame(Renderer* renderer) {
    if (!data->current_texture.get())
        data->current_texture.set(TextureMgr::get()->create_texture());
    Texture* const current = data->current_texture.get();
    const bool read =
        data->render_target
            ? current->update_pixmap_rgba_u8_from_render_target(data->render_target, 0)
            : current->update_pixmap_rgba_u8_from_framebuffer(renderer);
    return read && pixels_of(current).count != 0;
}

bool ArtifactScanner::take_reference(Renderer* renderer) {
    Texture* const current = data->current_texture.get();

    // A texture of the frame's own size, in place of the reference before.
    data->ref_texture.release(renderer);
    data->ref_texture.set(TextureMgr::get()->create_texture_2d(current->get_width(),
                                                               current->get_height(), PF_RGBA_U8));

    // A texture that found no memory has no room for the frame.
    const Pixels reference = pixels_of(data->ref_texture.get());
    const Pixels frame = pixels_of(current);
    if (reference.count < frame.count)
        return false;
    std::memcpy(data->ref_texture.get()->get_pixmap_u8_ptr(), frame.bytes, frame.count * 4);
    data->ref_texture_valid = true;
    return true;
}

bool ArtifactScanner::run(Renderer* renderer, bool flag) {
    if (!read_frame(renderer) || (!data->reference().bytes && !take_reference(renderer)))
        return false;
    data->num_artifacts = find_artifacts(data->current_texture.get(), flag);
    if (data->num_artifacts < 0)
        return false;
    data->total_artifacts = wrapping_sum(data->total_artifacts, data->num_artifacts);
    data->max_artifacts = std::max(data->max_artifacts, data->num_artifacts);
    return true;
}

int ArtifactScanner::find_artifacts(Texture* texture, bool flag) const {
    const Pixels reference = data->reference();
    const Pixels frame = pixels_of(texture);
    if (!reference.bytes || !frame.bytes)
        return -1;
    const unsigned long count = std::min(reference.count, frame.count);
    const unsigned long different =
        count_different_pixels(reference.bytes, frame.bytes, count, step_of(flag));
    return static_cast<int>(std::min<unsigned long>(different, INT_MAX));
}

bool ArtifactScanner::is_there_artifact(Texture* texture, bool flag) const {
    const Pixels reference = data->reference();
    const Pixels frame = pixels_of(texture);
    return reference.bytes && frame.bytes &&
           has_different_pixel(reference.bytes, frame.bytes, std::min(reference.count, frame.count),
                               step_of(flag));
}

int ArtifactScanner::get_number_of_artifacts() const {
    return data->num_artifacts;
}

int ArtifactScanner::get_total_number_of_artifacts() const {
    return data->total_artifacts;
}

int ArtifactScanner::get_max_number_of_artifacts() const {
    return data->max_artifacts;
}

void ArtifactScanner::reset_ref_texture() {
    data->num_artifacts = 0;
    data->ref_texture_valid = false;
}

void ArtifactScanner::reset_artifacts_counters() {
    data->total_artifacts = 0;
    data->max_artifacts = 0;
    reset_ref_texture();
}

void ArtifactScanner::update_ref_texture() {
    reset_artifacts_counters();
}

bool ArtifactScanner::_cleanup(Renderer* renderer) {
    data->current_texture.release(renderer);
    data->ref_texture.release(renderer);
    reset_artifacts_counters();
    return Node::_cleanup(renderer);
}

} // namespace orvex
