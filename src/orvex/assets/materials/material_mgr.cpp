#include "orvex/assets/materials/material_mgr.h"

#include "orvex/assets/materials/material.h"
#include "orvex/base/private/misuse.h"

namespace orvex {

/// Everything a manager of resources needs stands in its base.
struct MaterialMgr::MaterialMgrData {};

MaterialMgr* MaterialMgr::m_ptr_instance = nullptr;

MaterialMgr* MaterialMgr::get() {
    static MaterialMgr* const instance = m_ptr_instance = new MaterialMgr;
    return instance;
}

MaterialMgr::MaterialMgr()
    : data(std::make_unique<MaterialMgrData>()) {}

MaterialMgr::~MaterialMgr() = default;

bool MaterialMgr::start(Renderer* renderer) {
    ResourceMgr::start(renderer);
    return true;
}

bool MaterialMgr::stop(Renderer* renderer) {
    ResourceMgr::stop(renderer);
    return true;
}

Material* MaterialMgr::create_material(const char* name) {
    auto material = std::make_unique<Material>();
    material->set_name(name);
    add_resource(material.get());
    return material.release();
}

bool MaterialMgr::add_material(Material* material) {
    return material ? add_resource(material)
                    : misuse("MaterialMgr::add_material", "a null material");
}

} // namespace orvex
