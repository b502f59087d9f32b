// Whatever the bytes, reading them ends within its bounds, and what was read can be walked.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/foundation/PropertyList.h"

namespace {

std::size_t containers(const tarnik::PropertyList& value) {
    std::size_t count = value.elements().empty() && !value.isDictionary() ? 0 : 1;
    for (const auto& element : value.elements()) count += containers(element);
    return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto list = tarnik::PropertyList::parse(bytes);
    if (!list) return 0;
    if (containers(*list) > tarnik::PropertyList::maxContainers) std::abort();
    for (const char* key : {"a", "Label", "ProgramArguments"}) {
        if (list->entry(key) != nullptr && !list->isDictionary()) std::abort();
    }
    return 0;
}
