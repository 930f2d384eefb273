#pragma once

/// @file
/// The private records of resources and their managers, which know of each other.

#include <cstddef>
#include <vector>

#include "orvex/scene/resource.h"
#include "orvex/scene/resource_mgr.h"

namespace orvex {

struct Resource::ResourceData {
    /// The managers that list the resource. One that ends takes itself out of their lists.
    std::vector<ResourceMgr*> managers;
};

struct ResourceMgr::ResourceMgrData {
    /// In order of adding. While a walk runs an entry that is dropped becomes null instead of
    /// moving those behind it.
    std::vector<Resource*> resources;
    int walks = 0;
    /// Where the innermost walk stands: the resource it releases is the likeliest to be dropped.
    std::size_t walk_position = 0;
};

/// Opens both records to each other's class.
struct ResourceAccess {
    static std::vector<ResourceMgr*>& managers(const Resource& resource) {
        return resource.resource_data->managers;
    }
    /// Drops the link from a resource to a manager.
    static void forget_manager(Resource& resource, const ResourceMgr& manager);
    /// Takes the resource out of the manager's list, keeping the order; nothing if it isn't there.
    static void unlist(ResourceMgr& manager, Resource& resource);
};

} // namespace orvex
