#pragma once

/// @file
/// The family of questions about the context: names, version, limits, memory.

#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex {

struct GlState;

/// Asks the API. Each question is one call, made each time: a host may have another context current
/// by now. What each operation of the contract answers is told in `Renderer`.
class QueryFamily {
public:
    explicit QueryFamily(const GlState& state)
        : state(state) {}

    /// @return the oldest error that the API has noted, 0 for none
    unsigned int error() const;
    /// @return a text of the driver's, null without a context
    const char* text(GLenum name) const;
    /// Reads the version from the text, and from 3 on from its two constants.
    /// @param major  null is passed over, as for `minor`
    /// @return false without a context; nothing is written then
    bool version(int* major, int* minor) const;
    /// @return a limit; 0 where the API lacks the constant, and it notes an error then
    int integer(GLenum name) const;
    /// @return a limit of several numbers: the first
    int first_of_two(GLenum name) const;
    /// @return the vendors' memory queries write up to four numbers: the first
    unsigned int first_of_four(GLenum name) const;
    /// @return the highest degree of anisotropic filtering
    float max_anisotropy() const;
    /// Reads a limit of three dimensions; null is passed over.
    /// @return false where the context has no such limits
    bool indexed(GLenum name, int* x, int* y, int* z) const;
    /// @return whether instances can be drawn, with a divisor for their arrays
    bool has_instancing() const;

private:
    const GlState& state;
};

} // namespace orvex
