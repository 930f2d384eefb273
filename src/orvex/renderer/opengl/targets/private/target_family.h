#pragma once

/// @file
/// The render targets of a renderer, and framebuffers by their ids.

#include <cstddef>
#include <memory>
#include <vector>

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

class RenderTargetOpenGL;

/// Makes, lists and deletes render targets, and copies between framebuffers.
///
/// A target belongs to the list until it is killed. Targets that are left when the list ends stay
/// with whoever holds them: they are cut from the function table, refuse to work, and are never
/// deleted.
class TargetFamily {
public:
    /// @param state  what the targets work on; it outlives the object
    explicit TargetFamily(GlState& state);
    TargetFamily(const TargetFamily&) = delete;
    TargetFamily& operator=(const TargetFamily&) = delete;
    ~TargetFamily();

    /// @name The list, in order of creation
    /// @{

    std::size_t size() const { return list.size(); }
    /// Makes a target without GL objects.
    RenderTarget* create();
    /// @return the target, null for none
    RenderTarget* find(int id) const;
    /// Kills and deletes a target; false for one that isn't listed.
    bool kill(RenderTarget* target);
    /// Kills and deletes all of them.
    void kill_all();
    /// @}

    /// @name Framebuffers by their ids; 0 is the window's, whatever object stands for it
    /// A copy returns false without the entries that it calls, and from a framebuffer to itself. It
    /// leaves the window's framebuffer bound.
    /// @{

    void bind(unsigned int id) const;
    unsigned int bound() const;
    bool copy_color(unsigned int src, unsigned int dst, int width, int height) const;
    /// Colours and depth, one rectangle to another, which may have another size. Depth buffers of
    /// two formats can't be copied: a copy of both copies the colours then.
    bool blit(unsigned int src, int sx0, int sy0, int sx1, int sy1, unsigned int dst, int dx0,
              int dy0, int dx1, int dy1, bool color, bool depth) const;
    /// @}

private:
    /// @return the API's id: what stands for the window in place of 0
    unsigned int actual(unsigned int id) const;
    bool start_blit(unsigned int src, unsigned int dst) const;

    GlState& state;
    const ORVEX_Renderer_OpenGL_Func& gl;
    std::vector<std::unique_ptr<RenderTargetOpenGL>> list;
};

} // namespace orvex
