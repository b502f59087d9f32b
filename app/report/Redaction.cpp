#include "app/report/Redaction.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include <pwd.h>
#include <unistd.h>

#include "app/journal/SecretFilter.h"
#include "core/foundation/Paths.h"

namespace tarnik {
namespace {

constexpr std::string_view address = "[address]";
constexpr std::string_view email = "[e-mail]";

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool isHexDigit(char character) {
    return isDigit(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

// Bytes above 127 belong to letters of other scripts.
bool isWordCharacter(char character) {
    return isDigit(character) || isLetter(character) || static_cast<unsigned char>(character) > 127;
}

// Calls `edit` for each longest run of characters that satisfy `belongs`, and replaces it by the result.
template <class Belongs, class Edit>
std::string editRuns(std::string_view text, const Belongs& belongs, const Edit& edit) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const bool inside = belongs(text[at]);
        std::size_t end = at;
        while (end < text.size() && belongs(text[end]) == inside) ++end;
        const auto run = text.substr(at, end - at);
        result += inside ? edit(run) : std::string(run);
        at = end;
    }
    return result;
}

// Replaces each e-mail address: text before "@" or "%40", whatever is behind it.
std::string withoutEmails(std::string_view text) {
    const auto belongs = [](char c) {
        return isWordCharacter(c) || std::string_view(".!#$%&'*+-/=?^_`{|}~@").contains(c);
    };
    return editRuns(text, belongs, [](std::string_view run) {
        const bool isAddress =
            run.find('@', 1) != std::string_view::npos || run.find("%40", 1) != std::string_view::npos;
        return isAddress ? std::string(email) : std::string(run);
    });
}

// Four numbers up to 255, with a dot or other text around them: "10.0.0.1", "10.0.0.1." but not "1.2.3".
bool isIPv4(std::string_view run) {
    while (run.ends_with('.')) run.remove_suffix(1);
    while (run.starts_with('.')) run.remove_prefix(1);
    int numbers = 0;
    while (!run.empty()) {
        const auto end = std::min(run.find('.'), run.size());
        int value = 0;
        for (const char digit : run.substr(0, end)) value = std::min(value * 10 + (digit - '0'), 1000);
        if (end == 0 || value > 255) return false;
        ++numbers;
        run.remove_prefix(std::min(end + 1, run.size()));
    }
    return numbers == 4;
}

std::string withoutIPv4(std::string_view text) {
    const auto belongs = [](char c) { return isDigit(c) || c == '.'; };
    return editRuns(text, belongs, [](std::string_view run) {
        const bool isOurs = run.starts_with("127.");  // this machine, for everybody
        return isIPv4(run) && !isOurs ? std::string(address) : std::string(run);
    });
}

// Hexadecimal groups with colons: an IPv6 address has "::" or eight groups, a hardware address six groups of
// two digits. Times such as 12:34:56 have fewer.
bool isColonAddress(std::string_view run) {
    while (run.ends_with('.') || (run.ends_with(':') && !run.ends_with("::"))) run.remove_suffix(1);
    while (run.starts_with('.') || (run.starts_with(':') && !run.starts_with("::"))) run.remove_prefix(1);
    const auto colons = std::ranges::count(run, ':');
    const bool hasDigits = std::ranges::any_of(run, isHexDigit);
    return hasDigits && (colons >= 5 || run.contains("::"));
}

std::string withoutColonAddresses(std::string_view text) {
    const auto belongs = [](char c) { return isHexDigit(c) || c == ':' || c == '.'; };
    return editRuns(text, belongs, [](std::string_view run) {
        return isColonAddress(run) && run != "::1" ? std::string(address) : std::string(run);
    });
}

// Returns true for so many groups of so many hexadecimal digits each, with separators between them.
bool isGrouped(std::string_view run, char separator, std::size_t groups, std::size_t digits) {
    while (run.starts_with(separator)) run.remove_prefix(1);
    while (run.ends_with(separator)) run.remove_suffix(1);
    if (run.size() != groups * (digits + 1) - 1) return false;
    for (std::size_t at = 0; at < run.size(); ++at)
        if ((run[at] == separator) != (at % (digits + 1) == digits)) return false;
    return true;
}

// Replaces hardware addresses such as aa-bb-cc-dd-ee-ff and aabb.ccdd.eeff.
std::string withoutHardwareAddresses(std::string_view text) {
    const auto hide = [](std::string_view within, char separator, std::size_t groups, std::size_t digits) {
        const auto belongs = [=](char c) { return isHexDigit(c) || c == separator; };
        return editRuns(within, belongs, [=](std::string_view run) {
            return isGrouped(run, separator, groups, digits) ? std::string(address) : std::string(run);
        });
    };
    return hide(hide(text, '-', 6, 2), '.', 3, 4);
}

bool startsWithIgnoringCase(std::string_view text, std::string_view start) {
    const auto isSame = [](char one, char other) { return lower(one) == lower(other); };
    return text.size() >= start.size() && std::ranges::equal(text.substr(0, start.size()), start, isSame);
}

// Returns true if a name may begin there: at the start, behind a character of no word, and behind "%2F".
bool beginsWord(std::string_view text, std::size_t at) {
    if (at == 0 || !isWordCharacter(text[at - 1])) return true;
    return at >= 3 && text[at - 3] == '%' && isHexDigit(text[at - 2]) && isHexDigit(text[at - 1]);
}

// Replaces the name where no letter or digit is beside it.
std::string withoutName(std::string_view text, std::string_view name, std::string_view substitute) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const bool matches = beginsWord(text, at) && startsWithIgnoringCase(text.substr(at), name) &&
                             (at + name.size() == text.size() || !isWordCharacter(text[at + name.size()]));
        if (!matches) {
            result += text[at++];
            continue;
        }
        result += substitute;
        at += name.size();
    }
    return result;
}

