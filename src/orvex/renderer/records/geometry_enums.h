#pragma once

/// @file
/// The enumerations of meshes, polylines and particles.

namespace orvex {

/// Vertex layout of a mesh store, chosen once when the store is made. A value outside the table
/// names no layout.
enum VERTEX_FORMAT : int {
    VERTEX_FORMAT_96 = 0,          ///< `Vertex`: every attribute a `vec4`, two texture layers
    VERTEX_FORMAT_64 = 1,          ///< `Vertex_64`: packed, one texture layer
    VERTEX_FORMAT_32 = 2,          ///< `Vertex_32`: position, normal and one texture layer only
    VERTEX_FORMAT_PHYSX_CLOTH = 3, ///< `Vertex_PhysXCloth`: position with the inverse mass in w
};

/// How the vertices of a polyline are joined. With the tessellation state set, every value draws as
/// patches; without it, a value outside the table draws nothing.
enum LINE_RENDER_MODE : int {
    LINE_RENDER_MODE_LINES = 0,      ///< each pair of vertices is a line
    LINE_RENDER_MODE_LINE_STRIP = 1, ///< one line through all vertices
    LINE_RENDER_MODE_LINE_LOOP = 2,  ///< the same, closed
};

/// Where an emitter lets particles start. Those of a value outside the table come to life where
/// they lie.
enum PARTICLE_EMITTER_TYPE : int {
    PARTICLE_EMITTER_POINT = 0, ///< in a box around the emitter's position
};

/// What an action does to the living particles. A value outside the table does nothing.
enum PARTICLE_ACTION_TYPE : int {
    PARTICLE_ACTION_GRAVITY = 0, ///< accelerates and moves them
};

} // namespace orvex
