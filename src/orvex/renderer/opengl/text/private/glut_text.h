#pragma once

/// @file
/// Raster characters from the GLUT library.

namespace orvex {

/// Draws characters with GLUT's 12 point Helvetica, in any current context with the fixed pipeline.
///
/// The library is loaded at the first use, so that the engine doesn't depend on it or on what it
/// drags in, and is never unloaded. GLUT ends the process when it is used without `glutInit`,
/// unless it has been given an error function that returns. The engine gives it one only if it
/// brought the library into the process itself: a host that uses GLUT keeps its own, and its text
/// is drawn once it has called `glutInit`.
class GlutText {
public:
    /// @param library  name to load, which must outlive the object; null for the names under which
    ///                 systems have it
    explicit GlutText(const char* library = nullptr);

    /// Loads the library unless that was tried before.
    /// @return null if characters can be drawn now, else the reason why not
    const char* prepare();

    /// Draws a text at the current raster position, to its terminating zero. Only after a
    /// `prepare` that gave null.
    void draw(const char* text) const;

private:
    void load();

    const char* library;
    bool tried = false;
    bool ours = false; // we brought the library into the process
    void (*draw_character)(void* font, int character) = nullptr;
    int (*get)(unsigned int what) = nullptr;
    void* font = nullptr;
};

} // namespace orvex
