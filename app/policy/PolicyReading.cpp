#include "app/policy/PolicyReading.h"

#include <algorithm>
#include <cerrno>
#include <expected>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/bundle/BuildKind.h"
#include "app/texts/PolicyTexts.h"
#include "core/foundation/DirectoryReader.h"
#include "core/foundation/Files.h"
#include "core/foundation/Placeholders.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {
namespace {

namespace Texts = PolicyTexts;

constexpr std::size_t maxFiles = 64;

// Collects the files of one folder.
class FolderReader {
public:
    FolderReader(uid_t owner, PolicyParser::Releases releases) : owner_(owner), releases_(releases) {}

    // Opens the folder `name` in `parent`, or the folder at the absolute path `name`. Returns an empty owner
    // if it is absent or ignored.
    UniqueFd openFolder(int parent, const std::string& name, const std::string& path) {
        UniqueFd folder(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!folder) {
            noteFailedOpen(path, Texts::notFolder);
            return {};
        }
        return isTrusted(folder, path) ? std::move(folder) : UniqueFd();
    }

    void readFile(int folder, const std::string& name, const std::string& path) {
        const UniqueFd file(::openat(folder, name.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
        if (!file) return noteFailedOpen(path, Texts::notRegular);
        struct stat found{};
        if (::fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode))
            return ignore(path, std::string(Texts::notRegular));
        if (!isTrusted(file, path)) return;
        const auto bytes = readRest(file, PolicyParser::maxBytes);
        if (!bytes) return refuse(path, std::string(Texts::notJson));
        const auto policy = PolicyParser::parse(*bytes, releases_);
        if (!policy) return refuse(path, policy.error().reason);
        PolicyParser::merge(reading_.policy, *policy);
    }

    void readFiles(UniqueFd folder, const std::string& path) {
        std::vector<std::string> names;
        DirectoryReader entries(std::move(folder));
        while (const char* next = names.size() <= maxFiles ? entries.next() : nullptr) {
            const std::string_view name = next;
            if (name.ends_with(".json") && !name.starts_with('.')) names.emplace_back(name);
        }
        if (entries.hasFailed()) return refuse(path, unreadable(EIO));
        if (names.size() > maxFiles) return refuse(path, std::string(Texts::tooManyFiles));
        std::ranges::sort(names);
        for (const auto& name : names)
            readFile(entries.descriptor(), name, std::string(path).append("/").append(name));
    }

    PolicyReading finish() {
        if (reading_.damage) reading_.policy = {};
        return std::move(reading_);
    }

private:
    static std::string unreadable(int code) {
        return filled(Texts::unreadable, {{"reason", systemMessage(code)}});
    }

    void ignore(const std::string& path, const std::string& reason) {
        reading_.ignored.push_back(policyIgnored(path, reason));
    }
    void refuse(const std::string& path, const std::string& reason) {
        if (!reading_.damage) reading_.damage = policyDamage(path, reason);
    }

    // An absent file or folder is usual. One that can't be read may forbid something.
    void noteFailedOpen(const std::string& path, std::string_view wrongKind) {
        const int code = errno;
        if (code == ENOENT) return;
        if (code == ELOOP || code == ENOTDIR) return ignore(path, std::string(wrongKind));
        refuse(path, unreadable(code));
    }

    bool isTrusted(const UniqueFd& file, const std::string& path) {
        struct stat found{};
        if (::fstat(file.get(), &found) != 0 || found.st_uid != owner_) {
            ignore(path, filled(Texts::notOwned,
                                {{"owner", owner_ == 0 ? "root" : "user " + std::to_string(owner_)}}));
            return false;
        }
        if ((found.st_mode & (S_IWGRP | S_IWOTH)) == 0) return true;
        ignore(path, std::string(Texts::writable));
        return false;
    }

    const uid_t owner_;
    const PolicyParser::Releases releases_;
    PolicyReading reading_;
};

}  // namespace

std::string policyDamage(const std::string& file, const std::string& reason) {
    return filled(Texts::damaged, {{"file", file}, {"reason", reason}});
}

std::string policyIgnored(const std::string& file, const std::string& reason) {
    return filled(Texts::ignored, {{"file", file}, {"reason", reason}});
}

std::string PolicyReading::warnings() const {
    std::string all = damage.value_or("");
    for (const auto& sentence : ignored) {
        if (!all.empty()) all += ' ';
        all += sentence;
    }
    return all;
}

PolicyReading PolicyFolder::read(PolicyParser::Releases releases) const {
    FolderReader reader(owner, releases);
    std::string path = base == "/" ? "" : base;
    auto folder = reader.openFolder(AT_FDCWD, base, base);
    for (const auto& name : folders) {
        if (!folder) break;
        path += "/" + name;
        folder = reader.openFolder(folder.get(), name, path);
    }
    if (folder) {
        reader.readFile(folder.get(), "policy.json", path + "/policy.json");
        const auto more = path + "/policy.d";
        if (auto inner = reader.openFolder(folder.get(), "policy.d", more))
            reader.readFiles(std::move(inner), more);
    }
    return reader.finish();
}

PolicyReading currentPolicy(const Environment& environment, PolicyParser::Releases releases) {
    const auto folder = developmentPolicyFolder(environment);
    if (!folder) return systemPolicy(releases);
    return PolicyFolder{.base = *folder, .owner = ::geteuid()}.read(releases);
}

}  // namespace tarnik
