#pragma once

/// @file
/// What the examples in the headers' comments take for granted: a host's own nodes, numbers and
/// functions.

#include <cstdio>
#include <iostream>
#include <thread>
#include <vector>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

namespace host {

using namespace orvex;

extern Renderer* renderer;
extern Camera* camera;
extern ImageCodec* codec;
extern GpuProgram* program;
extern Mesh* mesh;
extern std::vector<Mesh*> meshes;
extern Object* object;
extern Object* scene_root;
extern ParticleSystem* system;
extern Object* marker;
extern Polyline* polyline;
extern ResourceMgr* mgr;
extern Resource* resource;
extern Camera* screen_camera;
extern VertexPool* pool;
extern Scene* scene;
extern SceneRenderer scene_renderer;

extern vec4 eye, view, position, point, hit;
extern vec4 a, b, c;
extern double doubles_of_the_driver[16];
extern double measured[100];
extern float milliseconds_of_frame;
extern float dt;
extern bool running;
extern unsigned char* pixels;
extern const char* name;
extern int count;
extern int mouse_x, mouse_y;
extern int queue;
extern int shared_value;
extern unsigned int groups;
extern unsigned long level;

struct HostEvent {
    unsigned int keycode;
};
extern HostEvent event;

void draw();
void draw_the_same_frame();
void complain();
void climb();

} // namespace host
