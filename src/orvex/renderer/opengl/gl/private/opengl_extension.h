#pragma once

/// @file
/// The name of one OpenGL extension.

#include <string>

namespace orvex {

/// One entry of a render window's extension list.
class OpenGLExtension {
public:
    /// Copies the name; null gives an empty one.
    explicit OpenGLExtension(const char* name);

    /// @return the name, which lives as long as the object
    const char* get_name() const;
    /// Compares exactly, upper and lower case apart.
    bool operator==(const OpenGLExtension& other) const;

private:
    std::string name;
};

} // namespace orvex
