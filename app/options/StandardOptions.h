#pragma once

#include "app/options/CommandOptions.h"

// Options that several commands have, or a command and the program itself.
namespace tarnik::StandardOptions {

inline constexpr OptionEntry json{.name = "json", .summary = "print JSON"};
inline constexpr OptionEntry yes{.name = "yes", .letter = 'y', .summary = "don't ask for confirmation"};
inline constexpr OptionEntry nodeHome{
    .name = "node-home", .value = "DIR", .summary = "use the helper in DIR instead of ~/.tarnik/node"};
inline constexpr OptionEntry bundle{.name = "bundle",
                                    .value = "DIR",
                                    .summary = "use the settings and the driver of this bundle folder",
                                    .audience = OptionEntry::Audience::developmentBuilds};

inline constexpr OptionEntry keepAwake{.name = "keep-awake",
                                       .value = "FILE",
                                       .summary = "the program by which the helper keeps the computer awake",
                                       .audience = OptionEntry::Audience::developmentBuilds};
inline constexpr OptionEntry connectedAfter{
    .name = "connected-after",
    .value = "SECONDS",
    .summary = "count a pairing as connected after this time; the default is 15",
    .audience = OptionEntry::Audience::developers};

}  // namespace tarnik::StandardOptions
