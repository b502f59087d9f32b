#include "tests/support/FakeMachine.h"

#include <sys/stat.h>

#include "tests/support/Eventually.h"
#include "tests/support/Words.h"

namespace tarnik {

using namespace std::chrono_literals;

const std::string origin = "https://tarnik.example";

FakeMachine::FakeMachine() {
    texts["NodeHome"] = folder.path() + "/node";
    deps.platform.mainThread = main.record();
    const auto textOf = [this](const std::string& key) {
        return texts.contains(key) ? std::optional(texts.at(key)) : std::nullopt;
    };
    deps.platform.defaults = {.text = textOf,
                              .flag = [this](const std::string& key) { return flags.contains(key); },
                              .setFlag = [this](const std::string& key) { flags.insert(key); },
                              .clearFlag = [this](const std::string& key) { flags.erase(key); }};
    deps.platform.switches.isOn = [this](Switch which) {
        return which == Switch::accessibility ? switches.accessibility : switches.screenRecording;
    };
    deps.platform.switches.prompt = [this](Switch which) {
        requests.push_back("prompt " + std::string(rawValue(which)));
        return promptTurnsOn;
    };
    deps.platform.switches.openSettings = [this](Switch which) {
        requests.push_back("settings " + std::string(rawValue(which)));
    };
    deps.platform.log = [this](const std::string& text) {
        const std::lock_guard lock(logMutex_);  // children end on their own threads
        log.push_back(text);
    };
    deps.platform.windowInUse = [this] { return windowInUse; };
    deps.supervisor = NodeSupervisorDeps::production();
    deps.supervisor.spawn = nodes.spawn();
    deps.supervisor.spawnPty = terminals.spawnPty();
    deps.supervisor.now = [this] { return clock->now(); };
    deps.driver = DriverHostDeps::production();
    deps.driver.launch = drivers.launchDriver();
    deps.driver.socketReady = [this](const std::string&) { return driverIsReady; };
    deps.driver.sleep = [this](Seconds time) {
        whileDriverStarts();
        clock->set(after(clock->now(), time));
    };
    deps.driver.now = [this] { return clock->now(); };
    deps.installer.fetch = [](const std::string&) -> std::expected<std::string, InstallError> {
        return std::unexpected(InstallFailure{InstallFailure::Kind::download, "stable.json"});
    };
    deps.launchd = {.launchctl = [](const std::vector<std::string>&) { return ExitStatus::exited(0); },
                    .removeFile = [](const std::string&) { return true; }};
    deps.fetchAnswer = [this](const std::string& url) -> std::expected<std::string, HttpError> {
        for (const auto& good : goodLinks) {
            if (url == origin + "/c/" + good + "/app")
                return R"({"v":1,"join":"https://join.example/c/)" + good + R"("})";
        }
        return std::unexpected(linkFailure);
    };
    deps.activity = [this](ActivitySources::RunningPID nodePID, ActivitySources::RunningPID driverPID) {
        auto sources = ActivitySources::production(std::move(nodePID), std::move(driverPID));
        sources.processesUnder = [](pid_t) { return std::vector<ProcessEntry>(); };
        sources.cpuSeconds = [](pid_t) { return 1.0; };
        sources.now = [this] { return ActivitySample::Moment{.steady = clock->now(), .process = {}}; };
        return sources;
    };
    deps.platform.detach = [this](const std::string&, BackgroundTasks::Task task) {
        if (threadsAreLeft) detached.push_back(std::move(task));
        return threadsAreLeft;
    };
    deps.makeQueue = deps.supervisor.makeQueue = deps.driver.makeQueue = [this](const std::string& label) {
        return queues[label] = std::make_shared<ManualQueue>(clock);
    };
}

const std::shared_ptr<AppModel>& FakeMachine::sharedModel() {
    if (model_) return model_;
    BuildSettings settings{.webOrigin = Url::parse(origin).value()};
    if (releaseBase) settings.nodeReleaseBase = Url::parse(*releaseBase);
    settings.nodeReleasePublicKey = "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";
    model_ = std::make_shared<AppModel>(HostEnvironment{.userFolder = folder.path(),
                                                        .applicationSupport = folder.path(),
                                                        .nodeLog = folder.path() + "/node.log",
                                                        .driverExecutable = "/driver",
                                                        .inherited = {{"PATH", "/bin"}},
                                                        .settings = settings,
                                                        .policy = {.policy = policy},
                                                        .platform = "darwin-arm64"},
                                        deps);
    model_->observe([this](const AppState&, const AppState& next) { states.push_back(next); });
    return model_;
}

void FakeMachine::install() const {
    for (const auto& path : {home().nodeBinary(), home().entry()}) {
        folder.write(path.substr(folder.path().size()), "");
        ::chmod(path.c_str(), 0700);
    }
}

void FakeMachine::leaveAgent() const {
    folder.write(
        "Library/LaunchAgents/com.tarnik.node.plist",
        "<plist><dict><key>Label</key><string>com.tarnik.node</string><key>EnvironmentVariables</key>"
        "<dict><key>OPENCLAW_STATE_DIR</key><string>" +
            texts.at("NodeHome") + "</string></dict></dict></plist>");
}

void FakeMachine::settle() {
    do {
        for (auto& task : std::exchange(detached, {})) task();
    } while (main.run() || !detached.empty());
}

void FakeMachine::advance(Seconds by) {
    constexpr Seconds step = 500ms;
    for (Seconds gone = 0s; gone < by; gone += step) {
        main.advance(std::min(step, by - gone));
        for (const auto& [label, queue] : queues)
            if (!queue->isHolding()) queue->runWaiting();
        settle();
    }
}

void FakeMachine::act(const std::string& events) {
    using Action = void (*)(FakeMachine&, char letter);
    static constexpr auto endLast = [](FakeSpawner& from) {
        if (from.count() > 0) from.last().end(ExitStatus::exited(1));
    };
    static constexpr auto print = [](FakeMachine& f) {
        if (live(f.terminals) > 0) f.terminals.last().print("Press Enter to connect it");
    };
    static const std::map<std::string, Action> actions{
        {"check", [](auto& f, char letter) { f.model().pairing().connect(link(letter)); }},
        {"link", [](auto& f, char letter) { f.model().pairing().connect(link(letter)), f.settle(); }},
        {"replace", [](auto& f, char letter) { f.replaceBy(letter); }},
        {"settle", [](auto& f, char) { f.settle(); }},
        {"cancel", [](auto& f, char) { f.model().pairing().cancel(); }},
        {"confirm", [](auto& f, char) { f.model().pairing().confirm(); }},
        {"decline", [](auto& f, char) { f.model().pairing().declineOffer(); }},
        {"dismiss", [](auto& f, char) { f.model().pairing().dismissOutcome(); }},
        {"hide", [](auto& f, char) { f.model().pairing().dismissMessage(); }},
        {"join", [](auto& f, char) { f.join(); }},
        {"busy", [](auto& f, char) { f.threadsAreLeft = false; }},
        {"fail", [](auto& f, char) { f.terminals.failure = SystemError{"forkpty", EAGAIN}; }},
        {"heal", [](auto& f, char) { f.terminals.failure.reset(); }},
        {"print", [](auto& f, char) { print(f); }},
        {"prompt", [](auto& f, char) { print(f), f.pairingIs(PairingPhases::WaitingForYes{}); }},
        {"exit", [](auto& f, char) { endLast(f.terminals); }},
        {"ended",
         [](auto& f, char) {
             endLast(f.terminals), f.pairingIs(PairingPhases::Ended{ExitStatus::exited(1)});
         }},
        {"crash", [](auto& f, char) { endLast(f.nodes); }},
        {"die", [](auto& f, char) { endLast(f.drivers); }},
        {"hold", [](auto& f, char) { f.queues.at("tarnik.node")->hold(); }},
        {"go", [](auto& f, char) { f.queues.at("tarnik.node")->letGo(); }},
    };
    for (const auto& event : words(events)) {
        if (event.starts_with('+')) {
            advance(Seconds(std::stod(event)));
        } else {
            actions.at(event.substr(0, event.find(':')))(*this, event.back());
        }
    }
}

void FakeMachine::pairUpToPrompt() {
    goodLinks.insert(code('a'));
    act("link:a prompt");
}

bool FakeMachine::pairingIs(const PairingPhase& phase) {
    return eventually([&] {
        settle();
        return state().pairing && state().pairing->phase == phase;
    });
}

std::size_t FakeMachine::live(FakeSpawner& spawner) {
    std::size_t count = 0;
    for (std::size_t index = 0; index < spawner.count(); ++index)
        if (spawner.at(index).handle()->isRunning()) ++count;
    return count;
}

}  // namespace tarnik
