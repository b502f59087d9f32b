#pragma once

#include <algorithm>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Thousands of open descriptors, as no careful program would leave them: without close-on-exec.
class ManyDescriptors {
public:
    explicit ManyDescriptors(std::size_t count) {
        rlimit limit{};
        ::getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = std::max(limit.rlim_cur, std::min<rlim_t>(limit.rlim_max, count + 1000));
        ::setrlimit(RLIMIT_NOFILE, &limit);
        while (open_.size() < count) {
            open_.emplace_back(::open("/dev/null", O_RDONLY));
            if (!open_.back()) throw std::runtime_error("the limit of descriptors is too low");
        }
    }

private:
    std::vector<UniqueFd> open_;
};

}  // namespace tarnik
