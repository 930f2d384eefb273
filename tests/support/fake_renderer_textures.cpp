#include "fake_renderer.h"

namespace orvex_test {

bool FakeRenderer::reset_all_texture_units() {
    record("reset_all_texture_units", {});
    return result("reset_all_texture_units");
}

bool FakeRenderer::reset_texture_unit(unsigned long unit) {
    record("reset_texture_unit", {text(unit)});
    return result("reset_texture_unit");
}

bool FakeRenderer::texture_bind(orvex::TextureData* texture, unsigned long unit) {
    record("texture_bind", {text(texture), text(unit)});
    return result("texture_bind");
}

bool FakeRenderer::texture_activate(orvex::TextureData* texture, unsigned long unit) {
    record("texture_activate", {text(texture), text(unit)});
    return result("texture_activate");
}

bool FakeRenderer::texture_activate_rt(unsigned int id, unsigned long unit) {
    record("texture_activate_rt", {text(id), text(unit)});
    return result("texture_activate_rt");
}

bool FakeRenderer::texture_activate_rt_ms(unsigned int id, unsigned long unit) {
    record("texture_activate_rt_ms", {text(id), text(unit)});
    return result("texture_activate_rt_ms");
}

bool FakeRenderer::texture_activate_rect_rt(unsigned int id, unsigned long unit) {
    record("texture_activate_rect_rt", {text(id), text(unit)});
    return result("texture_activate_rect_rt");
}

bool FakeRenderer::texture_unload(orvex::TextureData* texture) {
    record("texture_unload", {text(texture)});
    return result("texture_unload");
}

bool FakeRenderer::texture_1d_load(orvex::TextureData* texture, unsigned long unit) {
    record("texture_1d_load", {text(texture), text(unit)});
    return result("texture_1d_load");
}

bool FakeRenderer::texture_1d_update(orvex::TextureData* texture, int x, int width) {
    record("texture_1d_update", {text(texture), text(x), text(width)});
    return result("texture_1d_update");
}

bool FakeRenderer::texture_2d_load(orvex::TextureData* texture, unsigned long unit) {
    record("texture_2d_load", {text(texture), text(unit)});
    return result("texture_2d_load");
}

bool FakeRenderer::texture_2d_update(orvex::TextureData* texture, int y, int x, int width,
                                     int height) {
    record("texture_2d_update", {text(texture), text(y), text(x), text(width), text(height)});
    return result("texture_2d_update");
}

bool FakeRenderer::texture_2d_update_pixmap(orvex::TextureData* texture, int y, int x, int width,
                                            int height, orvex::PIXEL_FORMAT format, void* pixels) {
    record("texture_2d_update_pixmap", {text(texture), text(y), text(x), text(width), text(height),
                                        text(format), text(pixels)});
    return result("texture_2d_update_pixmap");
}

bool FakeRenderer::texture_cube_load(orvex::TextureData* texture, unsigned long unit) {
    record("texture_cube_load", {text(texture), text(unit)});
    return result("texture_cube_load");
}

bool FakeRenderer::texture_cube_update(orvex::TextureData* texture) {
    record("texture_cube_update", {text(texture)});
    return result("texture_cube_update");
}

void FakeRenderer::set_texture_anisotropy(orvex::TextureData* texture, float anisotropy) {
    record("set_texture_anisotropy", {text(texture), text(anisotropy)});
}

void FakeRenderer::set_texture_addressing_mode(orvex::TextureData* texture,
                                               orvex::SAMPLER_ADDRESSING_MODE mode) {
    record("set_texture_addressing_mode", {text(texture), text(mode)});
}

void FakeRenderer::set_texture_filtering_mode(orvex::TextureData* texture,
                                              orvex::SAMPLER_FILTERING_MODE mode) {
    record("set_texture_filtering_mode", {text(texture), text(mode)});
}

bool FakeRenderer::texture_2d_read_pixmap_rgb_u8(orvex::TextureData* texture) {
    record("texture_2d_read_pixmap_rgb_u8", {text(texture)});
    return result("texture_2d_read_pixmap_rgb_u8");
}

bool FakeRenderer::texture_2d_read_pixmap_rgba_u8(orvex::TextureData* texture) {
    record("texture_2d_read_pixmap_rgba_u8", {text(texture)});
    return result("texture_2d_read_pixmap_rgba_u8");
}

void FakeRenderer::set_texture1d_state(bool state) {
    record("set_texture1d_state", {text(state)});
}

void FakeRenderer::set_texture2d_state(bool state) {
    record("set_texture2d_state", {text(state)});
}

void FakeRenderer::set_texture3d_state(bool state) {
    record("set_texture3d_state", {text(state)});
}

void FakeRenderer::set_texture_cube_state(bool state) {
    record("set_texture_cube_state", {text(state)});
}

void FakeRenderer::set_texture_state(orvex::TextureData* texture, bool state) {
    record("set_texture_state", {text(texture), text(state)});
}

bool FakeRenderer::image_texture_bind(orvex::TextureData* texture, unsigned long unit,
                                      orvex::DATA_ACCESS_TYPE access) {
    record("image_texture_bind", {text(texture), text(unit), text(access)});
    return result("image_texture_bind");
}

bool FakeRenderer::image_texture_activate(orvex::TextureData* texture, unsigned long unit,
                                          orvex::DATA_ACCESS_TYPE access) {
    record("image_texture_activate", {text(texture), text(unit), text(access)});
    return result("image_texture_activate");
}

bool FakeRenderer::bindless_texture_make_resident(orvex::TextureData* texture) {
    record("bindless_texture_make_resident", {text(texture)});
    return result("bindless_texture_make_resident");
}

bool FakeRenderer::bindless_texture_make_non_resident(orvex::TextureData* texture) {
    record("bindless_texture_make_non_resident", {text(texture)});
    return result("bindless_texture_make_non_resident");
}

bool FakeRenderer::font_bitmap_windows_create(orvex::FontData* font) {
    record("font_bitmap_windows_create", {text(font)});
    return result("font_bitmap_windows_create");
}

bool FakeRenderer::font_bitmap_windows_kill(orvex::FontData* font) {
    record("font_bitmap_windows_kill", {text(font)});
    return result("font_bitmap_windows_kill");
}

bool FakeRenderer::font_bitmap_windows_render(orvex::FontData* font, int x, int y, float r, float g,
                                              float b, float a, const char* message,
                                              unsigned long length) {
    record("font_bitmap_windows_render", {text(font), text(x), text(y), text(r), text(g), text(b),
                                          text(a), text(message), text(length)});
    return result("font_bitmap_windows_render");
}

bool FakeRenderer::font_bitmap_windows_render_3d(orvex::FontData* font, float x, float y, float z,
                                                 float r, float g, float b, float a,
                                                 const char* message, unsigned long length) {
    record("font_bitmap_windows_render_3d",
           {text(font), text(x), text(y), text(z), text(r), text(g), text(b), text(a),
            text(message), text(length)});
    return result("font_bitmap_windows_render_3d");
}

bool FakeRenderer::font_bitmap_windows_render_prepare(orvex::FontData* font, int x, int y, float r,
                                                      float g, float b, float a,
                                                      const char* message, unsigned long length) {
    record("font_bitmap_windows_render_prepare", {text(font), text(x), text(y), text(r), text(g),
                                                  text(b), text(a), text(message), text(length)});
    return result("font_bitmap_windows_render_prepare");
}

bool FakeRenderer::font_bitmap_windows_render_draw(orvex::FontData* font, int x, int y, float r,
                                                   float g, float b, float a, const char* message,
                                                   unsigned long length) {
    record("font_bitmap_windows_render_draw", {text(font), text(x), text(y), text(r), text(g),
                                               text(b), text(a), text(message), text(length)});
    return result("font_bitmap_windows_render_draw");
}

bool FakeRenderer::font_bitmap_windows_render_finish(orvex::FontData* font, int x, int y, float r,
                                                     float g, float b, float a, const char* message,
                                                     unsigned long length) {
    record("font_bitmap_windows_render_finish", {text(font), text(x), text(y), text(r), text(g),
                                                 text(b), text(a), text(message), text(length)});
    return result("font_bitmap_windows_render_finish");
}

bool FakeRenderer::font_bitmap_linux_render(orvex::FontData* font, int x, int y, float r, float g,
                                            float b, float a, const char* message,
                                            unsigned long length) {
    record("font_bitmap_linux_render", {text(font), text(x), text(y), text(r), text(g), text(b),
                                        text(a), text(message), text(length)});
    return result("font_bitmap_linux_render");
}

bool FakeRenderer::font_bitmap_linux_render_3d(orvex::FontData* font, float x, float y, float z,
                                               float r, float g, float b, float a,
                                               const char* message, unsigned long length) {
    record("font_bitmap_linux_render_3d", {text(font), text(x), text(y), text(z), text(r), text(g),
                                           text(b), text(a), text(message), text(length)});
    return result("font_bitmap_linux_render_3d");
}

void FakeRenderer::finish_pipeline() {
    record("finish_pipeline", {});
}

void FakeRenderer::flush_pipeline() {
    record("flush_pipeline", {});
}

void FakeRenderer::gl2_matrix_load(float* projection, float* view, float* model, float* texture) {
    record("gl2_matrix_load", {text(projection), text(view), text(model), text(texture)});
}

void FakeRenderer::gl2_matrix_load_identity(bool projection, bool modelview, bool texture) {
    record("gl2_matrix_load_identity", {text(projection), text(modelview), text(texture)});
}

bool FakeRenderer::vertex_pool_render(orvex::VertexPoolData* pool) {
    record("vertex_pool_render", {text(pool)});
    return result("vertex_pool_render");
}

bool FakeRenderer::vertex_pool_render_prepare(orvex::VertexPoolData* pool) {
    record("vertex_pool_render_prepare", {text(pool)});
    return result("vertex_pool_render_prepare");
}

bool FakeRenderer::vertex_pool_render_draw(orvex::VertexPoolData* pool) {
    record("vertex_pool_render_draw", {text(pool)});
    return result("vertex_pool_render_draw");
}

bool FakeRenderer::vertex_pool_render_finish(orvex::VertexPoolData* pool) {
    record("vertex_pool_render_finish", {text(pool)});
    return result("vertex_pool_render_finish");
}

bool FakeRenderer::vertex_pool_kill(orvex::VertexPoolData* pool) {
    record("vertex_pool_kill", {text(pool)});
    return result("vertex_pool_kill");
}

void FakeRenderer::vertex_pool_memory_barriers() {
    record("vertex_pool_memory_barriers", {});
}

void FakeRenderer::set_line_width(float width) {
    record("set_line_width", {text(width)});
}

void FakeRenderer::set_line_stipple(int factor, unsigned short pattern) {
    record("set_line_stipple", {text(factor), text(pattern)});
}

void FakeRenderer::render_line(const orvex::vec4& a, const orvex::vec4& a_color,
                               const orvex::vec4& b, const orvex::vec4& b_color) {
    record("render_line", {text(a), text(a_color), text(b), text(b_color)});
}

void FakeRenderer::light_set_colors(unsigned int light, const orvex::vec4& ambient,
                                    const orvex::vec4& diffuse, const orvex::vec4& specular) {
    record("light_set_colors", {text(light), text(ambient), text(diffuse), text(specular)});
}

void FakeRenderer::light_set_ambient(unsigned int light, const orvex::vec4& color) {
    record("light_set_ambient", {text(light), text(color)});
}

void FakeRenderer::light_set_diffuse(unsigned int light, const orvex::vec4& color) {
    record("light_set_diffuse", {text(light), text(color)});
}

void FakeRenderer::light_set_specular(unsigned int light, const orvex::vec4& color) {
    record("light_set_specular", {text(light), text(color)});
}

void FakeRenderer::material_set_colors(const orvex::vec4& ambient, const orvex::vec4& diffuse,
                                       const orvex::vec4& specular, float shininess) {
    record("material_set_colors", {text(ambient), text(diffuse), text(specular), text(shininess)});
}

void FakeRenderer::material_set_ambient(const orvex::vec4& color) {
    record("material_set_ambient", {text(color)});
}

void FakeRenderer::material_set_diffuse(const orvex::vec4& color) {
    record("material_set_diffuse", {text(color)});
}

void FakeRenderer::material_set_specular(const orvex::vec4& color) {
    record("material_set_specular", {text(color)});
}

void FakeRenderer::material_set_shininess(float shininess) {
    record("material_set_shininess", {text(shininess)});
}

bool FakeRenderer::polyline_vb_prepare(orvex::PolylineData* polyline) {
    record("polyline_vb_prepare", {text(polyline)});
    return result("polyline_vb_prepare");
}

bool FakeRenderer::polyline_vb_prepare_gl2(orvex::PolylineData* polyline) {
    record("polyline_vb_prepare_gl2", {text(polyline)});
    return result("polyline_vb_prepare_gl2");
}

bool FakeRenderer::polyline_vb_draw(orvex::PolylineData* polyline, int start, int count) {
    record("polyline_vb_draw", {text(polyline), text(start), text(count)});
    return result("polyline_vb_draw");
}

bool FakeRenderer::polyline_vb_finish(orvex::PolylineData* polyline) {
    record("polyline_vb_finish", {text(polyline)});
    return result("polyline_vb_finish");
}

bool FakeRenderer::polyline_vb_kill(orvex::PolylineData* polyline) {
    record("polyline_vb_kill", {text(polyline)});
    return result("polyline_vb_kill");
}

void FakeRenderer::set_depth_bias_factors(float factor, float units) {
    record("set_depth_bias_factors", {text(factor), text(units)});
}

void FakeRenderer::set_depth_bias_state(bool state) {
    record("set_depth_bias_state", {text(state)});
}

void FakeRenderer::shadow_mapping_prepare_light_pass(orvex::RenderTarget* target, unsigned int unit,
                                                     orvex::mat4& projection, orvex::mat4& view,
                                                     orvex::GpuProgramData* program) {
    record("shadow_mapping_prepare_light_pass",
           {text(target), text(unit), text(projection), text(view), text(program)});
}

void FakeRenderer::shadow_mapping_finish_light_pass(orvex::RenderTarget* target,
                                                    unsigned int unit) {
    record("shadow_mapping_finish_light_pass", {text(target), text(unit)});
}

void FakeRenderer::shadow_mapping_enable_zpass_states() {
    record("shadow_mapping_enable_zpass_states", {});
}

void FakeRenderer::shadow_mapping_disable_zpass_states() {
    record("shadow_mapping_disable_zpass_states", {});
}

void FakeRenderer::atomic_counter_force_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE usage) {
    record("atomic_counter_force_buffer_object_usage", {text(usage)});
}

