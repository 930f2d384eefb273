#pragma once

/// The direction of a model's space that points up.
enum class UpAxis { x, y, z, minus_x, minus_y, minus_z };
