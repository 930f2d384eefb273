#pragma once

/// @file
/// Remedies for the faults and the habits of drivers, by name.
///
/// A remedy stands in one place of the back end, as a test of its field here. All are at work,
/// unless the environment names them: `ORVEX_GL_QUIRKS_OFF=name,name`. To add one, give it a row, a
/// test of its field and a test program's row that shows the symptom without it.

namespace orvex {

/// X(name, driver, symptom, remedy)
// clang-format off
#define ORVEX_GL_QUIRKS(X) \
    X(profile_word_case, \
      "all drivers: the word is no part of the standard", \
      "the version text writes the word for the compatibility profile with a capital or a small letter", \
      "the first letter isn't compared; without the remedy only a capital one counts") \
    X(dead_window, \
      "drivers that read the size of an X11 window as they make a surface for it", \
      "the process ends where the window is gone", \
      "the X server is asked for the window first") \
    X(endless_surface, \
      "software drivers under EGL", \
      "an off-screen surface of any size is made, and drawing into a huge one does nothing", \
      "sizes beyond what OpenGL 4 promises, and beyond the driver's own limit, are refused") \
    X(vector_width, \
      "Mesa's software driver (22.3)", \
      "with LP_NATIVE_VECTOR_WIDTH in the environment, other than 128 or 256, a resolve of samples and some draws end the process", \
      "no context is made on it then")
// clang-format on

/// Which remedies are at work.
struct GlQuirks {
#define ORVEX_GL_QUIRK_FIELD(name, driver, symptom, remedy) bool name = true;
    ORVEX_GL_QUIRKS(ORVEX_GL_QUIRK_FIELD)
#undef ORVEX_GL_QUIRK_FIELD

    /// @param names  those to switch off, with commas between them and blanks around them; null and
    ///               names of none are passed over
    static GlQuirks without(const char* names);
    /// @return all but those that `ORVEX_GL_QUIRKS_OFF` names
    static GlQuirks from_environment();
};

} // namespace orvex
