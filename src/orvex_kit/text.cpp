// Text as textured quads: the sheet of the font is uploaded once, the quads of a frame are one mesh
// without faces, which grows as they need it.

#include "orvex_kit/text.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include <libdeflate.h>

#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/gpu/gpu_program_mgr.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/renderer/records/vertex.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/private/builtin_font.h"
#include "orvex_kit/private/engine_parts.h"
#include "orvex_kit/private/glyph_sheet.h"
#include "orvex_kit/private/program_source.h"
#include "orvex_kit/private/view_context.h"
#include "orvex_kit/view.h"

namespace orvex::kit {

namespace {

// A texel of a sheet of distances tells how far the glyph's edge is: what lies half a pixel within
// it is full, half a pixel outside it is empty.
const char* const program_stages = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 ink;
OUT vec2 uv;

void main()
{
    ink = VERTEX_COLOR;
    uv = TEXCOORD;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform sampler2D sheet;
uniform vec4 sheet_size;      // texels
uniform float spread;         // texels from an edge to where nothing tells its distance; 0: none do
IN vec4 ink;
IN vec2 uv;

void main()
{
    float texel = SAMPLE(sheet, uv).r;
    float texels_a_pixel = max(fwidth(uv.x) * sheet_size.x, 0.001);
    float distance = (texel - 128.0 / 255.0) * 2.0 * spread / texels_a_pixel;
    float cover = spread > 0.0 ? clamp(distance + 0.5, 0.0, 1.0) : texel;
    // Multiplied by its opacity, as pictures are that have nothing behind them.
    COLOR = vec4(ink.rgb, 1.0) * ink.a * cover;
}
)";

constexpr unsigned long vertices_a_glyph = 6;

/// The built-in sheet as pixels, white where its texels are high
std::vector<unsigned char> builtin_pixels() {
    const std::size_t count = std::size_t(builtin_columns) * std::size_t(builtin_rows);
    std::vector<unsigned char> texels(count);
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> unpacker(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!unpacker ||
        libdeflate_zlib_decompress(unpacker.get(), builtin_sheet, builtin_sheet_bytes,
                                   texels.data(), count, nullptr) != LIBDEFLATE_SUCCESS)
        return {};
    std::vector<unsigned char> pixels(4 * count);
    for (std::size_t i = 0; i < count; ++i)
        std::fill_n(pixels.begin() + static_cast<std::ptrdiff_t>(4 * i), 4, texels[i]);
    return pixels;
}

/// @return false without memory
bool fill_builtin(Texture& sheet) try {
    const std::vector<unsigned char> pixels = builtin_pixels();
    return !pixels.empty() &&
           sheet.create_2d(static_cast<unsigned long>(builtin_columns),
                           static_cast<unsigned long>(builtin_rows), PF_RGBA_U8) &&
           sheet.update_pixmap_rgba_u8(pixels.data());
} catch (const std::bad_alloc&) {
    return false;
}

/// Null without memory.
Texture* make_builtin_sheet() {
    TextureMgr* const textures = TextureMgr::get();
    Texture* const sheet = textures->create_texture();
    if (fill_builtin(*sheet)) {
        sheet->gen_mipmaps(false);
        sheet->set_addressing_mode(nullptr, ADDRESSING_CLAMP);
        return sheet;
    }
    textures->release_texture(nullptr, sheet, nullptr);
    return nullptr;
}

void set_vertex(Vertex& vertex, float x, float y, const vec4& color, float u, float v) {
    vertex.position.set(x, y, 0.0f, 1.0f);
    vertex.color = color;
    vertex.uv0.set(u, v, 0.0f, 1.0f);
}

/// Two triangles. y counts up on the picture, and down on the sheet.
void add_quad(const SetGlyph& set, float scale, const GlyphSheet& font, const vec4& color,
              std::vector<Vertex>& vertices) {
    const Glyph& glyph = *set.glyph;
    const float left = set.left + glyph.left * scale;
    const float right = left + glyph.width * scale;
    const float top = -set.line_top - glyph.top * scale;
    const float bottom = top - glyph.height * scale;
    const float u = glyph.x / font.sheet_width;
    const float v = glyph.y / font.sheet_height;
    const float u_right = u + glyph.width / font.sheet_width;
    const float v_bottom = v + glyph.height / font.sheet_height;
    vertices.resize(vertices.size() + vertices_a_glyph);
    Vertex* const quad = &vertices[vertices.size() - vertices_a_glyph];
    set_vertex(quad[0], left, top, color, u, v);
    set_vertex(quad[1], right, top, color, u_right, v);
    set_vertex(quad[2], right, bottom, color, u_right, v_bottom);
    set_vertex(quad[3], right, bottom, color, u_right, v_bottom);
    set_vertex(quad[4], left, bottom, color, u, v_bottom);
    set_vertex(quad[5], left, top, color, u, v);
}

} // namespace

class Text::Data final : public EnginePart {
public:
    Data(std::shared_ptr<ViewContext> context, orvex::Renderer* renderer, Path path, Font font)
        : font(std::move(font))
        , context(std::move(context))
        , renderer(renderer)
        , path(path) {}
    ~Data() override { close(); }

