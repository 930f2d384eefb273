/// @file
/// Kernel: life, version and platform. The order of start and stop is what hosts see in the log:
/// the plugins first, then the managers of what needs a renderer later; on stop the managers first,
/// since what they hold may belong to a codec.

#include "orvex/kernel/kernel.h"

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/global_id.h"
#include "orvex/base/log_mgr.h"
#include "orvex/base/private/plugin_end.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/kernel/private/kernel_data.h"

namespace orvex {

namespace {

constexpr char engine_name[] = "orvex";
constexpr char codename[] = "Brell";
constexpr int version_major = 0;
constexpr int version_minor = 9;
constexpr int version_patch = 0;
constexpr int version_build = 0;

} // namespace

Kernel* Kernel::get() {
    static Kernel* const instance = new Kernel;
    return instance;
}

Kernel::Kernel()
    : data(std::make_unique<cKernelData>()) {
    listen_to_plugin_ends([](Plugin* plugin) { get()->forget(plugin); });
}

Kernel::~Kernel() = default;

bool Kernel::start() {
    if (started)
        return true;
    LogMgr* const log = LogMgr::get();
    log->tracef_debug("%s v%d.%d.%d (codename: %s) is starting up...", engine_name, version_major,
                      version_minor, version_patch, codename);
    init_platform_information();
    NewPlugins plugins;
    load_core_plugins();
    GpuProgramMgr::get()->start(nullptr);
    MaterialMgr::get()->start(nullptr);
    TextureMgr::get()->start(nullptr);
    TextureMgr::get()->register_all_image_codec_plugins();
    log->tracef_debug("%s started up ok.", engine_name);
    started = true;
    return plugins.keep();
}

namespace {

/// Raises a flag to the end of its scope.
class StopMark {
public:
    explicit StopMark(bool& flag_of_kernel)
        : flag(flag_of_kernel) {
        flag = true;
    }
    ~StopMark() { flag = false; }
    StopMark(const StopMark&) = delete;
    StopMark& operator=(const StopMark&) = delete;

private:
    bool& flag;
};

} // namespace

bool Kernel::stop() {
    if (!started || data->stopping)
        return true;
    // Taken back also when memory runs out on the way: the next call then goes on.
    const StopMark mark(data->stopping);
    MaterialMgr::get()->stop(nullptr);
    TextureMgr::get()->stop(nullptr);
    GpuProgramMgr::get()->stop(nullptr);
    unload_all_plugins();
    plugin_search_path_clear();
    LogMgr::get()->tracef_debug("%s stopped ok.", engine_name);
    started = false;
    return true;
}

bool Kernel::is_stopping() const {
    return data->stopping;
}

int Kernel::get_version_major() const {
    return version_major;
}

int Kernel::get_version_minor() const {
    return version_minor;
}

int Kernel::get_version_patch() const {
    return version_patch;
}

int Kernel::get_version_build() const {
    return version_build;
}

const char* Kernel::get_codename() const {
    return codename;
}

void Kernel::init_platform_information() {
    data->platform = read_platform_information();
}

int Kernel::get_platform_bitness() const {
    return Is64BitApp() ? 64 : 32;
}

const char* Kernel::get_platform_name() const {
    return data->platform.platform_name.c_str();
}

namespace {

void give(int* target, int value) {
    if (target)
        *target = value;
}

} // namespace

void Kernel::get_osx_version(int* major, int* minor, int* patch) const {
    give(major, data->platform.osx.major);
    give(minor, data->platform.osx.minor);
    give(patch, data->platform.osx.patch);
}

const char* Kernel::get_osx_codename() const {
    return data->platform.osx.codename.c_str();
}

const char* Kernel::get_osx_kern_osrelease() const {
    return data->platform.osx_kernel_release.c_str();
}

const char* Kernel::get_linux_sysname() const {
    return data->platform.linux_sysname.c_str();
}

const char* Kernel::get_linux_release() const {
    return data->platform.linux_release.c_str();
}

const char* Kernel::get_linux_version() const {
    return data->platform.linux_version.c_str();
}

const char* Kernel::get_linux_machine() const {
    return data->platform.linux_machine.c_str();
}

} // namespace orvex
