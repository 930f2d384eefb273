#pragma once

/// @file
/// `Graph2d`, axes and curves that scroll.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/object.h"

namespace orvex {

/// A pair of axes with any number of curves that scroll, such as a chart of frame times over a
/// scene.
///
/// The host makes it with `new` and ends it through `Node::release` or `Node::kill`. The graph owns
/// its curves and the line that draws its axes. A curve that something else ends nonetheless, such
/// as a node that adopted it, is no longer drawn.
///
/// Positions are in pixels. With the viewport feature on, which it is at first, they count from the
/// lower left corner of the viewport and are shifted by half its size, for an orthographic camera
/// in the middle of the screen. What is placed keeps its shift until it is placed again.
///
/// Each curve has a fixed number of points and a history of samples. `sync_curve_scalars` lays the
/// newest samples along the x axis, so a curve fills from the left and then scrolls. The cost of a
/// sync depends on the points alone; the history is never trimmed and grows by 16 bytes a sample.
///
/// Lines are drawn with whatever program is active, each with its own transform; the graph's own
/// transform, materials and program play no part. Used on the thread that owns the renderer's
/// context; samples may be added elsewhere only under a lock of the host's.
///
/// @code
/// Graph2d* graph = new Graph2d;
/// graph->set_x_axis_positions(vec4(20.0f, 20.0f, 0.0f, 1.0f), vec4(320.0f, 20.0f, 0.0f, 1.0f));
/// graph->set_y_axis_positions(vec4(20.0f, 20.0f, 0.0f, 1.0f), vec4(20.0f, 120.0f, 0.0f, 1.0f));
/// graph->set_viewport(0, 0, 800, 600);
/// graph->create_curve(100);
/// while (running) {
///     graph->add_curve_scalar(0, milliseconds_of_frame);
///     graph->sync_curve_scalars(0);
///     screen_camera->bind(renderer, true, false, true, true, true);
///     graph->render(renderer, nullptr);
/// }
/// @endcode
class ORVEX_API Graph2d : public Object {
public:
    /// Without curves; white axes from (0, 0) to (100, 0) and to (0, 100), a viewport of no size.
    Graph2d();
    ~Graph2d() override;

    /// Hook: ends the curves and frees the axes' store, GPU objects and all: they aren't drawn any
    /// more.
    bool _cleanup(Renderer* renderer) override;
    /// Hook: the axes, then all curves. With a null renderer nothing happens.
    void _render(Renderer* renderer) override;

    /// @name Curves
    /// Counted from 0 in the order they were made.
    /// @{

    /// Makes a curve, with every point at (0, 0, 0, 1).
    /// @param num_points  fixed for its life; with 0 it shows nothing
    /// @return the line object, owned by this graph; null, with a log line, if memory ran out
    Curve* create_curve(unsigned long num_points);
    /// Ends a curve, whoever else holds it. Those behind it move up.
    /// @param renderer  frees the GPU objects; may be null
    /// @return false for null and for a curve that isn't one of this graph's
    bool kill_curve(Renderer* renderer, Curve* curve);
    /// Ends all curves, whoever else holds them. @return true
    bool kill_all_curves(Renderer* renderer);
    /// Number of curves; one that something else ended counts still.
    unsigned long get_num_curves() const;
    /// The line object, for its colours, transform and so on; null past the end.
    Curve* get_curve(unsigned long index) const;
    /// Gives all points of a curve one colour.
    /// @param r,g,b,a  usually within 0 and 1; kept as they are
    /// @return false past the end
    bool set_curve_color(unsigned long index, float r, float g, float b, float a);
    /// @}

    /// @name Samples
    /// @return false past the end of the curves
    /// @{

    /// Appends a sample to the history of a curve. Of its position y, z and w count: x is chosen by
    /// the sync. Running out of memory throws `std::bad_alloc` and leaves the history as it was.
    bool add_curve_position(unsigned long index, const vec4& position);
    /// Appends the sample (0, value, 0, 1).
    bool add_curve_scalar(unsigned long index, float value);
    /// Lays the newest samples along the x axis as set by `set_x_axis_positions`, the first at its
    /// start and then in steps of its length divided by the number of points, and raises them by
    /// the height of the axis.
    /// @return false past the end and without samples, with nothing changed
    bool sync_curve_scalars(unsigned long index);
    /// @}
    /// Number of samples too old to be seen at the last sync; 0 past the end.
    unsigned long curve_get_diff_points(unsigned long index) const;

    /// @name Points placed by the host
    /// Kept, so that `set_viewport` can place them again. A point the curve doesn't have is
    /// ignored.
    /// @return false past the end of the curves, true whatever the point
    /// @{

    /// Places a point, shifted by half the viewport while that is on.
    bool set_curve_value(unsigned long index, unsigned long point, const vec4& value);
    /// As the form of one vector.
    bool set_curve_value(unsigned long index, unsigned long point, float x, float y, float z,
                         float w);
    /// @}

    /// @name Drawing
    /// @{

    /// Draws one curve with all its points, also those that no sample has reached yet.
    /// @return false past the end
    bool draw_curve(Renderer* renderer, unsigned long index);
    /// Draws every curve up to its last sample. @return true
    bool draw_all_curves(Renderer* renderer);
    /// Draws the x axis, then the y axis.
    void draw_axis(Renderer* renderer);
    /// @}

    /// @name Axes
    /// Until positions are set here, `set_viewport` and `sync_curve_scalars` take (0, 0, 0, 1) for
    /// both ends, not the axes drawn at first.
    /// @{

    /// Places both ends of the x axis, shifted by half the viewport while that is on.
    void set_x_axis_positions(const vec4& start, const vec4& end);
    /// Places both ends of the y axis, shifted in the same way.
    void set_y_axis_positions(const vec4& start, const vec4& end);
    /// Colours both ends of the x axis: red, green, blue, alpha.
    void set_x_axis_color(const vec4& start, const vec4& end);
    /// Colours both ends of the y axis: red, green, blue, alpha.
    void set_y_axis_color(const vec4& start, const vec4& end);
    /// @}

    /// @name Viewport
    /// @{

    /// Whether positions are shifted by half the viewport. What is placed already stays as it is.
    void enable_viewport(bool state);
    bool is_viewport_enabled() const; ///< as set; true at first
    /// Stores the viewport, in pixels. With the feature on it then places the axes anew, and every
    /// point of every curve at the value that `set_curve_value` gave it, (0, 0, 0, 1) for none:
    /// points that came from samples wait there for the next sync.
    /// @param x,y           stored, and not read
    /// @param width,height  pixels; half of each is the shift, of either sign
    void set_viewport(int x, int y, int width, int height);
    /// @}

private:
    struct Graph2dData;

    std::unique_ptr<Graph2dData> data;
};

} // namespace orvex
