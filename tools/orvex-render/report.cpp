// The texts of --info and --gl.

#include "report.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex_kit/model.h>

using namespace orvex;
using namespace orvex::kit;

namespace {

/// The text that printf would print.
__attribute__((format(printf, 1, 2))) std::string text_of(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    va_end(arguments);
    text.pop_back();
    return text;
}

const char* text_or_nothing(const char* text) {
    return text ? text : "";
}

bool is_found(const ModelTexture& texture) {
    return texture.reason.empty();
}

std::string report_of_material(const ModelMaterial& material,
                               const std::vector<ModelTexture>& textures) {
    const vec4& diffuse = material.diffuse;
    const vec4& specular = material.specular;
    const auto found = std::count_if(material.textures.begin(), material.textures.end(),
                                     [&](std::size_t i) { return is_found(textures[i]); });
    return text_of("  %s: diffuse %.3g %.3g %.3g, specular %.3g %.3g %.3g, shininess %.3g, "
                   "opacity %.3g, textures %td\n",
                   material.name.c_str(), double(diffuse.x), double(diffuse.y), double(diffuse.z),
                   double(specular.x), double(specular.y), double(specular.z),
                   double(material.shininess), double(material.opacity), found);
}

std::string report_of_textures(const std::vector<ModelTexture>& textures) {
    const auto found = std::count_if(textures.begin(), textures.end(), is_found);
    std::string text = text_of("textures found: %td\n", found);
    for (const ModelTexture& texture : textures)
        if (is_found(texture))
            text += text_of("  %s: %dx%d\n", texture.path.c_str(), texture.width, texture.height);
    text += text_of("textures missing: %td\n", std::ptrdiff_t(textures.size()) - found);
    for (const ModelTexture& texture : textures)
        if (!is_found(texture))
            text += "  " + texture.name + ": " + texture.reason + "\n";
    return text;
}

} // namespace

std::string report_of_model(const std::string& path, const kit::Model& scene) {
    std::string text = "model: " + path + "\n";
    text += text_of("meshes: %zu\n", scene.meshes().size());
    for (const ModelMesh& mesh : scene.meshes())
        text += text_of("  %s: vertices %zu, faces %zu\n", mesh.name.c_str(), mesh.num_vertices,
                        mesh.num_faces);
    text += text_of("vertices: %zu\nfaces: %zu\npoints: %zu\n", scene.num_vertices(),
                    scene.num_faces(), scene.num_points());
    if (scene.num_lines() > 0)
        text += text_of("lines: %zu\n", scene.num_lines());
    for (const ModelCamera& camera : scene.cameras())
        text += "camera: " + camera.name + "\n";
    text += text_of("materials: %zu\n", scene.materials().size());
    for (const ModelMaterial& material : scene.materials())
        text += report_of_material(material, scene.textures());
    text += report_of_textures(scene.textures());
    for (const std::string& note : scene.notes())
        text += "note: " + note + "\n";
    return text;
}

std::string report_of_devices() {
    std::string text;
    for (const RenderWindow_Device& device : RenderWindow::list_devices()) {
        text += text_of("%d: %s", device.index,
                        device.driver.empty() ? "no driver" : device.driver.c_str());
        if (!device.pci.empty())
            text += ", at " + device.pci;
        if (device.software)
            text += ", software";
        text += device.refusal.empty() ? "\n" : ", can't draw: " + device.refusal + "\n";
    }
    return text.empty() ? "no device is found\n" : text;
}

namespace {

std::string report_of_extensions(RenderWindow* window, bool with_names) {
    window->build_opengl_extensions_list();
    const unsigned long count = window->get_num_opengl_extensions();
    std::string text = text_of("extensions: %lu\n", count);
    for (unsigned long i = 0; with_names && i < count; ++i)
        text += text_of("  %s\n", window->get_opengl_extension(i));
    return text;
}

} // namespace

std::string report_of_context(Renderer* renderer, RenderWindow* window, bool with_extensions) {
    std::string text;
    const auto add_text = [&text](const char* name, const char* value) {
        text += text_of("%s: %s\n", name, text_or_nothing(value));
    };
    const auto add_number = [&text](const char* name, int value) {
        text += text_of("%s: %d\n", name, value);
    };
    add_text("device", renderer->get_renderer_model());
    add_text("driver", renderer->get_renderer_vendor());
    add_text("OpenGL", renderer->get_api_version());
    add_text("shading language", renderer->get_shading_language_version());
    add_number("largest texture", renderer->get_max_texture_size());
    add_number("texture units", renderer->get_max_texture_units());
    add_number("samples per pixel", renderer->get_GL_MAX_SAMPLES());
    add_number("colour attachments", renderer->get_GL_MAX_COLOR_ATTACHMENTS());
    add_number("vertex attributes", renderer->get_max_vertex_attribs());
    text +=
        text_of("anisotropic filtering: %.3g\n", double(renderer->get_max_texture_anisotropy()));
    add_text("instancing", renderer->is_geometry_instancing_supported() ? "yes" : "no");
    int x = 0, y = 0, z = 0;
    if (renderer->get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(&x, &y, &z) && x > 0)
        text += text_of("compute work group: %dx%dx%d\n", x, y, z);
    return text + report_of_extensions(window, with_extensions);
}
