// Models: from files to all that is told of them.

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <orvex/math/mat4.h>

#include "orvex_c/private/cameras.h"
#include "orvex_c/private/enumerations.h"
#include "orvex_c/private/handles.h"
#include "orvex_c/private/records.h"

namespace orvex::c {

kit::Normals normals_of(orvex_normals normals, const char* name) {
    require_choice(normals, ORVEX_NORMALS_FLAT, name);
    static constexpr kit::Normals all[] = {kit::Normals::by_file, kit::Normals::file,
                                           kit::Normals::smooth, kit::Normals::flat};
    return all[normals];
}

} // namespace orvex::c

using namespace orvex::c;

orvex_result orvex_model_load(orvex_engine engine, const char* path,
                              const orvex_model_options* options, orvex_model* model) {
    return guarded([&] {
        Out<orvex_model> out(model, "model");
        engine_of(engine);
        require_pointer(path, "path");
        const orvex_model_options told = record_in(options, "options");
        kit::ModelOptions wanted;
        wanted.normals = normals_of(told.normals, "options->normals");
        wanted.allow_outside = flag_of(told.allow_outside, "options->allow_outside");
        wanted.loader = text_or_nothing(told.loader);
        auto thing = std::make_unique<ModelThing>();
        thing->model = kit::Model(path, wanted);
        if (!thing->model)
            refuse(ORVEX_ERROR_FILE, thing->model.reason());
        thing->files = thing->model.files();
        out = std::move(thing);
    });
}

orvex_result orvex_model_destroy(orvex_model model) {
    return guarded([&] {
        model_of(model);
        end_handle(model);
    });
}

namespace {

void put(float* to, const orvex::vec4& from) {
    to[0] = from.x;
    to[1] = from.y;
    to[2] = from.z;
    to[3] = from.w;
}

void put(float* to, const orvex::vec3& from) {
    to[0] = from.x;
    to[1] = from.y;
    to[2] = from.z;
}

/// What a model tells, and each of its meshes.
template<class Info>
void put_measures(Info& to, std::size_t vertices, std::size_t faces, const kit::Bounds& bounds) {
    to.vertex_count = vertices;
    to.face_count = faces;
    put(to.bounds_min, bounds.min);
    put(to.bounds_max, bounds.max);
}

/// One of a list.
template<class List>
const auto& one_of(const List& list, std::size_t index) {
    require_index(index, list.size());
    return list[index];
}

void put_text(const std::vector<std::string>& list, std::size_t index, const char** to,
              const char* name) {
    const std::string& text = one_of(list, index);
    require_pointer(to, name);
    *to = text.c_str();
}

} // namespace

orvex_result orvex_model_get_info(orvex_model model, orvex_model_info* info) {
    return guarded([&] {
        const ModelThing& thing = model_of(model);
        const kit::Model& told = thing.model;
        orvex_model_info own{};
        own.loader = told.loader().c_str();
        own.file_up_axis = up_axis_of(told.file_up_axis());
        own.up_axis = up_axis_of(told.up_axis());
        own.mesh_count = told.meshes().size();
        own.material_count = told.materials().size();
        own.texture_count = told.textures().size();
        own.note_count = told.notes().size();
        own.file_count = thing.files.size();
        own.point_count = told.num_points();
        put_measures(own, told.num_vertices(), told.num_faces(), told.bounds());
        record_out(own, info, "info");
    });
}

orvex_result orvex_model_get_mesh(orvex_model model, size_t index, orvex_mesh_info* info) {
    return guarded([&] {
        const kit::ModelMesh& told = one_of(model_of(model).model.meshes(), index);
        orvex_mesh_info own{};
        own.name = told.name.c_str();
        put_measures(own, told.num_vertices, told.num_faces, told.bounds);
        record_out(own, info, "info");
    });
}

orvex_result orvex_model_get_material(orvex_model model, size_t index, orvex_material_info* info) {
    return guarded([&] {
        const kit::ModelMaterial& told = one_of(model_of(model).model.materials(), index);
        orvex_material_info own{};
        own.name = told.name.c_str();
        put(own.ambient, told.ambient);
        put(own.diffuse, told.diffuse);
        put(own.specular, told.specular);
        own.shininess = told.shininess;
        own.opacity = told.opacity;
        own.textures = told.textures.data();
        own.texture_count = told.textures.size();
        record_out(own, info, "info");
    });
}

