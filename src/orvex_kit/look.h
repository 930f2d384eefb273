#pragma once

/// @file
/// How models look: the texts of the programs that the kit draws with, for either drawing path.

#include <string>
#include <vector>

#include "orvex_kit/api.h"

namespace orvex::kit {

/// How models look: the text of a program, which `View::set_look` compiles. A value; any thread.
///
/// The kit has `lit` (two lights and a sky), `matcap` (clay), `normals`, `plain` (colours without
/// light) and `wire` (edges, without those behind faces). A host's own is a file of the same form:
/// the text that `Program` tells, with the uniforms that `Model` sets. With the line `[Lines]`
/// before its stages faces are drawn as their edges: first they are laid down, slightly farther
/// away, with a 1 in the uniform float `laying_faces` and in the vec4 `behind` the background as it
/// stands in the target; then come the edges, with a 0.
///
/// @code
/// kit::View view(640, 480);
/// kit::Outcome taken = view.set_look(kit::Look::named("matcap"));
/// taken = view.set_look(kit::Look::from_file("toon.glsl"));
/// @endcode
class ORVEX_KIT_API Look {
public:
    /// `lit`.
    Look();
    /// The names of the kit's own, in the order of the alphabet.
    static std::vector<std::string> names();
    /// One of the kit's own. Empty if there is none of that name.
    static Look named(const std::string& name);
    /// A host's own.
    /// @param name  for the compiler's lines
    static Look from_text(const std::string& text, const std::string& name = "look");
    /// A host's own, which the view can take up anew when the file has changed: see `View::look`.
    /// Empty if it can't be read.
    static Look from_file(const std::string& path);

    /// Whether there is a text. Whether it compiles is told by `View::set_look`.
    explicit operator bool() const noexcept { return why.empty(); }
    /// Why there is none, and what the kit has; empty if there is one.
    const std::string& reason() const noexcept { return why; }

    const std::string& name() const noexcept { return own_name; } ///< empty for an empty look
    const std::string& text() const noexcept { return own_text; } ///< for both paths
    const std::string& path() const noexcept { return file; }     ///< empty without a file
    bool has_lines() const; ///< whether faces are drawn as their edges

private:
    std::string own_name;
    std::string own_text;
    std::string file;
    std::string why;

    explicit Look(std::string reason);
};

} // namespace orvex::kit
