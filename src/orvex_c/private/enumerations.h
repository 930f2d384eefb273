#pragma once

/// @file
/// Enumerations of the caller's as those of the kit.

#include <orvex_kit/normals.h>

#include "orvex_c/orvex.h"

namespace orvex::c {

kit::Normals normals_of(orvex_normals normals, const char* name);

} // namespace orvex::c
