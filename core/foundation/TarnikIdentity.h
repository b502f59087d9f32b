#pragma once

#include <string_view>

// The product's fixed identifiers.
namespace tarnik::TarnikIdentity {

inline constexpr std::string_view appName = "tarnik";
inline constexpr std::string_view bundleIdentifier = "com.tarnik.node";
inline constexpr std::string_view urlScheme = "tarnik";
inline constexpr std::string_view installPath = "/Applications/tarnik.app";
inline constexpr std::string_view nodeLaunchdLabel = "com.tarnik.node";

// The name of the user default that stores a chosen node folder.
inline constexpr std::string_view nodeHomeDefaultsKey = "NodeHome";

}  // namespace tarnik::TarnikIdentity
