#include "core/relocation/RecordLine.h"

namespace tarnik::Relocation {

namespace {

void appendField(std::string& line, std::string_view field) {
    constexpr std::string_view hex = "0123456789ABCDEF";
    line += '\t';
    for (const char character : field) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte != 0x7F) {
            line += character;
        } else {
            line.append({'%', hex[byte >> 4U], hex[byte & 0x0FU]});
        }
    }
}

std::string_view word(bool truth) {
    return truth ? "true" : "false";
}

}  // namespace

std::string recordLine(const Launch& launch, const Decision& decision, std::optional<bool> healed,
                       const std::vector<std::string>& extra, RecordTime at) {
    std::string line = isoSeconds(at);
    const auto add = [&line](const char* name, std::string_view value) {
        appendField(line, std::string(name).append(value));
    };
    add("translocated=", word(launch.isTranslocated));
    add("original=", launch.originalPath.value_or("-"));
    add("here=", launch.bundlePath);
    add("relaunch=", word(launch.isRelaunch));
    add("decision=", recordName(decision));
    if (healed) add("cleared=", word(*healed));
    for (const auto& field : extra) appendField(line, field);
    return line;
}

std::string windowLine(std::string_view reason, RecordTime at) {
    std::string line = isoSeconds(at);
    appendField(line, "window=opened");
    appendField(line, std::string("reason=").append(reason));
    return line;
}

}  // namespace tarnik::Relocation
