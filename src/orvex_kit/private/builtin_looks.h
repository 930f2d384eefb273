#pragma once

namespace orvex::kit {

/// A file of the folder `looks`, which the build embeds.
struct BuiltinLook {
    const char* name;
    const char* text;
};

/// In the order of the alphabet; the one behind the last has no name.
extern const BuiltinLook builtin_looks[];

} // namespace orvex::kit
