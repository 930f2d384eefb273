#pragma once

/// @file
/// The whole public interface of orvex. A host that wants less includes single headers, such as
/// <orvex/scene/camera.h>.

#include "api.h"
