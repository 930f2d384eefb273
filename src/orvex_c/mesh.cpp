// Meshes of the caller's numbers.

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <orvex_kit/mesh_numbers.h>

#include "orvex_c/private/enumerations.h"
#include "orvex_c/private/handles.h"
#include "orvex_c/private/pictures.h"
#include "orvex_c/private/records.h"

using namespace orvex::c;

namespace {

kit::Number number_of(orvex_type type, kit::Number usual, const std::string& name) {
    static constexpr kit::Number all[] = {kit::Number::u8,  kit::Number::u16, kit::Number::u32,
                                          kit::Number::i32, kit::Number::i64, kit::Number::f32,
                                          kit::Number::f64};
    require_choice(type, ORVEX_TYPE_F64, (name + ".type").c_str());
    return type == ORVEX_TYPE_DEFAULT ? usual : all[type - 1];
}

kit::Numbers numbers_of(const orvex_array& array, kit::Number usual, const std::string& name) {
    const kit::Number kind = number_of(array.type, usual, name);
    if (array.components < 0)
        refuse_argument((name + ".components").c_str(), std::to_string(array.components),
                        "it goes from 0");
    return {array.data, kind, array.components, array.stride};
}

bool is_nothing(const float* color) {
    return color[0] == 0.0f && color[1] == 0.0f && color[2] == 0.0f && color[3] == 0.0f;
}

/// Without the texture.
kit::MeshNumbers mesh_of(const orvex_mesh_data& told) {
    kit::MeshNumbers mesh;
    mesh.num_vertices = told.vertex_count;
    mesh.positions = numbers_of(told.positions, kit::Number::f32, "data->positions");
    mesh.normals = numbers_of(told.normals, kit::Number::f32, "data->normals");
    mesh.texcoords = numbers_of(told.texcoords, kit::Number::f32, "data->texcoords");
    mesh.colors = numbers_of(told.colors, kit::Number::f32, "data->colors");
    mesh.num_faces = told.face_count;
    mesh.faces = numbers_of(told.faces, kit::Number::u32, "data->faces");
    if (told.shading != ORVEX_NORMALS_AS_GIVEN)
        mesh.shading = normals_of(told.shading, "data->shading");
    for (int i = 0; i < 4; ++i)
        require_range(static_cast<double>(told.color[i]), 0.0, 1.0,
                      ("data->color[" + std::to_string(i) + "]").c_str());
    if (!is_nothing(told.color))
        mesh.color = orvex::vec4(told.color[0], told.color[1], told.color[2], told.color[3]);
    mesh.name = text_or_nothing(told.name);
    return mesh;
}

/// Numbers of the caller's with the copy of their texture.
struct Given {
    kit::MeshNumbers mesh;
    kit::Picture texture;

    explicit Given(const orvex_mesh_data* data) {
        require_pointer(data, "data");
        const orvex_mesh_data told = record_in(data, "data");
        mesh = mesh_of(told);
        if (!told.texture)
            return;
        const orvex_type type = record_in(told.texture, "data->texture").type;
        if (type != ORVEX_TYPE_DEFAULT && type != ORVEX_TYPE_U8)
            refuse_argument("data->texture->type", std::to_string(type),
                            "textures are of ORVEX_TYPE_U8");
        texture = picture_of(told.texture, "data->texture");
        mesh.texture = &texture;
    }
    Given(const Given&) = delete;
    Given& operator=(const Given&) = delete;
};

} // namespace

orvex_result orvex_mesh_create(orvex_engine engine, const orvex_mesh_data* data,
                               orvex_model* model) {
    return guarded([&] {
        Out<orvex_model> out(model, "model");
        engine_of(engine);
        const Given given(data);
        auto thing = std::make_unique<ModelThing>();
        thing->model = kit::Model::from_numbers(given.mesh);
        if (!thing->model)
            refuse(ORVEX_ERROR_ARGUMENT, thing->model.reason());
        out = std::move(thing);
    });
}

orvex_result orvex_mesh_update(orvex_model model, const orvex_mesh_data* data) {
    return guarded([&] {
        kit::Model& mesh = model_of(model).model;
        const Given given(data);
        require(mesh.update(given.mesh), ORVEX_ERROR_ARGUMENT);
    });
}
