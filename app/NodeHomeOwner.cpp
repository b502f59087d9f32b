#include "app/NodeHomeOwner.h"

#include <charconv>
#include <csignal>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/PrivateFolder.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

namespace {

constexpr Seconds retryInterval = Seconds(0.1);
constexpr std::size_t longestNote = 64;
constexpr std::string_view consoleWord = " console\n";
constexpr std::string_view windowWord = " window\n";

// The process that has a node home, as it noted itself: "1234 console".
struct Owner {
    pid_t pid;
    NodeHomeOwner::Face face;
};

std::optional<Owner> parseOwner(std::string_view note) {
    Owner owner{};
    const auto [end, error] = std::from_chars(note.data(), note.data() + note.size(), owner.pid);
    const auto word = note.substr(static_cast<std::size_t>(end - note.data()));
    if (error != std::errc() || owner.pid < 2 || (word != consoleWord && word != windowWord))
        return std::nullopt;
    owner.face = word == consoleWord ? NodeHomeOwner::Face::console : NodeHomeOwner::Face::window;
    return owner;
}

// Notes of different homes stand beside each other. A link to a home is that home.
std::optional<std::string> noteName(const NodeHome& home) {
    struct stat found{};
    if (::stat(home.path.c_str(), &found) != 0) return std::nullopt;
    return "owner-" + std::to_string(found.st_dev) + "-" + std::to_string(found.st_ino);
}

std::optional<PrivateFolder> notesFolder(const std::string& applicationSupport) {
    return PrivateFolder::open(applicationSupport + "/" + std::string(TarnikIdentity::appName));
}

}  // namespace

NodeHomeOwner::NodeHomeOwner(std::optional<NodeHome> home, Deps deps)
    : home_(std::move(home)), deps_(std::move(deps)) {}

NodeHomeOwner::~NodeHomeOwner() {
    if (!lock_) return;
    const auto folder = notesFolder(deps_.applicationSupport);
    const auto name = noteName(*home_);
    if (folder && name) folder->remove(*name);
}

void NodeHomeOwner::take(Done done) {
    if (!home_ || settled()) return done(std::nullopt);
    triesLeft_ = static_cast<int>(patience / retryInterval);
    retry_ = deps_.mainThread.repeat(retryInterval, [this, done = std::move(done)] { tryAgain(done); });
}

void NodeHomeOwner::tryAgain(const Done& done) {
    const bool ours = settled();
    if (!ours && --triesLeft_ > 0) return;
    const auto answer = done;  // the timer holds the other one
    retry_.reset();
    answer(ours ? std::nullopt : std::optional(inUse()));
}

bool NodeHomeOwner::settled() {
    auto taken = deps_.lock(*home_);
    if (taken) {
        lock_ = std::move(*taken);
        noteOwner();
        return true;
    }
    if (taken.error().reason == NodeHomeLock::Failure::Reason::heldElsewhere) return false;
    deps_.log("the node folder isn't locked, so a second program on it goes unnoticed: " +
              describe(taken.error().error));
    return true;
}

void NodeHomeOwner::noteOwner() const {
    const auto folder = notesFolder(deps_.applicationSupport);
    const auto name = noteName(*home_);
    const auto word = deps_.face == Face::console ? consoleWord : windowWord;
    if (folder && name) folder->replace(*name, std::to_string(::getpid()) + std::string(word));
}

// The note may be older than the lock, or be missing: it only adds to the sentence.
std::string NodeHomeOwner::inUse() const {
    const auto folder = notesFolder(deps_.applicationSupport);
    const auto name = noteName(*home_);
    const auto note = folder && name ? folder->read(*name, longestNote) : std::nullopt;
    const auto owner = note ? parseOwner(*note) : std::nullopt;
    const std::string uses = " uses the node folder " + home_->path + ": ";
    if (!owner || ::kill(owner->pid, 0) != 0) return "Another tarnik" + uses + "quit that one first.";
    const std::string process = "Another tarnik (process " + std::to_string(owner->pid);
    return owner->face == Face::console
               ? process + ", in a terminal)" + uses + "type quit there first."
               : process + ", with a window)" + uses + "use that one, or quit it first.";
}

}  // namespace tarnik
