#pragma once

#include <cstddef>
#include <memory>

struct Lib3dsFile;

namespace orvex {

struct Lib3dsFault;

struct Lib3dsFileDeleter {
    void operator()(Lib3dsFile* file) const;
};
using Lib3dsFilePtr = std::unique_ptr<Lib3dsFile, Lib3dsFileDeleter>;

/// Reads a 3DS file by lib3ds, if that can be trusted to survive it. A file without nodes is given
/// one for each mesh.
///
/// The file is read into memory once, and lib3ds is given the very bytes that were checked, so that
/// a file which changes meanwhile does no harm.
/// @param path  null is refused
/// @param[out] fault  what is wrong, where the result is null; null where nobody asks
/// @return null if the file can't be read or is no 3DS file in good order
Lib3dsFilePtr open_3ds_file(const char* path, Lib3dsFault* fault = nullptr);

/// The same, of bytes in memory.
Lib3dsFilePtr read_3ds_bytes(const unsigned char* bytes, std::size_t size,
                             Lib3dsFault* fault = nullptr);

} // namespace orvex
