#pragma once

#include <optional>
#include <string>

namespace tarnik {

// What the build wrote into its bundle's Info.plist for the update framework, which reads it there itself:
// whether there are to be updates.
//
// A value; read once at start.
struct UpdateSettings {
    std::optional<std::string> feedURL;    // where new versions are announced
    std::optional<std::string> publicKey;  // what they are signed with

    bool isComplete() const { return feedURL && publicKey; }

    // Reads Contents/Info.plist of the bundle folder. What is absent, not text or empty counts as not set, as
    // does everything when the file can't be read.
    static UpdateSettings fromBundle(const std::string& bundlePath);

    bool operator==(const UpdateSettings&) const = default;
};

}  // namespace tarnik
