#pragma once

#include <memory>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// The arguments of an exec. They are prepared before the fork, because the child must not allocate or take a
// lock between fork and exec.
class ProgramImage {
public:
    explicit ProgramImage(const SpawnRequest& request);
    ~ProgramImage();
    ProgramImage(const ProgramImage&) = delete;
    ProgramImage& operator=(const ProgramImage&) = delete;

    // Call in the child after the standard descriptors are set. Resets and unblocks all signals, closes every
    // other descriptor and runs the program without a PATH search. Returns only if the program can't be run.
    void become() const;

private:
    struct Prepared;
    std::unique_ptr<const Prepared> prepared_;
};

}  // namespace tarnik
