// The engine's writer is told to say nothing of a full disk. So it writes into memory, where the
// end of the picture tells whether all of it is there, and the bytes go on from here.

#include "orvex_kit/private/jpeg_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <string_view>

#include <orvex/assets/images/codecs/jpeg_writer.h>

#include "orvex_kit/private/memory_file.h"
#include "orvex_kit/private/write_all.h"

namespace orvex::kit {

namespace {

/// Whether a picture has its end, which nothing within a picture looks like.
bool is_whole(std::string_view bytes) {
    return bytes.starts_with("\xff\xd8") && bytes.ends_with("\xff\xd9");
}

/// The picture in the writer's format. @return whether it came whole
bool encode(const Picture& picture, int quality, std::string& bytes) {
    const MemoryFile memory;
    const QuietWrites quiet; // what may not grow is cut as on a full disk
    return memory.is_open() &&
           jo_write_jpg(memory.name().c_str(), picture.data(), picture.width(), picture.height(),
                        picture.channels(), std::clamp(quality, 1, 100)) &&
           memory.read(bytes) && is_whole(bytes);
}

Outcome write_encoded(const Picture& picture, const std::string& path, int quality) {
    std::string bytes;
    errno = 0;
    if (!encode(picture, quality, bytes))
        return cant_write(path, errno != 0 ? std::strerror(errno) : "the picture came out cut");
    return write_whole(path, bytes);
}

} // namespace

Outcome write_jpeg(const Picture& picture, const std::string& path, int quality) {
    if (picture.sample() != Sample::u8)
        return cant_write(path, std::string("JPEG takes 8-bit pictures, not ") +
                                    name_of(picture.sample()));
    Picture grey;
    if (picture.channels() == 2)
        if (Outcome taken = grey.take_channels(picture, 1); !taken)
            return cant_write(path, taken.reason());
    try {
        return write_encoded(grey.is_empty() ? picture : grey, path, quality);
    } catch (const std::bad_alloc&) {
        return no_memory_to_write(path);
    }
}

} // namespace orvex::kit
