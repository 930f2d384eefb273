#include "orvex/renderer/opengl/state/private/gl_state.h"

#include <cstdarg>
#include <cstdio>

#include "orvex/base/log_mgr.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

namespace {

constexpr unsigned long log_buffer_bytes = 16384;

} // namespace

GlState::GlState(const Renderer* owner)
    : owner(owner)
    , log_buffer(log_buffer_bytes) {}

int GlState::renderer_id() const {
    return owner ? owner->getid() : 0;
}

// The four lines differ only in where the text goes.
#define ORVEX_K_LOG(target)                                                                        \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    std::vsnprintf(log_buffer.data(), log_buffer.size(), format, arguments);                       \
    va_end(arguments);                                                                             \
    LogMgr::get()->target("%s renderer - %s", owner ? owner->get_api_name() : "", log_buffer.data())

void GlState::k_log(const char* format, ...) {
    ORVEX_K_LOG(tracef);
}

void GlState::k_log_debug(const char* format, ...) {
    ORVEX_K_LOG(tracef_debug);
}

void GlState::k_log_warning(const char* format, ...) {
    ORVEX_K_LOG(tracef_warning);
}

void GlState::k_log_error(const char* format, ...) {
    ORVEX_K_LOG(tracef_error);
}

#undef ORVEX_K_LOG

} // namespace orvex
