#include "app/relocation/BundleMove.h"

#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/bundle/BundleInfo.h"
#include "core/driver/ProcessInspection.h"
#include "core/foundation/Files.h"
#include "core/foundation/Paths.h"

namespace tarnik {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = ".tarnik-moving-";
constexpr std::string_view suffix = ".app";

std::string stagedName(pid_t pid) {
    return std::string(prefix) + std::to_string(pid) + std::string(suffix);
}

// Returns the id of the process that made the staged copy with this name. Returns std::nullopt if the name is
// not that of a staged copy.
std::optional<pid_t> moverOf(const std::string& name) {
    if (!name.starts_with(prefix)) return std::nullopt;
    pid_t pid = 0;
    std::from_chars(name.data() + prefix.size(), name.data() + name.size(), pid);
    return pid > 0 && name == stagedName(pid) ? std::optional(pid) : std::nullopt;
}

std::unexpected<BundleMove::Failure> failed(const char* step, std::optional<SystemError> error = {}) {
    return std::unexpected(BundleMove::Failure{step, std::move(error)});
}

// Removes the bundle at the path on destruction. That bundle is an unused copy or the replaced bundle.
class Staged {
public:
    explicit Staged(std::string path) : path_(std::move(path)) {}
    ~Staged() { removeTree(path_); }
    Staged(const Staged&) = delete;
    Staged& operator=(const Staged&) = delete;

    const std::string& path() const { return path_; }

private:
    const std::string path_;
};

}  // namespace

std::string BundleMove::Failure::describe() const {
    return error ? step + ": " + tarnik::describe(*error) : step;
}

std::expected<QuarantineReport, BundleMove::Failure> BundleMove::run(const BundleFiles& files,
                                                                     pid_t pid) const {
    const Staged staged(parentFolder(to) + "/" + stagedName(pid));
    if (const auto copied = files.copy(from, staged.path()); !copied) return failed("copy", copied.error());
    if (bundleVersion(staged.path()) != version || !isOurs(staged.path())) return failed("check");
    auto report = clearQuarantineBelow(staged.path(), files);
    if (isCancelled()) return failed("quit");
    if (const auto placed = takePlace(staged.path(), files); !placed) return std::unexpected(placed.error());
    return report;
}

// Moves the staged copy to its place. If the replaced bundle's version is not `replacing`, restores that
// bundle and fails.
std::expected<void, BundleMove::Failure> BundleMove::takePlace(const std::string& staged,
                                                               const BundleFiles& files) const {
    if (!replacing) {
        if (const auto moved = files.moveIntoEmptyPlace(staged, to); !moved)
            return failed("move", moved.error());
        return {};
    }
    if (const auto exchanged = files.exchange(staged, to); !exchanged) {
        return failed("exchange", exchanged.error());
    }
    if (bundleVersion(staged) == replacing) return {};
    if (const auto back = files.exchange(staged, to); !back) return failed("exchange back", back.error());
    return failed("another was installed");
}

void BundleMove::removeLeftovers(const std::string& folder, pid_t pid) {
    std::vector<fs::path> leftovers;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const auto mover = moverOf(entry->path().filename());
        if (!mover) continue;
        if (*mover == pid || ProcessInspection::waitForExit(*mover, Seconds::zero()))
            leftovers.push_back(entry->path());
    }
    for (const auto& leftover : leftovers) removeTree(leftover);
}

}  // namespace tarnik
