#pragma once

/// @file
/// The private records of `Font`.

#include <memory>
#include <string>

#include "orvex/math/vec4.h"
#include "orvex/overlays/font.h"
#include "orvex/overlays/private/bm_charset.h"
#include "orvex/renderer/records/font_data.h"
#include "orvex/scene/private/weak_node.h"

namespace orvex {

/// A text and where its first glyph's cursor stands.
struct bm_string {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    vec4 color = vec4(1.0f, 1.0f, 1.0f, 1.0f);
    std::string text;
};

/// The texts of the current frame. Its strings keep their memory from frame to frame.
struct Font::BmData {
    std::unique_ptr<bm_string[]> strings;
    unsigned long capacity = 0;
    unsigned long string_counter = 0; ///< strings in use

    /// Makes room for `count` strings, in place of those before.
    /// @return false, with no room at all, if memory runs out
    bool alloc_strings(unsigned long count);
    void free_strings();

    /// @return false for null, or when there is no room
    bool add_string(float x, float y, float z, float r, float g, float b, float a,
                    const char* text);
    /// Nothing is freed.
    void reset_string_counter() { string_counter = 0; }
    unsigned long get_string_counter() const { return string_counter; }
    /// Any of the strings there is room for, in use or not; null beyond.
    bm_string* get_string(unsigned long i) const { return i < capacity ? &strings[i] : nullptr; }
    /// Bytes of all strings in use.
    unsigned long get_num_chars() const;
};

struct Font::State {
    using Texts = BmData;

    static State& of(Font& font) { return *font.state; }

    std::unique_ptr<FontData> font_data = std::make_unique<FontData>();
    BmData bm_data;
    std::unique_ptr<BMCharset> bm_charset;
    WeakNode<Texture> bm_texture;     ///< counted, but a manager that is too generous can end it
    Mesh* bm_mesh = nullptr;          ///< holds the quads
    unsigned long bm_vb_capacity = 0; ///< glyphs that the buffer can hold
    float bm_scale = 1.0f;
};

} // namespace orvex
