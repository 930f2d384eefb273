#include "orvex/base/simple_video.h"

namespace orvex {

SimpleVideo::SimpleVideo() = default;
SimpleVideo::~SimpleVideo() = default;

} // namespace orvex
