#include "orvex/base/loader_3d.h"

#include <string>

namespace orvex {

struct Loader3D::Loader3DData {
    std::string loader_name;
    std::string loader_description;
    std::string model_dir;
    std::string resource_dir;
};

Loader3D::Loader3D()
    : loader_data(new Loader3DData) {}

Loader3D::~Loader3D() {
    delete loader_data;
}

namespace {

void store(std::string& field, const char* text) {
    if (text)
        field = text;
}

} // namespace

void Loader3D::set_resource_dir(const char* directory) {
    store(loader_data->resource_dir, directory);
}

const char* Loader3D::get_resource_dir() const {
    return loader_data->resource_dir.c_str();
}

void Loader3D::set_model_dir(const char* directory) {
    store(loader_data->model_dir, directory);
}

const char* Loader3D::get_model_dir() const {
    return loader_data->model_dir.c_str();
}

void Loader3D::set_loader_name(const char* name) {
    store(loader_data->loader_name, name);
}

const char* Loader3D::get_loader_name() const {
    return loader_data->loader_name.c_str();
}

void Loader3D::set_loader_description(const char* description) {
    store(loader_data->loader_description, description);
}

const char* Loader3D::get_loader_description() const {
    return loader_data->loader_description.c_str();
}

} // namespace orvex
