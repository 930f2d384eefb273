#include "orvex/assets/materials/material_mgr.h"

#include "orvex/assets/materials/material.h"

namespace orvex {

/// Everything a manager of resources needs stands in its base.
struct MaterialMgr::MaterialMgrData {};

MaterialMgr* MaterialMgr::m_ptr_instance = nullptr;

MaterialMgr* MaterialMgr::get() {
    static MaterialMgr* const instance = m_ptr_instance = new MaterialMgr;
    return instance;
}

MaterialMgr::MaterialMgr()
    : data_(new MaterialMgrData) {}

MaterialMgr::~MaterialMgr() {
    delete data_;
}

bool MaterialMgr::start(Renderer* renderer) {
    ResourceMgr::start(renderer);
    return true;
}

bool MaterialMgr::stop(Renderer* renderer) {
    ResourceMgr::stop(renderer);
    return true;
}

Material* MaterialMgr::create_material(const char* name) {
    auto* const material = new Material;
    material->set_name(name);
    add_resource(material);
    return material;
}

bool MaterialMgr::add_material(Material* material) {
    return add_resource(material);
}

} // namespace orvex