unsigned int FakeRenderer::atomic_counter_create_buffer(unsigned long num_counters,
                                                        orvex::BUFFER_OBJECT_USAGE usage,
                                                        unsigned int binding, void* data) {
    record("atomic_counter_create_buffer",
           {text(num_counters), text(usage), text(binding), text(data)});
    return static_cast<unsigned int>(number("atomic_counter_create_buffer"));
}

bool FakeRenderer::atomic_counter_kill_buffer(unsigned int id) {
    record("atomic_counter_kill_buffer", {text(id)});
    return result("atomic_counter_kill_buffer");
}

bool FakeRenderer::atomic_counter_buffer_bind(unsigned int id) {
    record("atomic_counter_buffer_bind", {text(id)});
    return result("atomic_counter_buffer_bind");
}

bool FakeRenderer::atomic_counter_set_value(unsigned int id, unsigned int value,
                                            unsigned long index) {
    record("atomic_counter_set_value", {text(id), text(value), text(index)});
    return result("atomic_counter_set_value");
}

unsigned int FakeRenderer::atomic_counter_get_value(unsigned int id, unsigned long index) {
    record("atomic_counter_get_value", {text(id), text(index)});
    return static_cast<unsigned int>(number("atomic_counter_get_value"));
}

void* FakeRenderer::atomic_counter_buffer_map(unsigned int id) {
    record("atomic_counter_buffer_map", {text(id)});
    return pointer("atomic_counter_buffer_map");
}

