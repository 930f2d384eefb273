#pragma once

/// @file
/// `Font`, text as textured quads and in the platform's raster font. Its operations stand in three
/// sources: charset and sheet in font_charset.cpp, the vertex buffer in font_vertices.cpp, all
/// others in font.cpp.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/object.h"

namespace orvex {

/// Text, in two ways: as textured quads from a sheet of drawn glyphs (every operation named `bm_`),
/// or in the platform's raster font (`bitmap_font_linux_render`).
///
/// Made with `new`, held by references, ended with `kill`. It owns its records, its mesh and one
/// reference on its sheet, and gives all of them back in `_cleanup`; a font deleted without a
/// renderer leaves its GPU buffers behind.
///
/// Quads. A charset tells where each glyph lies on the sheet: XML in the AngelCode BMFont form, in
/// one byte per character, without kerning. A frame's texts are queued, turned into one buffer, and
/// drawn by one draw call. A text starts with its upper left corner at its position and runs along
/// +X; glyphs hang down along -Y, a pixel of the sheet is one unit long (times the scale), and all
/// quads lie in the plane of the position's z. Nothing ever moves a line down: a line feed is a
/// glyph as any other. Quads are clockwise seen from +Z: cull accordingly. In pixels of a window
/// that means an orthographic camera with the text's y counted down from its top.
/// The sheet and the GPU program are the caller's to bind, and blending the caller's to set, so
/// that one font can be drawn with any material. Decoders deliver sheets without transparency:
/// white glyphs on black, of which a program takes one channel as opacity. The sheet's file holds
/// the picture upside down, since the first row of a file is the lowest of a texture; of a sheet
/// that is stored upright a host calls `Texture::flip_vertical`, unloads and uploads it.
///
/// A byte from 128 up, and one that the charset lacks, is a quad of no size that moves nothing.
///
/// Raster text needs the fixed pipeline, thus a compatibility context, and the GLUT library on the
/// machine; see `Renderer::font_bitmap_linux_render`.
///
/// Failures are false results; nothing is logged. Where memory runs out, the constructor and what
/// keeps something may throw `std::bad_alloc`, and can be called again. Used on the thread that
/// owns the renderer's context. Texts may be queued on another thread if the caller orders that
/// before `bm_update_vb`: nothing locks.
///
/// @code
/// orvex::Font* font = new orvex::Font;
/// font->bm_load_charset("font.xml");
/// font->bm_load_charset_texture(renderer, font->bm_get_charset_image_filename());
/// // each frame:
/// font->bm_draw_reset();
/// font->bm_draw_text_2d(10, 20, 1.0f, 1.0f, 1.0f, 1.0f, "Hello");
/// font->bm_update_vb(renderer, false);
/// program->bind(renderer);
/// font->bm_get_charset_texture()->bind(renderer, 0);
/// font->bm_render_vb(renderer);
/// @endcode
class ORVEX_API Font : public Object {
public:
    /// No charset, no sheet, room for 512 texts a frame, scale 1.
    Font();
    /// Gives back what `_cleanup` has not, without a renderer.
    ~Font() override;

    /// @name Charset
    /// @{

    /// Reads a charset from a file, as `bm_load_charset_from_memory` does.
    /// @param filename  taken as it is; anything but a regular file is refused
    /// @return false for null, and if it can't be read or parsed; the charset before stays then
    bool bm_load_charset(const char* filename);
    /// Reads a charset from BMFont XML.
    ///
    /// Taken are, below a root element of any name: of `info` "padding" and "spacing", of `common`
    /// "scaleW", "scaleH", "base" and "lineHeight", of `pages` the "file" of its first `page`, and
    /// the `char` elements of `chars`. Everything else is ignored, kernings included, and so is a
    /// `char` whose id is not in 0 to 255; one without id counts as 0. Offsets are read as unsigned
    /// 16-bit numbers: a negative one becomes very large.
    /// @param text  ends with a zero byte
    /// @return false for null, for XML that can't be parsed, that has no root, or an element of
    /// more
    ///         than 256 attributes; the charset before stays then
    bool bm_load_charset_from_memory(const char* text);
    /// Name of the sheet's file, as it stands in the charset: relative to wherever the charset
    /// lies, at most 1023 characters. Empty if the charset names none, null without a charset.
    /// Valid until the next charset.
    const char* bm_get_charset_image_filename() const;
    /// @}

    /// @name Sheet
    /// @{

    /// The sheet, null if there is none. The font holds it; a caller who keeps it adds a reference.
    Texture* bm_get_charset_texture() const;
    /// Decodes the sheet from a file, turns it to RGBA and uploads it, on unit 0, with mipmaps. The
    /// sheet before is given back first.
    /// @param renderer  null loads without uploading
    /// @param filename  taken as it is
    /// @return false for null, and if no codec decodes it; whether the upload worked isn't told
    bool bm_load_charset_texture(Renderer* renderer, const char* filename);
    /// The same from an encoded image in memory, without mipmaps, and clamped at the edges.
    /// @param bytes,size  read during the call only
    /// @return false for null or size 0, and if no codec decodes it
    bool bm_load_charset_texture_from_memory(Renderer* renderer, const unsigned char* bytes,
                                             unsigned long size);
    /// Gives the sheet back. @return true
    bool bm_release_charset_texture(Renderer* renderer);
    /// @}

