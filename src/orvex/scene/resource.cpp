#include "orvex/scene/resource.h"

#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/resource_data.h"

namespace orvex {

Resource::Resource()
    : resource_data(std::make_unique<ResourceData>()) {
    set_type(NODE_TYPE_RESOURCE);
    NodeData::of(*this).resource = this;
}

Resource::~Resource() {
    while (!resource_data->managers.empty())
        unlink_resource(*resource_data->managers.back(), *this);
}

} // namespace orvex
