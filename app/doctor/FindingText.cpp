#include "app/doctor/FindingText.h"

#include <algorithm>

#include "core/foundation/Json.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {

std::string_view nameOf(Severity severity) {
    switch (severity) {
        case Severity::ok: return "ok";
        case Severity::note: return "note";
        case Severity::warning: return "warning";
        case Severity::error: break;
    }
    return "error";
}

std::string printable(const std::string& text) {
    constexpr std::size_t longest = 1000;
    return sanitizedLine(text, longest);
}

namespace {

std::string whole(const std::string& text) {
    return sanitizedLine(text, text.size());
}

}  // namespace

std::string findingsText(const std::vector<Finding>& findings) {
    std::string text;
    for (const auto& finding : findings) {
        text += std::string(nameOf(finding.severity)) + " " + finding.code + ": " + whole(finding.sentence) +
                "\n";
        if (!finding.remedy.empty()) text += "    " + whole(finding.remedy) + "\n";
    }
    return text;
}

std::string findingsJson(const std::vector<Finding>& findings) {
    std::string list;
    for (const auto& finding : findings)
        list += std::string(list.empty() ? "" : ",") + R"({"code":)" + quotedJson(finding.code) +
                R"(,"severity":")" + std::string(nameOf(finding.severity)) + R"(","sentence":)" +
                quotedJson(printable(finding.sentence)) + R"(,"remedy":)" +
                quotedJson(printable(finding.remedy)) + "}";
    return R"({"version":1,"problems":)" +
           std::to_string(std::ranges::count_if(findings, &Finding::isProblem)) + R"(,"findings":[)" + list +
           "]}";
}

}  // namespace tarnik
