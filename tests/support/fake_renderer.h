#pragma once

/// @file
/// A renderer without a graphics API, for tests of everything above the back end.

#include <map>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/renderer.h"
#include "orvex/renderer/renderer_operations.h"

namespace orvex_test {

using namespace orvex;

/// Records every call as text, in order, and touches no graphics API.
///
/// Numbers stand as `%g` would print them, booleans as words, texts in double quotes, vectors and
/// matrices as lists in parentheses, a null pointer as "null" and any other pointer by the name
/// that `name_pointer` gave it, else as "pointer". Operations that return bool return true, those
/// with a number 0 and those with a pointer null, unless told otherwise below. A test that needs
/// more, such as ids written into a record, derives from this class and overrides the operation.
///
/// @code
/// FakeRenderer renderer;
/// object.display_tripod(&renderer, nullptr);
/// EXPECT_EQ(renderer.take_calls().front(), "gpu_program_get_active_program()");
/// @endcode
class FakeRenderer : public Renderer {
public:
    FakeRenderer();
    ~FakeRenderer() override;

    /// Every call since the last `take_calls`, such as "set_line_width(2)".
    std::vector<std::string> calls;
    /// Calls of these operations are left out of `calls`.
    std::vector<std::string> ignored;

    /// What operations of these names return instead of true.
    std::map<std::string, bool> results;
    /// What operations of these names return instead of 0.
    std::map<std::string, double> numbers;
    /// What operations of these names return instead of null.
    std::map<std::string, void*> pointers;

    /// What `gpu_program_get_active_program` returns; activate and deactivate set it.
    GpuProgramData* active_program = nullptr;
    mat4 projection_matrix;
    mat4 view_matrix;
    int viewport[4] = {0, 0, 640, 480};
    int api_version_major = 4;
    int api_version_minor = 5;

    /// Returns `calls` and empties it.
    std::vector<std::string> take_calls();
    /// How often an operation stands in `calls`, whatever its arguments.
    int count(const std::string& operation) const;
    /// Lets `pointer` stand as `name` in calls.
    void name_pointer(const void* pointer, const std::string& name);

/// Declares an operation of `Renderer`.
#define ORVEX_DECLARE(Result, name, parameters, arguments) Result name parameters override;
    ORVEX_RENDERER_OPERATIONS(ORVEX_DECLARE, ORVEX_DECLARE)
#undef ORVEX_DECLARE

private:
    std::string text(bool value) const;
    std::string text(const char* value) const;
    std::string text(const void* value) const;
    std::string text(const vec4& value) const;
    std::string text(const mat4& value) const;
    template<typename Number>
    std::string text(Number value) const {
        std::ostringstream out;
        out << +value;
        return out.str();
    }
    template<typename Value>
    std::string text(Value* value) const {
        return text(static_cast<const void*>(value));
    }
    std::string text(char* value) const {
        return text(static_cast<const void*>(value));
    }

    /// Records a call: `call("set_scissor")(x, y, width, height)`.
    auto call(const char* operation) {
        return [this, operation](const auto&... arguments) {
            record(operation, {text(arguments)...});
        };
    }
    /// Returns what the test wants of an operation, by the kind of its result.
    template<class Result>
    Result answer(const char* operation) const {
        if constexpr (std::is_same_v<Result, bool>)
            return result(operation);
        else if constexpr (std::is_pointer_v<Result>)
            return static_cast<Result>(pointer(operation));
        else if constexpr (!std::is_void_v<Result>)
            return static_cast<Result>(number(operation));
    }

    void record(const std::string& operation, const std::vector<std::string>& arguments);
    bool result(const std::string& operation) const;
    double number(const std::string& operation) const;
    int location(const std::string& operation) const;
    void* pointer(const std::string& operation) const;

    std::map<const void*, std::string> names;
};

} // namespace orvex_test
