#include "tests/support/FakeMac.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include <unistd.h>

#include "app/bundle/BundleInfo.h"
#include "app/relocation/Relocator.h"
#include "tests/support/ManualMainThread.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/PropertyLists.h"

namespace tarnik {

namespace fs = std::filesystem;

namespace {

constexpr auto quarantine = fs::perms::sticky_bit;

bool isMarked(const fs::file_status& status) {
    return !fs::is_symlink(status) && (status.permissions() & quarantine) != fs::perms::none;
}

bool isThere(const std::string& path) {
    return fs::exists(fs::symlink_status(path));
}

bool move(const std::string& from, const std::string& to) {
    if (!isThere(to)) return std::rename(from.c_str(), to.c_str()) == 0;
    errno = EEXIST;
    return false;
}

bool exchange(const std::string& one, const std::string& other) {
    const std::string aside = other + ".aside";
    return isThere(other) && move(one, aside) && move(other, one) && move(aside, other);
}

}  // namespace

FakeMac::FakeMac() {
    for (const char* folder : {"/Applications", "/Downloads", "/Trash"}) fs::create_directory(at(folder));
    installed = at("/Applications/tarnik.app");
}

std::set<std::string> FakeMac::entries(const std::string& folder) const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(at(folder))) names.insert(entry.path().filename());
    return names;
}

bool FakeMac::isQuarantined(const std::string& path) const {
    return isMarked(fs::status(at(path)));
}

std::string FakeMac::bundle(const std::string& path, const std::string& version) const {
    const std::string top = at(path);
    root_.write(path + "/Contents/Info.plist",
                propertyLists::xml("<dict><key>CFBundleVersion</key><string>7</string>"
                                   "<key>CFBundleShortVersionString</key><string>" +
                                   version + "</string></dict>"));
    root_.write(path + "/Contents/MacOS/tarnik", version);
    root_.write(path + "/Contents/team", "TEAM");
    fs::create_symlink(at("/Downloads"), top + "/Contents/link");
    for (const char* entry : {"", "/Contents/MacOS", "/Contents/MacOS/tarnik"})
        fs::permissions(top + entry, quarantine, fs::perm_options::add);
    return top;
}

std::string FakeMac::versionAt(const std::string& path) const {
    const std::string top = at(path);
    if (!exists(top)) return "";
    const auto version = bundleVersion(top);
    const bool isWhole = read(path + "/Contents/MacOS/tarnik") == version && exists(top + "/Contents/team");
    return isWhole ? *version : "broken";
}

std::expected<void, SystemError> FakeMac::play(const std::string& name, const std::function<bool()>& action) {
    step();
    const std::string script = at("/before-" + name);
    if (exists(script) && std::system(("cd " + at("/") + " && sh -e " + script).c_str()) != 0)
        return std::unexpected(SystemError{name, EIO});
    if (!action()) return std::unexpected(SystemError{name, errno});
    step();
    return {};
}

BundleFiles FakeMac::files() {
    BundleFiles files;
    files.canWrite = [](const std::string& folder) { return !exists(folder + "/locked"); };
    files.copy = [this](const std::string& from, const std::string& to) {
        return play("copy", [&] {
            using enum fs::copy_options;
            fs::create_directory(to, from);
            fs::create_directory(to + "/Contents");
            fs::copy(from + "/Contents/Info.plist", to + "/Contents");
            step();
            fs::copy(from, to, recursive | copy_symlinks | overwrite_existing);
            return true;
        });
    };
    files.exchange = [this](const std::string& one, const std::string& other) {
        return play("exchange", [&] { return exchange(one, other); });
    };
    files.moveIntoEmptyPlace = [this](const std::string& from, const std::string& to) {
        return play("move", [&] { return move(from, to); });
    };
    files.trash = [this](const std::string& path) {
        calls.push_back("trash " + path);
        return play("trash", [&] { return move(path, at("/Trash/tarnik.app")); });
    };
    files.clearQuarantine = [this](const std::string& entry) -> std::expected<bool, SystemError> {
        if (!isMarked(fs::symlink_status(entry))) return false;
        const auto cleared = play("clear-" + fs::path(entry).filename().string(), [&] {
            fs::permissions(entry, quarantine, fs::perm_options::remove);
            return true;
        });
        if (!cleared) return std::unexpected(cleared.error());
        return true;
    };
    return files;
}

RelocatorDeps FakeMac::deps() {
    const auto tell = [this](const std::string& what) {
        return [this, what](const OtherCopy& other) {
            calls.push_back(what + " " + std::to_string(other.pid));
            if (what == quitsOn) others.clear();
        };
    };
    RelocatorDeps deps{.applicationSupport = at("/Support"), .installPath = installed, .pid = ::getpid()};
    deps.bundles.ownCopy = [this] { return own; };
    deps.bundles.signatures = {
        .teamIdentifier = [](const auto& bundle) { return readFile(bundle + "/Contents/team", 100); },
        .satisfiesRequirement =
            [](const std::string& bundle, const std::string& team) {
                return readFile(bundle + "/Contents/team", 100) == team &&
                       !exists(bundle + "/Contents/forged");
            }};
    deps.bundles.files = files();
    deps.bundles.others = {.startedBefore = [this] { return others; },
                           .isRunning = [this](const OtherCopy&) { return !others.empty(); },
                           .terminate = tell("terminate"),
                           .forceTerminate = tell("force"),
                           .activate = tell("activate"),
                           .postShowWindow = [this] { calls.emplace_back("showWindow"); }};
    deps.spawn = [this](const SpawnRequest& request) -> std::expected<void, SystemError> {
        if (!play("spawn", [] { return true; })) return std::unexpected(SystemError{"spawn", EAGAIN});
        calls.push_back("open " + request.arguments.at(4));
        return {};
    };
    deps.sleep = {.sleep = [this](Seconds time) { slept += time; }, .interrupt = [] {}};
    deps.now = [] { return Relocation::RecordTime(); };
    deps.makeQueue = [](const std::string&) { return std::make_shared<ManualQueue>(); };
    return deps;
}

RelocationOutcome FakeMac::launch(RelocatorDeps deps) {
    ManualMainThread mainThread;
    deps.mainThread = mainThread.record();
    Relocator relocator(std::move(deps));
    std::optional<RelocationOutcome> outcome;
    relocator.relocateIfNeeded([&](const RelocationOutcome& answer) { outcome = answer; });
    mainThread.run();
    return outcome.value();
}

}  // namespace tarnik
