#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Base of the managers of GPU programs, textures and materials: an ordered list of resources, and
/// the rule that decides which of them a renderer may release.
///
/// The renderer rule: a resource may be released for a renderer unless the resource belongs to
/// another one, that is, its `get_renderer_id` is 1 or more, the renderer is not null, and the id
/// is not that of the renderer. A null renderer releases anything.
///
/// Each entry holds one reference. Nothing locks, and the `Thread*` arguments are not read: a call
/// from a worker thread goes the same way as one from the main thread. Destroying a manager gives
/// no reference back; `stop` does.
///
/// @code
/// mgr->add_resource(resource);
/// mgr->release_resource(renderer, resource, nullptr);
/// @endcode
class ORVEX_API ResourceMgr {
public:
    /// An empty list.
    ResourceMgr();
    ResourceMgr(const ResourceMgr&) = delete;
    ResourceMgr& operator=(const ResourceMgr&) = delete;
    virtual ~ResourceMgr();

    /// Does nothing in the base. @return true
    virtual bool start(Renderer* renderer);

    /// Runs `release_all_resources`. @return true
    virtual bool stop(Renderer* renderer);

    /// Releases a resource for `renderer` if the renderer rule allows it, and drops its entry. A
    /// resource that stands in no manager can be released through any.
    /// @return the remaining count; 0 if the resource ended, for null, and if the rule forbids it,
    ///         in which case the entry stays
    virtual int release_resource(Renderer* renderer, Resource* resource, Thread* thread);

    /// Releases, first to last, every resource the renderer rule allows; the others stay, in their
    /// order, and so do those that are added meanwhile. @return true
    virtual bool release_all_resources(Renderer* renderer, Thread* thread);

    /// Appends the resource and adds a reference, unless it is there already.
    /// @return false for null
    bool add_resource(Resource* resource);

    /// Whether this very resource is in the list; false for null.
    [[nodiscard]] bool has_resource(Resource* resource) const;
    /// Whether a resource with that node id is in the list. A literal 0 is an id.
    [[nodiscard]] bool has_resource(int id) const;

    /// Number of entries in the list.
    unsigned long get_num_resources() const;
    /// Entry by position.
    /// @param index  from 0, in order of adding
    /// @return null past the end
    Resource* get_resource_by_index(unsigned long index) const;
    /// First entry with that node id, null if there is none. A literal 0 is an id.
    [[nodiscard]] Resource* get_resource(int id) const;
    /// First entry with that name, compared byte for byte; null if there is none or for null.
    [[nodiscard]] Resource* get_resource(const char* name) const;

    /// Drops the entry, if there is one, and releases the resource if the renderer rule allows it,
    /// in the list or not. If the rule forbids it, the reference stays and is the caller's to give
    /// back.
    /// @return false for null
    bool remove_resource(Renderer* renderer, Resource* resource);

    /// The private record, which the engine alone defines.
    struct ResourceMgrData;

private:
    std::unique_ptr<ResourceMgrData> mgr_data;
};

} // namespace orvex
