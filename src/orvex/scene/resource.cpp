#include "orvex/scene/resource.h"

#include "orvex/scene/private/resource_data.h"

namespace orvex {

Resource::Resource()
    : resource_data(new ResourceData) {
    set_type(NODE_TYPE_RESOURCE);
}

Resource::~Resource() {
    while (!resource_data->managers.empty())
        ResourceAccess::unlist(*resource_data->managers.back(), *this);
    delete resource_data;
}

} // namespace orvex
