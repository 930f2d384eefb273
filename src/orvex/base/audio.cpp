#include "orvex/base/audio.h"

namespace orvex {

Audio::Audio() = default;
Audio::~Audio() = default;

} // namespace orvex
