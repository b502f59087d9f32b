#include "app/report/Report.h"

#include <algorithm>
#include <cstddef>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/doctor/FindingText.h"
#include "app/texts/ReportTexts.h"
#include "core/foundation/Files.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr std::size_t longestLine = 2000;
constexpr std::size_t maxSectionBytes = 120'000;

std::string_view withoutFirstLine(std::string_view text) {
    const auto end = text.find('\n');
    return end == text.npos ? "" : text.substr(end + 1);
}

std::string_view lastWholeLines(std::string_view text, std::size_t maxBytes) {
    return text.size() <= maxBytes ? text : withoutFirstLine(text.substr(text.size() - maxBytes));
}

// Returns the lines, cleaned one by one and cut to `maxCharacters`.
std::string cleaned(std::string_view text, std::size_t maxCharacters) {
    std::string lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        lines += sanitizedLine(text.substr(0, end), maxCharacters) + "\n";
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string section(const char* title, const std::string& text) {
    if (text.empty()) return "";
    return "\n== " + std::string(title) + " ==\n" +
           cleaned(lastWholeLines(text, maxSectionBytes), maxSectionBytes);
}

}  // namespace

// Lines are cut after the redaction, because it doesn't recognise the beginning of a secret.
std::string reportText(const ReportSources& sources, const Redaction& redaction) {
    const std::string whole =
        section(ReportTexts::versions, sources.versions) + section(ReportTexts::settings, sources.settings) +
        section(ReportTexts::doctor, findingsText(sources.findings)) +
        section(ReportTexts::status, sources.status) + section(ReportTexts::journal, sources.journal) +
        section(ReportTexts::helperLog, sources.helperLog);
    return ReportTexts::introduction + cleaned(redaction.apply(whole), longestLine);
}

std::string lastLines(const std::string& path, std::size_t count, std::size_t maxBytes) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    struct stat found{};
    if (!file || ::fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode)) return "";
    const auto size = static_cast<std::size_t>(found.st_size);
    if (size > maxBytes && ::lseek(file.get(), static_cast<off_t>(size - maxBytes), SEEK_SET) < 0) return "";
    std::string bytes(std::min(size, maxBytes), '\0');
    bytes.resize(readInto(file, bytes).value_or(0));
    const auto text = size > maxBytes ? withoutFirstLine(bytes) : std::string_view(bytes);
    auto from = text.size();
    for (std::size_t lines = 0; from > 0; --from)
        if (text[from - 1] == '\n' && from < text.size() && ++lines == count) break;
    return cleaned(text.substr(from), maxBytes);
}

}  // namespace tarnik
