#include "tests/darwin/CountedObjects.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include <ApplicationServices/ApplicationServices.h>
#include <Security/Security.h>
#include <dlfcn.h>

#include "app/platform/macos/MacOperations.h"
#include "tests/darwin/crt_externs.h"

namespace tarnik {
namespace countedObjects {
namespace {

enum Type : CFTypeID { string = 1, boolean, dictionary, url, code, requirement };

int referencesHeld = 0;
// Never destroyed, so that the leak checker finds the stored values.
auto& preferences = *new std::map<std::string, CFTypeRef>;

const Object& object(const void* reference) {
    if (reference == nullptr) std::abort();
    return *static_cast<const Object*>(reference);
}

const std::string& textOf(const void* reference) {
    return object(reference).text;
}

Object constant(Type type, const char* text) {
    ++referencesHeld;
    return {.type = type, .text = text};
}

Object trueValue = constant(boolean, "true");
Object promptKey = constant(string, "prompt");
Object teamKey = constant(string, "team");

template <class Reference>
Reference made(Type type, std::string text) {
    return static_cast<Reference>(make({.type = type, .text = std::move(text)}));
}

// Copies the text with its end. Returns false if it doesn't fit.
Boolean copyText(const std::string& text, void* to, CFIndex size) {
    if (text.size() >= static_cast<std::size_t>(size)) return false;
    std::memcpy(to, text.c_str(), text.size() + 1);
    return true;
}

std::string bytesOf(const UInt8* bytes, CFIndex count) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)};
}

// Replaces a value of a map that owns its values. Null removes the value.
void replace(std::map<std::string, CFTypeRef>& values, const std::string& key, CFTypeRef value) {
    if (value) CFRetain(value);
    const CFTypeRef before = std::exchange(values[key], value);
    if (before) CFRelease(before);
    if (!value) values.erase(key);
}

}  // namespace

int references() {
    return referencesHeld;
}

const void* make(Object object) {
    ++referencesHeld;
    return new Object(std::move(object));
}

void setPreference(const std::string& key, const char* text) {
    const void* const value = make({.type = string, .text = text});
    replace(preferences, key, value);
    CFRelease(value);
}

}  // namespace countedObjects

// The operations of the sources that compile with the frameworks only.
BundleFiles macBundleFiles() {
    return {};
}

OtherCopies macCopies() {
    return {};
}

void openInWorkspace(std::string_view) {}

}  // namespace tarnik

using namespace tarnik::countedObjects;

extern "C" {

CFTypeRef CFRetain(CFTypeRef reference) {
    ++const_cast<Object&>(object(reference)).references;
    ++referencesHeld;
    return reference;
}

void CFRelease(CFTypeRef reference) {
    auto& released = const_cast<Object&>(object(reference));
    --referencesHeld;
    if (--released.references > 0) return;
    for (const auto& [key, value] : released.values) CFRelease(value);
    delete &released;
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
    return object(reference).type;
}

CFTypeID CFStringGetTypeID() {
    return string;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count, CFStringEncoding,
                                    Boolean) {
    const std::string text = bytesOf(bytes, count);
    return text.contains('\xFF') ? nullptr : made<CFStringRef>(string, text);
}

CFIndex CFStringGetLength(CFStringRef reference) {
    return static_cast<CFIndex>(textOf(reference).size());
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding) {
    return length * 3;
}

Boolean CFStringGetCString(CFStringRef reference, char* buffer, CFIndex size, CFStringEncoding) {
    return copyText(textOf(reference), buffer, size);
}

const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(&trueValue);
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*) {
    Object found{.type = dictionary};
    for (CFIndex i = 0; i < count; ++i) found.values[textOf(keys[i])] = CFRetain(values[i]);
    return static_cast<CFDictionaryRef>(make(std::move(found)));
}

