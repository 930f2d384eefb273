#pragma once

/// @file
/// All of the kit.

#include "orvex_kit/api.h"
#include "orvex_kit/camera.h"
#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/files.h"
#include "orvex_kit/frame_stream.h"
#include "orvex_kit/framing.h"
#include "orvex_kit/look.h"
#include "orvex_kit/model.h"
#include "orvex_kit/model_parts.h"
#include "orvex_kit/normals.h"
#include "orvex_kit/orbit.h"
#include "orvex_kit/outcome.h"
#include "orvex_kit/path.h"
#include "orvex_kit/pick.h"
#include "orvex_kit/picture.h"
#include "orvex_kit/picture_file.h"
#include "orvex_kit/program.h"
#include "orvex_kit/ref.h"
#include "orvex_kit/track.h"
#include "orvex_kit/up_axis.h"
#include "orvex_kit/view.h"
#include "orvex_kit/whole_file.h"
