#pragma once

/// @file
/// What is alive while an input is played: the engine, and what a host holds of it. The host obeys
/// what the public headers ask of one: it holds a reference on each node that it keeps a pointer
/// to, takes pointers back from whoever doesn't count them before it ends what they point to, and
/// ends all before the renderer.

#include <array>
#include <memory>
#include <type_traits>
#include <vector>

#include <orvex/orvex.h>

#include "fuzz/support/bytes.h"

namespace orvex_fuzz {

/// What the renderer of a world draws with.
struct Stage {
    int gl_major = 2; ///< version that windows ask for
    int gl_minor = 1;
    bool core = false;
};

class World {
public:
    /// Starts the engine, with a renderer and one window.
    explicit World(const Stage& stage);
    /// Ends everything, and the program where something is left.
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Ends everything and begins anew.
    void restart();

    /// Takes a fresh node over, with a reference of the host's. One too many is ended at once.
    void hold(orvex::Node* node);
    /// Gives the host's reference on a node back.
    void release(Bytes& in, bool with_renderer);
    /// Gives a node back as a scene does with its own; resources go the other way.
    void release_as_scene(Bytes& in);
    void kill_scene(Bytes& in);
    void kill_target(Bytes& in);
    void kill_window(Bytes& in);
    void make_window(Bytes& in);
    void make_view();
    /// One that draws in the same windows; once.
    void make_second_renderer();

    /// A node of this type that the host holds; null if there is none.
    template<class Type>
    Type* held(Bytes& in) const {
        const unsigned int first = in.byte();
        for (std::size_t i = 0; i < nodes.size(); ++i)
            if (auto* const node = dynamic_cast<Type*>(nodes[(first + i) % nodes.size()]))
                return node;
        return nullptr;
    }

    /// A node of this type that the host holds, or that stands below one; null if there is none. To
    /// be used at once: nobody promises that one below lives on.
    template<class Type>
    Type* reach(Bytes& in) const {
        const unsigned int way = in.byte();
        if (nodes.empty() || way < 128)
            return held<Type>(in);
        orvex::Node* node = nodes[in.byte() % nodes.size()];
        for (unsigned int i = 0; node && i < way % 3; ++i) {
            const unsigned long count = node->get_num_children();
            if (orvex::Node* const child = count > 0 ? node->get_child(in.byte() % count) : nullptr)
                node = child;
        }
        auto* const found = dynamic_cast<Type*>(node);
        return found ? found : held<Type>(in);
    }

    orvex::Renderer* renderer = nullptr;
    orvex::Renderer* second_renderer = nullptr; ///< null until asked for
    std::vector<orvex::Node*> nodes;            ///< each with a reference of the host's
    std::vector<orvex::RenderTarget*> targets;
    std::vector<orvex::RenderWindow*> windows;
    std::vector<std::unique_ptr<orvex::Window>> views;
    std::array<orvex::Image, 2> images;
    orvex::SceneRenderer scene_renderer;
    std::unique_ptr<orvex::aux::Hud> hud;
    std::unique_ptr<orvex::aux::TripodVisualizerCamera> camera_axes;
    std::unique_ptr<orvex::aux::TripodVisualizerObject> object_axes;
    orvex::RayCaster ray_caster;
    orvex::UniformBufferData block;
    orvex::RayObjectIntersection intersection;
    /// Room for every array that an operation reads or writes.
    alignas(64) std::array<unsigned char, 8192> scratch{};

private:
    Stage stage;

    void start();
    void stop();
    orvex::Node* take(Bytes& in);
};

} // namespace orvex_fuzz
