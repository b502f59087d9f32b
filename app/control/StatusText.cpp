#include "app/control/StatusText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>

#include "app/texts/ExplanationTexts.h"
#include "app/texts/StatusTexts.h"
#include "core/foundation/TextCleanup.h"
#include "core/switches/Switch.h"

namespace tarnik {
namespace {

using ExplanationTexts::duration;
namespace Texts = StatusTexts;
using Words = std::span<const std::pair<std::string_view, Texts::Text>>;

constexpr std::size_t longestLine = 400;

constexpr std::array<std::pair<std::string_view, Texts::Text>, 6> helperWords{
    {{HelperState::running, Texts::helperRunning},
     {HelperState::restarting, Texts::helperRestarting},
     {HelperState::pairing, Texts::helperPairing},
     {HelperState::waitingForLink, Texts::helperWaits},
     {HelperState::notInstalled, Texts::helperMissing},
     {HelperState::stopped, Texts::stopped}}};
constexpr std::array<std::pair<std::string_view, Texts::Text>, 6> driverWords{
    {{DriverState::ready, Texts::driverReady},
     {DriverState::starting, Texts::driverStarting},
     {DriverState::restarting, Texts::helperRestarting},
     {DriverState::off, Texts::driverOff},
     {DriverState::stopped, Texts::stopped},
     {DriverState::absent, Texts::driverAbsent}}};
constexpr std::array<std::pair<std::string_view, Texts::Text>, 3> switchWords{
    {{SwitchState::on, Texts::switchOn},
     {SwitchState::off, Texts::switchOff},
     {SwitchState::stale, Texts::switchStale}}};

// A state of a later version is shown as its own word.
std::string wordFor(const std::string& state, Words words) {
    for (const auto& [word, text] : words) {
        if (word == state) return text;
    }
    return state;
}

// Joins with ", " and leaves out empty parts.
class Details {
public:
    void add(const std::string& part) {
        if (part.empty()) return;
        if (!text_.empty()) text_ += ", ";
        text_ += part;
    }
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

std::string prefixed(Texts::Text prefix, const std::optional<std::string>& text) {
    return text && !text->empty() ? prefix + *text : "";
}

std::string processText(std::optional<std::int64_t> pid) {
    return pid ? Texts::process + std::to_string(*pid) : "";
}

std::string ageText(const std::optional<WallTime>& since, WallTime now) {
    return since ? Texts::runningFor + duration(now - *since) : "";
}

StatusRow mainRow(const Status& status) {
    StatusRow row{.label = {}, .lines = {status.connection.sentence}};
    const auto& [state, sentence, reason, joined] = status.connection;
    if (reason) row.lines.push_back(*reason);
    const bool failsNow = state == ConnectionState::reconnecting || state == ConnectionState::problem;
    const bool hasFailed = !status.program.isRunning && status.install.state == InstallState::missing;
    if (reason && (failsNow || hasFailed)) row.lines.emplace_back(Texts::seeDoctor);
    if (status.program.isRunning) return row;
    row.lines.emplace_back(status.connection.joined ? Texts::joined : Texts::notJoined);
    return row;
}

StatusRow programRow(const Status& status, WallTime now) {
    const auto& program = status.program;
    Details details;
    details.add(prefixed(Texts::version, program.version));
    details.add(processText(program.pid));
    if (program.face == "window") details.add(Texts::withWindow);
    if (program.face == "console") details.add(Texts::inTerminal);
    if (program.face == "service") details.add(Texts::asService);
    details.add(ageText(program.since, now));
    return {.label = Texts::program, .lines = {details.text()}};
}

StatusRow childRow(Texts::Text label, const Status::Child& child, Words words, WallTime now) {
    const auto& past = child.history;
    Details details;
    details.add(wordFor(child.state, words));
    details.add(prefixed(Texts::version, child.version));
    details.add(processText(past.pid));
    details.add(ageText(past.since, now));
    if (past.nextTry && *past.nextTry > now) details.add("next try in " + duration(*past.nextTry - now));
    if (past.restarts > 0)
        details.add(std::to_string(past.restarts) + (past.restarts == 1 ? " restart" : " restarts"));
    StatusRow row{.label = label, .lines = {details.text()}};
    if (!past.lastEnd) return row;
    std::string end = Texts::lastExit + past.lastEnd->status;
    if (past.lastEnd->ranForMs)
        end += Texts::after + duration(std::chrono::milliseconds(*past.lastEnd->ranForMs));
    row.lines.push_back(end + ", " + duration(now - past.lastEnd->at) + Texts::ago);
    return row;
}

StatusRow switchesRow(const Status::Switches& switches) {
    Details details;
    if (switches.accessibility)
        details.add(std::string(title(Switch::accessibility)) +
                    wordFor(*switches.accessibility, switchWords));
    if (switches.screenRecording)
        details.add(std::string(title(Switch::screenRecording)) +
                    wordFor(*switches.screenRecording, switchWords));
    return {.label = Texts::switches,
            .lines = {details.text().empty() ? Texts::switchesUnknown : details.text()}};
}

StatusRow updateRow(const Status::Update& update) {
    std::string text = update.state;
    if (update.state == UpdateState::none) text = Texts::noUpdate;
    if (update.state == UpdateState::unavailable) text = Texts::updatesElsewhere;
    if (update.state == UpdateState::waiting) text = update.version.value_or("") + Texts::updateWaits;
    return {.label = Texts::update, .lines = {text}};
}

StatusRow installRow(const Status::Install& install) {
    std::string text = install.state;
    if (install.state == InstallState::done) text = Texts::installed;
    if (install.state == InstallState::missing) text = Texts::installMissing;
    if (install.state == InstallState::running) text = install.text.value_or(Texts::installing);
    if (install.state == InstallState::failed) text = Texts::installFailed + install.text.value_or("");
    if (install.receivedBytes && install.totalBytes && *install.totalBytes > 0) {
        const auto part =
            static_cast<double>(*install.receivedBytes) / static_cast<double>(*install.totalBytes);
        text += " (" + std::to_string(static_cast<int>(std::clamp(part, 0.0, 1.0) * 100)) + " %)";
    }
    return {.label = Texts::install, .lines = {text}};
}

StatusRow foldersRow(const Status::Folders& folders) {
    StatusRow row{.label = Texts::folders, .lines = {}};
    if (folders.nodeHome) row.lines.push_back(Texts::home + *folders.nodeHome);
    row.lines.push_back(Texts::data + folders.applicationSupport);
    row.lines.push_back(Texts::logs + folders.logs);
    if (folders.socket) row.lines.push_back(Texts::socket + *folders.socket);
    return row;
}

StatusRow policyRow(const Status::Managed& policy) {
    StatusRow row{.label = Texts::policy, .lines = {}};
    for (const auto& [key, value, strength] : policy.settings) {
        const auto* kind = strength == PolicyStrength::forced ? Texts::isForced : Texts::isDefault;
        row.lines.push_back(std::string(key).append(" = ").append(value).append(kind));
    }
    if (policy.sentence) row.lines.push_back(*policy.sentence);
    return row;
}

}  // namespace

std::vector<StatusRow> statusRows(const Status& status, WallTime now) {
    std::vector<StatusRow> rows{mainRow(status),
                                programRow(status, now),
                                childRow(Texts::helper, status.helper, helperWords, now),
                                childRow(Texts::driver, status.driver, driverWords, now),
                                switchesRow(status.switches),
                                updateRow(status.update),
                                installRow(status.install),
                                foldersRow(status.folders)};
    if (status.policy) rows.push_back(policyRow(*status.policy));
    for (auto& row : rows) {
        for (auto& line : row.lines) line = sanitizedLine(line, longestLine);
    }
    return rows;
}

}  // namespace tarnik
