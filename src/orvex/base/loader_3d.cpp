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

void store(std::string& field, char const* text) {
    if (text)
        field = text;
}

} // namespace

void Loader3D::set_resource_dir(char const* directory) {
    store(loader_data->resource_dir, directory);
}

char const* Loader3D::get_resource_dir() const {
    return loader_data->resource_dir.c_str();
}

void Loader3D::set_model_dir(char const* directory) {
    store(loader_data->model_dir, directory);
}

char const* Loader3D::get_model_dir() const {
    return loader_data->model_dir.c_str();
}

void Loader3D::set_loader_name(char const* name) {
    store(loader_data->loader_name, name);
}

char const* Loader3D::get_loader_name() const {
    return loader_data->loader_name.c_str();
}

void Loader3D::set_loader_description(char const* description) {
    store(loader_data->loader_description, description);
}

char const* Loader3D::get_loader_description() const {
    return loader_data->loader_description.c_str();
}

} // namespace orvex
