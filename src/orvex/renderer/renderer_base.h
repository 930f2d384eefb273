#pragma once

/// @file
/// `RendererBase`, what a new back end begins from.

#include "orvex/api.h"
#include "orvex/math/mat4.h"
#include "orvex/renderer/renderer.h"
#include "orvex/renderer/renderer_operations.h"

namespace orvex {

/// A renderer that refuses everything, quietly and within the contract: a back end derives from it
/// and overrides what it can do, so that it compiles and runs from its first operation on.
///
/// Operations give false, null or 0, locations -1, and write nothing, but for these: the life cycle
/// keeps the flags of `Plugin` and succeeds, both matrices are stored and given back, and the
/// viewport reads as four zeros. Made and destroyed as any renderer; no thread is its own.
///
/// An overload that is overridden hides its namesakes of this class: `using` brings them back.
///
/// @code
/// class Printer : public orvex::RendererBase {
/// public:
///     void clear_color_buffer(float r, float g, float b, float) override {
///         tracef("clear to %g %g %g", r, g, b);
///     }
///     using RendererBase::clear_color_buffer;
/// };
/// @endcode
class ORVEX_API RendererBase : public Renderer {
public:
    /// No API name and type, two identity matrices.
    RendererBase();
    ~RendererBase() override;
    RendererBase(const RendererBase&) = delete;
    RendererBase& operator=(const RendererBase&) = delete;

/// Declares an operation of `Renderer`, which tells what it means.
#define ORVEX_DECLARE(Result, name, parameters, arguments) Result name parameters override;
    ORVEX_RENDERER_OPERATIONS(ORVEX_DECLARE, ORVEX_DECLARE)
#undef ORVEX_DECLARE

private:
    mat4 projection_matrix;
    mat4 view_matrix;
    int no_viewport[4] = {0, 0, 0, 0};
};

} // namespace orvex
