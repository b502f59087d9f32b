#pragma once

#include <string>
#include <string_view>

// The texts of installs that are shown to the user. describe() is declared beside each type of failure.
namespace tarnik::InstallTexts {

using Text = std::string_view;

inline constexpr const char* runtimeName = "Node.js";
inline constexpr const char* packageName = "tarnik's helper";

// The progress of an install.
inline constexpr Text runtimeStep = "Downloading Node.js {version}…";
inline constexpr Text packageStep = "Downloading tarnik's helper…";

std::string downloadingRuntime(const std::string& version);
std::string downloadingPackage();

// The node home.
inline constexpr Text notAbsolute = "The node folder must be a full path (starting with /), not {path}.";
inline constexpr Text reserved =
    "The node folder can't be {path}, which holds other things. Pick a new or empty folder.";
inline constexpr Text overlapsDefault =
    "The test node folder {path} can't be inside ~/.tarnik/node or contain it.";
inline constexpr Text notAFolder = "{path} isn't a folder. Nothing was installed.";
inline constexpr Text isALink = "{path} is a link, and tarnik leaves links alone. Nothing was installed.";
inline constexpr Text holdsOtherFiles =
    "{path} already holds files tarnik didn't put there. Move them out, then try again. Nothing was "
    "installed.";

// The release.
inline constexpr Text wrongKey = "the release is signed with key {key}, not this build's";
inline constexpr Text noKey = "this build carries no release key";
inline constexpr Text notJSON = "the release file is not JSON";
inline constexpr Text shape = "the release file is not in the expected shape";
inline constexpr Text badSignature = "the release signature does not verify";
inline constexpr Text wrongChannel = "the stable file carries another channel";

// The install.
inline constexpr Text noArtifact = "tarnik's helper isn't published for this Mac ({platform}) yet.";
inline constexpr Text download = "Couldn't download {what}. Check your connection and try again.";
inline constexpr Text checksum = "{what} didn't match its signed release. Nothing was installed.";
inline constexpr Text extract = "Couldn't unpack tarnik's helper ({reason}). Nothing was installed.";
inline constexpr Text notOurFolder = "{path} isn't tarnik-node's own folder. Nothing was installed.";
inline constexpr Text tooOld =
    "tarnik's helper {version} is older than this Mac may install. Nothing was installed.";
inline constexpr Text notPublished = "tarnik's helper isn't published for this Mac yet.";
inline constexpr Text incomplete = "tarnik's helper is missing a file. Nothing was installed.";

}  // namespace tarnik::InstallTexts
