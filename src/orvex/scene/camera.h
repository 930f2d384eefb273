#pragma once

/// @file
/// `Camera`. Three marks keep its matrices honest: each setter marks what it makes out of date,
/// each getter computes what is marked, and nothing is computed twice. What a setter does not mark
/// is said with it.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/object.h"

namespace orvex {

/// An object that keeps a projection, a view and a viewport, and hands them to the renderer.
///
/// Made with `new` and ended through its references, like every node. Objects never see the camera:
/// `bind` leaves its matrices in the renderer, and whatever is drawn afterwards reads them there.
///
/// Coordinates are right-handed: with the identity orientation the camera looks along negative Z
/// with Y up. Angles are in degrees. The view follows the position and orientation kept here, not
/// those of the `Tripod`: the three-float `set_position` of `Object` does not move the eye.
/// Matrices are computed when they are read, so a getter may write: use a camera on one thread at a
/// time.
///
/// @code
/// orvex::Camera* camera = new orvex::Camera;
/// camera->set_viewport(0, 0, 800, 600);
/// camera->build_projection_persp(60.0f, 800.0f / 600.0f, 0.1f, 100.0f, true);
/// camera->set_position(orvex::vec4(0.0f, 2.0f, 8.0f, 1.0f));
/// camera->set_lookat(orvex::vec4::ZERO);
/// camera->bind(renderer, true, true, true, true, true);
/// @endcode
class ORVEX_API Camera : public Object {
public:
    /// Perspective, right-handed: 60 degrees, 16 to 9, from 1 to 1000, at (0, 0, 10).
    Camera();
    ~Camera() override;

    /// The node as a camera, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a node that is none
    static Camera* from_node(Node* node);

    /// @name Viewport
    /// @{

    /// Sets where in the window is drawn. 0 at first.
    /// @param x,y           lower left corner, pixels from that of the window, of either sign
    /// @param width,height  size, pixels; unchecked: a negative one is refused by the API at `bind`
    void set_viewport(int x, int y, int width, int height);
    /// Copies another viewport.
    void set_viewport(const Viewport& viewport);
    /// Owned by this camera; what is written through it counts from the next `bind` on.
    Viewport& get_viewport();
    const Viewport& get_viewport() const; ///< as set; owned by this camera
    /// Owned by this camera; never null.
    Viewport* get_viewport_ptr();
    const Viewport* get_viewport_ptr() const; ///< as set; owned by this camera, never null
    /// @}

    /// @name Projection parameters
    /// Each setter makes the camera perspective again, to be built at the next read. Nothing is
    /// checked: outside the ranges given here the numbers are kept as they are, and the matrix
    /// built of them shows nothing sensible, or holds infinities.
    /// @{

    /// Sets how much the camera sees.
    /// @param degrees  vertical field of view, above 0 and below 180
    void set_fov(float degrees);
    float get_fov() const; ///< degrees; 60 at first
    /// Tangent of half the field of view.
    float get_tanfovdiv2() const;
    /// Sets how far before the eye the near clip plane lies.
    /// @param distance  above 0 and below the far one, in units of the world
    void set_znear(float distance);
    float get_znear() const; ///< as set; 1 at first
    /// Sets how far before the eye the far clip plane lies.
    /// @param distance  above the near one, in units of the world; exactly -1 puts the far plane of
    ///                  a right-handed projection at infinity
    void set_zfar(float distance);
    float get_zfar() const; ///< as set; 1000 at first
    /// Sets the shape of the picture.
    /// @param ratio  width divided by height, above 0
    void set_aspect(float ratio);
    float get_aspect() const; ///< as set; 16 to 9 at first
    /// Whether the projection is built right-handed; true at first. Counts from the next build on,
    /// and asks for none.
    void set_proj_rh_state(bool state);
    /// @}

    /// @name Projection matrix
    /// @{

    /// Builds a perspective projection at once and keeps its parameters. The product of projection
    /// and view is not marked as out of date.
    /// @param fov     vertical field of view, degrees; see `set_fov`
    /// @param aspect  width divided by height, above 0
    /// @param znear,zfar  distances of the clip planes, 0 < near < far; with `rh`, a far of exactly
    ///                    -1 is at infinity
    /// @param rh  right-handed
    void build_projection_persp(float fov, float aspect, float znear, float zfar, bool rh);
    /// Builds an orthographic projection of a box at once. Of its arguments only `rh` is kept, and
    /// the product of projection and view is not marked as out of date.
    /// @param left,right,bottom,top  edges of the box in the space of the eye, in units of the
    ///                               world; either may be the larger, which mirrors the picture
    /// @param znear,zfar  distances of its near and far side. Two equal edges, or sides, are
    ///                    unchecked and make a matrix with infinities
    /// @param rh  right-handed
    void build_projection_ortho(float left, float right, float bottom, float top, float znear,
                                float zfar, bool rh);
    /// Whether the matrix comes from a perspective; true at first.
    bool is_perspective_projection() const;
    /// The opposite of `is_perspective_projection`.
    bool is_ortho_projection() const;
    /// Builds the projection from its parameters if one of them changed.
    /// @return false when there was nothing to do, as always for an orthographic camera
    bool update_projection_matrix();
    /// Stores a matrix, which stands until the next setter of a parameter. Marks neither the
    /// inverse nor the product of projection and view.
    void set_projection_matrix(const mat4& projection);
    /// The projection, brought up to date.
    mat4& get_projection_matrix();
    const mat4& get_projection_matrix() const; ///< the projection, brought up to date
    /// As `get_projection_matrix`; owned by this camera.
    mat4* get_projection_matrix_ptr();
    const mat4* get_projection_matrix_ptr() const; ///< as `get_projection_matrix`
    /// As `get_projection_matrix`; 16 floats, column by column, owned by this camera.
    float* get_projection_matrix_float_ptr();
    const float* get_projection_matrix_float_ptr() const; ///< as `get_projection_matrix`
    /// The inverse of the projection at the time of the first call. Nothing makes it anew.
    mat4& get_inv_projection_matrix();
    const mat4& get_inv_projection_matrix() const; ///< as the other form
    /// @}

