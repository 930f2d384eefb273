#pragma once

/// @file
/// `RayCaster`, picking with rays, and the records it works on.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"

namespace orvex {

/// A ray in world space: a point and a direction, which need not be of unit length.
struct Ray {
    vec4 origin;    ///< a point
    vec4 direction; ///< its w plays no part
};

/// What a ray is asked for, and what it met. Filled by `RayCaster::cast_ray_object`.
struct RayObjectIntersection {
    vec3 position;                ///< world position of the hit; kept when there is none
    float distance = 0.0f;        ///< from the ray's origin to the hit, in lengths of its direction
    unsigned long face_index = 0; ///< the face hit
    bool stop_at_first_hit = false; ///< asked for: the first face in order, not the nearest one
    bool hit = false;               ///< whether a face was met
};

/// Makes rays of window coordinates and meets them with meshes; projects objects into a viewport.
///
/// A value without any state: make one where it is needed. Nothing is allocated and nothing logged.
/// All positions are in world space, window coordinates are in pixels. Cameras and objects compute
/// their matrices when they are read, so that a call needs them for itself while it runs; different
/// objects may be tested on different threads.
///
/// @code
/// RayCaster caster;
/// Ray ray;
/// RayObjectIntersection result;
/// if (caster.get_ray(camera, mouse_x, mouse_y, ray) && caster.cast_ray_object(ray, mesh, result))
///     marker->set_position(vec4(result.position));
/// @endcode
class ORVEX_API RayCaster {
public:
    /// Holds nothing: one serves all scenes.
    RayCaster();
    ~RayCaster();

    /// Where an object's position lies in the camera's viewport.
    ///
    /// The position is the object's local one, taken through projection · view · absolute
    /// transform. There is no division by w: the result is exact for orthographic cameras, and for
    /// perspective ones it is left to the caller.
    /// @param[out] out  x and y in pixels from the lower left of the window, z from 0 (near) to 1
    ///                  (far); w stays
    /// @return false, leaving `out` alone, for a null camera or object
    bool project_object_position_into_viewport(Camera* camera, Object* object, vec4& out) const;

    /// The same from matrices: projection · view · model times the position.
    /// @return true
    bool project_object_position_into_viewport_v2(const mat4& projection, const mat4& view,
                                                  const Viewport& viewport, const mat4& model,
                                                  const vec4& position, vec4& out) const;

    /// The ray of a pixel through a perspective camera, from its near plane towards its far plane,
    /// which is to be a finite one.
    /// @param x,y  pixels; x from the left edge of the window, and y downwards: the
    ///                    viewport's `y` is taken as its upper edge
    /// @param[out] ray  its direction is of unit length. Not finite for a viewport less than two
    ///                  pixels wide or high.
    /// @return false, leaving `ray` alone, for a null camera
    bool get_ray(Camera* camera, int x, int y, Ray& ray) const;

    /// The ray of a pixel through an orthographic camera, from one unit before the eye.
    /// @param x,y  as in `get_ray`
    /// @param[out] ray  its direction is always (0, 0, -1, 0), wherever the camera looks. Its
    ///                  origin is not finite for a viewport without width or height.
    /// @return false, leaving `ray` alone, for a null camera
    bool get_ray_ortho_cam(Camera* camera, int x, int y, Ray& ray) const;

    /// Meets a ray with an object, which has to be a mesh.
    /// @param[in,out] result  see `_cast_ray_mesh`
    /// @return whether a face was met; false, leaving `result` alone, for null and for an object
    ///         that is no mesh
    bool cast_ray_object(const Ray& ray, Object* object, RayObjectIntersection& result) const;

    /// Meets a ray with the faces of a mesh under its absolute transform, from both sides.
    ///
    /// The line of the ray is first tested against the bounding sphere, whose radius is taken as
    /// stored, without the transform's scale: a mesh whose `update_bounding_sphere` wasn't run has
    /// one of the default size. Faces behind the origin don't count. The nearest face is found, of
    /// several at one distance the first; with `stop_at_first_hit` the first face met in the order
    /// of the faces, however near others are. A face index out of range stands for the origin of
    /// the mesh.
    /// @param[in,out] result  `stop_at_first_hit` is read. Past the sphere, `hit`, `distance` and
    ///                        `face_index` are written, with 1e13 and 0 if no face was met, and
    ///                        `position` if one was; a line that misses the sphere only writes
    ///                        `hit`.
    /// @return `hit`; false, leaving `result` alone, for null and without vertices or faces
    bool _cast_ray_mesh(const Ray& ray, Mesh* mesh, RayObjectIntersection& result) const;
};

} // namespace orvex
