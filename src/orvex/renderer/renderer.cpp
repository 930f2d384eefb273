#include "orvex/renderer/renderer.h"

#include <cstring>

#include "orvex/base/private/plugin_data.h"
#include "orvex/renderer/private/eliding_renderers.h"

namespace orvex {

struct Renderer::RendererData {
    void* ctx = nullptr;
    ORVEX_API3D api_type = 0;
    char api_name[128] = {};
};

Renderer::Renderer()
    : renderer_data(std::make_unique<RendererData>()) {
    PluginData::of(*this).renderer = this;
}

Renderer::~Renderer() {
    if (elides_binds)
        num_eliding_renderers.fetch_sub(1, std::memory_order_relaxed);
}

void* Renderer::get_ctx() const {
    return renderer_data->ctx;
}

const char* Renderer::get_api_name() const {
    return renderer_data->api_name;
}

void Renderer::set_api_name(const char* name) {
    char copy[sizeof(renderer_data->api_name)] = {};
    if (name)
        std::strncpy(copy, name, sizeof(copy) - 1);
    std::memcpy(renderer_data->api_name, copy, sizeof(copy));
}

ORVEX_API3D Renderer::get_api_type() const {
    return renderer_data->api_type;
}

void Renderer::set_api_type(ORVEX_API3D type) {
    renderer_data->api_type = type;
}

std::atomic<int> num_eliding_renderers{0};

void Renderer::set_elided_binds_state(bool state) {
    if (state != elides_binds)
        num_eliding_renderers.fetch_add(state ? 1 : -1, std::memory_order_relaxed);
    elides_binds = state;
    if (!state && keeps_binds)
        keep_binds(false);
}

bool Renderer::keep_binds(bool) {
    return false;
}

// The operations that hosts know were declared without a `const` that they keep all the same.

const mat4& Renderer::get_projection_matrix() const {
    return const_cast<Renderer*>(this)->get_projection_matrix();
}

const mat4& Renderer::get_view_matrix() const {
    return const_cast<Renderer*>(this)->get_view_matrix();
}

} // namespace orvex
