// cua-driver: stand-in for the desktop driver. It accepts exactly the arguments and the environment that
// tarnik passes. It listens on its private socket and answers each line with another line:
//
//     hello from tarnik-node
//     hello from cua-driver, pid 4711, permission mode unrestricted
//
// At the end of its standard input or on SIGTERM it removes its socket and exits with status 0. It exits with
// 64 for wrong arguments, a wrong environment or a malformed switch, and with 1 for other failures. It prints
// the reason on standard error. devkit/README.md lists the switches that make it misbehave.
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;
using Moment = Clock::time_point;
using Seconds = std::chrono::duration<double>;

constexpr int wrongUsage = 64;
constexpr std::size_t longestLine = 4096;
constexpr std::size_t longestSocketPath = 103;  // fits every system's socket address, with its NUL
constexpr std::size_t mostClients = 32;
constexpr std::size_t mostQueued = 256;
constexpr double longestDelay = 1e6;

void say(const std::string& text) {
    const std::string line = text + "\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}

[[noreturn]] void refuse(const std::string& text) {
    say(text);
    std::exit(wrongUsage);
}

struct Invocation {
    std::string socketPath;
    std::string hostBundleID;
};

Invocation readArguments(const std::vector<std::string>& words) {
    constexpr std::string_view anything;
    constexpr std::array<std::string_view, 11> wanted{"serve",
                                                      "--embedded",
                                                      "--parent-liveness-stdio",
                                                      "--no-permissions-gate",
                                                      "--socket",
                                                      anything,
                                                      "--host-bundle-id",
                                                      anything,
                                                      "--permission-mode",
                                                      "unrestricted",
                                                      "--dangerously-bypass-approvals"};
    for (std::size_t i = 0; i < std::min(words.size(), wanted.size()); ++i) {
        if (wanted[i] == anything || words[i] == wanted[i]) continue;
        refuse("argument " + std::to_string(i + 1) + " must be " + std::string(wanted[i]) + ", not \"" +
               words[i] + "\"");
    }
    if (words.size() != wanted.size()) refuse("takes 11 arguments, not " + std::to_string(words.size()));

    Invocation invocation{.socketPath = words[5], .hostBundleID = words[7]};
    if (!invocation.socketPath.starts_with('/')) refuse("--socket is not a full path: " + words[5]);
    if (invocation.socketPath.size() > longestSocketPath) refuse("--socket is too long: " + words[5]);
    if (invocation.hostBundleID.empty()) refuse("--host-bundle-id is empty");
    return invocation;
}

// Returns true for the variables that configure the driver. The user's own environment must not set them.
bool configuresDriver(std::string_view name) {
    return name.starts_with("CUA_DRIVER_") || name.starts_with("OPENCLAW_CUA_DRIVER_") ||
           name == "CUA_TELEMETRY_ENABLED";
}

void checkEnvironment(const std::string& hostBundleID) {
    const std::map<std::string, std::string, std::less<>> wanted{
        {"CUA_DRIVER_EMBEDDED", "1"},
        {"CUA_DRIVER_HOST_BUNDLE_ID", hostBundleID},
        {"CUA_DRIVER_PERMISSION_MODE", "unrestricted"},
        {"CUA_DRIVER_DANGEROUSLY_BYPASS_APPROVALS", "1"},
        {"CUA_DRIVER_RS_TELEMETRY_ENABLED", "false"},
        {"CUA_DRIVER_RS_UPDATE_CHECK", "false"},
        {"CUA_DRIVER_EMBEDDED_HOST_PID", std::to_string(getppid())},
    };
    std::string faults;
    for (const auto& [name, value] : wanted) {
        const char* found = std::getenv(name.c_str());
        if (found != nullptr && found == value) continue;
        faults.append(name).append(" must be ").append(value).append(", not ");
        faults.append(found == nullptr ? "missing" : found).append("\n");
    }
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view name(*entry, std::strcspn(*entry, "="));
        if (configuresDriver(name) && !wanted.contains(name))
            faults.append(name).append(" must not be set\n");
    }
    if (!faults.empty()) refuse(faults.substr(0, faults.size() - 1));
}

struct Switches {
    bool neverReady = false;
    Seconds readyAfter{0};
    std::optional<int> exitBeforeReady;
    std::optional<Seconds> exitAfter;
    bool ignoreEnd = false;
    bool ignoreTerm = false;
    bool fullQueue = false;
    std::string say;
};

// Returns the switch's value, or an empty text if the switch isn't set.
std::string switchValue(const std::string& name) {
    const char* value = std::getenv(("TARNIK_STANDIN_DRIVER_" + name).c_str());
    return value == nullptr ? "" : value;
}

std::optional<double> switchNumber(const std::string& name, const char* letters, double greatest) {
    const std::string text = switchValue(name);
    if (text.empty()) return std::nullopt;
    const bool plain = text.find_first_not_of(letters) == std::string::npos;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (plain && *end == '\0' && value <= greatest) return value;
    refuse("TARNIK_STANDIN_DRIVER_" + name + " can't be \"" + text + "\"");
}

