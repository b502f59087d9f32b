#include "app/texts/JournalTexts.h"

#include <cctype>

#include "app/texts/ExplanationTexts.h"

namespace tarnik::JournalTexts {
namespace {

using ExplanationTexts::duration;

// Appends a full stop unless the reason already ends like a sentence.
std::string sentence(const std::string& beginning, const std::string& reason) {
    const std::string text = beginning + ": " + reason;
    return reason.ends_with('.') || reason.ends_with(".)") ? text : text + ".";
}

std::string afterTime(std::optional<Seconds> ranFor) {
    return ranFor ? " after " + duration(*ranFor) + "." : ".";
}

std::string switchState(Switch which, bool isOn) {
    return std::string(title(which)) + (isOn ? " is on" : " is off");
}

}  // namespace

std::string programStarted(std::string_view version, int pid) {
    return "tarnik " + std::string(version) + " started (process " + std::to_string(pid) + ").";
}

std::string programEnded(int exitStatus) {
    return "tarnik ended with exit status " + std::to_string(exitStatus) + ".";
}

std::string programWarning(std::string line) {
    if (!line.empty()) line[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(line[0])));
    return line.ends_with('.') ? line : line + ".";
}

std::string relocationMessage(const std::string& title) {
    return "This copy of tarnik was not moved: " + title + ".";
}

std::string installRefused(const std::string& reason) {
    return sentence("The helper was not installed", reason);
}

std::string pairingRefused(const std::string& reason) {
    return sentence("A link was refused", reason);
}

std::string pairingEnded(const ExitStatus& status) {
    return "The pairing ended with " + describe(status) + " and has not connected this computer.";
}

std::string switches(const SwitchSnapshot& switches) {
    return switchState(Switch::accessibility, switches.accessibility) + ", " +
           switchState(Switch::screenRecording, switches.screenRecording) + ".";
}

std::string updateWaiting(const std::string& version) {
    return "Update " + version + " is ready and waits for a quiet moment.";
}

std::string updateInstalled(const std::string& version) {
    return "Update " + version + " is being installed.";
}

std::string started(Text child, int pid, const std::optional<std::string>& version) {
    const std::string what = version && !version->empty() ? child + (" " + *version) : child;
    return what + " started (process " + std::to_string(pid) + ").";
}

std::string startFailed(Text child, const std::string& reason) {
    return sentence(child + std::string(" couldn't be started"), reason);
}

std::string ended(Text child, const ExitStatus& status, std::optional<Seconds> ranFor) {
    return child + (" stopped with " + describe(status)) + afterTime(ranFor);
}

std::string stopped(Text child, std::optional<Seconds> ranFor) {
    return child + std::string(" was stopped by tarnik") + afterTime(ranFor);
}

std::string restart(Text child, Seconds delay) {
    return child + (" starts again in " + duration(delay)) + ".";
}

}  // namespace tarnik::JournalTexts
