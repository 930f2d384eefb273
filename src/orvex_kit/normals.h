#pragma once

/// @file
/// Where normals come from.

namespace orvex::kit {

/// Where the normals of a model come from.
enum class Normals {
    by_file, ///< smooth for 3DS files, which hold none, or flat if angular; from the file for
             ///< others
    file,
    smooth, ///< the mean of the faces around a vertex
    flat,   ///< that of each face
};

} // namespace orvex::kit
