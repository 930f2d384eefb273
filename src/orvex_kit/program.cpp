// A program, its text's file, and the values of its uniforms, which a reload hands on.

#include "orvex_kit/program.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>
#include <variant>

#include <sys/stat.h>

#include <orvex/gpu/gpu_program.h>
#include <orvex/gpu/gpu_program_mgr.h>
#include <orvex/math/mat4.h>
#include <orvex/math/vec2.h>
#include <orvex/math/vec3.h>
#include <orvex/math/vec4.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/files.h"
#include "orvex_kit/private/program_source.h"
#include "orvex_kit/private/view_context.h"
#include "orvex_kit/view.h"

namespace orvex::kit {

namespace {

/// What tells one state of a file from the next: editors write in place, or rename a new file over
/// the old one, within a tick of the clock.
struct FileState {
    dev_t device = 0;
    ino_t number = 0;
    off_t size = -1;
    time_t seconds = 0;
    long nanoseconds = 0;

    explicit FileState(const std::string& path) {
        struct stat found {};
        if (path.empty() || stat(path.c_str(), &found) != 0)
            return;
        device = found.st_dev;
        number = found.st_ino;
        size = found.st_size;
        seconds = found.st_mtim.tv_sec;
        nanoseconds = found.st_mtim.tv_nsec;
    }
    bool operator==(const FileState&) const = default;
};

using Value = std::variant<int, float, orvex::vec2, orvex::vec3, orvex::vec4, orvex::mat4>;

/// Leaves a value with a program, for its next bind.
struct Leave {
    orvex::GpuProgram& program;
    const char* name;

    void operator()(int value) const { program.set_uniform_1i(nullptr, name, value); }
    void operator()(float value) const { program.set_uniform_1f(nullptr, name, value); }
    void operator()(const orvex::vec2& v) const { program.set_uniform_2f(nullptr, name, v.x, v.y); }
    void operator()(const orvex::vec3& v) const {
        program.set_uniform_3f(nullptr, name, v.x, v.y, v.z);
    }
    void operator()(const orvex::vec4& v) const {
        program.set_uniform_4f(nullptr, name, v.x, v.y, v.z, v.w);
    }
    void operator()(const orvex::mat4& m) const {
        program.set_uniform_4x4fv(nullptr, name, m.ptr(), 1);
    }
};

} // namespace

class Program::Data final : public EnginePart {
public:
    Data(std::shared_ptr<ViewContext> context, std::string name, std::string path)
        : context(std::move(context))
        , name(std::move(name))
        , path(std::move(path))
        , state(this->path) {
        this->context->add(*this);
    }
    ~Data() override {
        close();
        context->remove(*this);
    }
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;

    void close() override;
    bool is_open() const { return program && context->is_open(); }
    void load_file();
    void load(const std::string& text);
    bool reload_if_changed();
    void set(const std::string& uniform, const Value& value);

    orvex::GpuProgram* program = nullptr;
    std::string reason;

private:
    std::shared_ptr<ViewContext> context;
    std::string name;
    std::string path; ///< empty: from a text
    FileState state;
    std::map<std::string, Value> values;
};

void Program::Data::close() {
    if (!program)
        return;
    // Without its context there is nothing left of it on the GPU.
    const ViewContext::Visit visit(*context);
    orvex::Renderer* const renderer = visit.is_there() ? context->renderer : nullptr;
    orvex::GpuProgramMgr::get()->release_resource(renderer, std::exchange(program, nullptr),
                                                  nullptr);
}

void Program::Data::load(const std::string& text) {
    const ViewContext::Visit visit(*context);
    if (!visit.is_there()) {
        reason = name + (context->is_open() ? ": the context of its view can't be made current"
                                            : ": its view is empty");
        return;
    }
    orvex::Renderer* const renderer = context->renderer;
    const ProgramSource source(text, context->path);
    orvex::GpuProgram* const fresh = orvex::GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, source.text().c_str(), source.text().size(), name.c_str());
    const bool is_compiled = fresh->is_valid();
    if (is_compiled && fresh->bind(renderer)) {
        fresh->unbind(renderer);
        close();
        program = fresh;
        reason.clear();
        for (const auto& [uniform, value] : values)
            std::visit(Leave{*program, uniform.c_str()}, value);
        return;
    }
    reason = source.told(fresh->get_shader_error_messages(), name);
    if (reason.empty())
        reason = name + (is_compiled ? ": its stages don't link; the log tells why"
                                     : ": no [Vertex_Shader] with a [Pixel_Shader], and no "
                                       "[Compute_Shader]");
    orvex::GpuProgramMgr::get()->release_resource(renderer, fresh, nullptr);
}

void Program::Data::load_file() {
    reason = mistake_in_reading(path);
    if (!reason.empty())
        return;
    std::ifstream file(path, std::ios::binary);
    load({std::istreambuf_iterator<char>(file), {}});
}

bool Program::Data::reload_if_changed() {
    if (path.empty() || !context->is_open())
        return false;
    const FileState now(path);
    if (now == state)
        return false;
    state = now;
    const orvex::GpuProgram* const before = program;
    load_file();
    return program != before;
}

void Program::Data::set(const std::string& uniform, const Value& value) {
    values.insert_or_assign(uniform, value);
    if (program)
        std::visit(Leave{*program, uniform.c_str()}, value);
}

Program::Program() noexcept = default;
Program::Program(std::unique_ptr<Data> data) noexcept
    : data(std::move(data)) {}
Program::~Program() = default;
Program::Program(Program&& other) noexcept = default;
Program& Program::operator=(Program&& other) noexcept = default;

Program Program::from_text(View& view, const std::string& text, const std::string& name) {
    return from_text(view.context(), text, name);
}

Program Program::from_text(const std::shared_ptr<ViewContext>& context, const std::string& text,
                           const std::string& name) {
    auto data = std::make_unique<Data>(context, name, "");
    data->load(text);
    return Program(std::move(data));
}

Program Program::from_file(View& view, const std::string& path) {
    auto data = std::make_unique<Data>(view.context(), path.substr(folder_of(path).size()), path);
    data->load_file();
    return Program(std::move(data));
}

Program::operator bool() const noexcept {
    return gpu() != nullptr;
}

const std::string& Program::reason() const noexcept {
    static const std::string nothing;
    return data ? data->reason : nothing;
}

bool Program::reload_if_changed() {
    return data && data->reload_if_changed();
}

orvex::GpuProgram* Program::gpu() const noexcept {
    return data && data->is_open() ? data->program : nullptr;
}

std::string program_text_for(Path path, const std::string& text) {
    return ProgramSource(text, path).text();
}

void Program::set(const std::string& name, int value) {
    if (data)
        data->set(name, value);
}

void Program::set(const std::string& name, float value) {
    if (data)
        data->set(name, value);
}

void Program::set(const std::string& name, double value) {
    set(name, static_cast<float>(value));
}

void Program::set(const std::string& name, const orvex::vec2& value) {
    if (data)
        data->set(name, value);
}

void Program::set(const std::string& name, const orvex::vec3& value) {
    if (data)
        data->set(name, value);
}

void Program::set(const std::string& name, const orvex::vec4& value) {
    if (data)
        data->set(name, value);
}

void Program::set(const std::string& name, const orvex::mat4& value) {
    if (data)
        data->set(name, value);
}

} // namespace orvex::kit
