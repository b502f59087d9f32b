#pragma once
#pragma clang system_header

// The declarations of Core Foundation that this project uses.

#include <stdbool.h>
#include <stddef.h>
#include <sys/types.h>

extern "C" {

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef unsigned int UInt32;
typedef int OSStatus;
typedef long CFIndex;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFTypeID;
typedef UInt32 CFStringEncoding;
typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFURL* CFURLRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef struct __CFError* CFErrorRef;
typedef struct __CFNotificationCenter* CFNotificationCenterRef;
typedef CFStringRef CFNotificationName;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFNumber* CFNumberRef;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
Boolean CFEqual(CFTypeRef one, CFTypeRef other);

CFTypeID CFNumberGetTypeID(void);
typedef enum : CFIndex { kCFNumberIntType = 9 } CFNumberType;
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
CFTypeID CFDictionaryGetTypeID(void);
CFTypeID CFURLGetTypeID(void);
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef base);
CFStringRef CFURLGetString(CFURLRef url);

extern const CFBooleanRef kCFBooleanTrue;

enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))
CFTypeID CFStringGetTypeID(void);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternal);
CFIndex CFStringGetLength(CFStringRef string);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding);

typedef struct {
    CFIndex version;
} CFDictionaryKeyCallBacks;
typedef struct {
    CFIndex version;
} CFDictionaryValueCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* buffer,
                                                 CFIndex length, Boolean isDirectory);
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex size);

typedef enum : CFIndex {
    kCFPropertyListXMLFormat_v1_0 = 100,
} CFPropertyListFormat;
CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef list,
                                   CFPropertyListFormat format, CFOptionFlags options, CFErrorRef* error);
const UInt8* CFDataGetBytePtr(CFDataRef data);
CFIndex CFDataGetLength(CFDataRef data);

extern const CFStringRef kCFPreferencesCurrentApplication;
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application);
Boolean CFPreferencesGetAppBooleanValue(CFStringRef key, CFStringRef application, Boolean* hasFormat);
Boolean CFPreferencesAppValueIsForced(CFStringRef key, CFStringRef application);
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application);
Boolean CFPreferencesAppSynchronize(CFStringRef application);

typedef void (*CFNotificationCallback)(CFNotificationCenterRef center, void* observer,
                                       CFNotificationName name, const void* object, CFDictionaryRef userInfo);
typedef enum : CFIndex {
    CFNotificationSuspensionBehaviorDrop = 1,
    CFNotificationSuspensionBehaviorCoalesce = 2,
    CFNotificationSuspensionBehaviorHold = 3,
    CFNotificationSuspensionBehaviorDeliverImmediately = 4
} CFNotificationSuspensionBehavior;
CFNotificationCenterRef CFNotificationCenterGetDistributedCenter(void);
void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callback, CFStringRef name, const void* object,
                                     CFNotificationSuspensionBehavior behavior);
void CFNotificationCenterRemoveObserver(CFNotificationCenterRef center, const void* observer,
                                        CFNotificationName name, const void* object);
void CFNotificationCenterPostNotification(CFNotificationCenterRef center, CFNotificationName name,
                                          const void* object, CFDictionaryRef userInfo,
                                          Boolean deliverImmediately);
}
