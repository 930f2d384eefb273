#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/scene/node.h"

namespace orvex {

/// A node whose life is tied to a manager: GPU programs, textures, materials.
///
/// Made with `new`, or by its manager, which holds one reference; every other holder adds its own
/// with `add_ref`. The count alone decides: whichever release comes last ends the resource. One
/// that ends while it stands in a manager leaves that manager's list.
class ORVEX_API Resource : public Node {
public:
    /// In no manager's list.
    Resource();
    ~Resource() override;

    /// The private record, which the engine alone defines.
    struct ResourceData;

private:
    std::unique_ptr<ResourceData> resource_data;
};

} // namespace orvex
