#include "app/doctor/ProvenanceText.h"

#include <functional>
#include <string_view>
#include <utility>

#include "app/doctor/DoctorCheck.h"
#include "core/foundation/Json.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

using Record = ProvenanceCheck::Record;
using TreeState = ProvenanceCheck::TreeState;

constexpr std::size_t mostFiles = 200;  // of each tree
constexpr std::size_t longestPath = 300;
constexpr std::size_t longestMode = 8;

std::string_view nameOf(TreeState state) {
    switch (state) {
        case TreeState::unchanged: return "unchanged";
        case TreeState::changed: return "changed";
        case TreeState::gone: return "gone";
        case TreeState::notRecorded: return "notRecorded";
        case TreeState::unknownOrigin: break;
    }
    return "unknownOrigin";
}

std::string_view nameOf(Record record) {
    switch (record) {
        case Record::absent: return "absent";
        case Record::unreadable: return "unreadable";
        case Record::unsigned_: return "notSigned";
        case Record::mismatch: return "mismatch";
        case Record::good: break;
    }
    return "good";
}

struct Difference {
    const char* how;
    const std::string& path;
    const TreeDifferences::ModeChange* mode;  // null unless only the mode differs
};

// Calls `report` for at most `mostFiles` paths. The record is a file that another program may have changed,
// so its names and modes may have control characters.
void forEachDifference(const TreeDifferences& differences,
                       const std::function<void(const Difference&)>& report) {
    const std::pair<const char*, const std::vector<std::string>*> kinds[] = {
        {"changed", &differences.changed}, {"missing", &differences.missing}, {"added", &differences.added}};
    std::size_t count = 0;
    for (const auto& [how, paths] : kinds)
        for (const auto& path : *paths)
            if (count++ < mostFiles) {
                const auto mode = differences.modes.find(path);
                report({how, path, mode != differences.modes.end() ? &mode->second : nullptr});
            }
}

// Returns "changed", or "mode 644, was 755".
std::string wordsFor(const Difference& difference) {
    if (difference.mode == nullptr) return difference.how;
    return "mode " + sanitizedLine(difference.mode->is, longestMode) + ", was " +
           sanitizedLine(difference.mode->was, longestMode);
}

std::string reasonOf(const ProvenanceCheck& check) {
    return check.record == Record::unreadable ? "it is damaged" : check.reason;
}

std::string treeLine(const ProvenanceCheck::Tree& tree) {
    const auto name = tree.name + (tree.version.empty() ? "" : " " + sanitizedLine(tree.version, 40));
    switch (tree.state) {
        case TreeState::unchanged: return name + " is as it was installed.";
        case TreeState::changed:
            return name + " differs in " +
                   (tree.differences.count() == 1 ? "1 file:"
                                                  : std::to_string(tree.differences.count()) + " files:");
        case TreeState::gone: return name + " is missing.";
        case TreeState::notRecorded: return name + " was never recorded.";
        case TreeState::unknownOrigin: break;
    }
    return name + " is as it was when it was first recorded; an earlier version installed it.";
}

}  // namespace

Finding provenanceFinding(const ProvenanceCheck& check) {
    constexpr int named = 3;
    if (check.record == Record::absent) return finding(Severity::note, DoctorTexts::noProvenance);
    if (check.record != Record::good) {
        auto found = finding(Severity::error, DoctorTexts::badProvenance);
        found.sentence += reasonOf(check) + ".";
        return found;
    }
    if (check.isGood()) return fine("The installed files are as they were installed.");
    auto found = finding(Severity::error, DoctorTexts::changedFiles);
    std::string files;
    for (const auto& tree : check.trees) {
        int count = 0;
        forEachDifference(tree.differences, [&](const Difference& file) {
            if (count++ >= named) return;
            files += (files.empty() ? "" : ", ") + file.path + " (" + wordsFor(file) + ")";
        });
        if (count > named) files += " and " + std::to_string(tree.differences.count() - named) + " more";
        const bool isWhole = tree.state == TreeState::unchanged || tree.state == TreeState::unknownOrigin;
        if (count == 0 && !isWhole) files += (files.empty() ? "" : ", ") + tree.name;
    }
    found.sentence += files + ".";
    return found;
}

std::vector<std::string> provenanceLines(const ProvenanceCheck& check) {
    if (check.record != Record::good) return {provenanceFinding(check).sentence};
    std::vector<std::string> lines{"The record is signed with this build's key."};
    for (const auto& tree : check.trees) {
        lines.push_back(treeLine(tree));
        const auto folder = sanitizedLine(tree.folder, longestPath);
        forEachDifference(tree.differences, [&](const Difference& file) {
            auto line = std::string("  ").append(file.how).append("  ").append(folder).append("/");
            line += sanitizedLine(file.path, longestPath);
            if (file.mode != nullptr) line.append(" (").append(wordsFor(file)).append(")");
            lines.push_back(std::move(line));
        });
        if (tree.differences.count() > mostFiles)
            lines.push_back("  and " + std::to_string(tree.differences.count() - mostFiles) + " more");
    }
    return lines;
}

std::string provenanceJson(const ProvenanceCheck& check) {
    std::string trees;
    for (const auto& tree : check.trees) {
        std::string files;
        forEachDifference(tree.differences, [&](const Difference& file) {
            files += std::string(files.empty() ? "" : ",") + R"({"path":)" +
                     quotedJson(sanitizedLine(file.path, longestPath)) + R"(,"how":")" + file.how + "\"";
            if (file.mode != nullptr) {
                files += R"(,"mode":{"was":)" + quotedJson(sanitizedLine(file.mode->was, longestMode)) +
                         R"(,"is":)" + quotedJson(sanitizedLine(file.mode->is, longestMode)) + "}";
            }
            files += "}";
        });
        trees += (trees.empty() ? "" : ",") + (R"({"name":)" + quotedJson(tree.name)) + R"(,"version":)" +
                 quotedJson(sanitizedLine(tree.version, longestPath)) + R"(,"state":")" +
                 std::string(nameOf(tree.state)) + R"(","differences":)" +
                 std::to_string(tree.differences.count()) + R"(,"files":[)" + files + "]}";
    }
    return R"({"version":1,"good":)" + std::string(check.isGood() ? "true" : "false") + R"(,"record":")" +
           std::string(nameOf(check.record)) + R"(","reason":)" +
           quotedJson(sanitizedLine(reasonOf(check), longestPath)) + R"(,"trees":[)" + trees + "]}";
}

}  // namespace tarnik