void* FakeRenderer::atomic_counter_buffer_map_range(unsigned int id, unsigned long offset,
                                                    unsigned long length) {
    record("atomic_counter_buffer_map_range", {text(id), text(offset), text(length)});
    return pointer("atomic_counter_buffer_map_range");
}

bool FakeRenderer::atomic_counter_buffer_unmap(unsigned int id) {
    record("atomic_counter_buffer_unmap", {text(id)});
    return result("atomic_counter_buffer_unmap");
}

bool FakeRenderer::atomic_counter_buffer_bind_base(unsigned int id, unsigned int binding) {
    record("atomic_counter_buffer_bind_base", {text(id), text(binding)});
    return result("atomic_counter_buffer_bind_base");
}

bool FakeRenderer::uniform_buffer_initialize(orvex::UniformBufferData* buffer,
                                             unsigned int program) {
    record("uniform_buffer_initialize", {text(buffer), text(program)});
    return result("uniform_buffer_initialize");
}

void FakeRenderer::force_uniform_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE usage) {
    record("force_uniform_buffer_object_usage", {text(usage)});
}

bool FakeRenderer::uniform_buffer_kill(orvex::UniformBufferData* buffer) {
    record("uniform_buffer_kill", {text(buffer)});
    return result("uniform_buffer_kill");
}

