#pragma once

#include "orvex/assets/models/obj/private/obj_model.h"
#include "orvex/fwd.h"

namespace orvex {

/// Turns what was read into meshes and materials of `target`. Throws `std::bad_alloc`, and leaves
/// what was made so far, for a `LoadUndo` to give back.
void build_model(OBJ_Model& source, Model& target);

} // namespace orvex
