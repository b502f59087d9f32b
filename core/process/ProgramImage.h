#pragma once

#include <memory>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// The arguments of an exec, prepared before the fork: between fork and exec the child must not allocate or
// take a lock.
class ProgramImage {
public:
    explicit ProgramImage(const SpawnRequest& request);
    ~ProgramImage();
    ProgramImage(const ProgramImage&) = delete;
    ProgramImage& operator=(const ProgramImage&) = delete;

    // Call in the child, after its standard descriptors are set. Resets and unblocks all signals, closes
    // every other descriptor and runs the program, without a PATH search. Returns only if the program can't
    // be run.
    void become() const;

private:
    struct Prepared;
    std::unique_ptr<const Prepared> prepared_;
};

}  // namespace tarnik