std::optional<Seconds> switchSeconds(const std::string& name) {
    const auto value = switchNumber(name, "0123456789.", longestDelay);
    return value ? std::optional(Seconds(*value)) : std::nullopt;
}

Switches readSwitches() {
    Switches switches{.neverReady = !switchValue("NEVER_READY").empty(),
                      .readyAfter = switchSeconds("READY_AFTER").value_or(Seconds(0)),
                      .exitAfter = switchSeconds("EXIT_AFTER"),
                      .fullQueue = !switchValue("FULL_QUEUE").empty(),
                      .say = switchValue("SAY")};
    if (const auto code = switchNumber("EXIT_BEFORE_READY", "0123456789", 255)) {
        switches.exitBeforeReady = static_cast<int>(*code);
    }
    const std::string ignored = switchValue("IGNORE");
    switches.ignoreEnd = ignored == "end" || ignored == "end,term" || ignored == "term,end";
    switches.ignoreTerm = ignored == "term" || ignored == "end,term" || ignored == "term,end";
    if (ignored.empty() || switches.ignoreEnd || switches.ignoreTerm) return switches;
    refuse("TARNIK_STANDIN_DRIVER_IGNORE can't be \"" + ignored + "\"");
}

class Descriptor {
public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor() {
        if (fd_ >= 0) close(fd_);
    }
    int get() const { return fd_; }
    bool isOpen() const { return fd_ >= 0; }
    bool neverBlocks() const { return fcntl(fd_, F_SETFL, O_NONBLOCK) == 0; }

private:
    int fd_;
};

// `path` must not be longer than longestSocketPath.
sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

// Returns a listening socket, or a closed descriptor with errno set.
Descriptor listenAt(const std::string& path, int backlog) {
    Descriptor listener(socket(AF_UNIX, SOCK_STREAM, 0));
    const auto address = addressOf(path);
    const mode_t before = umask(0177);
    const bool bound = bind(listener.get(), generic(address), sizeof(address)) == 0;
    umask(before);
    const bool listens = bound && listener.neverBlocks() && listen(listener.get(), backlog) == 0;
    return listens ? std::move(listener) : Descriptor();
}

// Returns connections that fill the listener's queue for as long as they are open.
std::vector<Descriptor> fillQueue(const std::string& path) {
    const auto address = addressOf(path);
    std::vector<Descriptor> queued;
    while (queued.size() < mostQueued) {
        Descriptor one(socket(AF_UNIX, SOCK_STREAM, 0));
        if (!one.isOpen() || !one.neverBlocks()) break;
        if (connect(one.get(), generic(address), sizeof(address)) != 0) break;
        queued.push_back(std::move(one));
    }
    return queued;
}

struct Client {
    Descriptor socket;
    std::string unanswered;
};

std::string replyTo(std::string_view line) {
    if (!line.starts_with("hello")) return "unknown request\n";
    return "hello from cua-driver, pid " + std::to_string(getpid()) + ", permission mode unrestricted\n";
}

// Answers the lines that have arrived. Returns false if the client has disconnected, sends a line that is too
// long, or doesn't read its answers.
bool serve(Client& client) {
    std::array<char, longestLine> chunk;
    const ssize_t got = read(client.socket.get(), chunk.data(), chunk.size());
    if (got < 0) return errno == EINTR || errno == EAGAIN;
    if (got == 0) return false;
    client.unanswered.append(chunk.data(), static_cast<std::size_t>(got));
    for (;;) {
        const auto end = client.unanswered.find('\n');
        if (end == std::string::npos) return client.unanswered.size() <= longestLine;
        const std::string answer = replyTo(std::string_view(client.unanswered).substr(0, end));
        const ssize_t sent = write(client.socket.get(), answer.data(), answer.size());
        if (sent != static_cast<ssize_t>(answer.size())) return false;
        client.unanswered.erase(0, end + 1);
    }
}

int terminationFd = -1;

void forwardTermination(int) {
    const int before = errno;
    [[maybe_unused]] const ssize_t written = write(terminationFd, "", 1);
    errno = before;
}

// Returns a descriptor that becomes readable on SIGTERM. If `ignored` is true, it never becomes readable.
Descriptor watchTermination(bool ignored) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) return Descriptor();
    terminationFd = ends[1];
    std::signal(SIGTERM, ignored ? SIG_IGN : forwardTermination);
    return Descriptor(ends[0]);
}

// Waits for clients, the end of input, SIGTERM, and the times that the switches set.
class Driver {
public:
    Driver(std::string socketPath, Switches switches, Descriptor termination)
        : socketPath_(std::move(socketPath)),
          switches_(std::move(switches)),
          termination_(std::move(termination)) {
        const Moment now = Clock::now();
        if (!switches_.neverReady) readyAt_ = after(now, switches_.readyAfter);
        if (switches_.exitAfter) exitAt_ = after(now, *switches_.exitAfter);
    }

