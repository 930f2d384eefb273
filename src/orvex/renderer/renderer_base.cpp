// A renderer that refuses: every operation of the table answers false, null, 0 or nothing, but for
// the life cycle and the few that a record of the base class answers.

#include "orvex/renderer/renderer_base.h"

#include <initializer_list>

namespace orvex {

RendererBase::RendererBase() = default;

RendererBase::~RendererBase() = default;

namespace {

// False, null, 0 or nothing.
template<class Result>
Result refused() {
    return Result();
}

// Takes the arguments that a refusal doesn't look at.
template<class... Values>
void ignore(const Values&...) {}

} // namespace

#define ORVEX_REFUSE(Result, name, parameters, arguments)                                          \
    Result RendererBase::name parameters {                                                         \
        ignore arguments;                                                                          \
        return refused<Result>();                                                                  \
    }
#define ORVEX_WRITTEN_BELOW(Result, name, parameters, arguments)

ORVEX_RENDERER_OPERATIONS(ORVEX_REFUSE, ORVEX_WRITTEN_BELOW)

#undef ORVEX_REFUSE
#undef ORVEX_WRITTEN_BELOW

// The life cycle succeeds, and keeps the flags that every plugin has. `Renderer` declares it anew
// without a body, so that the one of `Plugin` is called by its name.

// NOLINTBEGIN(bugprone-parent-virtual-call)
bool RendererBase::initialize() {
    return Plugin::initialize();
}

bool RendererBase::terminate() {
    return Plugin::terminate();
}

bool RendererBase::start() {
    return Plugin::start();
}

bool RendererBase::stop() {
    return Plugin::stop();
}
// NOLINTEND(bugprone-parent-virtual-call)

bool RendererBase::start_v2(bool) {
    return start();
}

// What front ends store and want back, and never test for null.

void RendererBase::set_projection_matrix(mat4& matrix, bool) {
    projection_matrix = matrix;
}

mat4& RendererBase::get_projection_matrix() {
    return projection_matrix;
}

void RendererBase::set_view_matrix(mat4& matrix, bool) {
    view_matrix = matrix;
}

mat4& RendererBase::get_view_matrix() {
    return view_matrix;
}

void RendererBase::set_viewport(int, int, int, int) {}

void RendererBase::get_viewport(int* x, int* y, int* width, int* height) {
    for (int* const number : {x, y, width, height})
        if (number)
            *number = 0;
}

int* RendererBase::get_viewport_ptr() {
    for (int& number : no_viewport)
        number = 0; // a caller may have written over them
    return no_viewport;
}

void RendererBase::get_color_buffer_size(int* size, int* width, int* height) {
    if (!size)
        return;
    for (int* const number : {size, width, height})
        if (number)
            *number = 0;
}

bool RendererBase::get_opengl_version(int*, int*) {
    return false;
}

int RendererBase::get_api_version_major() {
    return 0;
}

int RendererBase::get_api_version_minor() {
    return 0;
}

bool RendererBase::gpu_program_activate(GpuProgramData*) {
    return false;
}

bool RendererBase::gpu_program_deactivate(GpuProgramData*) {
    return false;
}

GpuProgramData* RendererBase::gpu_program_get_active_program() {
    return nullptr;
}

int RendererBase::gpu_program_get_vertex_attrib_location(GpuProgramData*, const char*) {
    return -1;
}

int RendererBase::gpu_program_get_uniform_location(GpuProgramData*, const char*) {
    return -1;
}

} // namespace orvex
