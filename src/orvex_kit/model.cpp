// The public face of a model. What isn't there is empty.

#include "orvex_kit/model.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <utility>

#include <orvex/geometry/mesh/model.h>
#include <orvex/kernel/core.h>

#include "orvex_kit/files.h"
#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

namespace {

// What an empty model tells: made with the library, as those who ask have no way to fail, and never
// destroyed.
const ModelFacts& no_facts = *new ModelFacts;
const std::string& no_text = *new std::string;
const std::string& no_model = *new std::string("no model is loaded");
const std::string& no_engine_left = *new std::string("the engine has ended, and the model with it");

} // namespace

Model::Model() noexcept = default;
Model::Model(const std::string& path, const ModelOptions& options)
    : data(std::make_unique<Data>(path, options)) {}
Model::Model(std::unique_ptr<Data> data) noexcept
    : data(std::move(data)) {}
Model::~Model() = default;
Model::Model(Model&& other) noexcept = default;
Model& Model::operator=(Model&& other) noexcept = default;

Model::operator bool() const noexcept {
    return data && data->loaded.model;
}

const std::string& Model::reason() const noexcept {
    if (!data)
        return no_model;
    return *this || !data->reason.empty() ? data->reason : no_engine_left;
}

orvex::Model* Model::node() const noexcept {
    if (!*this)
        return nullptr;
    data->bring_back_face_lists();
    return data->loaded.model.get();
}

void Model::draw(Renderer& renderer, GpuProgram& program, Path path, const Angle& lit_from) {
    if (*this)
        data->draw(renderer, program, path, lit_from);
}

void Model::draw_points(Renderer& renderer, GpuProgram& program) {
    if (*this)
        data->draw_points(renderer, program);
}

void Model::draw_lines(Renderer& renderer, GpuProgram& program) {
    if (*this)
        data->draw_lines(renderer, program);
}

void Model::stand_up() {
    if (*this)
        data->stand_up();
}

Outcome Model::set_transform(const mat4& transform) {
    if (!*this)
        return Outcome::failure(reason());
    for (int i = 0; i < 16; ++i)
        if (!std::isfinite(transform.m[i]))
            return Outcome::failure("element " + std::to_string(i) + " of the transform is " +
                                    std::to_string(transform.m[i]));
    const float* const m = transform.m;
    if (m[3] != 0.0f || m[7] != 0.0f || m[11] != 0.0f || m[15] != 1.0f)
        return Outcome::failure("the last row of the transform isn't 0 0 0 1");
    data->place(transform);
    return Outcome::success();
}

// ------------------------------------------------------------------------------- what it holds

namespace {

/// Of an empty model, too.
template<class Data>
const ModelFacts& facts_of(const Data& data) {
    return data ? data->facts : no_facts;
}

} // namespace

const std::vector<ModelMesh>& Model::meshes() const noexcept {
    return facts_of(data).meshes;
}

const std::vector<ModelMaterial>& Model::materials() const noexcept {
    return facts_of(data).materials;
}

const std::vector<ModelTexture>& Model::textures() const noexcept {
    return facts_of(data).textures;
}

const std::vector<FaceRun>& Model::runs() const noexcept {
    return facts_of(data).runs;
}

const std::vector<std::string>& Model::notes() const noexcept {
    return facts_of(data).notes;
}

const std::vector<ModelCamera>& Model::cameras() const noexcept {
    return facts_of(data).cameras;
}

const Bounds& Model::bounds() const noexcept {
    return facts_of(data).bounds;
}

const Extent& Model::extent() const noexcept {
    return facts_of(data).extent;
}

std::size_t Model::num_vertices() const noexcept {
    return facts_of(data).num_vertices;
}

std::size_t Model::num_faces() const noexcept {
    return facts_of(data).num_faces;
}

std::size_t Model::num_points() const noexcept {
    return facts_of(data).num_points;
}

std::size_t Model::num_lines() const noexcept {
    return facts_of(data).num_lines;
}

UpAxis Model::up_axis() const noexcept {
    return facts_of(data).up;
}

UpAxis Model::file_up_axis() const noexcept {
    return facts_of(data).file_up;
}

const std::string& Model::loader() const noexcept {
    return data ? data->loaded.loader : no_text;
}

namespace {

/// What the lines "mtllib name" of an OBJ file name.
std::vector<std::string> libraries_named_in(const std::string& path) {
    const std::string word = "mtllib";
    std::vector<std::string> names;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, word.size(), word) != 0)
            continue;
        std::istringstream rest(line.substr(word.size()));
        for (std::string name; rest >> name;)
            if (std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(name);
    }
    return names;
}

} // namespace

std::vector<std::string> Model::files() const {
    if (!*this || data->path.empty())
        return {};
    std::vector<std::string> names{data->path};
    if (loader() == loader_of_obj) // which doesn't tell
        for (const std::string& library : libraries_named_in(data->path))
            names.push_back(folder_of(data->path) + library);
    names.insert(names.end(), data->loaded.files.begin(), data->loaded.files.end());
    for (const ModelTexture& texture : textures())
        names.push_back(texture.path);
    return names;
}

// ------------------------------------------------------------------------------- its life

Model::Data::Data(const std::string& path, const ModelOptions& options)
    : path(path) {
    if (!core::log_get_default()) {
        reason = no_engine;
        return;
    }
    if (reason = mistake_in_reading(path); !reason.empty())
        return;
    loaded = load_model(path, options.loader, options.time);
    if (!loaded.model) {
        reason = path + ": no loader can read it as a model (" + readable_formats_in_short() + ")" +
                 (loaded.reason.empty() ? "" : ": " + loaded.reason);
        return;
    }
    gather(*loaded.model);
    gather_materials();
    add_runs();
    tell_of_meshes();
    if (has_no_sure_way_up(loaded.loader))
        facts.file_up = facts.up = standing_axis(facts.extent);
    else if (has_z_up(loaded.loader))
        facts.file_up = facts.up = UpAxis::z;
    load_textures(options.allow_outside);
    take_normals(options.normals);
}

Model::Data::~Data() {
    Data::close();
}

namespace {

/// Ends a hold with what it has on the GPU.
void end(NodeHold<Resource>& hold, Renderer* renderer) {
    if (Resource* const resource = hold.release())
        resource->release(renderer, nullptr);
}

} // namespace

void Model::Data::close() {
    if (!loaded.model)
        return;
    Renderer* const renderer = living_renderer();
    pieces.clear();
    loaded.model.release()->kill(renderer, nullptr);
    for (NodeHold<Resource>& material : loaded.materials)
        end(material, renderer);
    for (NodeHold<Resource>& texture : loaded.textures)
        end(texture, renderer);
    loaded = {};
    facts = {};
    tree.reset();
}

} // namespace orvex::kit
