#pragma once

#include "math/vec3.h"

namespace host {

struct Renderer {
    Vec3 eye;
};

} // namespace host
