#pragma once

/// @file
/// Forward declarations of all that hosts can name, for headers that only name it: classes,
/// records, and enumerations with their underlying type. Room by room, from the ground to the roof.
/// The stores of packed meshes stand with their template, in mesh_data_packed.h.

namespace orvex {

// math
class Math;
class mat4;
class mat4d;
class quat;
class vec2;
class vec3;
class vec3u8;
class vec4;
class vec4d;
class vec4i;
class vec4u8;

// base
enum LOG_LEVEL : int;
enum PLUGIN_TYPE : int;
class Audio;
class GlobalId;
class GpuMonitor;
class ImageCodec;
class Loader3D;
class Log;
class LogMgr;
class OpenCLPlugin;
class OwnedText;
class Plugin;
class PluginMgr;
class SimpleVideo;
class Thread;
class ThreadLock;
class Timer;

// network
enum SOCKET_OPTION : int;
enum SOCKET_PROTOCOL : int;
enum SOCKET_TYPE : int;
class SocketCore;
class TcpServer;
struct SockAddr;
struct Socket;
struct TcpServerClientThreadParams;

// renderer
enum BUFFER_OBJECT_USAGE : int;
enum CUBEMAP_FACE : int;
enum DATA_ACCESS_TYPE : int;
enum GPU_SHADER_TYPE : int;
enum GPU_SHADER_UNIFORM : int;
enum KEYBOARD_LAYOUT : int;
enum LINE_RENDER_MODE : int;
enum MEMORY_BARRIER_BITS : int;
enum MESH_PLANE_BORDER_TYPE : int;
enum PARTICLE_ACTION_TYPE : int;
enum PARTICLE_EMITTER_TYPE : int;
enum PIXEL_FORMAT : int;
enum RENDERER_BLEND_FACTOR : int;
enum RENDERER_CMP_FUNC : int;
enum RENDERER_POLYGON_FACE : int;
enum RENDERER_POLYGON_MODE : int;
enum SAMPLER_ADDRESSING_MODE : int;
enum SAMPLER_FILTERING_MODE : int;
enum TEXTURE_TYPE : int;
enum VERTEX_FORMAT : int;
class Image;
class Keyboard;
class RenderTarget;
class RenderWindow;
class Renderer;
class RendererBase;
struct CountedRecord;
struct FaceU16;
struct FaceU32;
struct FontData;
struct GpuProgramData;
struct GpuProgramUniform;
struct InstancingInitParams;
struct MaterialSubset;
struct MeshData;
struct MeshDataGpuState;
struct PolylineData;
struct PolylineGpuState;
struct RenderWindow_ExtraData;
struct Renderer_Rasterizer_State;
struct TextureCubeMapFace;
struct TextureData;
struct ThreadRecord;
struct UniformBufferData;
struct Vertex;
struct VertexAttribArray;
struct VertexAttribArray_2f;
struct VertexAttribArray_3f;
struct VertexPoolData;
struct VertexPoolGpuState;
struct Vertex_32;
struct Vertex_64;
struct Vertex_PhysXCloth;

// scene
enum NODE_TYPE : int;
class Camera;
class Light;
class Node;
class Object;
class Resource;
class ResourceMgr;
class Scene;
class SceneMgr;
class SceneRenderer;
class Tripod;
class Viewport;
class Window;
struct LightData;

// gpu
class GpuProgram;
class GpuProgramMgr;

// geometry
class Curve;
class Line;
class Mesh;
class MeshBox;
class MeshCylinder;
class MeshEllipse;
class MeshPlane;
class MeshQuad;
class MeshQuadHud;
class MeshSphere;
class MeshTerrain;
class MeshTorus;
class MeshTriangle;
class MiniSpline;
class Model;
class ParticleAction;
class ParticleEmitter;
class ParticleSystem;
class Point;
class Polyline;
class RayCaster;
class VertexPool;
struct ParticlePool;
struct Ray;
struct RayObjectIntersection;
struct _Curve2D;

// assets
class ImageCodecStb;
class LoadUndo;
class Loader3D_Lib3ds;
class Loader3D_OBJ;
class Material;
class MaterialMgr;
class Texture;
class TextureMgr;
struct MeshEnd;
struct PhysicalMaterial;
struct PhysicalTexture;

// overlays
class Font;
class Graph2d;
class MadLedBar;
class Skybox;
namespace aux {
class Hud;
class TripodVisualizer;
class TripodVisualizerCamera;
class TripodVisualizerObject;
} // namespace aux

// diagnostics
class ArtifactScanner;

// kernel
class Kernel;

} // namespace orvex
