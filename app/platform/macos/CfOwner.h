#pragma once

#include <utility>

#include <CoreFoundation/CoreFoundation.h>

namespace tarnik {

// Owns one reference to an object of Core Foundation, or of a framework built on it, and releases it once.
template <class Ref>
class CfOwner {
public:
    CfOwner() = default;
    // Takes over what a function with Create or Copy in its name returned; null is nothing.
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

    // For a function that hands a reference out through a pointer; only while there is none.
    Ref* receive() { return &ref_; }

private:
    Ref ref_ = nullptr;
};

}  // namespace tarnik
