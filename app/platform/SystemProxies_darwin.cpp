#include "app/platform/SystemProxies.h"

#include <CFNetwork/CFNetwork.h>
#include <CoreFoundation/CoreFoundation.h>

#include "app/platform/CfText.h"
#include "core/foundation/Mutex.h"
#include "core/foundation/Time.h"

namespace tarnik {
namespace {

// A script is downloaded and run within this time, otherwise it counts as failed.
constexpr Seconds scriptLimit = Seconds(10);

CfOwner<CFURLRef> urlOf(const std::string& text) {
    const auto string = CfText::of(text);
    return string ? CfOwner(::CFURLCreateWithString(nullptr, string.get(), nullptr)) : CfOwner<CFURLRef>();
}

std::optional<int> numberOf(CFTypeRef value) {
    int number = 0;
    if (value == nullptr || ::CFGetTypeID(value) != ::CFNumberGetTypeID()) return std::nullopt;
    if (!::CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberIntType, &number)) return std::nullopt;
    return number;
}

SystemProxy::Kind kindOf(CFTypeRef type) {
    if (type == nullptr) return SystemProxy::Kind::other;
    if (::CFEqual(type, kCFProxyTypeNone)) return SystemProxy::Kind::direct;
    if (::CFEqual(type, kCFProxyTypeHTTP) || ::CFEqual(type, kCFProxyTypeHTTPS))
        return SystemProxy::Kind::http;
    if (::CFEqual(type, kCFProxyTypeSOCKS)) return SystemProxy::Kind::socks;
    if (::CFEqual(type, kCFProxyTypeAutoConfigurationURL)) return SystemProxy::Kind::script;
    return SystemProxy::Kind::other;
}

SystemProxy entryOf(CFDictionaryRef entry) {
    SystemProxy proxy{
        .kind = kindOf(::CFDictionaryGetValue(entry, kCFProxyTypeKey)),
        .host = CfText::text(::CFDictionaryGetValue(entry, kCFProxyHostNameKey)).value_or(""),
        .port = numberOf(::CFDictionaryGetValue(entry, kCFProxyPortNumberKey)),
    };
    if (proxy.kind != SystemProxy::Kind::script) return proxy;
    const void* const script = ::CFDictionaryGetValue(entry, kCFProxyAutoConfigurationURLKey);
    if (script != nullptr && ::CFGetTypeID(script) == ::CFURLGetTypeID())
        proxy.script = CfText::text(::CFURLGetString(static_cast<CFURLRef>(script))).value_or("");
    return proxy;
}

SystemProxyList entriesOf(CFArrayRef list) {
    SystemProxyList entries;
    for (CFIndex i = 0; i < ::CFArrayGetCount(list); ++i) {
        const void* const entry = ::CFArrayGetValueAtIndex(list, i);
        if (::CFGetTypeID(entry) == ::CFDictionaryGetTypeID())
            entries.push_back(entryOf(static_cast<CFDictionaryRef>(entry)));
    }
    return entries;
}

// The result of a script. Its address is the context of the callback.
struct ScriptResult {
    bool isDone = false;
    std::optional<SystemProxyList> entries = {};
};

// Runs on the thread that waits for the script. `list` is null after a failure.
void scriptDone(void* context, CFArrayRef list, CFErrorRef /*error*/) {
    auto& result = *static_cast<ScriptResult*>(context);
    result.isDone = true;
    if (list != nullptr) result.entries = entriesOf(list);
    ::CFRunLoopStop(::CFRunLoopGetCurrent());
}

// Runs the script in a mode of our own, so that no other source of this thread's run loop runs meanwhile.
// Invalidates the source at the end, so that the callback can't run after `result` has gone.
// Runs one script at a time, because CFNetwork may fail if two threads run scripts at once. The mutex is
// never destroyed, because a transfer may still run when the program exits.
std::optional<SystemProxyList> runScript(const std::string& script, CFURLRef target) {
    static auto& scripts = *new Mutex;
    const auto url = urlOf(script);
    if (!url) return std::nullopt;
    const MutexLock lock(scripts);
    ScriptResult result;
    CFStreamClientContext context{};
    context.info = &result;
    const CfOwner<CFRunLoopSourceRef> source(
        ::CFNetworkExecuteProxyAutoConfigurationURL(url.get(), target, scriptDone, &context));
    if (!source) return std::nullopt;
    const CFRunLoopRef loop = ::CFRunLoopGetCurrent();
    const CFStringRef mode = CFSTR("com.tarnik.node.proxyScript");
    ::CFRunLoopAddSource(loop, source.get(), mode);
    const TimePoint deadline = after(steadyNow(), scriptLimit);
    while (!result.isDone && steadyNow() < deadline) {
        const Seconds left = deadline - steadyNow();
        if (::CFRunLoopRunInMode(mode, left.count(), false) == kCFRunLoopRunFinished) break;
    }
    ::CFRunLoopSourceInvalidate(source.get());
    ::CFRunLoopRemoveSource(loop, source.get(), mode);
    return result.entries;
}

ProxyRoutes lookUp(const std::string& address) {
    const auto url = urlOf(address);
    const CfOwner<CFDictionaryRef> settings(::CFNetworkCopySystemProxySettings());
    if (!url || !settings) return {};
    const CfOwner<CFArrayRef> list(::CFNetworkCopyProxiesForURL(url.get(), settings.get()));
    if (!list) return {};
    return routesOf(entriesOf(list.get()),
                    [&](const std::string& script) { return runScript(script, url.get()); });
}

}  // namespace

ProxyLookup systemProxies() {
    return lookUp;
}

}  // namespace tarnik
