#include "app/control/Status.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "app/commands/TextWrap.h"
#include "app/control/ControlProtocol.h"
#include "app/control/StatusOnDisk.h"
#include "app/control/StatusText.h"
#include "app/journal/Journal.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

const WallTime noon = std::chrono::sys_days(std::chrono::year(2026) / 3 / 1) + 12h;

// A status in which every member has a value.
Status complete() {
    const ChildHistory past{.pid = 12,
                            .since = noon,
                            .restarts = 2,
                            .lastEnd = ChildHistory::End{.at = noon, .status = "exit 3", .ranForMs = 1500},
                            .nextTry = noon + 8s};
    return {.program = {true, "0.1.0", 11, "window", noon},
            .connection = {std::string(ConnectionState::reconnecting), "Reconnecting…", "why", true},
            .helper = {std::string(HelperState::restarting), "1.2.3", past, "why"},
            .driver = {std::string(DriverState::restarting), "1", past, "why"},
            .switches = {"on", "off"},
            .update = {std::string(UpdateState::waiting), "0.2.0"},
            .install = {std::string(InstallState::running), "Downloading", 1, 2},
            .folders = {"/home", "/data", "/logs", "/socket"},
            .policy = Status::Managed{std::string(PolicyState::inForce),
                                      "why",
                                      {{"startAtLogin", "true", PolicyStrength::forced},
                                       {"updates", "never", PolicyStrength::byDefault}}}};
}

void addNames(const Json& json, const std::string& prefix, std::set<std::string>& names) {
    for (const auto& [key, value] : json.members()) {
        names.insert(prefix + key);
        addNames(value, prefix + key + ".", names);
    }
}

