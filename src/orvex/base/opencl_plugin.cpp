#include "orvex/base/opencl_plugin.h"

namespace orvex {

OpenCLPlugin::OpenCLPlugin() = default;
OpenCLPlugin::~OpenCLPlugin() = default;

} // namespace orvex
