#include "app/NodeHomeOwner.h"

#include <charconv>
#include <csignal>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "app/texts/ProgramTexts.h"
#include "core/foundation/PrivateFolder.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

namespace {

constexpr Seconds retryInterval = Seconds(0.1);
constexpr std::size_t longestNote = 64;

using Owner = NodeHomeOwner::Owner;
using Face = NodeHomeOwner::Face;

// Returns the end of the note of a program with this face.
std::string noteEnd(Face face) {
    return " " + std::string(NodeHomeOwner::wordOf(face)) + "\n";
}

// Parses "1234 console".
std::optional<Owner> parseOwner(std::string_view note) {
    Owner owner{};
    const auto [end, error] = std::from_chars(note.data(), note.data() + note.size(), owner.pid);
    const auto word = note.substr(static_cast<std::size_t>(end - note.data()));
    if (error != std::errc() || owner.pid < 2) return std::nullopt;
    for (const Face face : {Face::window, Face::console, Face::service}) {
        owner.face = face;
        if (word == noteEnd(face)) return owner;
    }
    return std::nullopt;
}

std::string notesPath(const std::string& applicationSupport) {
    return applicationSupport + "/" + std::string(TarnikIdentity::appName);
}

std::optional<PrivateFolder> notesFolder(const std::string& applicationSupport) {
    return PrivateFolder::open(notesPath(applicationSupport));
}

}  // namespace

std::string_view NodeHomeOwner::wordOf(Face face) {
    switch (face) {
        case Face::window: return "window";
        case Face::console: return "console";
        case Face::service: break;
    }
    return "service";
}

NodeHomeOwner::NodeHomeOwner(std::optional<NodeHome> home, Deps deps)
    : home_(std::move(home)), deps_(std::move(deps)) {}

NodeHomeOwner::~NodeHomeOwner() {
    if (!lock_) return;
    const auto folder = notesFolder(deps_.applicationSupport);
    const auto name = noteName(*home_);
    if (folder && name) folder->remove(*name);
}

void NodeHomeOwner::take(Done done) {
    if (!home_ || acquire()) return done(std::nullopt);
    triesLeft_ = static_cast<int>(lockTimeout / retryInterval);
    retryTimer_ = deps_.mainThread.repeat(retryInterval, [this, done = std::move(done)] { retry(done); });
}

void NodeHomeOwner::retry(const Done& done) {
    const bool ours = acquire();
    if (!ours && --triesLeft_ > 0) return;
    const auto answer = done;  // the timer owns `done`
    retryTimer_.reset();
    answer(ours ? std::nullopt : std::optional(inUse()));
}

bool NodeHomeOwner::acquire() {
    auto taken = deps_.lock(*home_);
    if (taken) {
        lock_ = std::move(*taken);
        noteOwner();
        return true;
    }
    if (taken.error().reason == NodeHomeLock::Failure::Reason::heldElsewhere) return false;
    deps_.log("the helper's folder isn't locked, so a second program on it goes unnoticed: " +
              describe(taken.error().error));
    return true;
}

void NodeHomeOwner::noteOwner() const {
    const auto folder = notesFolder(deps_.applicationSupport);
    const auto name = noteName(*home_);
    if (folder && name) folder->replace(*name, std::to_string(::getpid()) + noteEnd(deps_.face));
}

// The note may be missing or older than the lock, so it only adds details to the sentence.
std::string NodeHomeOwner::inUse() const {
    return ProgramTexts::nodeHomeInUse(home_->path, noted(*home_, deps_.applicationSupport));
}

std::optional<Owner> NodeHomeOwner::noted(const NodeHome& home, const std::string& applicationSupport) {
    const auto name = noteName(home);
    return name ? notedIn(notesPath(applicationSupport) + "/" + *name) : std::nullopt;
}

std::optional<Owner> NodeHomeOwner::notedIn(const std::string& note) {
    if (!isRegularFile(note)) return std::nullopt;
    const auto text = readFile(note, longestNote);
    const auto owner = text ? parseOwner(*text) : std::nullopt;
    return owner && ::kill(owner->pid, 0) == 0 ? owner : std::nullopt;
}

// stat() follows links, so a link to a home results in the same name.
std::optional<std::string> NodeHomeOwner::noteName(const NodeHome& home) {
    struct stat found{};
    if (::stat(home.path.c_str(), &found) != 0) return std::nullopt;
    return "owner-" + std::to_string(found.st_dev) + "-" + std::to_string(found.st_ino);
}

}  // namespace tarnik