TEST(Status, hasExactlyTheDocumentedMembers) {
    std::set<std::string> names;
    addNames(*Json::parse(complete().json(), 65'536), "", names);
    for (const char* group :
         {"program", "connection", "helper", "driver", "switches", "update", "install", "folders", "policy",
          "driver.lastExit.at", "driver.lastExit.status", "driver.lastExit.ranForMs"})
        EXPECT_EQ(names.erase(group), 1U) << group;

    std::set<std::string> documented;
    std::ifstream page(TARNIK_SOURCE_DIR "/docs/control.md");
    for (std::string line; std::getline(page, line);) {
        const auto cellEnd = line.find(" | ");
        for (auto at = line.find("| `") + 1; at != 0 && at < cellEnd; at = line.find('`', at)) {
            const auto begin = line.find('`', at) + 1;
            const auto end = line.find('`', begin);
            if (begin == 0 || end == std::string::npos || end > cellEnd) break;
            const auto name = line.substr(begin, end - begin);
            if (name.contains('.')) documented.insert(name);
            at = end + 1;
        }
    }
    EXPECT_EQ(names, documented);
}

TEST(Status, survivesJsonWithAndWithoutValues) {
    for (const auto& status : {complete(), Status{.connection = {.state = "a"},
                                                  .helper = {.state = "b"},
                                                  .driver = {.state = "c"},
                                                  .update = {.state = "d"},
                                                  .install = {.state = "e"}}}) {
        const auto json = Json::parse(status.json(), 65'536);
        ASSERT_TRUE(json) << status.json();
        EXPECT_EQ(Status::of(*json), status);
    }
    const auto text = complete().json();
    const auto without = [&](const std::string& part) {
        auto rest = text;
        rest.replace(rest.find(part), part.size(), "x");
        return Status::of(*Json::parse(rest, 65'536));
    };
    EXPECT_FALSE(without("helper"));
    EXPECT_FALSE(without("state"));
    EXPECT_TRUE(without("pid"));
}

TEST(Status, showsUntrustedTextsAndUnknownWordsOnOneScreen) {
    auto status = complete();
    status.connection.reason = "red\x1b[31m\nline";
    status.helper.state = "sleeping";
    status.install.receivedBytes = std::numeric_limits<std::int64_t>::max();
    const auto rows = statusRows(status, noon + 4s);
    EXPECT_EQ(rows.at(0).lines, (std::vector<std::string>{"Reconnecting…", "red[31m line",
                                                          "To find out more, run: tarnik doctor"}));
    EXPECT_EQ(
        rows.at(2).lines,
        (std::vector<std::string>{"sleeping, version 1.2.3, process 12, for 4 s, next try in 4 s, 2 restarts",
                                  "last exit: exit 3 after 1 s, 4 s ago"}));
    std::size_t lines = 0;
    for (const auto& row : rows) lines += row.lines.size();
    EXPECT_LE(lines, 20U);
}

TEST(TextWrap, dividesAtSpaces) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(wrappedLines("a path  /very/long/path is äöüä", 10),
              (Lines{"a path", "/very/long/path", "is äöüä"}));
    EXPECT_EQ(wrappedLines("ab cd  ef", 9), Lines{"ab cd  ef"});
    EXPECT_EQ(wrappedLines("ab cd", 0), Lines{"ab cd"});
    EXPECT_EQ(wrappedLines("", 5), Lines{""});
}

TEST(RunHistory, followsAChildAndItsProgram) {
    RunHistory history;
    const auto apply = [&](EventCode code, Seconds at, JournalEvent::Fields fields = {}) {
        history.apply({.time = noon + std::chrono::round<std::chrono::milliseconds>(at),
                       .code = code,
                       .sentence = {},
                       .fields = std::move(fields)});
    };
    apply(EventCode::helperStarted, 0s, {{"pid", 5}});
    apply(EventCode::programStarted, 1s);
    EXPECT_EQ(history, RunHistory{.since = noon + 1s}) << "of this run only";
    apply(EventCode::helperStarted, 2s, {{"pid", 6}});
    EXPECT_EQ(history.helper.pid, 6);
    apply(EventCode::helperEnded, 4s, {{"signal", 9}, {"ranForMs", 2000}});
    EXPECT_EQ(history.helper.pid, std::nullopt);
    apply(EventCode::helperRestart, 4s, {{"delayMs", 8000}});
    EXPECT_EQ(history.helper.nextTry, noon + 12s);
    apply(EventCode::helperStarted, 12s, {{"pid", 7}});
    EXPECT_EQ(history.helper.nextTry, std::nullopt);
    EXPECT_EQ(history.helper.lastEnd->status, "signal 9");
    EXPECT_EQ(history.helper.restarts, 1);
    apply(EventCode::helperStopped, 13s);
    apply(EventCode::pairingConnected, 20s);
    EXPECT_EQ(history.helper.since, noon + 20s) << "the connect command works as the helper";
    EXPECT_EQ(history.helper.pid, std::nullopt);
}

TEST(StatusOnDisk, showsWhatAKilledRunHasLeft) {
    const TemporaryFolder folder;
    const SystemFolders folders{.applicationSupport = folder.path() + "/data",
                                .logs = folder.path() + "/logs",
                                .preferences = folder.path() + "/preferences"};
    {
        Journal journal(
            folders.stateFolder() + "/tarnik.log",
            {.now = [] { return noon; }, .makeQueue = [](auto&) { return std::make_shared<ManualQueue>(); }});
        journal.record(EventCode::programStarted, "started");
        journal.record(EventCode::helperStarted, "started", {{"pid", 6}});
        journal.record(EventCode::helperEnded, "ended", {{"exit", 3}});
        journal.record(EventCode::helperRestart, "restart", {{"delayMs", 8000}});
    }
    const auto home = NodeHome::resolve(folder.path() + "/home", folder.path());
    const auto status = statusOnDisk(home, folders, noon + 1s);
    EXPECT_FALSE(status.program.isRunning);
    EXPECT_EQ(status.connection.state, ConnectionState::notRunning);
    EXPECT_EQ(status.helper.state, HelperState::notInstalled);
    EXPECT_EQ(status.helper.history.lastEnd->status, "exit 3");
    EXPECT_EQ(status.helper.history.nextTry, std::nullopt);
    const auto unusable = statusOnDisk(NodeHome::resolve("not/absolute", folder.path()), folders, noon);
    EXPECT_TRUE(unusable.connection.reason.value_or("").contains("not/absolute"));
}

}  // namespace
}  // namespace tarnik