const void* CFDictionaryGetValue(CFDictionaryRef reference, const void* key) {
    const auto& values = object(reference).values;
    const auto found = values.find(textOf(key));
    return found != values.end() ? found->second : nullptr;
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* buffer, CFIndex length,
                                                 Boolean) {
    return length > 0 ? made<CFURLRef>(url, bytesOf(buffer, length)) : nullptr;
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef reference, Boolean, UInt8* buffer, CFIndex size) {
    return copyText(textOf(reference), buffer, size);
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
    const auto found = preferences.find(textOf(key));
    return found != preferences.end() && !textOf(application).empty() ? CFRetain(found->second) : nullptr;
}

Boolean CFPreferencesGetAppBooleanValue(CFStringRef key, CFStringRef application, Boolean*) {
    const auto found = preferences.find(textOf(key));
    return found != preferences.end() && !textOf(application).empty() && found->second == kCFBooleanTrue;
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application) {
    if (!textOf(application).empty()) replace(preferences, textOf(key), value);
}

Boolean CFPreferencesAppSynchronize(CFStringRef application) {
    return !textOf(application).empty();
}

CFStringRef kAXTrustedCheckOptionPrompt = reinterpret_cast<CFStringRef>(&promptKey);

Boolean AXIsProcessTrusted() {
    return false;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    return CFDictionaryGetValue(options, kAXTrustedCheckOptionPrompt) == kCFBooleanTrue;
}

bool CGPreflightScreenCaptureAccess() {
    return false;
}

bool CGRequestScreenCaptureAccess() {
    return false;
}

const CFStringRef kSecCodeInfoTeamIdentifier = reinterpret_cast<CFStringRef>(&teamKey);

// A bundle whose path ends in ".app" is signed by the team TEAM, unless its name is adhoc.app.
OSStatus SecStaticCodeCreateWithPath(CFURLRef path, SecCSFlags, SecStaticCodeRef* to) {
    if (!textOf(path).ends_with(".app")) return -1;
    *to = made<SecStaticCodeRef>(code, textOf(path));
    return errSecSuccess;
}

OSStatus SecStaticCodeCheckValidityWithErrors(SecStaticCodeRef checked, SecCSFlags, SecRequirementRef wanted,
                                              CFErrorRef*) {
    return textOf(checked).empty() || (wanted && !textOf(wanted).contains("\"TEAM\"")) ? -1 : errSecSuccess;
}

OSStatus SecCodeCopySigningInformation(SecStaticCodeRef checked, SecCSFlags, CFDictionaryRef* to) {
    Object information{.type = dictionary};
    if (!textOf(checked).ends_with("/adhoc.app"))
        information.values["team"] = make({.type = string, .text = "TEAM"});
    *to = static_cast<CFDictionaryRef>(make(std::move(information)));
    return errSecSuccess;
}

OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags, SecRequirementRef* to) {
    *to = const_cast<SecRequirementRef>(made<const struct __SecRequirement*>(requirement, textOf(text)));
    return errSecSuccess;
}

// The program finds these two by name. A path below /private is translocated.
__attribute__((visibility("default"))) Boolean SecTranslocateIsTranslocatedURL(CFURLRef path, bool* is,
                                                                               CFErrorRef*) {
    *is = textOf(path).starts_with("/private/");
    return true;
}

__attribute__((visibility("default"))) CFURLRef SecTranslocateCreateOriginalPathForURL(CFURLRef path,
                                                                                       CFErrorRef*) {
    return textOf(path).ends_with("/lost.app") ? nullptr : made<CFURLRef>(url, "/Downloads/tarnik.app");
}

// The code for macOS is compiled with this name instead of dlopen, so that it finds the two functions above.
void* openStandIn(const char*, int) {
    return ::dlopen(nullptr, RTLD_LAZY);
}

char*** _NSGetArgv() {
    static char name[] = "tarnik";
    static char link[] = "link";
    static char* values[] = {name, link, nullptr};
    static char** arguments = values;
    return &arguments;
}

int* _NSGetArgc() {
    static int count = 2;
    return &count;
}
}
