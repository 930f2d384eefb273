#pragma once

/// @file
/// `ArtifactScanner`, which tells a failing graphics processor by pixels that change.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/node.h"

namespace orvex {

/// Finds the pixels that change between frames that should be equal, the sign of a graphics
/// processor that is overclocked or failing.
///
/// The host makes it with `new` and ends it with `release` or `kill`, as any node. It keeps two
/// textures of the `TextureMgr`, on the CPU alone: the first frame it sees, as the reference, and
/// the latest one. They go back to the manager in `cleanup`, `release` and `kill`; when the manager
/// has already ended them they are merely forgotten.
///
/// Every pixel counts that differs in any bit of red, green, blue or alpha; there is no tolerance.
/// The reference has the size of its frame, and no later size is compared with it: of frames of
/// another size only as many pixels are compared as both have, in the order of their memory. A host
/// that resizes calls `reset_ref_texture`.
///
/// A render target is taken as a square of its width, as `Texture` reads it back: what is higher
/// than that is not seen.
///
/// Render thread: reading the frame needs the graphics context. Nothing is logged. The constructor
/// and `run` may throw `std::bad_alloc`; the count is as before then.
///
/// @code
/// ArtifactScanner* scanner = new ArtifactScanner;
/// for (int frame = 0; frame < 1000; ++frame) {
///     draw_the_same_frame();
///     scanner->run(renderer, false);
/// }
/// if (scanner->get_total_number_of_artifacts() > 0)
///     complain();
/// scanner->kill(renderer, nullptr);
/// @endcode
class ORVEX_API ArtifactScanner : public Node {
public:
    /// Makes its two textures, registered with `TextureMgr`.
    ArtifactScanner();
    ~ArtifactScanner() override;

    /// Where `run` reads frames: a plain target with a colour texture, or null for the renderer's
    /// frame buffer, which is the default. The target is not owned, and has to live as long as it
    /// is set.
    void set_render_target(RenderTarget* target);

    /// Reads the frame and counts its artifacts. Without a reference this frame becomes it, and
    /// counts 0.
    /// @param renderer  whose frame buffer is read; may be null with a render target
    /// @param flag      looks at every second pixel only; see `find_artifacts`
    /// @return false if the frame can't be read (no renderer, a multisample target, no pixels);
    ///         nothing changes then
    bool run(Renderer* renderer, bool flag);

    /// Counts the pixels of a texture that differ from the reference. The counters stay.
    /// @param texture  of four 8-bit channels
    /// @param flag     true looks at pixels 0, 2, 4 and so on in the order of memory, and finds at
    ///                 most half of the changed ones; the count is not doubled
    /// @return -1 without a reference, for null, and for a texture without 8-bit pixels
    [[nodiscard]] int find_artifacts(Texture* texture, bool flag) const;

    /// Whether a texture differs from the reference at all; ends at the first pixel that does.
    /// @param flag  as for `find_artifacts`
    /// @return false without a reference, for null, and for a texture without 8-bit pixels
    [[nodiscard]] bool is_there_artifact(Texture* texture, bool flag) const;

    /// Artifacts of the last frame; 0 right after a reset.
    int get_number_of_artifacts() const;
    /// Sum over all frames since `reset_artifacts_counters`.
    int get_total_number_of_artifacts() const;
    /// Highest number of a single frame since `reset_artifacts_counters`.
    int get_max_number_of_artifacts() const;

    /// Gives the reference up, so that the next `run` takes a new one, and makes the number of
    /// artifacts 0. Total and maximum stay.
    void reset_ref_texture();
    /// Makes total and maximum 0, then does `reset_ref_texture`.
    void reset_artifacts_counters();
    /// The same as `reset_artifacts_counters`.
    void update_ref_texture();

    /// Hook: gives both textures back to the manager and resets the counters. A later `run` starts
    /// afresh.
    bool _cleanup(Renderer* renderer) override;

private:
    struct ArtifactScannerData;

    bool read_frame(Renderer* renderer);
    bool take_reference(Renderer* renderer);

    std::unique_ptr<ArtifactScannerData> data;
};

} // namespace orvex
