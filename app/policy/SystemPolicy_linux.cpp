#include "app/policy/PolicyReading.h"

namespace tarnik {

PolicyReading systemPolicy(PolicyParser::Releases releases) {
    return PolicyFolder{.base = "/", .folders = {"etc", "tarnik"}, .owner = 0}.read(releases);
}

}  // namespace tarnik
