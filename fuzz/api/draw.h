#pragma once

/// @file
/// Arguments of public operations, by their types: `Argument<Type>::draw` takes one off the bytes.
/// Pointers are null at times, as every header tells what null does.

#include <type_traits>

#include "fuzz/api/world.h"

namespace orvex_fuzz {

/// Numbers, enumerations and flags.
template<class Type>
struct Argument {
    static Type draw(World&, Bytes& in) {
        if constexpr (std::is_same_v<Type, bool>)
            return in.flag();
        else if constexpr (std::is_floating_point_v<Type>)
            return static_cast<Type>(in.real());
        else if constexpr (std::is_enum_v<Type>)
            return static_cast<Type>(in.byte() < 230 ? int(in.byte() % 14) : in.integer());
        else if constexpr (sizeof(Type) == 8)
            return static_cast<Type>(in.size());
        else
            return static_cast<Type>(in.integer());
    }
};

template<>
struct Argument<orvex::vec2> {
    static orvex::vec2 draw(World&, Bytes& in) {
        orvex::vec2 v;
        v.x = static_cast<float>(in.real());
        v.y = static_cast<float>(in.real());
        return v;
    }
};

template<>
struct Argument<orvex::vec3> {
    static orvex::vec3 draw(World&, Bytes& in) {
        orvex::vec3 v;
        v.x = static_cast<float>(in.real());
        v.y = static_cast<float>(in.real());
        v.z = static_cast<float>(in.real());
        return v;
    }
};

template<>
struct Argument<orvex::vec4> {
    static orvex::vec4 draw(World& world, Bytes& in) {
        const orvex::vec3 v = Argument<orvex::vec3>::draw(world, in);
        return {v.x, v.y, v.z, in.flag() ? 1.0f : static_cast<float>(in.real())};
    }
};

template<>
struct Argument<orvex::quat> {
    static orvex::quat draw(World&, Bytes& in) {
        orvex::quat q;
        q.from_axis_angle(static_cast<float>(in.real()), orvex::vec4(0, 1, 0, 0), in.flag());
        return q;
    }
};

template<>
struct Argument<orvex::mat4> {
    static orvex::mat4 draw(World&, Bytes& in) {
        orvex::mat4 matrix;
        for (unsigned int count = in.below(4); count > 0; --count) {
            const unsigned int place = in.below(16);
            matrix.m[place] = static_cast<float>(in.real());
        }
        return matrix;
    }
};

template<>
struct Argument<orvex::Viewport> {
    static orvex::Viewport draw(World&, Bytes& in) {
        orvex::Viewport viewport;
        const int x = in.integer();
        const int y = in.integer();
        const int width = in.integer();
        viewport.set(x, y, width, in.integer());
        return viewport;
    }
};

template<>
struct Argument<const char*> {
    static const char* draw(World&, Bytes& in) { return in.text(); }
};

/// A pointer: null once in a while, else what `Place` finds.
template<class Type>
struct Place;

template<class Type>
struct Argument<Type*> {
    static Type* draw(World& world, Bytes& in) {
        if (in.byte() % 16 == 15)
            return nullptr;
        return Place<std::remove_const_t<Type>>::find(world, in);
    }
};

/// Nodes, and numbers in memory.
template<class Type>
struct Place {
    static Type* find(World& world, Bytes& in) {
        if constexpr (std::is_base_of_v<orvex::Node, Type>)
            return world.reach<Type>(in);
        else
            return reinterpret_cast<Type*>(world.scratch.data());
    }
};

template<>
struct Place<void> {
    static void* find(World& world, Bytes&) { return world.scratch.data(); }
};

/// One of a list, null without any.
template<class List>
auto one_of(const List& list, Bytes& in) -> typename List::value_type {
    return list.empty() ? nullptr : list[in.byte() % list.size()];
}

#define ORVEX_FUZZ_PLACE(Type, found)                                                              \
    template<>                                                                                     \
    struct Place<orvex::Type> {                                                                    \
        static orvex::Type* find([[maybe_unused]] World& world, [[maybe_unused]] Bytes& in) {      \
            return found;                                                                          \
        }                                                                                          \
    };
ORVEX_FUZZ_PLACE(Renderer,
                 world.second_renderer&& in.byte() > 200 ? world.second_renderer : world.renderer)
ORVEX_FUZZ_PLACE(Plugin, world.renderer)
ORVEX_FUZZ_PLACE(RenderTarget, one_of(world.targets, in))
ORVEX_FUZZ_PLACE(RenderWindow, one_of(world.windows, in))
ORVEX_FUZZ_PLACE(Kernel, orvex::Kernel::get())
ORVEX_FUZZ_PLACE(SceneMgr, orvex::SceneMgr::get())
ORVEX_FUZZ_PLACE(TextureMgr, orvex::TextureMgr::get())
ORVEX_FUZZ_PLACE(MaterialMgr, orvex::MaterialMgr::get())
ORVEX_FUZZ_PLACE(GpuProgramMgr, orvex::GpuProgramMgr::get())
ORVEX_FUZZ_PLACE(SceneRenderer, &world.scene_renderer)
ORVEX_FUZZ_PLACE(RayCaster, &world.ray_caster)
ORVEX_FUZZ_PLACE(UniformBufferData, &world.block)
ORVEX_FUZZ_PLACE(aux::Hud, world.hud.get())
ORVEX_FUZZ_PLACE(aux::TripodVisualizerCamera, world.camera_axes.get())
ORVEX_FUZZ_PLACE(aux::TripodVisualizerObject, world.object_axes.get())
ORVEX_FUZZ_PLACE(GpuProgramData, world.renderer->gpu_program_get_active_program())
#undef ORVEX_FUZZ_PLACE

#define ORVEX_FUZZ_RECORD(Type, Owner, getter)                                                     \
    template<>                                                                                     \
    struct Place<orvex::Type> {                                                                    \
        static orvex::Type* find(World& world, Bytes& in) {                                        \
            orvex::Owner* const owner = world.reach<orvex::Owner>(in);                             \
            return owner ? owner->getter() : nullptr;                                              \
        }                                                                                          \
    };
ORVEX_FUZZ_RECORD(MeshData, Mesh, get_mesh_data)
ORVEX_FUZZ_RECORD(PolylineData, Polyline, get_polyline_data)
ORVEX_FUZZ_RECORD(VertexPoolData, VertexPool, get_vertex_pool_data)
ORVEX_FUZZ_RECORD(TextureData, Texture, get_data_ptr)
ORVEX_FUZZ_RECORD(FontData, Font, get_font_data)
ORVEX_FUZZ_RECORD(Tripod, Object, get_tripod)
ORVEX_FUZZ_RECORD(ParticlePool, ParticleSystem, get_particle_pool)
#undef ORVEX_FUZZ_RECORD

template<>
struct Place<orvex::Scene> {
    static orvex::Scene* find(World&, Bytes& in) {
        orvex::SceneMgr& scenes = *orvex::SceneMgr::get();
        const unsigned long count = scenes.get_num_scenes();
        return count > 0 ? scenes.get_scene_by_index(in.byte() % count) : nullptr;
    }
};

template<>
struct Place<orvex::Window> {
    static orvex::Window* find(World& world, Bytes& in) {
        return world.views.empty() ? nullptr : world.views[in.byte() % world.views.size()].get();
    }
};

template<>
struct Place<orvex::Image> {
    static orvex::Image* find(World& world, Bytes& in) {
        const unsigned int choice = in.below(world.images.size() + 2);
        if (choice < world.images.size())
            return &world.images[choice];
        orvex::Texture* const texture = world.reach<orvex::Texture>(in);
        return texture ? texture->get_image_ptr() : nullptr;
    }
};

template<>
struct Place<orvex::Thread> {
    static orvex::Thread* find(World&, Bytes&) { return nullptr; }
};

/// What an argument of a parameter is kept in while the operation runs.
template<class Parameter>
using Kept = std::remove_cv_t<std::remove_reference_t<Parameter>>;

template<class Parameter>
Kept<Parameter> draw(World& world, Bytes& in) {
    return Argument<Kept<Parameter>>::draw(world, in);
}

} // namespace orvex_fuzz
