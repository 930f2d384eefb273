// The text of --info --json.

#include <orvex_kit/model.h>

#include "json_text.h"
#include "report.h"

using namespace orvex::kit;

namespace {

void put_bounds(JsonText& json, const Bounds& bounds) {
    json.key("bounds");
    if (bounds.is_empty)
        return json.null();
    json.begin_object();
    json.key("min").numbers({bounds.min.x, bounds.min.y, bounds.min.z});
    json.key("max").numbers({bounds.max.x, bounds.max.y, bounds.max.z});
    json.end();
}

/// As --up takes it.
const char* word_of(UpAxis up) {
    switch (up) {
    case UpAxis::x:
        return "x";
    case UpAxis::automatic:
    case UpAxis::y:
        return "y";
    case UpAxis::z:
        return "z";
    case UpAxis::minus_x:
        return "-x";
    case UpAxis::minus_y:
        return "-y";
    case UpAxis::minus_z:
        return "-z";
    }
    return "y";
}

void put_meshes(JsonText& json, const Model& model) {
    json.key("meshes").begin_list();
    for (const ModelMesh& mesh : model.meshes()) {
        json.begin_object();
        json.key("name").text(mesh.name);
        json.key("vertices").number(mesh.num_vertices);
        json.key("faces").number(mesh.num_faces);
        put_bounds(json, mesh.bounds);
        json.end();
    }
    json.end();
}

void put_color(JsonText& json, const char* name, const orvex::vec4& color) {
    json.key(name).numbers({color.x, color.y, color.z, color.w});
}

void put_materials(JsonText& json, const Model& model) {
    json.key("materials").begin_list();
    for (const ModelMaterial& material : model.materials()) {
        json.begin_object();
        json.key("name").text(material.name);
        put_color(json, "ambient", material.ambient);
        put_color(json, "diffuse", material.diffuse);
        put_color(json, "specular", material.specular);
        json.key("shininess").number(material.shininess);
        json.key("opacity").number(material.opacity);
        json.key("textures").begin_list();
        for (const std::size_t texture : material.textures)
            json.text(model.textures()[texture].name);
        json.end();
        json.end();
    }
    json.end();
}

void put_texture(JsonText& json, const ModelTexture& texture) {
    json.begin_object();
    json.key("name").text(texture.name);
    json.key("path").text(texture.path);
    if (texture.reason.empty()) {
        json.key("width").number(static_cast<std::size_t>(texture.width));
        json.key("height").number(static_cast<std::size_t>(texture.height));
    } else {
        json.key("reason").text(texture.reason);
    }
    json.end();
}

void put_textures(JsonText& json, const Model& model) {
    json.key("textures").begin_object();
    for (const bool found : {true, false}) {
        json.key(found ? "found" : "missing").begin_list();
        for (const ModelTexture& texture : model.textures())
            if (texture.reason.empty() == found)
                put_texture(json, texture);
        json.end();
    }
    json.end();
}

} // namespace

std::string report_as_json(const std::string& path, const Model& model) {
    JsonText json;
    json.begin_object();
    json.key("model").text(path);
    json.key("loader").text(model.loader());
    json.key("vertices").number(model.num_vertices());
    json.key("faces").number(model.num_faces());
    json.key("points").number(model.num_points());
    json.key("lines").number(model.num_lines());
    put_bounds(json, model.bounds());
    json.key("up").text(word_of(model.file_up_axis()));
    put_meshes(json, model);
    put_materials(json, model);
    put_textures(json, model);
    json.key("notes").begin_list();
    for (const std::string& note : model.notes())
        json.text(note);
    json.end();
    json.end();
    return json.take();
}
