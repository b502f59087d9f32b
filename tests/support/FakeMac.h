#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "app/relocation/RelocationOutcome.h"
#include "app/relocation/Relocator.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

// The operations of a Mac for the relocator, inside a temporary folder. A bundle is a folder with its team in
// Contents/team; Contents/forged makes it fail every requirement. The sticky bit stands for the quarantine
// attribute. A folder that contains `locked` is read-only. The script before-X runs before operation X and
// can make it fail.
class FakeMac {
public:
    FakeMac();

    std::string at(const std::string& path) const { return root_.path() + path; }
    std::string read(const std::string& path) const { return root_.read(path); }
    std::set<std::string> entries(const std::string& folder) const;
    bool isQuarantined(const std::string& path) const;

    // Makes a quarantined bundle of this version and returns its absolute path.
    std::string bundle(const std::string& path, const std::string& version) const;
    // Returns the version of the bundle, an empty string if there is none, or "broken" if it was changed.
    std::string versionAt(const std::string& path) const;

    RelocatorDeps deps();
    // Launches with this record and quits after the outcome.
    RelocationOutcome launch() { return launch(deps()); }
    static RelocationOutcome launch(RelocatorDeps deps);

    std::string installed;  // the install path
    OwnCopy own;
    std::vector<OtherCopy> others;
    std::string quitsOn = "terminate";  // what ends the other copies: "terminate", "force" or an empty string
    std::vector<std::string> calls;     // the calls to other copies, the shell and the trash
    Seconds slept{};
    std::function<void()> step = [] {};  // called between two slow operations

private:
    BundleFiles files();
    std::expected<void, SystemError> play(const std::string& name, const std::function<bool()>& action);

    TemporaryFolder root_;
};

}  // namespace tarnik