    /// @name Queue of a frame's texts
    /// @{

    /// Sets the size of a pixel of the sheet; 1 at first. Read by `bm_update_vb`.
    /// @param scale  in units of the object; any number, a negative one mirrors the quads
    void bm_set_scale(float scale);
    /// Empties the queue; called each frame before texts are queued.
    void bm_draw_reset();
    /// Queues a text at (x, -y, 0), so that y counts down.
    /// @param x,y      in pixels; any number
    /// @param r,g,b,a  colour of its vertices, usually within 0 and 1; nothing is clamped
    /// @param text  copied
    /// @return false for null, and when 512 texts are queued: this one is lost for the frame
    bool bm_draw_text_2d(int x, int y, float r, float g, float b, float a, const char* text);
    /// Queues a text at (x, y, z) in the object's space; as `bm_draw_text_2d` otherwise.
    bool bm_draw_text_3d(float x, float y, float z, float r, float g, float b, float a,
                         const char* text);
    /// @}

    /// @name Vertex buffer
    /// @{

    /// Makes room for glyphs: 1000, or 1000 more than asked for if that is too few. Never shrinks.
    /// `bm_update_vb` calls it.
    /// @param num_chars  bytes of all texts together; more than can be counted in bytes of vertices
    ///                   is refused
    /// @return true if they fit already; false without renderer, sheet or charset, or if memory
    ///         runs out
    bool bm_alloc_vb(Renderer* renderer, unsigned long num_chars);
    /// Turns the queued texts into quads.
    ///
    /// A font stays with one of the two ways: vertices that wait for their upload at the next draw
    /// would overwrite mapped ones.
    /// @param use_map  true writes into the mapped GPU buffer, false into the vertices on the CPU,
    ///                 which the next draw uploads
    /// @return true if nothing is queued; false for a null renderer, without a buffer, sheet or
    ///         charset, and if the buffer can't be mapped
    bool bm_update_vb(Renderer* renderer, bool use_map);
    /// Draws what `bm_update_vb` made, by one draw call, with the font's own transform, whatever
    /// its parents'. Nothing with an empty queue or a null renderer.
    void bm_render_vb(Renderer* renderer);
    /// Deletes the GPU buffers; the next update makes new ones. With a null renderer it only
    /// forgets the capacity. @return true
    bool bm_free_vb(Renderer* renderer);
    /// @}

    /// @name Raster text
    /// @{

    /// Draws a text in the raster font, in pixels of the area told by `set_viewport_info`, with y
    /// counted down from its top. Blending and depth test are off afterwards.
    /// @param window  any of the renderer's windows
    /// @param x,y     where it starts, pixels; outside the area nothing shows
    /// @param r,g,b,a  colour, usually within 0 and 1
    /// @param text    drawn to its terminating zero
    /// @param length  of the text; only tested against 0
    /// @return false for a null renderer, window or text, for length 0, and where there is no
    ///         raster text
    bool bitmap_font_linux_render(Renderer* renderer, RenderWindow* window, int x, int y, float r,
                                  float g, float b, float a, const char* text,
                                  unsigned long length);
    /// The same with a text formatted as `printf` does, cut at 4095 characters.
    /// @return false also for a null format and one that can't be formatted
    bool bitmap_font_linux_renderf(Renderer* renderer, RenderWindow* window, int x, int y, float r,
                                   float g, float b, float a, const char* format, ...)
        ORVEX_PRINTF(10, 11);
    /// Stores the area that raster text is placed in.
    /// @param x,y           lower left corner, pixels
    /// @param width,height  size, pixels; kept as they are
    /// @return true
    bool set_viewport_info(int x, int y, int width, int height);
    /// The record of the raster font, owned by this object; never null. Its size is the distance of
    /// a text's base line from the given y.
    FontData* get_font_data();
    const FontData* get_font_data() const; ///< the same record, to read only
    /// Does nothing: the record ends with the font. @return true
    bool free_font_data();
    /// @}

    /// @name Object's operations
    /// @{

    /// Hook: gives back sheet, buffers, mesh and charset, and with a null renderer only what every
    /// object gives back. Queued texts stay, and the font can be loaded anew.
    bool _cleanup(Renderer* renderer) override;
    /// The id in the raster font's record, 0 until a renderer sets it.
    int get_renderer_id() override;
    /// Reaches the mesh of quads as well.
    void set_opengl_2_3_rendering_states(bool gl2, Node* node) override;
    /// Scales the quads there are now, until the next `bm_update_vb`. Mapped ones are lost by it:
    /// the next draw uploads the vertices on the CPU in their place.
    void scale_vertices_position(const vec4& scale, Node* node) override;
    /// @}

    /// The private record, which the engine alone defines.
    struct State;

private:
    struct BmData;

    bool take_sheet(Texture* decoded, bool mipmaps);
    void give_back(Renderer* renderer);
    Mesh& empty_mesh(Renderer& renderer);
    bool write_mapped(Renderer& renderer, MeshData& data);
    bool write_vertices(MeshData& data);
    bool write_quads(MeshData& data, void* destination);

    std::unique_ptr<State> state;
};

} // namespace orvex