    // Returns the exit status.
    int run() {
        for (;;) {
            const Moment now = Clock::now();
            if (exitAt_ && now >= *exitAt_) return EXIT_SUCCESS;  // leaves the socket, as a crash would
            if (readyAt_ && now >= *readyAt_) {
                readyAt_.reset();
                if (switches_.exitBeforeReady) return *switches_.exitBeforeReady;
                if (!becomeReady()) return EXIT_FAILURE;
            }
            if (const auto why = wait(now)) return leave(*why);
        }
    }

private:
    static Moment after(Moment now, Seconds delay) {
        return now + std::chrono::duration_cast<Clock::duration>(delay);
    }

    bool becomeReady() {
        // Fills the queue under another name first, so that no client can connect before the queue is full.
        const std::string path = switches_.fullQueue ? besideSocket() : socketPath_;
        listener_ = listenAt(path, switches_.fullQueue ? 0 : SOMAXCONN);
        if (listener_.isOpen() && switches_.fullQueue) queued_ = fillQueue(path);
        if (!listener_.isOpen() || (path != socketPath_ && rename(path.c_str(), socketPath_.c_str()) != 0)) {
            say("can't listen on " + socketPath_ + ": " + std::strerror(errno));
            return false;
        }
        say("listening on " + socketPath_);
        return true;
    }

    std::string besideSocket() const { return socketPath_.substr(0, socketPath_.rfind('/')) + "/q"; }

    // Waits for the next event and handles it. Returns the reason if the driver must exit.
    std::optional<std::string> wait(Moment now) {
        const bool accepts = !switches_.fullQueue && clients_.size() < mostClients;
        std::vector<pollfd> watched{
            {.fd = inputEnded_ ? -1 : STDIN_FILENO, .events = POLLIN},
            {.fd = termination_.get(), .events = POLLIN},
            {.fd = accepts ? listener_.get() : -1, .events = POLLIN},
        };
        const std::size_t others = watched.size();
        for (const auto& client : clients_) watched.push_back({.fd = client.socket.get(), .events = POLLIN});

        if (poll(watched.data(), static_cast<nfds_t>(watched.size()), timeout(now)) <= 0) return std::nullopt;
        if (watched[1].revents != 0) return "terminated";
        if (watched[0].revents != 0 && hasInputEnded() && !switches_.ignoreEnd) return "input ended";
        for (std::size_t i = clients_.size(); i-- > 0;) {
            if (watched[others + i].revents == 0 || serve(clients_[i])) continue;
            clients_.erase(clients_.begin() + static_cast<std::ptrdiff_t>(i));
        }
        if (watched[2].revents != 0) acceptOne();
        return std::nullopt;
    }

    // Returns the timeout for poll in milliseconds, or -1 for no timeout.
    int timeout(Moment now) const {
        std::optional<Moment> next = readyAt_;
        if (exitAt_ && (!next || *exitAt_ < *next)) next = exitAt_;
        if (!next) return -1;
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(std::max(*next - now, Clock::duration(0)));
        return static_cast<int>(std::min<long long>(left.count(), INT_MAX));
    }

    bool hasInputEnded() {
        std::array<char, 256> ignored;
        const ssize_t got = read(STDIN_FILENO, ignored.data(), ignored.size());
        if (got > 0 || (got < 0 && (errno == EINTR || errno == EAGAIN))) return false;
        inputEnded_ = true;
        return true;
    }

    void acceptOne() {
        Descriptor socket(accept(listener_.get(), nullptr, nullptr));
        if (socket.isOpen() && socket.neverBlocks()) clients_.push_back({.socket = std::move(socket)});
    }

    int leave(const std::string& why) {
        if (listener_.isOpen()) unlink(socketPath_.c_str());
        say(why + ", leaving");
        return EXIT_SUCCESS;
    }

    const std::string socketPath_;
    const Switches switches_;
    const Descriptor termination_;
    std::optional<Moment> readyAt_;
    std::optional<Moment> exitAt_;
    bool inputEnded_ = false;
    Descriptor listener_;
    std::vector<Descriptor> queued_;
    std::vector<Client> clients_;
};

}  // namespace

int main(int count, char** arguments) {
    std::signal(SIGPIPE, SIG_IGN);
    const Switches switches = readSwitches();
    Descriptor termination = watchTermination(switches.ignoreTerm);
    if (switches.ignoreEnd) alarm(120);  // in case the test doesn't end it
    if (!switches.say.empty()) say(switches.say);
    const Invocation invocation = readArguments(std::vector<std::string>(arguments + 1, arguments + count));
    checkEnvironment(invocation.hostBundleID);
    if (!termination.isOpen()) return EXIT_FAILURE;
    return Driver(invocation.socketPath, switches, std::move(termination)).run();
}
