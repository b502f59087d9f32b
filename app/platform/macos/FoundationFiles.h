#pragma once

#include <expected>
#include <string>

#include "core/foundation/Files.h"

// What Foundation does to whole bundles. From any thread; both take as long as the disk does.
namespace tarnik::FoundationFiles {

// With permissions, dates and extended attributes; a link stays a link. Refuses a place that is taken.
std::expected<void, SystemError> copy(const std::string& from, const std::string& to);

// Into the trash of the person; may ask for a password.
std::expected<void, SystemError> trash(const std::string& path);

}  // namespace tarnik::FoundationFiles