void* FakeRenderer::uniform_buffer_map(orvex::UniformBufferData* buffer) {
    record("uniform_buffer_map", {text(buffer)});
    return pointer("uniform_buffer_map");
}

void* FakeRenderer::uniform_buffer_map_range(orvex::UniformBufferData* buffer, unsigned long offset,
                                             unsigned long length) {
    record("uniform_buffer_map_range", {text(buffer), text(offset), text(length)});
    return pointer("uniform_buffer_map_range");
}

bool FakeRenderer::uniform_buffer_unmap(orvex::UniformBufferData* buffer) {
    record("uniform_buffer_unmap", {text(buffer)});
    return result("uniform_buffer_unmap");
}

bool FakeRenderer::uniform_buffer_bind(orvex::UniformBufferData* buffer) {
    record("uniform_buffer_bind", {text(buffer)});
    return result("uniform_buffer_bind");
}

bool FakeRenderer::uniform_buffer_bind_base(orvex::UniformBufferData* buffer) {
    record("uniform_buffer_bind_base", {text(buffer)});
    return result("uniform_buffer_bind_base");
}

bool FakeRenderer::uniform_buffer_unbind(orvex::UniformBufferData* buffer) {
    record("uniform_buffer_unbind", {text(buffer)});
    return result("uniform_buffer_unbind");
}

} // namespace orvex_test
