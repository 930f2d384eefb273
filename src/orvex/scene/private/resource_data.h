#pragma once

/// @file
/// The private records of resources and their managers, which know of each other.
///
/// A resource stands in a manager's list exactly when the manager stands in the resource's:
/// whichever of the two ends first takes itself out of the other's list.

#include <cstddef>
#include <vector>

#include "orvex/scene/resource.h"
#include "orvex/scene/resource_mgr.h"

namespace orvex {

struct Resource::ResourceData {
    static ResourceData& of(const Resource& resource) { return *resource.resource_data; }

    /// Drops the link to a manager.
    void forget(const ResourceMgr& manager);

    /// The managers that list the resource.
    std::vector<ResourceMgr*> managers;
};

struct ResourceMgr::ResourceMgrData {
    static ResourceMgrData& of(const ResourceMgr& manager) { return *manager.mgr_data; }

    /// Takes the resource out of the list, keeping the order; nothing if it isn't there.
    void unlist(const Resource& resource);

    /// In order of adding. While a walk runs an entry that is dropped becomes null instead of
    /// moving those behind it.
    std::vector<Resource*> resources;
    int walks = 0;
    /// Where the innermost walk stands: the resource it releases is the likeliest to be dropped.
    std::size_t walk_position = 0;
};

/// Ends the link between the two, from both ends.
void unlink_resource(const ResourceMgr& manager, const Resource& resource);

} // namespace orvex
