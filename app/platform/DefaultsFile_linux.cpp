#include "app/platform/DefaultsFile.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include "app/platform/AtomicWrite.h"
#include "core/foundation/Files.h"

namespace tarnik {
namespace {

constexpr const char* couldNotSave = "couldn't save the settings: ";

const Json jsonTrue(Json::Literal{"true"});

struct Contents {
    Json::Object members;
    bool isBroken = false;  // the path exists but contains no readable JSON object
};

Contents read(const std::string& path) {
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0) return {};
    const auto bytes = S_ISREG(found.st_mode) ? readFile(path, DefaultsFile::maxBytes) : std::nullopt;
    const auto document = bytes ? Json::parse(*bytes, DefaultsFile::maxBytes) : std::nullopt;
    if (!document || !document->isObject()) return {.isBroken = true};
    return {.members = document->members()};
}

void assign(Json::Object& members, const std::string& key, const Json& value) {
    const auto place = std::ranges::lower_bound(members, key, {}, &Json::Member::key);
    if (place != members.end() && place->key == key) {
        place->value = value;
    } else {
        members.insert(place, {key, value});
    }
}

// Writes one member per line for human readers.
std::string formatted(const Json::Object& members) {
    std::string text = "{";
    for (const auto& member : members) {
        text += &member == members.data() ? "\n    " : ",\n    ";
        const auto string = member.value.asString();
        text += quotedJson(member.key) + ": " + (string ? quotedJson(*string) : member.value.text());
    }
    return text + "\n}\n";
}

}  // namespace

DefaultsFile::DefaultsFile(std::string path, SystemLog log)
    : path_(std::move(path)), log_(std::move(log)), members_(read(path_).members) {}

std::optional<std::string> DefaultsFile::text(const std::string& key) const {
    const auto found = std::ranges::find(members_, key, &Json::Member::key);
    return found != members_.end() ? found->value.asString() : std::nullopt;
}

bool DefaultsFile::flag(const std::string& key) const {
    const auto found = std::ranges::find(members_, key, &Json::Member::key);
    return found != members_.end() && !found->value.asString() && found->value.text() == jsonTrue.text();
}

void DefaultsFile::setFlag(const std::string& key) {
    change([&](Json::Object& members) { assign(members, key, jsonTrue); });
}

void DefaultsFile::clearFlag(const std::string& key) {
    if (!flag(key)) return;
    change([&](Json::Object& members) {
        std::erase_if(members, [&](const Json::Member& member) { return member.key == key; });
    });
}

void DefaultsFile::change(const std::function<void(Json::Object&)>& edit) {
    edit(members_);
    auto contents = read(path_);
    const std::string aside = path_ + std::string(asideSuffix);
    if (contents.isBroken && std::rename(path_.c_str(), aside.c_str()) != 0) {
        return log_(couldNotSave + describe(SystemError::last("rename", path_)));
    }
    if (contents.isBroken) contents.members = members_;
    edit(contents.members);
    if (const auto done = writeFileAtomically(path_, formatted(contents.members)); !done)
        log_(couldNotSave + describe(done.error()));
}

std::string DefaultsFile::pathIn(const SystemFolders& folders) {
    return folders.preferences + "/tarnik/defaults.json";
}

UserDefaults DefaultsFile::operations(const std::string& path, const SystemLog& log) {
    const auto file = std::make_shared<DefaultsFile>(path, log);
    return {.text = [file](const std::string& key) { return file->text(key); },
            .flag = [file](const std::string& key) { return file->flag(key); },
            .setFlag = [file](const std::string& key) { file->setFlag(key); },
            .clearFlag = [file](const std::string& key) { file->clearFlag(key); }};
}

}  // namespace tarnik
