#pragma once

#include "api.h"

namespace host {

struct Vec3 {
    float x = 0;
    float y = 0;
    float z = 0;
    Api api = Api::of_the_host;
};

} // namespace host
