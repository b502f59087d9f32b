#include <Security/Security.h>

#include "app/platform/CfText.h"
#include "app/platform/SignatureRequirement.h"
#include "app/platform/macos/MacOperations.h"

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

// Returns an empty owner if the team is malformed.
CfOwner<SecRequirementRef> requirementNaming(const std::string& team) {
    CfOwner<SecRequirementRef> requirement;
    const auto text = signatureRequirement(team);
    if (!text) return requirement;
    ::SecRequirementCreateWithString(CfText::of(*text).get(), kSecCSDefaultFlags, requirement.receive());
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
