#pragma once

/// @file
/// Decides which OpenGL entry points a context really has. Systems answer for any name, so that an
/// address proves nothing: version and extension list decide.

#include <string>
#include <unordered_set>

namespace orvex {

/// What the decision rests on.
struct GlCapabilities {
    int major = 0; ///< 0: no context
    int minor = 0;
    bool compatibility = true; ///< the fixed pipeline is there
    std::unordered_set<std::string> extensions;

    /// Whether the version is at least `since`, written as 31 for 3.1.
    bool has_version(int since) const { return major * 10 + minor >= since; }
    /// Whether the extension is listed.
    bool has_extension(const char* name) const { return extensions.count(name) != 0; }
};

/// Reads what the context that is current on the calling thread can do. The major version is 0 if
/// there is none.
GlCapabilities read_gl_capabilities();

/// Whether the name stands in the function table.
bool is_gl_table_name(const char* name);

/// Returns the name under which a context serves an entry of the function table: the name itself,
/// the same with another suffix, or an empty text if the context lacks it or the table has no such
/// entry.
std::string choose_gl_entry(const char* name, const GlCapabilities& capabilities);

} // namespace orvex
