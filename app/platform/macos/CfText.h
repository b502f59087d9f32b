#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/platform/macos/CfOwner.h"

// Texts and paths on their way to Core Foundation and back.
namespace tarnik::CfText {

// Null for what isn't UTF-8.
CfOwner<CFStringRef> of(std::string_view text);

// None for null, and for any other kind of object.
std::optional<std::string> text(CFTypeRef value);

CfOwner<CFURLRef> folderURL(std::string_view path);

// None for null, and for what isn't a file's.
std::optional<std::string> path(CFURLRef url);

}  // namespace tarnik::CfText
