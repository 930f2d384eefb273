#include "orvex/overlays/font.h"

#include <climits>
#include <utility>

#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/overlays/private/bm_charset_reader.h"
#include "orvex/overlays/private/font_state.h"
#include "orvex/platform/private/file_bytes.h"

namespace orvex {

bool Font::bm_load_charset(const char* filename) {
    FileBytes file;
    return file.read(filename, INT_MAX - 1) && bm_load_charset_from_memory(file.text());
}

bool Font::bm_load_charset_from_memory(const char* text) {
    if (!text)
        return misuse("Font::bm_load_charset_from_memory", "a null text");
    std::unique_ptr<BMCharset> charset = read_bm_charset(text);
    if (!charset)
        return false;
    state->bm_charset = std::move(charset);
    return true;
}

const char* Font::bm_get_charset_image_filename() const {
    return state->bm_charset ? state->bm_charset->image_filename : nullptr;
}

Texture* Font::bm_get_charset_texture() const {
    return state->bm_texture.get();
}

bool Font::bm_load_charset_texture(Renderer* renderer, const char* filename) {
    if (!filename)
        return misuse("Font::bm_load_charset_texture", "a null file name");
    bm_release_charset_texture(renderer);
    TextureMgr* const textures = TextureMgr::get();
    Texture* const sheet = textures->create_texture_2d_from_file(filename, false);
    if (!take_sheet(sheet, true))
        return false;
    textures->upload_to_renderer(renderer, sheet, 0);
    return true;
}

bool Font::bm_load_charset_texture_from_memory(Renderer* renderer, const unsigned char* bytes,
                                               unsigned long size) {
    if (!bytes)
        return misuse("Font::bm_load_charset_texture_from_memory", "null bytes");
    bm_release_charset_texture(renderer);
    TextureMgr* const textures = TextureMgr::get();
    Texture* const sheet = textures->create_texture_2d_from_memory(bytes, size, false);
    if (!take_sheet(sheet, false))
        return false;
    sheet->set_addressing_mode(renderer, ADDRESSING_CLAMP);
    textures->upload_to_renderer(renderer, sheet, 0);
    return true;
}

bool Font::take_sheet(Texture* decoded, bool mipmaps) {
    if (!decoded)
        return false;
    state->bm_texture.set(decoded);
    decoded->add_ref();
    decoded->gen_mipmaps(mipmaps);
    decoded->update_pixel_format(PF_RGBA_U8);
    return true;
}

// The manager may have let go of the sheet already: a reference it doesn't hold isn't its to give
// back.
bool Font::bm_release_charset_texture(Renderer* renderer) {
    const WeakNode<Texture> held = std::exchange(state->bm_texture, {});
    if (held.get())
        held.get()->release(renderer, nullptr);
    if (TextureMgr::get()->has_resource(held.get()))
        TextureMgr::get()->release_texture(renderer, held.get(), nullptr);
    return true;
}

} // namespace orvex