orvex_result orvex_model_get_texture(orvex_model model, size_t index, orvex_texture_info* info) {
    return guarded([&] {
        const kit::ModelTexture& told = one_of(model_of(model).model.textures(), index);
        record_out(
            {0, told.name.c_str(), told.path.c_str(), told.reason.c_str(), told.width, told.height},
            info, "info");
    });
}

orvex_result orvex_model_get_note(orvex_model model, size_t index, const char** note) {
    return guarded([&] { put_text(model_of(model).model.notes(), index, note, "note"); });
}

orvex_result orvex_model_get_file(orvex_model model, size_t index, const char** path) {
    return guarded([&] { put_text(model_of(model).files, index, path, "path"); });
}

orvex_result orvex_model_get_extent(orvex_model model, double* min, double* max) {
    return guarded([&] {
        const std::vector<orvex::vec4>& points = model_of(model).model.extent().points;
        require_pointer(min, "min");
        require_pointer(max, "max");
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        std::fill_n(min, 3, nan);
        std::fill_n(max, 3, nan);
        for (const orvex::vec4& point : points) {
            const float place[] = {point.x, point.y, point.z};
            for (int i = 0; i < 3; ++i) {
                // Whatever is compared with NaN is false.
                const auto number = static_cast<double>(place[i]);
                min[i] = number >= min[i] ? min[i] : number;
                max[i] = number <= max[i] ? max[i] : number;
            }
        }
    });
}

orvex_result orvex_model_stand_up(orvex_model model) {
    return guarded([&] { model_of(model).model.stand_up(); });
}

orvex_result orvex_model_set_transform(orvex_model model, const float* matrix) {
    return guarded([&] {
        kit::Model& placed = model_of(model).model;
        orvex::mat4 transform;
        if (matrix) {
            require_finite(matrix, 16, "matrix");
            transform.from_float_array(matrix);
        }
        require(placed.set_transform(transform), ORVEX_ERROR_ARGUMENT);
    });
}

namespace {

orvex::Ray ray_of(const double* origin, const double* direction) {
    require_finite(origin, 3, "origin");
    require_finite(direction, 3, "direction");
    const auto vector_of = [](const double* from, float w) {
        return orvex::vec4(static_cast<float>(from[0]), static_cast<float>(from[1]),
                           static_cast<float>(from[2]), w);
    };
    const orvex::Ray ray{vector_of(origin, 1.0f), vector_of(direction, 0.0f)};
    if (ray.direction.x == 0.0f && ray.direction.y == 0.0f && ray.direction.z == 0.0f)
        refuse_argument("direction", "0 0 0", "it has a length");
    return ray;
}

/// @param first  what the ids of the model's meshes count on from
orvex_pick record_of(const kit::Pick& met, std::size_t model, std::size_t first) {
    orvex_pick own{};
    own.hit = 1;
    own.material = met.material;
    own.model = model;
    own.mesh = met.mesh;
    own.face = met.face;
    own.object = first + met.mesh;
    std::copy_n(met.barycentric.begin(), 3, own.barycentric);
    own.distance = met.distance;
    const float point[] = {met.point.x, met.point.y, met.point.z};
    std::copy_n(point, 3, own.point);
    return own;
}

} // namespace

orvex_result orvex_pick_ray(const orvex_model* models, size_t count, const double* origin,
                            const double* direction, orvex_pick* pick) {
    return guarded([&] {
        const std::vector<kit::Model*> asked = models_of(models, count);
        const orvex::Ray ray = ray_of(origin, direction);
        orvex_pick nearest{};
        std::size_t first = 0;
        for (std::size_t i = 0; i < asked.size(); first += asked[i]->meshes().size(), ++i)
            if (const std::optional<kit::Pick> met = asked[i]->pick(ray);
                met && (nearest.hit == 0 || met->distance < nearest.distance))
                nearest = record_of(*met, i, first);
        record_out(nearest, pick, "pick");
    });
}