    void open();
    void close() override;
    bool is_open() const { return is_made && (!context || context->is_open()); }
    void add(const std::string& text, float x, float y, const TextStyle& style);
    bool draw(int width, int height);

    Font font;
    std::string reason;

private:
    std::shared_ptr<ViewContext> context; ///< null: the renderer is the host's
    orvex::Renderer* renderer;
    Path path;
    GpuProgram* program = nullptr;
    Texture* sheet = nullptr;
    orvex::Mesh* mesh = nullptr;
    orvex::Camera* camera = nullptr;
    unsigned long capacity = 0; ///< of the mesh, in vertices
    std::vector<Vertex> vertices;
    bool is_made = false;

    void make();
    bool make_program();
    bool make_sheet();
    bool make_room(unsigned long count);
    void set_states(int width, int height);
    void render();
};

void Text::Data::open() {
    if (!font) {
        reason = font.reason();
    } else if (!context) {
        make();
    } else {
        const ViewContext::Visit visit(*context);
        if (visit.is_there())
            make();
        else
            reason = "the context of its view can't be made current";
    }
}

void Text::Data::make() {
    if (!make_program() || !make_sheet())
        return;
    mesh = new orvex::Mesh;
    mesh->set_opengl_2_3_rendering_states(path == Path::gl2, nullptr);
    camera = new orvex::Camera;
    camera->set_position(vec4(0.0f, 0.0f, 0.0f, 1.0f));
    is_made = true;
}

bool Text::Data::make_program() {
    const ProgramSource source(program_stages, path);
    program = GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, source.text().c_str(),
                                                                   source.text().size(), "text");
    const bool is_compiled = program->is_valid();
    if (is_compiled && program->bind(renderer)) {
        program->unbind(renderer);
        return true;
    }
    const std::string told = source.told(program->get_shader_error_messages(), "text");
    reason = std::string("the program of texts doesn't ") + (is_compiled ? "link" : "compile") +
             (told.empty() ? "; the log tells why" : ": " + told);
    return false;
}

bool Text::Data::make_sheet() {
    const std::string& file = font.data->sheet;
    sheet = file.empty() ? make_builtin_sheet()
                         : TextureMgr::get()->create_texture_2d_from_file(file.c_str(), false);
    if (!sheet) {
        reason = file.empty()
                     ? "no memory for the built-in font"
                     : font.files().front() + ": its sheet " + file + " can't be read as a picture";
        return false;
    }
    sheet->update_pixel_format(PF_RGBA_U8);
    if (TextureMgr::get()->upload_to_renderer(renderer, sheet, 0))
        return true;
    reason = "the driver takes no sheet of letters: there isn't enough memory";
    return false;
}

void Text::Data::close() {
    is_made = false;
    vertices.clear();
    if (!program)
        return;
    // Without its context there is nothing left of it on the GPU.
    std::unique_ptr<ViewContext::Visit> visit;
    orvex::Renderer* there = renderer;
    if (context) {
        visit = std::make_unique<ViewContext::Visit>(*context);
        there = visit->is_there() ? renderer : nullptr;
    }
    if (mesh)
        std::exchange(mesh, nullptr)->kill(there, nullptr);
    if (camera)
        std::exchange(camera, nullptr)->release(nullptr, nullptr);
    if (sheet)
        TextureMgr::get()->release_texture(there, std::exchange(sheet, nullptr), nullptr);
    GpuProgramMgr::get()->release_resource(there, std::exchange(program, nullptr), nullptr);
}

