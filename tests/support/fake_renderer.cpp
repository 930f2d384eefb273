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
    names_[pointer] = name;
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
    const auto name = names_.find(value);
    return name == names_.end() ? "pointer" : name->second;
}

namespace {

std::string list(const float* values, int count) {
    std::ostringstream out;
    for (int i = 0; i < count; ++i)
        out << (i ? ", " : "(") << values[i];
    return out.str() + ")";
}

} // namespace

std::string FakeRenderer::text(const orvex::vec4& value) const {
    const float values[] = {value.x, value.y, value.z, value.w};
    return list(values, 4);
}

std::string FakeRenderer::text(const orvex::mat4& value) const {
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

void* FakeRenderer::pointer(const std::string& operation) const {
    const auto found = pointers.find(operation);
    return found == pointers.end() ? nullptr : found->second;
}

} // namespace orvex_test
