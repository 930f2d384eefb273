#include "orvex/renderer/renderer.h"

#include <cstring>

#include "orvex/math/mat4.h"

namespace orvex {

struct Renderer::RendererData {
    void* ctx = nullptr;
    ORVEX_API3D api_type = 0;
    char api_name[128] = {};
    mat4 matrix;
};

Renderer::Renderer()
    : renderer_data(new RendererData) {}

Renderer::~Renderer() {
    delete renderer_data;
}

void* Renderer::get_ctx() const {
    return renderer_data->ctx;
}

const char* Renderer::get_api_name() const {
    return renderer_data->api_name;
}

void Renderer::set_api_name(const char* name) {
    char copy[sizeof(renderer_data->api_name)] = {};
    if (name != nullptr)
        std::strncpy(copy, name, sizeof(copy) - 1);
    std::memcpy(renderer_data->api_name, copy, sizeof(copy));
}

ORVEX_API3D Renderer::get_api_type() const {
    return renderer_data->api_type;
}

void Renderer::set_api_type(ORVEX_API3D type) {
    renderer_data->api_type = type;
}

} // namespace orvex
