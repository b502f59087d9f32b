#include <algorithm>

#include <Security/Security.h>

#include "app/platform/CfText.h"
#include "app/platform/macos/MacOperations.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

namespace {

// Checks all architectures and all nested code, with the strictest rules.
constexpr SecCSFlags whole = kSecCSCheckAllArchitectures | kSecCSCheckNestedCode | kSecCSStrictValidate;

CfOwner<SecStaticCodeRef> codeAt(const std::string& bundle) {
    CfOwner<SecStaticCodeRef> code;
    const auto url = CfText::folderURL(bundle);
    if (url) ::SecStaticCodeCreateWithPath(url.get(), kSecCSDefaultFlags, code.receive());
    return code;
}

// Returns true if the signature is valid and satisfies the requirement. A null requirement is not checked.
bool isValid(SecStaticCodeRef code, SecRequirementRef requirement) {
    return ::SecStaticCodeCheckValidityWithErrors(code, whole, requirement, nullptr) == errSecSuccess;
}

std::optional<std::string> teamIdentifier(const std::string& bundle) {
    const auto code = codeAt(bundle);
    if (!code || !isValid(code.get(), nullptr)) return std::nullopt;
    CfOwner<CFDictionaryRef> information;
    if (::SecCodeCopySigningInformation(code.get(), kSecCSSigningInformation, information.receive()) !=
        errSecSuccess) {
        return std::nullopt;
    }
    return CfText::text(::CFDictionaryGetValue(information.get(), kSecCodeInfoTeamIdentifier)).value_or("");
}

// Returns a requirement of our bundle identifier and of a certificate that Apple issued to this team. The
// team becomes part of the requirement's source text, so only capital letters and digits are accepted.
// Returns an empty owner for any other team.
CfOwner<SecRequirementRef> requirementNaming(const std::string& team) {
    CfOwner<SecRequirementRef> requirement;
    const bool isPlain =
        std::ranges::all_of(team, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
    if (team.empty() || !isPlain) return requirement;
    const auto text =
        CfText::of("anchor apple generic and identifier \"" + std::string(TarnikIdentity::bundleIdentifier) +
                   "\" and certificate leaf[subject.OU] = \"" + team + "\"");
    ::SecRequirementCreateWithString(text.get(), kSecCSDefaultFlags, requirement.receive());
    return requirement;
}

bool satisfiesRequirement(const std::string& bundle, const std::string& team) {
    const auto code = codeAt(bundle);
    const auto requirement = requirementNaming(team);
    return code && requirement && isValid(code.get(), requirement.get());
}

}  // namespace

CodeSignatures macSignatures() {
    return {.teamIdentifier = teamIdentifier, .satisfiesRequirement = satisfiesRequirement};
}

}  // namespace tarnik
