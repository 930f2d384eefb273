#include "fake_renderer.h"

#include <algorithm>

namespace orvex_test {

FakeRenderer::FakeRenderer() = default;

FakeRenderer::~FakeRenderer() = default;

std::vector<std::string> FakeRenderer::take_calls() {
    std::vector<std::string> taken;
    taken.swap(calls);
    return taken;
}

int FakeRenderer::count(const std::string& operation) const {
    return int(std::count_if(calls.begin(), calls.end(), [&](const std::string& call) {
        return call.compare(0, operation.size() + 1, operation + "(") == 0;
    }));
}

void FakeRenderer::name_pointer(const void* pointer, const std::string& name) {
    names[pointer] = name;
}

std::string FakeRenderer::text(bool value) const {
    return value ? "true" : "false";
}

std::string FakeRenderer::text(const char* value) const {
    return value ? '"' + std::string(value) + '"' : "null";
}

std::string FakeRenderer::text(const void* value) const {
    if (!value)
        return "null";
    const auto name = names.find(value);
    return name == names.end() ? "pointer" : name->second;
}

namespace {

std::string list(const float* values, int count) {
    std::ostringstream out;
    for (int i = 0; i < count; ++i)
        out << (i ? ", " : "(") << values[i];
    return out.str() + ")";
}

} // namespace

std::string FakeRenderer::text(const vec4& value) const {
    const float values[] = {value.x, value.y, value.z, value.w};
    return list(values, 4);
}

std::string FakeRenderer::text(const mat4& value) const {
    return list(value.m, 16);
}

void FakeRenderer::record(const std::string& operation, const std::vector<std::string>& arguments) {
    if (std::find(ignored.begin(), ignored.end(), operation) != ignored.end())
        return;
    std::string call = operation + "(";
    for (std::size_t i = 0; i < arguments.size(); ++i)
        call += (i ? ", " : "") + arguments[i];
    calls.push_back(call + ")");
}

bool FakeRenderer::result(const std::string& operation) const {
    const auto found = results.find(operation);
    return found == results.end() || found->second;
}

double FakeRenderer::number(const std::string& operation) const {
    const auto found = numbers.find(operation);
    return found == numbers.end() ? 0.0 : found->second;
}

int FakeRenderer::location(const std::string& operation) const {
    return numbers.count(operation) ? int(number(operation)) : -1;
}

void* FakeRenderer::pointer(const std::string& operation) const {
    const auto found = pointers.find(operation);
    return found == pointers.end() ? nullptr : found->second;
}

#define ORVEX_RECORD(Result, name, parameters, arguments)                                          \
    Result FakeRenderer::name parameters {                                                         \
        call(#name) arguments;                                                                     \
        return answer<Result>(#name);                                                              \
    }
#define ORVEX_WRITTEN_BELOW(Result, name, parameters, arguments)

ORVEX_RENDERER_OPERATIONS(ORVEX_RECORD, ORVEX_WRITTEN_BELOW)

#undef ORVEX_RECORD
#undef ORVEX_WRITTEN_BELOW

bool FakeRenderer::initialize() {
    record("initialize", {});
    return result("initialize");
}

bool FakeRenderer::terminate() {
    record("terminate", {});
    return result("terminate");
}

bool FakeRenderer::start() {
    record("start", {});
    return result("start");
}

bool FakeRenderer::stop() {
    record("stop", {});
    return result("stop");
}

bool FakeRenderer::start_v2(bool display_function_pointers) {
    record("start_v2", {text(display_function_pointers)});
    return result("start_v2");
}

bool FakeRenderer::get_opengl_version(int* major, int* minor) {
    record("get_opengl_version", {text(major), text(minor)});
    if (major)
        *major = api_version_major;
    if (minor)
        *minor = api_version_minor;
    return result("get_opengl_version");
}

int FakeRenderer::get_api_version_major() {
    record("get_api_version_major", {});
    return api_version_major;
}

int FakeRenderer::get_api_version_minor() {
    record("get_api_version_minor", {});
    return api_version_minor;
}

void FakeRenderer::get_color_buffer_size(int* size, int* width, int* height) {
    record("get_color_buffer_size", {text(size), text(width), text(height)});
}

void FakeRenderer::set_projection_matrix(mat4& matrix, bool apply) {
    record("set_projection_matrix", {text(matrix), text(apply)});
    projection_matrix = matrix;
}

mat4& FakeRenderer::get_projection_matrix() {
    record("get_projection_matrix", {});
    return projection_matrix;
}

void FakeRenderer::set_view_matrix(mat4& matrix, bool apply) {
    record("set_view_matrix", {text(matrix), text(apply)});
    view_matrix = matrix;
}

mat4& FakeRenderer::get_view_matrix() {
    record("get_view_matrix", {});
    return view_matrix;
}

void FakeRenderer::set_viewport(int x, int y, int width, int height) {
    record("set_viewport", {text(x), text(y), text(width), text(height)});
    const int values[] = {x, y, width, height};
    std::copy_n(values, 4, viewport);
}

void FakeRenderer::get_viewport(int* x, int* y, int* width, int* height) {
    record("get_viewport", {text(x), text(y), text(width), text(height)});
    int* const out[] = {x, y, width, height};
    for (int i = 0; i < 4; ++i)
        if (out[i])
            *out[i] = viewport[i];
}

int* FakeRenderer::get_viewport_ptr() {
    record("get_viewport_ptr", {});
    return viewport;
}

bool FakeRenderer::gpu_program_activate(GpuProgramData* program) {
    record("gpu_program_activate", {text(program)});
    if (!result("gpu_program_activate"))
        return false;
    active_program = program;
    return true;
}

bool FakeRenderer::gpu_program_deactivate(GpuProgramData* program) {
    record("gpu_program_deactivate", {text(program)});
    active_program = nullptr;
    return result("gpu_program_deactivate");
}

GpuProgramData* FakeRenderer::gpu_program_get_active_program() {
    record("gpu_program_get_active_program", {});
    return active_program;
}

int FakeRenderer::gpu_program_get_vertex_attrib_location(GpuProgramData* program,
                                                         const char* name) {
    record("gpu_program_get_vertex_attrib_location", {text(program), text(name)});
    return location("gpu_program_get_vertex_attrib_location");
}

int FakeRenderer::gpu_program_get_uniform_location(GpuProgramData* program, const char* name) {
    record("gpu_program_get_uniform_location", {text(program), text(name)});
    return location("gpu_program_get_uniform_location");
}

} // namespace orvex_test
