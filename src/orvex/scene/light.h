#pragma once

/// @file
/// `Light`, and the record that it keeps.

#include <memory>

#include "orvex/api.h"
#include "orvex/base/owned_text.h"
#include "orvex/math/vec4.h"
#include "orvex/scene/object.h"

namespace orvex {

/// What a light holds beside its place in the scene. Belongs to its `Light`.
struct LightData {
    unsigned int index = 0;                ///< number of the light
    float radius = 10000.0f;               ///< distance at which its reach ends
    OwnedText position_uniform_name;       ///< "orvex_light_position" at first
    OwnedText radius_uniform_name;         ///< "orvex_light_radius" at first
    vec4 ambient{0.2f, 0.2f, 0.2f, 1.0f};  ///< red, green, blue, alpha
    OwnedText ambient_uniform_name;        ///< "orvex_light_ambient" at first
    vec4 diffuse{1.0f, 1.0f, 0.8f, 1.0f};  ///< red, green, blue, alpha
    OwnedText diffuse_uniform_name;        ///< "orvex_light_diffuse" at first
    vec4 specular{0.6f, 0.6f, 0.6f, 1.0f}; ///< red, green, blue, alpha
    OwnedText specular_uniform_name;       ///< "orvex_light_specular" at first
};

/// A point light: an object with a radius and three colours, which `bind` hands to what draws next.
///
/// Made with `new` and ended through its references, like every node. It shines on nothing by
/// itself: the host binds it after activating a program and before drawing. As an object it draws
/// only its debug grid and axes.
///
/// Its position is that of its transform, in the space of its parent. Colours are red, green, blue
/// and alpha, usually within 0 and 1; nothing is clamped. Used on the thread that owns the
/// renderer's context.
///
/// @code
/// orvex::Light* lamp = new orvex::Light;
/// lamp->set_position(0.0f, 5.0f, 2.0f);
/// program->bind(renderer);
/// lamp->bind(renderer); // orvex_light_position_0, orvex_light_radius_0, …
/// mesh->render(renderer, nullptr);
/// @endcode
class ORVEX_API Light : public Object {
public:
    /// Number 0, radius 10000, a slightly warm white.
    Light();
    ~Light() override;

    /// The node as a light, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a node that is none
    static Light* from_node(Node* node);

    /// The record, owned by this light. Never null.
    LightData* get_light_data();
    const LightData* get_light_data() const; ///< the record, to read only

    /// Number of the light: the suffix of its uniform names, and the light of the fixed pipeline
    /// that takes its colours.
    /// @param index  0 to 7 where the fixed pipeline is used, which refuses any other; uniforms
    ///               take all
    void set_index(unsigned int index);
    unsigned int get_index() const; ///< see the setter

    /// Distance at which `Kernel::compute_object_vertex_color` reaches zero.
    /// @param radius  in units of the world, above 0; kept and sent as it is
    void set_radius(float radius);
    float get_radius() const; ///< see the setter

    /// @name Colours
    /// @{

    /// Stores the ambient colour.
    void set_ambient(const vec4& color);
    /// As the form of one vector.
    void set_ambient(float r, float g, float b, float a);
    const vec4& get_ambient() const; ///< as set; (0.2, 0.2, 0.2, 1) at first
    /// Stores the diffuse colour.
    void set_diffuse(const vec4& color);
    /// As the form of one vector.
    void set_diffuse(float r, float g, float b, float a);
    const vec4& get_diffuse() const; ///< as set; (1, 1, 0.8, 1) at first
    /// Stores the specular colour.
    void set_specular(const vec4& color);
    /// As the form of one vector.
    void set_specular(float r, float g, float b, float a);
    const vec4& get_specular() const; ///< as set; (0.6, 0.6, 0.6, 1) at first
    /// @}

    /// @name Uniform names
    /// Without the suffix that `bind` adds: "_" and the number of the light. Setters copy the text,
    /// and null unsets the name. Getters give the light's own copy, or null.
    /// @{

    /// Of the local position.
    void set_position_uniform_name(const char* name);
    const char* get_position_uniform_name() const; ///< "orvex_light_position" at first
    /// Of the radius.
    void set_radius_uniform_name(const char* name);
    const char* get_radius_uniform_name() const; ///< "orvex_light_radius" at first
    /// Of the ambient colour, then of the specular one.
    void set_ambient_uniform_name(const char* name);
    const char* get_ambient_uniform_name() const; ///< "orvex_light_ambient" at first
    /// Of the diffuse colour.
    void set_diffuse_uniform_name(const char* name);
    const char* get_diffuse_uniform_name() const; ///< "orvex_light_diffuse" at first
    /// Kept, but `bind` never reads it.
    void set_specular_uniform_name(const char* name);
    const char* get_specular_uniform_name() const; ///< "orvex_light_specular" at first
    /// @}

    /// Hands the light to what draws next.
    ///
    /// The three colours go to the fixed pipeline if `get_use_fixed_mvp_matrices_state()` is set.
    /// An active program then gets five uniforms, in this order and each only if its name is set:
    /// the local position, the radius, the ambient colour, the diffuse colour, and the specular
    /// colour under the name of the ambient one. After a bind the ambient uniform therefore holds
    /// the specular colour. A uniform name is cut to 127 characters, suffix included.
    /// @param renderer  null does nothing
    void bind(Renderer* renderer);

private:
    std::unique_ptr<LightData> data;
};

} // namespace orvex