// Programs print a folder with its links resolved or not, and inside a longer path.
std::string withoutFolder(std::string text, const std::string& folder) {
    if (folder.size() < 2) return text;
    std::string result;
    for (std::size_t at = 0;;) {
        const auto next = text.find(folder, at);
        result += text.substr(at, next - at);
        if (next == std::string::npos) return result;
        result += "~";
        at = next + folder.size();
    }
}

// Replaces the names of folders in the folder of the home folders, whoever they belong to.
std::string withoutHomeNames(std::string_view text, std::string_view homes) {
    std::string result;
    for (;;) {
        const auto next = text.find(homes);
        if (next == text.npos) return result + std::string(text);
        result += text.substr(0, next + homes.size());
        text.remove_prefix(next + homes.size());
        const auto* const end = std::ranges::find_if_not(
            text, [](char c) { return isWordCharacter(c) || c == '.' || c == '-' || c == '_'; });
        if (end != text.begin()) result += "[user]";
        text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    }
}

}  // namespace

Redaction::Names Redaction::Names::ofThisMachine(const Environment& environment,
                                                 const std::string& userFolder) {
    Names names{.userFolder = userFolder, .users = {}, .hosts = {}};
    names.resolvedFolder = realPath(userFolder).value_or(userFolder);
    for (const char* variable : {"USER", "LOGNAME", "SUDO_USER"})
        if (auto user = environmentValue(environment, variable); !user.empty()) names.users.push_back(user);
    names.users.push_back(userFolder.substr(userFolder.rfind('/') + 1));
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
        names.users.emplace_back(found->pw_name);
        const std::string full = found->pw_gecos != nullptr ? found->pw_gecos : "";
        names.users.push_back(full.substr(0, full.find(',')));
    }
    std::array<char, 256> host{};
    if (::gethostname(host.data(), host.size() - 1) == 0) {
        names.hosts.emplace_back(host.data());
        names.hosts.push_back(names.hosts.back().substr(0, names.hosts.back().find('.')));
    }
    return names;
}

// Names of one letter, and those of every machine, identify nobody.
Redaction::Redaction(Names names)
    : names_([&] {
          const auto isCommon = [](const std::string& name) {
              return name.size() < 2 || name == "root" || name == "localhost" || name == "tarnik" ||
                     name == "home";
          };
          for (auto* list : {&names.users, &names.hosts}) {
              std::erase_if(*list, isCommon);
              const auto isLonger = [](const auto& one, const auto& other) {
                  return one.size() > other.size();
              };
              std::ranges::sort(*list, isLonger);  // a short name may be a part of a longer one
          }
          return std::move(names);
      }()) {}

std::string Redaction::withoutNames(std::string text) const {
    text = withoutFolder(std::move(text), names_.userFolder);
    text = withoutFolder(std::move(text), names_.resolvedFolder);
    for (const char* homes : {"/home/", "/Users/"}) text = withoutHomeNames(text, homes);
    for (const auto& host : names_.hosts) text = withoutName(text, host, "[host]");
    for (const auto& user : names_.users) text = withoutName(text, user, "[user]");
    return text;
}

// URLs and named values come first, because another pass could hide a part of one and leave the rest. For the
// same reason names precede addresses, and long tokens come last.
std::string Redaction::apply(std::string_view text) const {
    std::string result = withoutNames(withoutNamedSecrets(text));
    result = withoutHardwareAddresses(result);
    result = withoutColonAddresses(result);
    result = withoutIPv4(result);
    result = withoutEmails(result);
    return withoutLongTokens(result);
}

}  // namespace tarnik
