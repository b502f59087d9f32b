#include <fcntl.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "app/bundle/BuildKind.h"
#include "app/commands/Commands.h"
#include "app/commands/ExaminedInstallation.h"
#include "app/journal/JournalReader.h"
#include "app/report/Report.h"
#include "app/texts/ReportTexts.h"
#include "core/foundation/Files.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeInstaller.h"

namespace tarnik {
namespace {

constexpr std::size_t journalEvents = 200;
constexpr std::size_t logLines = 200;
constexpr std::size_t logBytes = 100 * 1024;

std::string versions(const DoctorSubject& subject) {
    utsname system{};
    ::uname(&system);
    const auto helper = subject.home ? NodeInstaller(*subject.home, {}, {}).installedVersion() : std::nullopt;
    return "tarnik " + std::string(programVersion()) + (isDevelopmentBuild() ? " (development)" : "") + "\n" +
           "helper " + helper.value_or("not installed") + "\n" + "system " + system.sysname + " " +
           system.release + " " + system.machine + "\n";
}

std::string settings(const DoctorSubject& subject) {
    const auto& build = subject.host.settings;
    return "web origin: " + build.webOrigin.text() + "\n" +
           "release base: " + (build.nodeReleaseBase ? build.nodeReleaseBase->text() : "absent") + "\n" +
           "signature check: " + (build.nodeReleasePublicKey ? "on" : "off") + "\n" +
           "minimum helper: " + build.nodeMinVersion.value_or("absent") + "\n" +
           "platform: " + subject.host.platform + "\n" + "executable: " + subject.executable + "\n" +
           "bundle: " + subject.bundle.value_or("absent") + "\n" +
           "helper's folder: " + (subject.home ? subject.home->path : describe(subject.home.error())) + "\n" +
           "helper's log: " + subject.host.nodeLog + "\n" + "journal: " + subject.journal() + "\n";
}

std::string journal(const DoctorSubject& subject) {
    std::string text;
    for (const auto& event : readJournal(subject.journal(), journalEvents))
        text += isoSeconds(event.time) + " " + std::string(nameOf(event.code)) + ": " + event.sentence + "\n";
    return text;
}

// Writes a new file that only this user can read. An existing file is left unchanged.
std::expected<void, SystemError> writeNew(const std::string& path, const std::string& text) {
    const UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file) return std::unexpected(SystemError::last("open", path));
    if (writeAll(file.get(), text) == text.size()) return {};
    auto error = SystemError::last("write", path);
    ::unlink(path.c_str());
    return std::unexpected(std::move(error));
}

}  // namespace

ExitCode runReport(const CommandOptions& options, const CommandDeps& deps) {
    const auto subject = examinedInstallation(options, deps.run);
    const auto& arguments = options.arguments();
    if (!arguments.empty() || deps.output.onTerminal()) deps.output.note(ReportTexts::working);
    const BackgroundTasks tasks;
    const auto status = statusOfRunningCopy(deps.run);
    const ReportSources sources{.versions = versions(subject),
                                .settings = settings(subject),
                                .findings = examine(subject, examinationDeps(subject, status, tasks)),
                                .status = status ? status->text() : ReportTexts::statusNotRunning,
                                .journal = journal(subject),
                                .helperLog = lastLines(subject.host.nodeLog, logLines, logBytes)};
    const auto names = Redaction::Names::ofThisMachine(deps.run.environment, deps.run.userFolder);
    const auto text = reportText(sources, Redaction(names));
    if (arguments.empty()) {
        deps.output.write(text);
        return endWithProbes(ExitCode::done, tasks, deps.output);
    }
    if (const auto written = writeNew(arguments.front(), text); !written) {
        deps.output.error(ReportTexts::notWritten + describe(written.error()));
        return endWithProbes(ExitCode::failed, tasks, deps.output);
    }
    deps.output.note(ReportTexts::written + arguments.front());
    return endWithProbes(ExitCode::done, tasks, deps.output);
}

}  // namespace tarnik
