#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/object.h"

namespace orvex {

/// A row of lights, each with a colour of its own, such as the level meter of a demo.
///
/// Made with `new` and ended through its references, like every node. It has the form that
/// `initialize` gives it: points, held in a `VertexPool`, or a strip, a `MeshPlane` with a segment
/// per light. It can have both, and colours then reach both. Pool and plane are children of the
/// bar, made and ended by it; the bar alone draws them, each time it is drawn itself.
///
/// Points run from `start` towards `end` in the bar's space and stop one step short of it. The
/// strip lies in the bar's plane XZ, centred at its origin, along X: of `start` and `end` only the
/// distance counts. Both follow the bar's transform, and are drawn with the program that is active:
/// the size of a point comes from there.
///
/// Used on the thread that owns the renderer's context.
///
/// @code
/// orvex::MadLedBar* meter = new orvex::MadLedBar;
/// meter->initialize(orvex::vec3(-4.0f, 0.0f, 0.0f), orvex::vec3(4.0f, 0.0f, 0.0f), 16, 0.5f);
/// for (unsigned long i = level; i < meter->get_num_leds(); ++i)
///     meter->set_led_color(i, 0.1f, 0.1f, 0.1f, 1.0f);
/// @endcode
class ORVEX_API MadLedBar : public Object {
public:
    /// A bar without lights.
    MadLedBar();
    /// Deletes what `_cleanup` left, with no renderer in hand.
    ~MadLedBar() override;

    /// Draws the bar, then its children other than pool and plane; see `Node::render`.
    void render(Renderer* renderer, Node* node) override;

    /// Ends pool and plane, whoever else may hold them, then does what `Object` does.
    bool _cleanup(Renderer* renderer) override;

    /// Draws pool and plane. Nothing with a null renderer or without lights; the plane can be
    /// hidden by its render state, the pool can't.
    void _render(Renderer* renderer) override;

    /// Sets pool and plane, then does what `Object` does.
    void set_opengl_2_3_rendering_states(bool gl2, Node* node) override;

    /// The number of lights, also where the plane has more vertices.
    unsigned long get_num_vertices(Node* node) override;
    /// The pool's vertex of that index, or else the plane's; null from the number of lights on.
    Vertex* get_vertex(unsigned long index) override;
    /// A copy of the plane's vertex of that index, or else the pool's; a default vertex from the
    /// number of lights on.
    Vertex get_vertex_v2(unsigned long index) override;

    /// Gives the bar the form of points, white, with normals along +Y. A second call keeps the pool
    /// and makes its points anew.
    /// @param start,end  of the row, in the bar's space
    /// @param num_leds  number of lights of the whole bar; with 0 it draws nothing
    /// @return true. Running out of memory for the points throws `std::bad_alloc`
    bool initialize(const vec3& start, const vec3& end, unsigned long num_leds);

    /// Gives the bar the form of a strip, white, with normals along +Y. A second call keeps the
    /// plane and builds it anew.
    /// @param start,end  their distance is the length of the strip
    /// @param num_leds  number of lights of the whole bar; with 0 it draws nothing
    /// @param height  of the strip, along Z, in units of the bar; any number
    /// @return true, also where no memory was found for the strip, which the log tells then
    bool initialize(const vec3& start, const vec3& end, unsigned long num_leds, float height);

    unsigned long get_num_leds() const; ///< number of lights

    /// Colours one light, in every form that the bar has. In the strip a light's segment fades from
    /// its neighbour's colour to its own.
    /// @param index    from 0; ignored from the number of lights on
    /// @param r,g,b,a  usually within 0 and 1; kept as they are
    void set_led_color(unsigned long index, float r, float g, float b, float a);
    /// The same with the colour as a vector.
    void set_led_color(unsigned long index, const vec4& color);

    /// @name Steps of `initialize`
    /// @{

    /// Puts the points at their places. @return false without lights
    bool _vp_update_leds_positions();
    /// Colours the two vertices at the right end of a light's segment. @return true
    bool _plane_set_led_color(unsigned long index, float r, float g, float b, float a);
    /// Sets the normals of the same two. @return true
    bool _plane_set_led_normal(unsigned long index, float x, float y, float z);
    /// @}

private:
    struct MadLedBarData;

    std::unique_ptr<MadLedBarData> data;
};

} // namespace orvex