    /// @name View
    /// @{

    /// Stored, and read by nothing.
    void set_view_rh_state(bool state);
    /// Moves the object alone: the eye stays where it was.
    using Object::set_position;
    /// Moves the object and the eye. The orientation stays.
    void set_position(const vec4& position);
    /// Turns towards a target.
    /// @param target  a point when its w is 1, a direction when its w is 0; any other w stores the
    ///                target and turns nothing
    void set_lookat(const vec4& target);
    /// Turns to look along a direction: about the fixed yaw axis if that is switched on, else by
    /// the shortest way.
    /// @param direction  one equal to `vec4::ZERO`, w included, is ignored
    void update_direction(const vec4& direction);
    /// Sets the up vector and the fixed yaw axis, which count from the next `set_lookat` on.
    void set_up(const vec4& up);
    /// `set_position`, `set_lookat` and `set_up`, in this order: the new up vector plays no part in
    /// this turn.
    void set_view_params(const vec4& position, const vec4& lookat, const vec4& up, bool rh);
    /// Builds the view if position or orientation changed.
    /// @return false when there was nothing to do
    bool update_view_matrix();
    /// As `update_view_matrix`.
    bool update_view_matrix_v2();
    /// Stores a matrix, which stands until the next change of position or orientation. Marks
    /// neither the inverse nor the product of projection and view.
    void set_view_matrix(const mat4& view);
    /// The view, brought up to date.
    mat4& get_view_matrix();
    const mat4& get_view_matrix() const; ///< the view, brought up to date
    /// As `get_view_matrix`; owned by this camera.
    mat4* get_view_matrix_ptr();
    const mat4* get_view_matrix_ptr() const; ///< as `get_view_matrix`
    /// As `get_view_matrix`; 16 floats, column by column, owned by this camera.
    float* get_view_matrix_float_ptr();
    const float* get_view_matrix_float_ptr() const; ///< as `get_view_matrix`
    /// The inverse of the view, brought up to date.
    mat4& get_inv_view_matrix();
    const mat4& get_inv_view_matrix() const; ///< as the other form
    /// projection · view, computed if an update of one of them marked it.
    mat4& get_view_projection_matrix();
    const mat4& get_view_projection_matrix() const; ///< as the other form
    /// @}

    /// @name Orientation
    /// @{

    /// Whether turns keep the horizon level, about the axis last given to `set_up`; true at first.
    void set_rotate_around_fixed_yaw_axis(bool state);
    bool get_rotate_around_fixed_yaw_axis() const; ///< see the setter
    /// Turns by `q` in the parent's space, after the orientation so far.
    void rotate(const quat& q);
    /// The same by an angle about an axis.
    /// @param degrees  any angle, counter-clockwise as seen from the tip of the axis
    /// @param axis     expected to be of unit length
    void rotate(float degrees, const vec4& axis);
    /// Stores the rotation and marks the view; expected to be of unit length, and not normalised.
    void set_orientation(const quat& orientation);
    const quat& get_orientation() const; ///< as set or turned to; the identity at first
    /// Writes the rotation into the upper left 3×3 of `rotation`; the rest of it stays.
    void get_orientation_matrix(mat4& rotation) const;
    /// Where the camera looks; w carries no meaning.
    [[nodiscard]] vec4 get_view_vector() const;
    /// The camera's up direction; w carries no meaning.
    [[nodiscard]] vec4 get_up_vector() const;
    /// Turns by `degrees`, any angle, about the camera's own X axis: a step, not an absolute angle.
    void set_pitch(float degrees);
    /// The last step given to `set_pitch`.
    float get_pitch() const;
    /// Turns by `degrees` about the fixed yaw axis, or the camera's own Y axis: a step.
    void set_yaw(float degrees);
    /// The last step given to `set_yaw`.
    float get_yaw() const;
    /// Turns by `degrees` about the camera's own Z axis: a step.
    void set_roll(float degrees);
    /// The last step given to `set_roll`.
    float get_roll() const;
    /// @}

    /// @name Mouse orbit
    /// @{

    /// Starts an orbit.
    /// @param pitch,yaw  angles to count from, degrees; any
    /// @param a,b  mouse coordinates to count from
    void init_rotate_position_around_point(float pitch, float yaw, int a, int b);
    /// Adds the way of the mouse since the last call to the angles, `a` to pitch and `b`, negated,
    /// to yaw, then turns by the yaw and the pitch reached. At a pitch limit the pitch is cut to it
    /// and nothing turns. The position does not change.
    /// @param point  not read
    /// @param a,b  mouse coordinates
    /// @param speed  degrees per unit of mouse coordinate
    void rotate_position_around_point_by_mouse(const vec4& point, int a, int b, float speed);
    /// Sets between which angles the orbit pitches; 80 and -80 at first.
    /// @param max,min  degrees. With `max` at or below `min` every pitch is at a limit: nothing
    ///                 turns
    void set_pitch_angle_limits(float max, float min);
    /// @}

    /// Hands viewport, scissor, projection and view to the renderer, in this order, each if its
    /// flag is set.
    /// @param renderer  null does nothing
    /// @param load_fixed_matrices  load the matrices into the fixed pipeline as well
    void bind(Renderer* renderer, bool viewport, bool scissor, bool projection, bool view,
              bool load_fixed_matrices);

private:
    struct CameraData;

    std::unique_ptr<CameraData> data;
};

} // namespace orvex
