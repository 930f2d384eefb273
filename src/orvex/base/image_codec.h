#pragma once

/// @file
/// ImageCodec: the interface of image decoders and encoders.

#include "orvex/api.h"
#include "orvex/base/plugin.h"
#include "orvex/fwd.h"

namespace orvex {

/// Turns encoded bytes into an `Image` and back. A plugin of type `PLUGIN_TYPE_IMAGE_CODEC`, which
/// concrete codecs set in their constructor.
///
/// `TextureMgr` holds the registered codecs and asks them in turn. Decoding needs no graphics
/// context and may run on a worker thread.
class ORVEX_API ImageCodec : public Plugin {
public:
    /// As `Plugin`.
    ImageCodec();
    ~ImageCodec() override;

    /// The plugin as a codec, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a plugin that is none, whatever type it bears
    static ImageCodec* from_plugin(Plugin* plugin);

    /// Decodes a file.
    /// @param image     receives size, format and pixels
    /// @param filename  a path, taken as given
    /// @param mirror    mirrors the picture left to right
    /// @return false for null, a file that can't be read and content that can't be decoded
    virtual bool load_image_from_file(Image* image, const char* filename, bool mirror) = 0;

    /// Decodes `size` bytes of memory, which stay the caller's.
    /// @return false for null, no bytes and content that can't be decoded
    virtual bool load_image_from_memory(Image* image, unsigned char* bytes, unsigned long size,
                                        bool mirror) = 0;

    /// Writes an image to a file.
    /// @return false for null, a format that can't be written and a file that can't be opened
    virtual bool save_image_to_file(Image* image, const char* filename) = 0;

    /// Gives back pixels that this codec decoded into memory of its own.
    /// @return false, changing nothing, for null and for pixels that are not this codec's
    virtual bool free_image_resources(Image* image) = 0;

    /// Why the last call of this codec on this thread was false: the place, where there is one, and
    /// what is wrong there. Never null; empty after a success, and for codecs that give no reason.
    [[nodiscard]] const char* get_failure_reason() const noexcept;

protected:
    /// Keeps a reason for the calling thread, formatted as `printf` does and cut at 511 bytes,
    /// without an allocation.
    void set_failure_reason(const char* format, ...) const noexcept ORVEX_PRINTF(2, 3);
    /// Forgets this codec's reason on the calling thread.
    void clear_failure_reason() const noexcept;
};

} // namespace orvex
