#include "orvex/base/image_codec.h"

namespace orvex {

ImageCodec::ImageCodec() = default;
ImageCodec::~ImageCodec() = default;

} // namespace orvex
