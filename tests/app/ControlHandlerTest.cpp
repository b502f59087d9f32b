#include "app/control/ControlHandler.h"

#include <cerrno>
#include <filesystem>

#include <gtest/gtest.h>

#include "app/control/StatusSource.h"
#include "app/texts/LinkTexts.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using Kind = ControlRequest::Kind;
using Replace = ControlRequest::Replace;

// A machine whose handler writes the answers down: "1 {…}" for the last answer to a client, "1+ {…}" for an
// update, "1! code" for an error.
struct Controlled : StartedMachine {
    std::vector<std::string> answers;
    int opened = 0;
    int quits = 0;
    ControlHandler handler{
        {.mainThread = main.record(),
         .status =
             [](const AppState& state) { return Status{.connection = {.state = describe(state.node)}}; },
         .openWindow = [this] { ++opened; },
         .quit = [this] { ++quits; },
         .answer =
             [this](auto client, auto, const auto& result, auto position) {
                 const bool isLast = position == ControlAnswer::Position::last;
                 answers.push_back(std::to_string(client) + (isLast ? " " : "+ ") + result);
             },
         .refuse =
             [this](auto client, auto, const auto& error) {
                 answers.push_back(std::to_string(client) + "! " + error.code + " " + error.message);
             }},
        sharedModel()};

    // Returns the first answer to the request.
    std::string ask(ControlServer::Client client, Kind kind, const std::string& link = {},
                    Replace replace = Replace::no) {
        const auto before = answers.size();
        handler.handle(client, {.id = 1, .kind = kind, .link = link, .replace = replace});
        settle();
        return answers.size() > before ? answers.at(before) : "";
    }
    // Returns true if an update or answer with this phase was the last one.
    bool phaseIs(const std::string& phase) {
        settle();
        return !answers.empty() && answers.back().contains(R"("phase":")" + phase + '"');
    }
};

TEST(ControlHandler, pairsForAClient) {
    Controlled f;
    f.goodLinks = {FakeMachine::code('a')};
    EXPECT_EQ(f.ask(1, Kind::connect, "nonsense"), "1! refused " + std::string(LinkTexts::notALink));
    EXPECT_EQ(f.state().linkMessage, std::nullopt) << "the window doesn't show the client's mistake";
    EXPECT_EQ(f.ask(1, Kind::confirm).substr(0, 10), "1! refused");
    EXPECT_TRUE(f.ask(1, Kind::connect, FakeMachine::link('b')).starts_with(R"(1+ {"phase":"checking")"));
    EXPECT_TRUE(f.answers.back().starts_with("1! refused This link has expired")) << f.answers.back();

    f.ask(1, Kind::connect, FakeMachine::link('a'));
    EXPECT_TRUE(f.phaseIs("starting")) << f.answers.back();
    EXPECT_EQ(f.ask(2, Kind::connect, FakeMachine::link('a')).substr(0, 7), "2! busy");
    EXPECT_EQ(f.ask(2, Kind::restart).substr(0, 2), "2!");
    f.terminals.last().print("Press Enter to connect it");
    EXPECT_TRUE(f.pairingIs(PairingPhases::WaitingForYes{}));
    EXPECT_TRUE(f.phaseIs("waitingForYes")) << f.answers.back();
    EXPECT_EQ(f.ask(1, Kind::confirm), "1 {}");
    f.join();
    f.advance(15s);
    EXPECT_TRUE(f.pairingIs(PairingPhases::Connected{}));
    EXPECT_TRUE(f.phaseIs("connected"));
    EXPECT_TRUE(f.answers.back().starts_with("1 "));

    EXPECT_EQ(f.ask(1, Kind::connect, FakeMachine::link('a')).substr(0, 9), "1! joined");
    EXPECT_EQ(f.state().replaceOffer, std::nullopt);
    EXPECT_TRUE(f.ask(1, Kind::connect, FakeMachine::link('a'), Replace::yes).starts_with("1+"));
    f.handler.closed(1);
    f.settle();
    EXPECT_FALSE(f.model().pairing().isInProgress()) << "its client has gone";
}

