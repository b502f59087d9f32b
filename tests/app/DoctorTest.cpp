#include "app/doctor/Doctor.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "app/journal/Journal.h"
#include "core/foundation/Files.h"
#include "core/foundation/Json.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Kind = HttpError::Kind;

void write(const std::string& path, const std::string& text, mode_t mode = 0600) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << text;
    ::chmod(path.c_str(), mode);
}

std::string releaseFile() {
    const std::string manifest =
        R"({"v":1,"channel":"stable","version":"2026.5.1","publishedAtMs":1,"minNodeVersion":"22.0.0",)"
        R"("upstream":{"version":"1","commit":")" +
        std::string(40, 'c') + R"("},"artifacts":{"cpu":{"path":"p.gz","sha256":")" + std::string(64, 'b') +
        R"(","size":10}}})";
    return R"({"v":1,"manifest":)" + quotedJson(manifest) + R"(,"keyId":"0123456789abcdef","sig":")" +
           std::string(86, 'A') + R"("})";
}

// A machine on which everything works and the helper is installed.
struct Machine {
    ShortTemporaryFolder folder;
    WallTime now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    std::expected<HttpAnswer, HttpError> release = HttpAnswer{.body = releaseFile(), .date = {}};
    std::expected<HttpAnswer, HttpError> service = HttpAnswer{.body = "hello", .date = {}};
    DoctorSubject subject{.host = {.userFolder = folder.path(),
                                   .applicationSupport = folder.path() + "/support",
                                   .nodeLog = folder.path() + "/logs/tarnik/node.log",
                                   .driverExecutable = "/driver",
                                   .inherited = {},
                                   .settings = {.webOrigin = *Url::parse("https://service.example"),
                                                .nodeReleaseBase = Url::parse("https://release.example/x"),
                                                .nodeReleasePublicKey = std::string(43, 'A'),
                                                .nodeMinVersion = {},
                                                .runtime = {}},
                                   .platform = "cpu"},
                          .folders = {.applicationSupport = folder.path() + "/support",
                                      .logs = folder.path() + "/logs",
                                      .preferences = folder.path() + "/config"},
                          .executable = "/tarnik",
                          .bundle = {},
                          .home = NodeHome{.path = folder.path() + "/node"}};
    DoctorDeps deps{.ask =
                        [this](const std::string& url, auto&) {
                            return url.starts_with("https://release.example/x/stable.json") ? release
                                                                                            : service;
                        },
                    .hasNetwork = [] { return true; },
                    .now = [this] { return now; },
                    .runtimeVersion = [](auto&) { return std::string(NodeRuntimePin::version); },
                    .freeBytes = [](auto&) { return std::uintmax_t{5'000'000'000}; },
                    .isLocked = [](auto&) { return false; },
                    .runningCopy = [] { return RunningCopy{.pid = 7, .accessibility = true}; },
                    .detach =
                        [](auto&, const BackgroundTasks::Task& task) {
                            task();
                            return true;
                        },
                    .crypto = {.verifyEd25519 = [](auto...) { return true; },
                               .sha256Hex = [](auto) { return "0123456789abcdef" + std::string(48, '0'); },
                               .sha256HexOfFile = [](auto&) { return std::string(64, 'd'); }},
                    .desktop = {}};

    Machine() {
        write(home().marker(), "");
        write(home().nodeBinary(), "", 0700);
        write(home().entry(), "");
        write(home().wrapper(), "", 0700);
        write(home().joinRecord(), "");
        release->date = service->date = std::chrono::floor<std::chrono::seconds>(now);
    }
    ~Machine() { ::chmod((folder.path() + "/node").c_str(), 0700); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    const NodeHome& home() const { return *subject.home; }
    void bothFail(HttpError::Kind kind) { release = service = std::unexpected(HttpError{.kind = kind}); }
    void helperEnds(int times) const {
        Journal journal(subject.journal());
        journal.record(EventCode::programStarted, "tarnik started.");
        for (int i = 0; i < times; ++i)
            journal.record(EventCode::helperEnded, "The helper stopped.", {{EventField::exit, 3}});
        journal.flush(Seconds(5));
    }

    // Returns the codes of all problems.
    std::string problems() {
        std::string codes;
        for (const auto& finding : examine(subject, deps)) {
            if (!finding.isProblem()) continue;
            EXPECT_FALSE(finding.remedy.empty()) << finding.sentence;
            codes += (codes.empty() ? "" : " ") + finding.code;
        }
        return codes;
    }
};

TEST(Doctor, reportsTheCauseAndHidesItsSymptoms) {
    const std::pair<const char*, std::function<void(Machine&)>> cases[] = {
        {"", [](auto&) {}},
        {"", [](auto& m) { fs::remove_all(m.home().path); }},
        {"build.settings", [](auto& m) { m.subject.host.settings.nodeReleasePublicKey = "x"; }},
        {"home.path",
         [](auto& m) { m.subject.home = NodeHome::resolve("relative", m.subject.host.userFolder); }},
        {"home.owner", [](auto& m) { m.subject.home->path = m.home().marker() + "/node"; }},
        {"home.modes", [](auto& m) { fs::permissions(m.home().path, fs::perms::none); }},
        {"home.modes", [](auto& m) { fs::permissions(m.home().path, fs::perms::all); }},
        {"home.modes", [](auto& m) { ::chmod(fs::path(m.home().joinRecord()).parent_path().c_str(), 0); }},
        {"home.claim", [](auto& m) { fs::remove(m.home().marker()); }},
        {"home.disk", [](auto& m) { m.deps.freeBytes = [](auto&) { return 9U; }; }},
        {"logs.folder", [](auto& m) { fs::create_directories(m.subject.host.nodeLog); }},
        {"program.running",
         [](auto& m) {
             m.deps.runningCopy = [] { return std::nullopt; };
             m.deps.isLocked = [](auto&) { return true; };
         }},
        {"helper.runtime", [](auto& m) { m.deps.runtimeVersion = [](auto&) { return std::nullopt; }; }},
        {"helper.package", [](auto& m) { fs::remove(m.home().entry()); }},
        {"helper.provenance", [](auto& m) { write(m.home().path + "/provenance.json", "{}"); }},
        {"", [](auto& m) { m.helperEnds(2); }},
        {"helper.restarts", [](auto& m) { m.helperEnds(5); }},
        {"",
         [](auto& m) {
             m.helperEnds(5);
             m.now += 1h;
             m.release->date = m.service->date = std::chrono::floor<std::chrono::seconds>(m.now);
         }},
        {"network.connection",
         [](auto& m) {
             m.bothFail(Kind::unresolved);
             m.deps.hasNetwork = [] { return false; };
         }},
        {"network.name", [](auto& m) { m.bothFail(Kind::unresolved); }},
        {"network.proxy", [](auto& m) { m.bothFail(Kind::proxyLogin); }},
        {"network.proxy",
         [](auto& m) {
             m.release = std::unexpected(HttpError{.kind = Kind::unreachable, .proxy = "127.0.0.1:1"});
         }},
        {"network.portal", [](auto& m) { m.release->body = "<html>Sign in</html>"; }},
        {"network.certificate", [](auto& m) { m.bothFail(Kind::untrusted); }},
        {"network.clock", [](auto& m) { m.now += 6min; }},
        {"network.clock",
         [](auto& m) {
             m.now += 48h;
             m.release = std::unexpected(HttpError{.kind = Kind::notValidNow});
         }},
        {"network.release",
         [](auto& m) { m.release = std::unexpected(HttpError{.kind = Kind::badStatus, .code = 404}); }},
        {"network.release", [](auto& m) { m.deps.crypto.verifyEd25519 = [](auto...) { return false; }; }},
        {"network.servers", [](auto& m) { m.bothFail(Kind::stalled); }},
        {"driver.program", [](auto& m) { m.subject.host.driverExecutable.reset(); }},
        {"driver.socket", [](auto& m) { m.subject.host.applicationSupport = "/" + std::string(90, 'x'); }},
        {"place.bundle",
         [](auto& m) { m.deps.desktop.ownCopy = [] { return OwnCopy{.isTranslocated = true}; }; }},
        {"login.autostart",
         [](auto& m) {
             m.deps.desktop.autostartEntry = m.folder.path() + "/entry";
             write(m.folder.path() + "/entry", "[Desktop Entry]\nTryExec=/gone\n");
         }},
    };
    for (const auto& [expected, breakIt] : cases) {
        Machine machine;
        breakIt(machine);
        EXPECT_EQ(machine.problems(), expected) << &breakIt - &cases[0].second;
    }
}

TEST(Doctor, notesAnAutostartEntryThatIsOff) {
    Machine machine;
    machine.deps.desktop.autostartEntry = machine.home().marker();
    machine.deps.desktop.startsByAutostart = [] { return false; };
    const auto findings = examine(machine.subject, machine.deps);
    const auto found = std::ranges::find(findings, "login.autostart", &Finding::code);
    ASSERT_NE(found, findings.end());
    EXPECT_EQ(found->severity, Severity::note);
}

// A server that never answers costs its budget once, and only delays the checks that need it.
TEST(Doctor, endsAlthoughNoServerAnswers) {
    Machine machine;
    machine.deps.detach = [](auto&, auto) { return false; };
    EXPECT_EQ(machine.problems(), "network.release network.service");
}

}  // namespace
}  // namespace tarnik
