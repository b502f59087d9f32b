#pragma once

#include <string>
#include <vector>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// A null-terminated array of C strings, as exec takes the arguments and the environment. Owns the text.
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

    // Returns an array that this object owns. The C functions take non-const pointers but don't change the
    // text.
    char* const* get() const { return pointers_.data(); }

private:
    explicit CStringArray(std::vector<std::string> texts);

    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

}  // namespace tarnik
