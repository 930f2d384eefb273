#include "orvex/base/image_codec.h"

#include <cstdarg>

#include "orvex/base/private/failure_text.h"
#include "orvex/base/private/plugin_data.h"

namespace orvex {

namespace {

/// The reason of the codec that failed last on a thread. Codecs serve many threads at once, so that
/// none can keep a reason in itself.
struct LastFailure {
    const ImageCodec* codec = nullptr;
    FailureText failure;
};

thread_local LastFailure last_failure;

} // namespace

ImageCodec::ImageCodec() {
    PluginData::of(*this).image_codec = this;
}

ImageCodec::~ImageCodec() {
    clear_failure_reason();
}

ImageCodec* ImageCodec::from_plugin(Plugin* plugin) {
    return plugin ? plugin_as_image_codec(*plugin) : nullptr;
}

const char* ImageCodec::get_failure_reason() const noexcept {
    return last_failure.codec == this ? last_failure.failure.text : "";
}

void ImageCodec::clear_failure_reason() const noexcept {
    if (last_failure.codec == this)
        last_failure.codec = nullptr;
}

void ImageCodec::set_failure_reason(const char* format, ...) const noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    last_failure.failure.set(format, arguments);
    va_end(arguments);
    last_failure.codec = this;
}

} // namespace orvex
