#pragma once

namespace orvex::kit {

/// Whether new files go without a name where the file system takes such; true unless a test looks
/// at the other way.
void use_unnamed_files(bool use);

} // namespace orvex::kit
