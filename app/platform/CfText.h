#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/platform/CfOwner.h"

// Converts texts and paths to and from Core Foundation.
namespace tarnik::CfText {

// Returns null if the text isn't UTF-8.
CfOwner<CFStringRef> of(std::string_view text);

// Returns std::nullopt for null and for an object that isn't a string.
std::optional<std::string> text(CFTypeRef value);

CfOwner<CFURLRef> folderURL(std::string_view path);

// Returns std::nullopt for null and for a URL that isn't a file URL.
std::optional<std::string> path(CFURLRef url);

}  // namespace tarnik::CfText
