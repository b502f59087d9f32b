#pragma once
#pragma clang system_header

// The declarations of CFNetwork and of run loops that this project uses.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef CFStringRef CFRunLoopMode;
typedef double CFTimeInterval;
typedef enum : int {
    kCFRunLoopRunFinished = 1,
    kCFRunLoopRunStopped = 2,
    kCFRunLoopRunTimedOut = 3,
    kCFRunLoopRunHandledSource = 4
} CFRunLoopRunResult;
CFRunLoopRef CFRunLoopGetCurrent(void);
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);
void CFRunLoopStop(CFRunLoopRef loop);
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source);

typedef struct {
    CFIndex version;
    void* info;
    void* (*retain)(void* info);
    void (*release)(void* info);
    CFStringRef (*copyDescription)(void* info);
} CFStreamClientContext;

extern const CFStringRef kCFProxyTypeKey;
extern const CFStringRef kCFProxyHostNameKey;
extern const CFStringRef kCFProxyPortNumberKey;
extern const CFStringRef kCFProxyAutoConfigurationURLKey;
extern const CFStringRef kCFProxyTypeNone;
extern const CFStringRef kCFProxyTypeHTTP;
extern const CFStringRef kCFProxyTypeHTTPS;
extern const CFStringRef kCFProxyTypeSOCKS;
extern const CFStringRef kCFProxyTypeAutoConfigurationURL;

typedef void (*CFProxyAutoConfigurationResultCallback)(void* client, CFArrayRef proxyList, CFErrorRef error);
CFDictionaryRef CFNetworkCopySystemProxySettings(void);
CFArrayRef CFNetworkCopyProxiesForURL(CFURLRef url, CFDictionaryRef proxySettings);
CFRunLoopSourceRef CFNetworkExecuteProxyAutoConfigurationURL(CFURLRef script, CFURLRef target,
                                                             CFProxyAutoConfigurationResultCallback callback,
                                                             CFStreamClientContext* context);
}
