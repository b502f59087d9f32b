#pragma once

#include <memory>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// A program made ready before a fork, for the child to become: between fork and exec nothing may allocate,
// take a lock or look anything up.
class ProgramImage {
public:
    explicit ProgramImage(const SpawnRequest& request);
    ~ProgramImage();
    ProgramImage(const ProgramImage&) = delete;
    ProgramImage& operator=(const ProgramImage&) = delete;

    // In the child, its standard descriptors in place: default signals, none blocked, every other descriptor
    // closed, then the program (no PATH search). Comes back only when it can't be run.
    void become() const;

private:
    struct Prepared;
    std::unique_ptr<const Prepared> prepared_;
};

}  // namespace tarnik
