// The one file that knows OpenEXR. The library writes into memory, and throws; what it says becomes
// the reason.

#include "orvex_kit/private/exr_writer.h"

#include <cstdint>
#include <cstring>
#include <exception>
#include <new>
#include <set>

#ifdef ORVEX_KIT_OPENEXR
#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfIO.h>
#include <OpenEXR/ImfOutputFile.h>
#endif

namespace orvex::kit {

#ifdef ORVEX_KIT_OPENEXR

namespace {

/// A file of the library's that grows in memory.
class MemoryStream : public Imf::OStream {
public:
    explicit MemoryStream(const std::string& path)
        : OStream(path.c_str()) {}
    void write(const char* from, int size) override {
        const auto count = static_cast<std::size_t>(size);
        if (bytes.size() < place + count)
            bytes.resize(place + count);
        std::memcpy(bytes.data() + place, from, count);
        place += count;
    }
    std::uint64_t tellp() override { return place; }
    void seekp(std::uint64_t position) override { place = position; }

    std::string bytes;

private:
    std::size_t place = 0;
};

/// Samples of a layer in a kind that the format has, beside each other as in the picture.
struct Plane {
    Imf::PixelType type = Imf::FLOAT;
    const void* samples = nullptr;
    std::size_t sample_bytes = 0;
    std::vector<half> halves;
    std::vector<float> floats;
};

/// Integers become parts of the largest.
template<class From, class To>
void take_parts(const Picture& picture, std::vector<To>& to) {
    const From* const from = picture.row<From>(0);
    const std::size_t count = picture.size_bytes() / sizeof(From);
    to.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        to[i] = To(static_cast<float>(from[i]) / static_cast<float>(static_cast<From>(-1)));
}

Plane plane_of(const Picture& picture) {
    Plane plane;
    plane.samples = picture.data();
    plane.sample_bytes = 4;
    switch (picture.sample()) {
    case Sample::u8:
        take_parts<std::uint8_t>(picture, plane.halves);
        plane.type = Imf::HALF;
        plane.samples = plane.halves.data();
        plane.sample_bytes = sizeof(half);
        break;
    case Sample::u16:
        take_parts<std::uint16_t>(picture, plane.floats);
        plane.samples = plane.floats.data();
        break;
    case Sample::f32:
        break;
    case Sample::i32:
        plane.type = Imf::UINT;
        break;
    }
    return plane;
}

/// The format has room for 255 letters with the dot and the channel's own.
constexpr std::size_t longest_name = 253;

std::string letters_of(const PictureLayer& layer) {
    static const char* const usual[] = {"", "Y", "YA", "RGB", "RGBA"};
    return layer.channels.empty() ? usual[layer.picture->channels()] : layer.channels;
}

std::string channel_name(const PictureLayer& layer, char letter) {
    return (layer.name.empty() ? "" : layer.name + ".") + letter;
}

std::string called(const PictureLayer& layer) {
    return layer.name.empty() ? "the layer without a name" : "the layer '" + layer.name + "'";
}

std::string size_of(const Picture& picture) {
    return std::to_string(picture.width()) + "x" + std::to_string(picture.height());
}

/// What is wrong with a layer by itself and beside the first; empty if nothing is.
std::string mistake_in(const PictureLayer& layer, const PictureLayer& first) {
    if (!layer.picture || layer.picture->is_empty())
        return called(layer) + " has no picture";
    if (layer.picture->width() != first.picture->width() ||
        layer.picture->height() != first.picture->height())
        return called(layer) + " has " + size_of(*layer.picture) + " pixels, the first one " +
               size_of(*first.picture);
    if (letters_of(layer).size() != static_cast<std::size_t>(layer.picture->channels()))
        return called(layer) + " has " + std::to_string(layer.picture->channels()) +
               " channels, not " + std::to_string(letters_of(layer).size());
    // The library would cut it.
    if (layer.name.size() > longest_name || layer.name.find('\0') != std::string::npos)
        return "the name of a layer has more than " + std::to_string(longest_name) +
               " letters, or a zero among them";
    return "";
}

std::string mistake_in(const std::vector<PictureLayer>& layers) {
    if (layers.empty())
        return "there is no layer";
    std::set<std::string> names;
    for (const PictureLayer& layer : layers) {
        std::string mistake = mistake_in(layer, layers.front());
        if (!mistake.empty())
            return mistake;
        for (const char letter : letters_of(layer))
            if (!names.insert(channel_name(layer, letter)).second)
                return "the channel '" + channel_name(layer, letter) + "' comes twice";
    }
    return "";
}

/// Names the channels of a layer, and where their samples lie.
void add_layer(const PictureLayer& layer, const Plane& plane, Imf::Header& header,
               Imf::FrameBuffer& frame) {
    const std::string letters = letters_of(layer);
    const std::size_t pixel = letters.size() * plane.sample_bytes;
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const std::string name = channel_name(layer, letters[i]);
        header.channels().insert(name, Imf::Channel(plane.type));
        // The library only reads, but takes what it could write to as well.
        char* const first = static_cast<char*>(const_cast<void*>(plane.samples));
        frame.insert(name, Imf::Slice(plane.type, first + i * plane.sample_bytes, pixel,
                                      pixel * static_cast<std::size_t>(layer.picture->width())));
    }
}

std::string encoded(const std::vector<PictureLayer>& layers, const std::string& path) {
    const Picture& first = *layers.front().picture;
    Imf::Header header(first.width(), first.height());
    header.compression() = Imf::ZIP_COMPRESSION;
    Imf::FrameBuffer frame;
    std::vector<Plane> planes;
    planes.reserve(layers.size());
    for (const PictureLayer& layer : layers)
        add_layer(layer, planes.emplace_back(plane_of(*layer.picture)), header, frame);
    MemoryStream stream(path);
    {
        Imf::OutputFile file(stream, header, 0);
        file.setFrameBuffer(frame);
        file.writePixels(first.height());
    } // writes where the rows are
    return std::move(stream.bytes);
}

} // namespace

bool has_exr() {
    return true;
}

Outcome write_exr(const std::vector<PictureLayer>& layers, const std::string& path) {
    if (const std::string mistake = mistake_in(layers); !mistake.empty())
        return cant_write(path, mistake);
    try {
        return write_whole(path, encoded(layers, path));
    } catch (const std::bad_alloc&) {
        return no_memory_to_write(path);
    } catch (const std::exception& refusal) {
        return cant_write(path, refusal.what());
    }
}

#else

bool has_exr() {
    return false;
}

Outcome write_exr(const std::vector<PictureLayer>&, const std::string& path) {
    return cant_write(path, "this build of the kit has no OpenEXR");
}

#endif

} // namespace orvex::kit
