#pragma once

#include <memory>

#include <orvex/math/vec4.h>

namespace orvex {
class Camera;
}

namespace orvex::kit {
class Model;
}

/// A camera that goes around a point at a distance, and always looks at it.
class Orbit {
public:
    Orbit(const orvex::vec4& center, float distance);
    ~Orbit();
    Orbit(const Orbit&) = delete;
    Orbit& operator=(const Orbit&) = delete;

    /// Back to where it began: a little to the right, and a little above.
    void reset();
    /// Goes around by a way of the mouse in pixels, four of them a degree, as if the mouse held
    /// what is looked at. It stops short of the poles.
    void drag(float right, float down);
    /// Makes the distance a multiple of what it is, within a tenth and ten times the first.
    void recede(float factor);
    float get_distance() const { return distance; }
    /// The camera where it is now, for a window of that size.
    orvex::Camera& camera(int width, int height);

private:
    orvex::Camera* eye;
    orvex::vec4 center;
    float first_distance;
    float distance = 0.0f;
    float right = 0.0f;
    float down = 0.0f;
};

/// An orbit around the middle of a model, where all of it is seen on the way around.
std::unique_ptr<Orbit> orbit_around(const orvex::kit::Model& scene);