TEST(ControlHandler, streamsTheStatusWhileSomebodyWatches) {
    Controlled f;
    EXPECT_NE(f.ask(1, Kind::watch), "");
    EXPECT_EQ(f.ask(1, Kind::watch).substr(0, 7), "1! busy");
    const auto before = f.answers.size();
    f.advance(5s);
    EXPECT_EQ(f.answers.size(), before) << "nothing has changed";
    f.join();
    EXPECT_EQ(f.ask(2, Kind::restart).substr(0, 12), "2! notJoined") << "it waits for a link";
    f.goodLinks = {FakeMachine::code('a')};
    f.replaceBy('a');
    f.settle();
    ASSERT_GT(f.answers.size(), before + 1);
    EXPECT_TRUE(f.answers.back().contains("pairing"));
    f.handler.closed(1);
    const auto after = f.answers.size();
    f.model().pairing().cancel();
    f.advance(5s);
    EXPECT_EQ(f.answers.size(), after);
}

TEST(ControlHandler, restartsTheHelperWithoutADelay) {
    Controlled f;
    f.join();
    f.model().restartHelper([](bool) {});  // starts it
    f.settle();
    ASSERT_EQ(f.nodes.count(), 1U);
    for (std::size_t i = 1; i <= 3; ++i) {
        f.nodes.last().end(ExitStatus::exited(1));
        f.settle();
        EXPECT_TRUE(std::holds_alternative<NodeStates::Restarting>(f.state().node));
        EXPECT_EQ(f.ask(1, Kind::restart), "1 {}");
        EXPECT_EQ(f.nodes.count(), i + 1);
    }
    f.nodes.last().end(ExitStatus::exited(1));
    f.settle();
    EXPECT_EQ(f.state().node, NodeState(NodeStates::Restarting{1s})) << "the delays are fresh";
    f.advance(1s);
    EXPECT_EQ(f.ask(1, Kind::restart), "1 {}") << "also a helper that runs";
    EXPECT_EQ(f.liveNodes(), 1U);

    f.nodes.failure = SystemError{.call = "fork", .code = EAGAIN};
    EXPECT_TRUE(f.ask(1, Kind::restart).contains("couldn't be started"));
    std::filesystem::remove(f.home().entry());
    EXPECT_TRUE(f.ask(1, Kind::restart).contains("isn't there any more"));

    EXPECT_EQ(f.ask(1, Kind::open), "1 {}");
    EXPECT_TRUE(f.ask(1, Kind::quit).starts_with(R"(1 {"pid":)"));
    EXPECT_EQ(f.opened + f.quits, 2);
    f.model().stop([] {});
    EXPECT_EQ(f.ask(1, Kind::restart).substr(0, 11), "1! stopping");
    EXPECT_TRUE(f.ask(1, Kind::status).starts_with("1 {"));
}

TEST(StatusSource, namesTheStateAndItsCause) {
    std::vector<JournalEvent> events;
    StatusSource source{.program = {},
                        .folders = {},
                        .webOrigin = *Url::parse("https://tarnik.example"),
                        .hasDriver = true,
                        .events = [&] { return events; },
                        .history = [&] { return RunHistory::of(events); },
                        .helperVersion = [] { return std::nullopt; },
                        .checksForUpdates = [] { return true; }};
    const WallTime now = std::chrono::sys_days(std::chrono::year(2026) / 3 / 1);
    const auto is = [&](const AppState& state, std::string_view word, std::string_view reason) {
        const auto status = source.at(state, now);
        EXPECT_EQ(status.connection.state, word);
        EXPECT_TRUE(status.connection.reason.value_or("").contains(reason)) << word;
        EXPECT_EQ(status.connection.reason.has_value(), !reason.empty()) << word;
    };
    AppState state{.setup = Setups::Installing{"Downloading"}};
    is(state, ConnectionState::installing, "");
    state.setup = Setups::Ready{};
    state.node = NodeStates::Restarting{8s};
    state.joined = true;
    events = {{.time = now - 12s, .code = EventCode::helperEnded, .sentence = {}, .fields = {{"exit", 3}}},
              {.time = now - 12s,
               .code = EventCode::helperRestart,
               .sentence = {},
               .fields = {{"delayMs", 20'000}}}};
    is(state, ConnectionState::reconnecting, "exit 3, 12 s ago. Next try in 8 s.");
    state.node = NodeStates::Running{};
    state.pairing =
        PairingSession::Snapshot{.sessionID = "1", .phase = PairingPhases::Connected{}, .text = {}};
    is(state, ConnectionState::connected, "");
    is(AppState{.homeError = "unusable"}, ConnectionState::problem, "unusable");
    EXPECT_EQ(source.at(state, now).driver.state, DriverState::off);
}

}  // namespace
}  // namespace tarnik
