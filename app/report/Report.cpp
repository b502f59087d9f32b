#include "app/report/Report.h"

#include <algorithm>
#include <cstddef>

#include "app/doctor/FindingText.h"
#include "app/texts/ReportTexts.h"
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

}  // namespace tarnik
