#pragma once

/// @file
/// `ParticleSystem`, particles that are born, move and die.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/records/geometry_enums.h"
#include "orvex/scene/object.h"

#include <memory>

namespace orvex {

/// A fixed number of particles that emitters bring to life, actions move and a pool of points
/// draws.
///
/// The host makes it with `new`, adds it to the node tree and ends it through `Node::release` or
/// `Node::kill`. `initialize` makes the particles, all dead. The system holds its emitters and
/// actions and ends them in `kill_emitter`, `kill_action`, `terminate` or `_cleanup`; those that a
/// host ended otherwise are passed over. A direct delete leaves them alive.
///
/// Each update is a step: the emitters bring dead particles to life in the order they were created,
/// the actions move the living in theirs, and all grow older. A step allocates nothing; making
/// particles, emitters and actions may throw `std::bad_alloc`, and leaves what was. The same
/// calls after the same `Math::srnd` give the same particles.
///
/// Particles are drawn in the space of their pool of points, which is no child of the system: the
/// system's own transform, grid and axes have no effect. They are drawn with the program that is
/// bound, and blended by their alpha if the host switches that on. Used on the thread that owns the
/// renderer's context.
///
/// @code
/// ParticleSystem* fountain = new ParticleSystem;
/// fountain->initialize(10000);
/// fountain->set_particle_lifetime(3.0f);
/// fountain->create_emitter()->set_particle_rate(2000.0f);
/// fountain->create_action(); // gravity
/// scene_root->add_child(fountain);
/// // each frame
/// scene_root->update(dt, nullptr);
/// program->bind(renderer);
/// if (fountain->get_num_alive_particles() > 0)
///     scene_root->render(renderer, nullptr);
/// @endcode
class ORVEX_API ParticleSystem : public Object {
public:
    /// A system without particles, emitters and actions.
    ParticleSystem();

    /// Frees the particles. GPU objects stay, and so do emitters and actions: `_cleanup` ends them.
    ~ParticleSystem() override;

    /// Does what `terminate` and `Object` do.
    bool _cleanup(Renderer* renderer) override;

    /// One step of `dt` seconds: `process_particle_emitters`, `process_particle_actions`,
    /// `update_particles_lifetime`.
    /// @return true
    bool _update(float dt) override;

    /// Draws the living particles: `vertex_pool_prepare_render`, then `vertex_pool_render`.
    void _render(Renderer* renderer) override;

    /// Switches the points, made by then, and the object between OpenGL 2 and 3 style. To be called
    /// behind `initialize`.
    void set_opengl_2_3_rendering_states(bool gl2, Node* node) override;

    /// Makes `count` particles, all dead. With particles there already, nothing happens.
    /// @return false, logging an error, when there is no memory
    bool initialize(unsigned long count);

    /// Releases emitters and actions and frees the particles. The system can be used anew.
    /// @param renderer  ends the GPU objects of the points; null leaves these alone
    void terminate(Renderer* renderer);

    /// @name Steps
    /// What a step is made of. Without particles they do nothing and give 0.
    /// @{

    /// Lets each emitter bring to life what is due. @return how many came to life
    int process_particle_emitters(float dt);
    /// Lets each action move the living.
    void process_particle_actions(float dt);
    /// Takes `dt` seconds off the life of every particle, dead ones included.
    void update_particles_lifetime(float dt);

    /// Lets one emitter bring to life what is due, in the first dead particles from the pool's
    /// `scan_position` on. What finds no dead particle is lost.
    /// @param emitter  this system's or any other
    /// @return how many came to life
    int spawn_particles_emitter(ParticleEmitter& emitter, float dt);
    /// @}

    /// Number of particles with life left.
    unsigned long get_num_alive_particles() const;

    /// @name Emitters
    /// @{
    ParticleEmitter* create_emitter();          ///< a new one behind the others; the system ends it
    unsigned long get_num_emitters() const;     ///< length of the list
    ParticleEmitter* get_emitter(int id) const; ///< by node id; null if there is none
    /// By order of creation; null out of range or if it was ended otherwise.
    ParticleEmitter* get_emitter_by_index(int i) const;
    /// Takes an emitter off the list and releases it. @return false if there is none of that id
    bool kill_emitter(Renderer* renderer, int id);
    /// @}

    /// @name Actions
    /// @{
    ParticleAction* create_action();          ///< a new one behind the others; the system ends it
    unsigned long get_num_actions() const;    ///< length of the list
    ParticleAction* get_action(int id) const; ///< by node id; null if there is none
    /// By order of creation; null out of range or if it was ended otherwise.
    ParticleAction* get_action_by_index(int i) const;
    /// Takes an action off the list and releases it. @return false if there is none of that id
    bool kill_action(Renderer* renderer, int id);
    /// @}

    /// @name Drawing
    /// @{

    /// Writes the living particles into the first of the points, white, and fading out over their
    /// lives by alpha. With none alive the points keep what they were last and all of them are
    /// drawn: don't draw such a system.
    void vertex_pool_prepare_render();
    /// Draws the points as they are. Nothing without particles or for null.
    void vertex_pool_render(Renderer* renderer);
    /// @}

    /// Seconds that particles live from now on; 1 at first. Those alive keep the life they have,
    /// and fade by the new one.
    void set_particle_lifetime(float seconds);
    float get_particle_lifetime() const; ///< seconds, as set; 1 at first

    /// The particles, owned by the system; null before `initialize`.
    ParticlePool* get_particle_pool() const;

private:
    struct ParticleSystemData;

    std::unique_ptr<ParticleSystemData> data;
    std::unique_ptr<ParticlePool> pool; ///< null before `initialize`; ends before the rest
};

} // namespace orvex
