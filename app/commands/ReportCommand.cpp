#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "app/bundle/BuildKind.h"
#include "app/commands/Commands.h"
#include "app/commands/ExaminedInstallation.h"
#include "app/journal/JournalReader.h"
#include "app/report/Report.h"
#include "app/texts/ReportTexts.h"
#include "core/foundation/Files.h"
#include "core/foundation/LogTail.h"
#include "core/foundation/TextCleanup.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeInstaller.h"

namespace tarnik {
namespace {

constexpr std::size_t journalEvents = 200;
constexpr std::size_t logLines = 200;
constexpr std::size_t logBytes = 100'000;
constexpr std::size_t longestMessage = 1000;

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
    const auto entries = subject.host.policy.policy.entries();
    return "web origin: " + build.webOrigin.text() + "\n" +
           "release base: " + (build.nodeReleaseBase ? build.nodeReleaseBase->text() : "absent") + "\n" +
           "release key: " + (build.nodeReleasePublicKey ? "present" : "absent") + "\n" +
           "minimum helper: " + build.nodeMinVersion.value_or("absent") + "\n" +
           "organisation: " + (entries.empty() ? "absent" : textOf(entries)) + "\n" +
           "platform: " + subject.host.platform + "\n" + "executable: " + subject.executable + "\n" +
           "bundle: " + subject.bundle.value_or("absent") + "\n" +
           "helper's folder: " + (subject.home ? subject.home->path : describe(subject.home.error())) + "\n" +
           "helper's log: " + subject.host.nodeLog + "\n" + "tarnik's log: " + subject.journal() + "\n";
}

std::string journal(const DoctorSubject& subject) {
    std::string text;
    for (const auto& event : readJournal(subject.journal(), journalEvents))
        text += isoSeconds(event.time) + " " + std::string(nameOf(event.code)) + ": " + event.sentence + "\n";
    return text;
}

std::string helperLog(const DoctorSubject& subject) {
    return std::string(lastLines(readLogTail(subject.host.nodeLog, logBytes), logLines));
}

// Puts each member on a line of its own, because a report cuts long lines.
std::string memberLines(const Json& status) {
    std::string lines;
    for (const char character : status.text()) {
        if (character == '"' && (lines.ends_with(',') || lines.ends_with('{'))) lines += '\n';
        lines += character;
    }
    return lines;
}

std::string gathered(const DoctorSubject& subject, const ProgramRun& run, const BackgroundTasks& tasks) {
    const auto status = statusOfRunningCopy(run);
    const ReportSources sources{.versions = versions(subject),
                                .settings = settings(subject),
                                .findings = examine(subject, examinationDeps(subject, status, tasks)),
                                .status = status ? memberLines(*status) : ReportTexts::statusNotRunning,
                                .journal = journal(subject),
                                .helperLog = helperLog(subject)};
    return reportText(sources, Redaction(Redaction::Names::ofThisMachine(run.environment, run.userFolder)));
}

// Returns false with errno set if a file is at the path, or if the path can't be examined.
bool isFree(const std::string& path) {
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0) return errno == ENOENT;
    errno = EEXIST;
    return false;
}

// A new file that only this user can read. It is removed again unless all was written. An existing file is
// left unchanged.
class NewFile {
public:
    explicit NewFile(std::string path)
        : path_(std::move(path)),
          file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)),
          isIncomplete_(static_cast<bool>(file_)) {}
    ~NewFile() {
        if (isIncomplete_) ::unlink(path_.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool isOpen() const { return static_cast<bool>(file_); }
    bool write(const std::string& text) {
        if (writeAll(file_.get(), text) < text.size()) return false;
        isIncomplete_ = false;
        return true;
    }

private:
    const std::string path_;
    const UniqueFd file_;
    bool isIncomplete_;
};

}  // namespace

ExitCode runReport(const CommandOptions& options, const CommandDeps& deps) {
    const auto path = options.arguments().empty() ? std::nullopt : std::optional(options.arguments().front());
    const auto fail = [&](const char* call) {
        deps.output.error(ReportTexts::notWritten +
                          sanitizedLine(describe(SystemError::last(call, *path)), longestMessage));
        return ExitCode::failed;
    };
    if (path && !isFree(*path)) return fail("open");
    if (path || deps.output.onTerminal()) deps.output.note(ReportTexts::working);

    const BackgroundTasks tasks;
    const auto text = gathered(examinedInstallation(options, deps.run), deps.run, tasks);
    if (!path) {
        deps.output.write(text);
        return endWithProbes(ExitCode::done, tasks, deps.output);
    }
    NewFile file(*path);  // created late, so that an interrupted command leaves no empty file
    if (!file.isOpen()) return endWithProbes(fail("open"), tasks, deps.output);
    if (!file.write(text)) return fail("write");
    deps.output.note(ReportTexts::written + sanitizedLine(*path, longestMessage));
    return endWithProbes(ExitCode::done, tasks, deps.output);
}

}  // namespace tarnik
