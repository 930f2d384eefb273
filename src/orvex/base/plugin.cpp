/// @file
/// Plugin. Its record holds the texts in fields of a fixed size, so that a getter's pointer stays
/// valid for the life of the plugin. The end: all who hold plain pointers hear of it (plugin_end.h)
/// before the object goes, in `release` and again in the destructor, since a host may also use
/// `delete`; then the module that made the plugin destroys it, and is closed after that.

#include "orvex/base/plugin.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/base/private/plugin_data.h"
#include "orvex/base/private/plugin_end.h"
#include "orvex/platform/private/loaded_library.h"

namespace orvex {

Plugin::Plugin()
    : data(std::make_unique<PluginData>()) {}

Plugin::~Plugin() {
    tell_plugin_end(this);
}

void Plugin::PluginData::trace(LOG_LEVEL level, const char* format, va_list arguments) const {
    if (!format)
        misuse("Plugin::tracef", "a null format");
    if (!format || !LogMgr::get()->lets_through(level))
        return;
    char text[1024];
    text[0] = '\0';
    std::vsnprintf(text, sizeof text, format, arguments);
    LogMgr::get()->get_default_log()->tracef(level, "Plugin(%s - id:%d) - %s", name, id, text);
}

void Plugin::tracef(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    data->trace(LOG_LEVEL_INFO, format, arguments);
    va_end(arguments);
}

void Plugin::tracef_warning(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    data->trace(LOG_LEVEL_WARNING, format, arguments);
    va_end(arguments);
}

void Plugin::tracef_error(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    data->trace(LOG_LEVEL_ERROR, format, arguments);
    va_end(arguments);
}

void Plugin::tracef_debug(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    data->trace(LOG_LEVEL_DEBUG, format, arguments);
    va_end(arguments);
}

bool Plugin::initialize() {
    if (initialized)
        return true;
    LogMgr::get()->tracef_debug("plugin %s (id=%d) - initialize()", data->name, data->id);
    initialized = true;
    return true;
}

bool Plugin::terminate() {
    if (!initialized)
        return true;
    LogMgr::get()->tracef_debug("plugin %s (id=%d) - terminate()", data->name, data->id);
    initialized = false;
    return true;
}

bool Plugin::start() {
    if (started)
        return true;
    LogMgr::get()->tracef_debug("plugin %s (id=%d) - start()", data->name, data->id);
    started = true;
    return true;
}

bool Plugin::stop() {
    if (!started)
        return true;
    LogMgr::get()->tracef_debug("plugin %s (id=%d) - stop()", data->name, data->id);
    started = false;
    return true;
}

int Plugin::get_id() const {
    return data->id;
}

int Plugin::getid() const {
    return data->id;
}

namespace {

/// Fills a whole field with a text, which may lie in the field itself; the last byte stays zero.
template<std::size_t size>
void store(char (&field)[size], const char* text, const char* operation) {
    if (!text) {
        misuse(operation, "a null text");
        return;
    }
    const std::size_t length = strnlen(text, size - 1);
    std::memmove(field, text, length);
    std::memset(field + length, 0, size - length);
}

} // namespace

void Plugin::set_name(const char* name) {
    store(data->name, name, "Plugin::set_name");
}

const char* Plugin::get_name() const {
    return data->name;
}

void Plugin::set_full_filename(const char* filename) {
    store(data->full_filename, filename, "Plugin::set_full_filename");
}

const char* Plugin::get_full_filename() const {
    return data->full_filename;
}

void Plugin::set_description(const char* description) {
    store(data->description, description, "Plugin::set_description");
}

const char* Plugin::get_description() const {
    return data->description;
}

void Plugin::set_author(const char* author) {
    store(data->author, author, "Plugin::set_author");
}

const char* Plugin::get_author() const {
    return data->author;
}

void Plugin::set_build_info(const char* build_info) {
    store(data->build_info, build_info, "Plugin::set_build_info");
}

const char* Plugin::get_build_info() const {
    return data->build_info;
}

void Plugin::set_version(int major, int minor, int patch) {
    data->version_major = major;
    data->version_minor = minor;
    data->version_patch = patch;
}

int Plugin::get_version_major() const {
    return data->version_major;
}

int Plugin::get_version_minor() const {
    return data->version_minor;
}

int Plugin::get_version_patch() const {
    return data->version_patch;
}

void Plugin::set_type(PLUGIN_TYPE type) {
    data->type = type;
}

PLUGIN_TYPE Plugin::get_type() const {
    return data->type;
}

void Plugin::set_core_plugin_state(bool state) {
    data->core_plugin_state = state;
}

bool Plugin::get_core_plugin_state() const {
    return data->core_plugin_state;
}

int Plugin::get_ref() const {
    return data->ref;
}

void Plugin::add_ref() {
    ++data->ref;
}

void Plugin::dec_ref() {
    if (data->ref > 0)
        --data->ref;
    else
        misuse("Plugin::dec_ref", "a plugin without a reference");
}

namespace {

/// Objects whose module has no entry point to destroy them: their code is gone, so nothing can be
/// done with them but to remember that they are not lost by mistake.
void keep_undestroyed(Plugin* plugin) {
    static auto* const kept = new std::vector<Plugin*>;
    kept->push_back(plugin);
}

/// Expects the handle to be copied from the plugin, which dies before its module is closed.
void destroy_in_module(Plugin* plugin, void* handle) {
    const OpenedModule module(handle);
    const auto destroy = module.entry<decltype(orvex_destroy_plugin)>("orvex_destroy_plugin");
    if (destroy && !OpenedModule::error_text())
        destroy(plugin);
    else
        keep_undestroyed(plugin);
}

} // namespace

int Plugin::release() {
    // A plugin that nobody counted yet ends all the same.
    if (data->ref > 0)
        --data->ref;
    if (data->ref >= 1)
        return data->ref;
    tell_plugin_end(this);
    if (data->dynlib_handle)
        destroy_in_module(this, data->dynlib_handle);
    else
        delete this;
    return 0;
}

void Plugin::set_dynlib_handle(void* handle) {
    data->dynlib_handle = handle;
}

void* Plugin::get_dynlib_handle() const {
    return data->dynlib_handle;
}

Thread* Plugin::get_thread() {
    return &data->thread;
}

const Thread* Plugin::get_thread() const {
    return &data->thread;
}

Thread* Plugin::get_thread_ptr() {
    return &data->thread;
}

const Thread* Plugin::get_thread_ptr() const {
    return &data->thread;
}

void Plugin::update_thread() {
    data->thread.update();
}

bool Plugin::check_thread() const {
    return Thread() == data->thread;
}

} // namespace orvex
