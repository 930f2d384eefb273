// The manager of resources: a list in order of adding, which may change while it is walked.
//
// Manager and resource name each other, so that either may end first; `unlink_resource` ends the
// link. Releasing a resource can end others of the same list by way of their hooks. While any
// walk runs, an entry that goes becomes null in its place, and the outermost walk closes the
// gaps.

#include "orvex/scene/resource_mgr.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "orvex/base/private/misuse.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/node_handle.h"
#include "orvex/scene/private/resource_data.h"

namespace orvex {

void Resource::ResourceData::forget(const ResourceMgr& manager) {
    managers.erase(std::remove(managers.begin(), managers.end(), &manager), managers.end());
}

void ResourceMgr::ResourceMgrData::unlist(const Resource& resource) {
    auto entry = resources.begin() + static_cast<std::ptrdiff_t>(walk_position);
    if (walks == 0 && !resources.empty() && resources.back() == &resource)
        return resources.pop_back(); // what came last goes first where a load is undone
    if (walks == 0 || *entry != &resource)
        entry = std::find(resources.begin(), resources.end(), &resource);
    if (entry == resources.end())
        return;
    if (walks > 0)
        *entry = nullptr;
    else
        resources.erase(entry);
}

void unlink_resource(const ResourceMgr& manager, const Resource& resource) {
    Resource::ResourceData::of(resource).forget(manager);
    ResourceMgr::ResourceMgrData::of(manager).unlist(resource);
}

ResourceMgr::ResourceMgr()
    : mgr_data(std::make_unique<ResourceMgrData>()) {}

ResourceMgr::~ResourceMgr() {
    for (Resource* resource : mgr_data->resources)
        if (resource)
            Resource::ResourceData::of(*resource).forget(*this);
}

bool ResourceMgr::start(Renderer*) {
    return true;
}

bool ResourceMgr::stop(Renderer* renderer) {
    release_all_resources(renderer, nullptr);
    return true;
}

namespace {

/// A resource that belongs to another renderer stays; a null renderer releases anything.
bool may_release(Renderer* renderer, Resource& resource) {
    const int owner = resource.get_renderer_id();
    return owner < 1 || !renderer || owner == renderer->getid();
}

} // namespace

int ResourceMgr::release_resource(Renderer* renderer, Resource* resource, Thread*) {
    if (!resource || !may_release(renderer, *resource))
        return 0;
    const NodeHandle alive(resource);
    const int remaining = resource->release(renderer, nullptr);
    if (alive.get())
        unlink_resource(*this, *resource);
    return remaining;
}

bool ResourceMgr::release_all_resources(Renderer* renderer, Thread*) {
    std::vector<Resource*>& resources = mgr_data->resources;
    const std::size_t outer_position = mgr_data->walk_position;
    ++mgr_data->walks;
    // What the end of one adds waits for the next walk: each could bring another for ever.
    const std::size_t count = resources.size();
    for (std::size_t i = 0; i < count; ++i) {
        mgr_data->walk_position = i;
        if (resources[i] && may_release(renderer, *resources[i]))
            ResourceMgr::release_resource(renderer, resources[i], nullptr);
    }
    mgr_data->walk_position = outer_position;
    if (--mgr_data->walks == 0)
        resources.erase(std::remove(resources.begin(), resources.end(), nullptr), resources.end());
    return true;
}

bool ResourceMgr::add_resource(Resource* resource) {
    if (!resource)
        return misuse("ResourceMgr::add_resource", "a null resource");
    std::vector<ResourceMgr*>& managers = Resource::ResourceData::of(*resource).managers;
    if (std::find(managers.begin(), managers.end(), this) != managers.end())
        return true;
    // What may find no memory comes first, so that a failure leaves neither entry nor reference.
    managers.push_back(this);
    try {
        mgr_data->resources.push_back(resource);
    } catch (const std::bad_alloc&) {
        managers.pop_back();
        throw;
    }
    resource->add_ref();
    return true;
}

bool ResourceMgr::has_resource(Resource* resource) const {
    if (!resource)
        return false;
    const std::vector<Resource*>& resources = mgr_data->resources;
    return std::find(resources.begin(), resources.end(), resource) != resources.end();
}

bool ResourceMgr::has_resource(int id) const {
    return get_resource(id);
}

unsigned long ResourceMgr::get_num_resources() const {
    return mgr_data->resources.size();
}

Resource* ResourceMgr::get_resource_by_index(unsigned long index) const {
    return index < mgr_data->resources.size() ? mgr_data->resources[index] : nullptr;
}

namespace {

template<class Matches>
Resource* first_match(const std::vector<Resource*>& resources, Matches matches) {
    const auto found = std::find_if(resources.begin(), resources.end(), [&](const Resource* entry) {
        return entry && matches(*entry);
    });
    return found == resources.end() ? nullptr : *found;
}

} // namespace

Resource* ResourceMgr::get_resource(int id) const {
    return first_match(mgr_data->resources,
                       [id](const Resource& resource) { return resource.getid() == id; });
}

Resource* ResourceMgr::get_resource(const char* name) const {
    if (!name)
        return nullptr;
    return first_match(mgr_data->resources, [name](const Resource& resource) {
        return std::strcmp(resource.get_name(), name) == 0;
    });
}

bool ResourceMgr::remove_resource(Renderer* renderer, Resource* resource) {
    if (!resource)
        return misuse("ResourceMgr::remove_resource", "a null resource");
    unlink_resource(*this, *resource);
    if (may_release(renderer, *resource))
        resource->release(renderer, nullptr);
    return true;
}

} // namespace orvex
