// The font: what it owns, the queue of a frame's texts, and raster text. The charset and its
// sheet stand in font_charset.cpp, the way from queued texts to one vertex buffer in
// font_vertices.cpp.

#include "orvex/overlays/font.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <new>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/overlays/private/font_state.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

namespace {

constexpr unsigned long max_texts = 512;

} // namespace

Font::Font()
    : state(std::make_unique<State>()) {
    set_type(NODE_TYPE_FONT);
    if (!state->bm_data.alloc_strings(max_texts))
        throw std::bad_alloc();
    state->bm_mesh = new Mesh;
}

Font::~Font() {
    give_back(nullptr);
}

bool Font::_cleanup(Renderer* renderer) {
    if (renderer) {
        renderer->font_bitmap_windows_kill(state->font_data.get());
        give_back(renderer);
    }
    return Object::_cleanup(renderer);
}

void Font::give_back(Renderer* renderer) {
    bm_release_charset_texture(renderer);
    bm_free_vb(renderer);
    if (state->bm_mesh) {
        state->bm_mesh->release(renderer, nullptr);
        state->bm_mesh = nullptr;
    }
    state->bm_charset.reset();
}

int Font::get_renderer_id() {
    return state->font_data->renderer_id;
}

// The mesh is no child: who walks the tree reaches the children once, by way of the font.
void Font::set_opengl_2_3_rendering_states(bool gl2, Node* node) {
    if (state->bm_mesh)
        state->bm_mesh->set_opengl_2_3_rendering_states(gl2, nullptr);
    Object::set_opengl_2_3_rendering_states(gl2, node);
}

void Font::scale_vertices_position(const vec4& scale, Node* node) {
    if (state->bm_mesh)
        state->bm_mesh->scale_vertices_position(scale, nullptr);
    Object::scale_vertices_position(scale, node);
}

// ---------------------------------------------------------------------------- queue of texts

bool Font::BmData::alloc_strings(unsigned long count) {
    free_strings();
    strings.reset(new (std::nothrow) bm_string[count]);
    if (!strings)
        return false;
    capacity = count;
    return true;
}

void Font::BmData::free_strings() {
    strings.reset();
    capacity = 0;
    string_counter = 0;
}

bool Font::BmData::add_string(float x, float y, float z, float r, float g, float b, float a,
                              const char* text) {
    if (!text || string_counter >= capacity)
        return false;
    bm_string& string = strings[string_counter];
    string.x = x;
    string.y = y;
    string.z = z;
    string.color.set(r, g, b, a);
    string.text = text;
    ++string_counter;
    return true;
}

unsigned long Font::BmData::get_num_chars() const {
    unsigned long count = 0;
    for (unsigned long i = 0; i < string_counter; ++i)
        count += strings[i].text.size();
    return count;
}

void Font::bm_set_scale(float scale) {
    state->bm_scale = scale;
}

void Font::bm_draw_reset() {
    state->bm_data.reset_string_counter();
}

bool Font::bm_draw_text_2d(int x, int y, float r, float g, float b, float a, const char* text) {
    const long long up = -static_cast<long long>(y);
    return bm_draw_text_3d(static_cast<float>(x), static_cast<float>(up), 0.0f, r, g, b, a, text);
}

bool Font::bm_draw_text_3d(float x, float y, float z, float r, float g, float b, float a,
                           const char* text) {
    return state->bm_data.add_string(x, y, z, r, g, b, a, text);
}

// -------------------------------------------------------------------------------- raster text

bool Font::bitmap_font_linux_render(Renderer* renderer, RenderWindow* window, int x, int y, float r,
                                    float g, float b, float a, const char* text,
                                    unsigned long length) {
    return renderer && window &&
           renderer->font_bitmap_linux_render(state->font_data.get(), x, y, r, g, b, a, text,
                                              length);
}

bool Font::bitmap_font_linux_renderf(Renderer* renderer, RenderWindow* window, int x, int y,
                                     float r, float g, float b, float a, const char* format, ...) {
    if (!format)
        return false;
    char text[4096] = {};
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    if (wanted < 0)
        return false;
    const unsigned long length = std::min(static_cast<unsigned long>(wanted), sizeof(text) - 1);
    return bitmap_font_linux_render(renderer, window, x, y, r, g, b, a, text, length);
}

bool Font::set_viewport_info(int x, int y, int width, int height) {
    state->font_data->viewport_x = x;
    state->font_data->viewport_y = y;
    state->font_data->viewport_width = width;
    state->font_data->viewport_height = height;
    return true;
}

FontData* Font::get_font_data() {
    return state->font_data.get();
}

const FontData* Font::get_font_data() const {
    return state->font_data.get();
}

bool Font::free_font_data() {
    return true;
}

} // namespace orvex
