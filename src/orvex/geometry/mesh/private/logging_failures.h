#pragma once

/// @file
/// What geometry does when there is no memory for it.

#include <exception>
#include <new>

#include "orvex/base/log_mgr.h"

namespace orvex {

/// Runs an operation that allocates; a failure is logged and gives false.
template<class Operation>
bool logging_failures(Operation operation) {
    try {
        return operation();
    } catch (const std::bad_alloc& error) {
        LogMgr::get()->tracef_error("std::bad_alloc exception caught - what: %s", error.what());
    } catch (const std::exception& error) {
        LogMgr::get()->tracef_error("std::exception exception caught - what: %s", error.what());
    } catch (...) {
        LogMgr::get()->tracef_error("unknown exception caught");
    }
    return false;
}

} // namespace orvex
