#include "orvex_kit/frame_stream.h"

#include <new>
#include <utility>

#include "orvex_kit/private/output.h"
#include "orvex_kit/private/yuv.h"

namespace orvex::kit {

struct FrameStream::FrameStreamData {
    FrameStreamData(std::string name, const FrameStreamOptions& wanted)
        : path(std::move(name))
        , options(wanted)
        , output(path) {}

    std::string path;
    FrameStreamOptions options;
    Output output;
    int width = 0, height = 0, channels = 0; ///< those of the first frame
    Sample sample = Sample::u8;
    long num_frames = 0;
    bool is_finished = false;
    Outcome fate;      ///< what was written so far; a film that has lost a part isn't gone on with
    std::string frame; ///< the last one, kept for its memory

    std::string mistake_in_options();
    std::string mistake_in(const Picture& picture) const;
    std::string header() const;
    Outcome begin(const Picture& picture);
    Outcome put(const Picture& picture);
};

FrameStream::FrameStream(std::string path, const FrameStreamOptions& options)
    : data(std::make_unique<FrameStreamData>(std::move(path), options)) {}

FrameStream::~FrameStream() = default;

long FrameStream::frames() const {
    return data->num_frames;
}

std::string FrameStream::FrameStreamData::mistake_in_options() {
    if (options.format == PictureFormat::by_suffix)
        options.format = picture_format_of(path);
    if (options.format == PictureFormat::raw)
        return "";
    if (options.format != PictureFormat::y4m)
        return "films are of the format raw or y4m";
    return options.rate < 1 || options.rate_seconds < 1 ? "the rate of a film is above 0" : "";
}

std::string FrameStream::FrameStreamData::mistake_in(const Picture& picture) const {
    if (picture.is_empty())
        return "the picture is empty";
    if (options.format == PictureFormat::y4m && picture.sample() != Sample::u8)
        return std::string("YUV4MPEG2 takes 8-bit pictures, not ") + name_of(picture.sample());
    if (num_frames > 0 && (picture.width() != width || picture.height() != height ||
                           picture.channels() != channels || picture.sample() != sample))
        return "frame " + std::to_string(num_frames + 1) +
               " is of another size or kind than the first";
    return "";
}

std::string FrameStream::FrameStreamData::header() const {
    return "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + " F" +
           std::to_string(options.rate) + ":" + std::to_string(options.rate_seconds) + " Ip A1:1 " +
           (options.chroma == Chroma::c420 ? "C420jpeg" : "C444") +
           " XCOLORRANGE=" + (options.full_range ? "FULL" : "LIMITED") + "\n";
}

Outcome FrameStream::FrameStreamData::begin(const Picture& picture) {
    width = picture.width();
    height = picture.height();
    channels = picture.channels();
    sample = picture.sample();
    Outcome outcome = output.begin();
    return outcome && options.format == PictureFormat::y4m ? output.put(header()) : outcome;
}

Outcome FrameStream::FrameStreamData::put(const Picture& picture) {
    if (options.format == PictureFormat::raw)
        return output.put(picture.row_data(0), picture.size_bytes());
    take_yuv(picture, options.chroma, options.full_range, frame);
    Outcome outcome = output.put("FRAME\n");
    return outcome ? output.put(frame) : outcome;
}

Outcome FrameStream::put(const Picture& picture) {
    if (data->is_finished)
        return cant_write(data->path, "the film is finished");
    if (!data->fate)
        return data->fate;
    std::string mistake = data->num_frames == 0 ? data->mistake_in_options() : "";
    if (mistake.empty())
        mistake = data->mistake_in(picture);
    if (!mistake.empty())
        return cant_write(data->path, mistake);
    try {
        if (data->num_frames == 0)
            data->fate = data->begin(picture);
        if (data->fate)
            data->fate = data->put(picture);
    } catch (const std::bad_alloc&) {
        data->fate = no_memory_to_write(data->path);
    }
    data->num_frames += data->fate ? 1 : 0;
    return data->fate;
}

Outcome FrameStream::finish() {
    if (data->is_finished)
        return cant_write(data->path, "the film is finished");
    if (!data->fate)
        return data->fate;
    if (data->num_frames == 0)
        return cant_write(data->path, "the film has no frame");
    data->is_finished = true;
    return data->output.finish();
}

} // namespace orvex::kit
