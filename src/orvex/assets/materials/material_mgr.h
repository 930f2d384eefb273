#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/resource_mgr.h"

namespace orvex {

/// The process-wide registry of materials.
///
/// Made on first use, never destroyed; the kernel starts and stops it with a null renderer. It
/// holds one reference on each material. Nothing locks.
///
/// @code
/// Material* material = MaterialMgr::get()->create_material("brick");
/// MaterialMgr::get()->release_resource(renderer, material, nullptr);
/// @endcode
class ORVEX_API MaterialMgr : public ResourceMgr {
public:
    /// The one manager, made at the first call.
    static MaterialMgr* get();

    MaterialMgr(const MaterialMgr&) = delete;
    MaterialMgr& operator=(const MaterialMgr&) = delete;
    ~MaterialMgr() override;

    /// @return true
    bool start(Renderer* renderer) override;
    /// Releases all materials. @return true
    bool stop(Renderer* renderer) override;

    /// Makes and registers a material. A null name leaves the default one. Never null.
    Material* create_material(const char* name);
    /// Registers a material. @return false for null
    bool add_material(Material* material);

private:
    struct MaterialMgrData;

    MaterialMgr();

    static MaterialMgr* m_ptr_instance;
    std::unique_ptr<MaterialMgrData> data;
};

} // namespace orvex
