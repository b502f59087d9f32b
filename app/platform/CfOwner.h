#pragma once

#include <utility>

#include <CoreFoundation/CoreFoundation.h>

namespace tarnik {

// Owns one reference to a Core Foundation object and releases it.
template <class Ref>
class CfOwner {
public:
    CfOwner() = default;
    // Takes ownership of a reference from a function with Create or Copy in its name. `ref` may be null.
    explicit CfOwner(Ref ref) : ref_(ref) {}
    ~CfOwner() {
        if (ref_) ::CFRelease(ref_);
    }
    CfOwner(const CfOwner&) = delete;
    CfOwner& operator=(const CfOwner&) = delete;
    CfOwner(CfOwner&& other) noexcept : ref_(std::exchange(other.ref_, nullptr)) {}
    CfOwner& operator=(CfOwner&& other) noexcept {
        std::swap(ref_, other.ref_);
        return *this;
    }

    explicit operator bool() const { return ref_ != nullptr; }
    Ref get() const { return ref_; }

    // For functions that return a reference through a pointer. Call it only while the owner is empty.
    Ref* receive() { return &ref_; }

private:
    Ref ref_ = nullptr;
};

}  // namespace tarnik
