#include "orvex/base/loader_3d.h"

#include <algorithm>
#include <cstdarg>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "orvex/base/private/failure_text.h"
#include "orvex/base/private/plugin_data.h"

namespace orvex {

struct Loader3D::Loader3DData {
    std::string loader_name;
    std::string loader_description;
    std::string model_dir;
    std::string resource_dir;
    FailureText failure;
    std::vector<std::string> notes;
    std::vector<std::string> files;
    float time = std::numeric_limits<float>::quiet_NaN();
    bool format_known = false;
};

Loader3D::Loader3D()
    : loader_data(std::make_unique<Loader3DData>()) {
    PluginData::of(*this).loader_3d = this;
}

Loader3D::~Loader3D() = default;

Loader3D* Loader3D::from_plugin(Plugin* plugin) {
    return plugin ? plugin_as_loader_3d(*plugin) : nullptr;
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

void Loader3D::set_time(float seconds) noexcept {
    loader_data->time = seconds;
}

float Loader3D::get_time() const noexcept {
    return loader_data->time;
}

const char* Loader3D::get_failure_reason() const noexcept {
    return loader_data->failure.text;
}

bool Loader3D::get_format_known_state() const noexcept {
    return loader_data->format_known;
}

void Loader3D::clear_failure_reason() noexcept {
    loader_data->failure.clear();
    loader_data->notes.clear();
    loader_data->files.clear();
    loader_data->format_known = false;
}

unsigned long Loader3D::get_num_notes() const noexcept {
    return loader_data->notes.size();
}

const char* Loader3D::get_note(unsigned long i) const noexcept {
    return i < loader_data->notes.size() ? loader_data->notes[i].c_str() : "";
}

unsigned long Loader3D::get_num_files() const noexcept {
    return loader_data->files.size();
}

const char* Loader3D::get_file(unsigned long i) const noexcept {
    return i < loader_data->files.size() ? loader_data->files[i].c_str() : "";
}

void Loader3D::add_file(const char* path) {
    if (path)
        loader_data->files.emplace_back(path);
}

void Loader3D::set_failure_reason(const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    loader_data->failure.set(format, arguments);
    va_end(arguments);
    loader_data->format_known = true;
}

void Loader3D::set_format_unknown(const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    loader_data->failure.set(format, arguments);
    va_end(arguments);
    loader_data->format_known = false;
}

namespace {

constexpr std::size_t max_notes = 32;

/// @throw std::bad_alloc
void keep(std::vector<std::string>& notes, const char* text) {
    if (notes.size() < max_notes && std::find(notes.begin(), notes.end(), text) == notes.end())
        notes.emplace_back(text);
}

} // namespace

void Loader3D::add_note(const char* format, ...) noexcept {
    FailureText note;
    std::va_list arguments;
    va_start(arguments, format);
    note.set(format, arguments);
    va_end(arguments);
    try {
        keep(loader_data->notes, note.text);
    } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): a note less.
    }
}

} // namespace orvex
