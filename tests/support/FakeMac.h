#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "app/relocation/RelocationOutcome.h"
#include "app/relocation/RelocatorDeps.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

// A Mac as the relocator sees it, below a temporary folder. A bundle is a folder, its team in Contents/team,
// satisfying no requirement with Contents/forged; the sticky bit plays the quarantine attribute. A folder
// with `locked` can't be written to. Before operation X runs the script before-X, which fails it by failing.
class FakeMac {
public:
    FakeMac();

    std::string at(const std::string& path) const { return root_.path() + path; }
    std::string read(const std::string& path) const;
    std::set<std::string> entries(const std::string& folder) const;
    bool isQuarantined(const std::string& path) const;

    // Lays out a quarantined bundle of that version; its absolute path.
    std::string bundle(const std::string& path, const std::string& version) const;
    // The version of the bundle there: empty for none, "broken" for one that isn't as it was laid out.
    std::string versionAt(const std::string& path) const;

    RelocatorDeps deps();
    // Launches with this record, and quits when the outcome is there.
    RelocationOutcome launch() { return launch(deps()); }
    static RelocationOutcome launch(RelocatorDeps deps);

    std::string installed;  // the install path
    OwnCopy own;
    std::vector<OtherCopy> others;
    std::string quitsOn = "terminate";  // what ends the other copies: that, "force" or nothing
    std::vector<std::string> told;      // to other copies, the shell and the trash
    Seconds slept{};
    std::function<void()> step = [] {};  // between any two things that last

private:
    BundleFiles files();
    std::expected<void, SystemError> play(const std::string& name, const std::function<bool()>& action);

    TemporaryFolder root_;
};

}  // namespace tarnik
