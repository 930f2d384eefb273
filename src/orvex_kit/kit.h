#pragma once

/// @file
/// All of the kit.

#include "orvex_kit/api.h"
#include "orvex_kit/files.h"
#include "orvex_kit/whole_file.h"
