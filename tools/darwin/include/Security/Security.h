#pragma once
#pragma clang system_header

// The declarations for code signatures that this project uses.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {
typedef const struct __SecCode* SecStaticCodeRef;
typedef struct __SecRequirement* SecRequirementRef;
typedef UInt32 SecCSFlags;
enum : OSStatus { errSecSuccess = 0 };
enum : SecCSFlags {
    kSecCSDefaultFlags = 0,
    kSecCSCheckAllArchitectures = 1 << 0,
    kSecCSSigningInformation = 1 << 1,
    kSecCSCheckNestedCode = 1 << 3,
    kSecCSStrictValidate = 1 << 4
};
extern const CFStringRef kSecCodeInfoTeamIdentifier;
OSStatus SecStaticCodeCreateWithPath(CFURLRef path, SecCSFlags flags, SecStaticCodeRef* code);
OSStatus SecStaticCodeCheckValidityWithErrors(SecStaticCodeRef code, SecCSFlags flags,
                                              SecRequirementRef requirement, CFErrorRef* errors);
OSStatus SecCodeCopySigningInformation(SecStaticCodeRef code, SecCSFlags flags, CFDictionaryRef* information);
OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags, SecRequirementRef* requirement);
}
