#pragma once

/// @file
/// What the tests of fonts share that draw through a renderer without a graphics API.

#include <string>

#include <gtest/gtest.h>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/overlays/font.h"
#include "orvex/overlays/private/font_state.h"
#include "orvex/renderer/records/mesh_data.h"
#include "overlay_fixture.h"

namespace orvex_test {

/// A sheet of 128 by 64 with three glyphs: A, a blank, and j with offsets.
inline const char* const charset_text = R"(<font>
  <info padding="0,0,0,0" spacing="3,9"/>
  <common lineHeight="20" base="15" scaleW="128" scaleH="64"/>
  <pages><page id="0" file="sheet.png"/></pages>
  <chars>
    <char id="65" x="16" y="8" width="32" height="16" xoffset="0" yoffset="0" xadvance="34"/>
    <char id="32" x="0" y="0" width="0" height="0" xadvance="10"/>
    <char id="106" x="64" y="32" width="8" height="24" xoffset="2" yoffset="5" xadvance="11"/>
    <char id="200" x="1" y="1" width="99" height="99" xadvance="99"/>
  </chars>
</font>)";

/// Gives stores the id of a buffer, and lends memory for mapping.
class FontRenderer : public OverlayRenderer {
public:
    bool vertex_buffer_prepare(orvex::MeshData* mesh) override {
        mesh->vertex_buffer_id = 7;
        name_pointer(mesh, "store");
        return OverlayRenderer::vertex_buffer_prepare(mesh);
    }
    bool vertex_buffer_kill(orvex::MeshData* mesh) override {
        name_pointer(mesh, "store");
        if (mesh != nullptr)
            mesh->vertex_buffer_id = 0;
        return OverlayRenderer::vertex_buffer_kill(mesh);
    }
    using OverlayRenderer::vertex_buffer_kill;
};

/// A font, and a sheet for it.
class FontTest : public OverlayTest {
protected:
    FontTest() { sheet_file = dir.write("sheet.png", "flat 8 4 50"); }
    ~FontTest() override { font->kill(&renderer, nullptr); }

    orvex::Font::State& state() { return orvex::Font::State::of(*font); }
    orvex::Font::State::Texts& texts() { return state().bm_data; }
    orvex::MeshData* store() { return state().bm_mesh->get_mesh_data(); }

    void load() {
        ASSERT_TRUE(font->bm_load_charset_from_memory(charset_text));
        ASSERT_TRUE(font->bm_load_charset_texture(&renderer, sheet_file.c_str()));
        renderer.take_calls();
    }

    /// Textures are ended; the codec stays in reach, as the engine's own one does.
    void stop_texture_manager() {
        textures.stop(nullptr);
        textures.register_image_codec_plugin(codec);
    }

    bool queue(const char* text) {
        return font->bm_draw_text_3d(100.0f, 200.0f, -5.0f, 0.1f, 0.2f, 0.3f, 0.4f, text);
    }

    FontRenderer renderer;
    orvex::Font* font = new orvex::Font;
    std::string sheet_file;
};

} // namespace orvex_test
