#include "orvex/base/gpu_monitor.h"

namespace orvex {

GpuMonitor::GpuMonitor() = default;
GpuMonitor::~GpuMonitor() = default;

} // namespace orvex
