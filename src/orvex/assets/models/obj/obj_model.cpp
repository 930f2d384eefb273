#include "orvex/assets/models/obj/private/obj_model.h"

namespace orvex {

OBJ_Name::OBJ_Name(std::string_view text) {
    text.copy(this->text, sizeof this->text - 1);
}

void OBJ_Material::set_library_defaults() {
    const OBJ_Material fresh;
    ambient = fresh.ambient;
    diffuse = fresh.diffuse;
    // Duller than a material that only "usemtl" names: a library is expected to say what shines.
    specular = {0.2f, 0.2f, 0.2f, 1.0f};
    specular_exp = fresh.specular_exp;
    opacity = fresh.opacity;
}

} // namespace orvex
