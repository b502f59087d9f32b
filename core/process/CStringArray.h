#pragma once

#include <string>
#include <vector>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// A null-terminated array of C strings, as exec wants its arguments and environment. Owns the text.
//
// Made before a fork, so that the child has nothing left to allocate.
class CStringArray {
public:
    // The executable's path, then the arguments.
    static CStringArray arguments(const SpawnRequest& request);

    // KEY=value, in ascending order of the keys.
    static CStringArray environment(const Environment& environment);

    // Only moved: a copy's pointers would still be the original's.
    CStringArray(CStringArray&&) = default;
    CStringArray& operator=(CStringArray&&) = default;
    CStringArray(const CStringArray&) = delete;
    CStringArray& operator=(const CStringArray&) = delete;
    ~CStringArray() = default;

    // Borrowed; valid as long as this object. The C interfaces take it without const but don't write to it.
    char* const* get() const { return pointers_.data(); }

private:
    explicit CStringArray(std::vector<std::string> texts);

    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

}  // namespace tarnik
