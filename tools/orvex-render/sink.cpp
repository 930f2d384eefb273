#include "sink.h"

#include <utility>

using namespace orvex::kit;

Sink::Sink(std::vector<std::string> names, PictureFormat format, bool is_film)
    : names(std::move(names))
    , format(format) {
    if (!is_film)
        return;
    FrameStreamOptions options;
    options.format = format;
    film = std::make_unique<FrameStream>(this->names.front(), options);
}

std::string Sink::put(const Picture& picture, bool has_alpha) {
    Picture colors;
    const bool is_whole = has_alpha || format == PictureFormat::npy;
    Outcome outcome = is_whole ? Outcome::success() : colors.take_channels(picture, 3);
    if (outcome)
        outcome = write(is_whole ? picture : colors);
    if (outcome)
        ++count;
    return outcome.reason();
}

Outcome Sink::write(const Picture& picture) {
    PictureFileOptions options;
    options.format = format;
    return film ? film->put(picture) : write_picture(picture, names[count], options);
}

std::string Sink::finish() {
    return film ? film->finish().reason() : "";
}

std::string Sink::told() const {
    const std::string first = names.front() == "-" ? "standard output" : names.front();
    if (film)
        return "wrote " + first + ", a film of " + std::to_string(count) + " pictures";
    return names.size() == 1 ? "wrote " + first
                             : "wrote " + std::to_string(names.size()) + " pictures, " + first +
                                   " to " + names.back();
}

Likeness judge(const Picture& picture, const Picture& reference, int largest) {
    Likeness likeness;
    Picture colors;
    if (const Outcome outcome = colors.take_channels(picture, 3); !outcome) {
        likeness.mistake = outcome.reason();
        return likeness;
    }
    const CompareLimits limits{static_cast<double>(largest), 0.0};
    const Comparison comparison = compare(colors, reference, limits);
    if (comparison.is_equal)
        return likeness;
    likeness.difference = comparison.reason;
    // Other sizes have no picture of that.
    static_cast<void>(show_difference(colors, reference, likeness.shown, limits));
    return likeness;
}
