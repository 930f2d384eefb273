#pragma once

#include "renderer/renderer.h"

namespace host {

struct Node {
    Renderer* renderer = nullptr;
};

} // namespace host