void Text::Data::add(const std::string& text, float x, float y, const TextStyle& style) {
    const TextLayout layout = lay_out(*font.data, text, style, x, y);
    const float scale = style.size / font.data->line_height;
    std::vector<Vertex> more;
    more.reserve(layout.glyphs.size() * vertices_a_glyph);
    for (const SetGlyph& glyph : layout.glyphs)
        if (glyph.glyph->width > 0.0f)
            add_quad(glyph, scale, *font.data, style.color, more);
    vertices.insert(vertices.end(), more.begin(), more.end());
}

/// A mesh without faces is drawn vertex by vertex.
bool Text::Data::make_room(unsigned long count) {
    if (count <= capacity)
        return true;
    if (capacity > 0)
        renderer->vertex_buffer_kill(mesh->get_mesh_data());
    mesh->free_mesh_data();
    capacity = 0;
    mesh->set_vertex_alloc_params(false, 0);
    const unsigned long wanted = count + count / 2;
    if (!mesh->alloc_vertex_data(wanted)) {
        mesh->free_mesh_data();
        return false;
    }
    capacity = wanted;
    return true;
}

void Text::Data::set_states(int width, int height) {
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_ortho(0.0f, static_cast<float>(width), -static_cast<float>(height),
                                   0.0f, -1.0f, 1.0f, true);
    // A core context has no fixed matrices to load.
    camera->bind(renderer, true, true, true, true, path == Path::gl2);
    renderer->set_depth_test_state(false);
    renderer->set_blend_factors(BLEND_FACTOR_ONE, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    renderer->rasterizer_apply_state();
}

bool Text::Data::draw(int width, int height) {
    const std::vector<Vertex> added = std::exchange(vertices, {});
    if (added.empty() || width < 1 || height < 1)
        return true;
    if (!make_room(added.size()))
        return false;
    MeshData* const record = mesh->get_mesh_data();
    std::copy(added.begin(), added.end(), static_cast<Vertex*>(record->get_vertex_ptr()));
    record->draw_start_vertex = 0;
    record->draw_end_vertex = added.size();
    // Either flag uploads whole vertices.
    record->positions_need_update = true;
    record->uv0_need_update = true;
    set_states(width, height);
    render();
    return true;
}

void Text::Data::render() {
    const GlyphSheet& glyphs = *font.data;
    program->set_uniform_1i(nullptr, "sheet", 0);
    program->set_uniform_4f(nullptr, "sheet_size", glyphs.sheet_width, glyphs.sheet_height, 0.0f,
                            0.0f);
    program->set_uniform_1f(nullptr, "spread", glyphs.spread);
    program->bind(renderer);
    sheet->bind(renderer, 0);
    mesh->render(renderer, nullptr);
    program->unbind(renderer);
    renderer->set_blend_state(false);
    renderer->set_depth_test_state(true);
}

Text::Text(View& view, const Font& font) {
    data = std::make_unique<Data>(view.context(), view.renderer(), view.path(), font);
    if (view)
        data->open();
    else
        data->reason = "its view is empty";
}

Text::Text(orvex::Renderer& renderer, Path path, const Font& font)
    : data(std::make_unique<Data>(nullptr, &renderer, path, font)) {
    data->open();
}

Text::~Text() = default;
Text::Text(Text&& other) noexcept = default;
Text& Text::operator=(Text&& other) noexcept = default;

Text::operator bool() const noexcept {
    return data && data->is_open();
}

const std::string& Text::reason() const noexcept {
    static const std::string moved = "it was moved from";
    static const std::string ended = "its view or the engine has ended";
    static const std::string fine;
    if (*this)
        return fine;
    if (!data)
        return moved;
    return data->reason.empty() ? ended : data->reason;
}

void Text::add(const std::string& text, float x, float y, const TextStyle& style) {
    if (*this)
        data->add(text, x, y, style);
}

bool Text::draw(int width, int height) {
    return !*this || data->draw(width, height);
}

} // namespace orvex::kit
