#pragma once

#include <string>
#include <vector>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// A null-terminated array of C strings, the form in which exec takes arguments and environment. Owns the
// text.
//
// Make it before a fork, because the child must not allocate.
class CStringArray {
public:
    // Returns the executable's path followed by the arguments.
    static CStringArray arguments(const SpawnRequest& request);

    // Returns strings of the form KEY=value, in ascending order of the keys.
    static CStringArray environment(const Environment& environment);

    // Not copyable: the pointers of a copy would refer to the original.
    CStringArray(CStringArray&&) = default;
    CStringArray& operator=(CStringArray&&) = default;
    CStringArray(const CStringArray&) = delete;
    CStringArray& operator=(const CStringArray&) = delete;
    ~CStringArray() = default;

    // Returns a borrowed array, valid as long as this object. The C functions take non-const pointers but
    // don't write to them.
    char* const* get() const { return pointers_.data(); }

private:
    explicit CStringArray(std::vector<std::string> texts);

    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

}  // namespace tarnik
