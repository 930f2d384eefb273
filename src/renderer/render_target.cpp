#include "renderer/render_target.h"

#include "kernel/global_id.h"

namespace orvex {

RenderTarget::RenderTarget()
    : id(GenId()) {}

RenderTarget::~RenderTarget() = default;

} // namespace orvex
