#pragma once

/// @file
/// Writes one OpenGL call as text.

#include <string>
#include <type_traits>
#include <vector>

namespace orvex_test {

/// One argument as it was passed.
struct GlValue {
    enum Kind { integer, real, pointer };

    template<typename T>
    static GlValue of(T value) {
        GlValue result;
        if constexpr (std::is_pointer_v<T>) {
            result.kind = pointer;
            result.address = reinterpret_cast<const void*>(value);
        } else if constexpr (std::is_floating_point_v<T>) {
            result.kind = real;
            result.number = static_cast<double>(value);
        } else {
            result.whole = static_cast<long long>(value);
        }
        return result;
    }

    Kind kind = integer;
    long long whole = 0;
    double number = 0.0;
    const void* address = nullptr;
};

/// What the declaration of a function says about its parameters.
class GlSignature {
public:
    /// @param name        of the function
    /// @param parameters  as declared: "(GLenum target, GLuint buffer)"
    GlSignature(const char* name, const char* parameters);

    const std::string& name() const { return function; }

    /// The call with its arguments, one value per parameter.
    std::string text(const std::vector<GlValue>& values) const;

private:
    struct Parameter {
        std::string type;
        std::string name;
    };

    std::string argument(const Parameter& parameter, const GlValue& value) const;
    std::string enumerant(const Parameter& parameter, long long value) const;
    long long array_length(const std::vector<GlValue>& values) const;

    std::string function;
    std::vector<Parameter> parameters;
};

} // namespace orvex_test
