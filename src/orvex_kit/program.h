#pragma once

/// @file
/// Programs for the GPU, from texts and from files.

#include <memory>
#include <string>

#include <orvex/fwd.h>

#include "orvex_kit/api.h"
#include "orvex_kit/path.h"

namespace orvex::kit {

class View;
class ViewContext;

/// A program of a view, compiled and linked, with the values of its uniforms.
///
/// Its text holds the stages behind their markers, `[Vertex_Shader]`, `[Pixel_Shader]` and the
/// others that `orvex::GpuProgram` tells. A stage with a `#version` is taken as it stands, for the
/// path that it is written for. A vertex or pixel stage without one serves both paths: POSITION,
/// NORMAL, TEXCOORD and VERTEX_COLOR are the vertex, OUT and IN what the stages share, SAMPLE reads
/// a texture, COLOR is the pixel.
///
/// Belongs to the view's thread, and ends with the view: empty from then on.
///
/// @code
/// kit::View view(640, 480);
/// kit::Program program = kit::Program::from_file(view, "toon.glsl");
/// if (!program)
///     std::fprintf(stderr, "%s\n", program.reason().c_str());
/// program.set("bands", 3);
/// @endcode
class ORVEX_KIT_API Program {
public:
    /// Empty, without a reason.
    Program() noexcept;
    /// Compiles a text.
    /// @param name  what mistakes and debuggers call it
    static Program from_text(View& view, const std::string& text,
                             const std::string& name = "program");
    /// Compiles a file, to which `reload_if_changed` looks back.
    static Program from_file(View& view, const std::string& path);
    ~Program();                                   ///< ends it
    Program(Program&& other) noexcept;            ///< leaves the other one empty
    Program& operator=(Program&& other) noexcept; ///< likewise

    /// Whether there is something to draw with; also while a later edit of the file doesn't
    /// compile.
    explicit operator bool() const noexcept;
    /// Why the last text wasn't taken: what the compiler said, line by line, each with the name and
    /// the line in the text as "toon.glsl:12: ...", or why the file can't be read. Empty if it was.
    /// Valid until the program changes or ends.
    const std::string& reason() const noexcept;

    /// Looks at the file, and compiles it if it has changed since the last look. What doesn't
    /// compile is told by `reason`, and the program stays as it was. Values of uniforms stay.
    /// @return whether `gpu` is another one now; false for a program from a text
    bool reload_if_changed();

    /// @name Uniforms
    /// Sets a value, which counts from the next draw on. A name that the program hasn't got is
    /// passed over. An empty program ignores all.
    /// @{
    void set(const std::string& name, int value);                ///< `int`, `bool`, or a sampler
    void set(const std::string& name, float value);              ///< `float`
    void set(const std::string& name, double value);             ///< `float`, rounded
    void set(const std::string& name, const orvex::vec2& value); ///< `vec2`
    void set(const std::string& name, const orvex::vec3& value); ///< `vec3`
    void set(const std::string& name, const orvex::vec4& value); ///< `vec4`
    void set(const std::string& name, const orvex::mat4& value); ///< `mat4`
    /// @}

    /// The engine's own program, for what draws; null if this is empty. This one's, as long as it
    /// isn't reloaded.
    orvex::GpuProgram* gpu() const noexcept;

private:
    friend class View;
    class Data;
    std::unique_ptr<Data> data;

    explicit Program(std::unique_ptr<Data> data) noexcept;
    static Program from_text(const std::shared_ptr<ViewContext>& context, const std::string& text,
                             const std::string& name);
};

/// What the engine gets of a program's text: for a host that makes an `orvex::GpuProgram` of it
/// itself, without a view. Pure; any thread.
ORVEX_KIT_API std::string program_text_for(Path path, const std::string& text);

} // namespace orvex::kit
