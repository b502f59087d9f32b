// For any bytes: a parsed list is within the limits and can be walked. A text that parses doesn't parse with
// anything appended, nor without its end.

#include "core/foundation/PropertyList.h"
#include "core/foundation/TextCleanup.h"
#include "core/foundation/Utf8.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

std::size_t containers(const PropertyList& value) {
    std::size_t count = value.elements().empty() && !value.isDictionary() ? 0 : 1;
    for (const auto& element : value.elements()) count += containers(element);
    return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(fuzz::textOf(data, size));
    const auto list = PropertyList::parse(bytes);
    if (!list) return 0;
    require(containers(*list) <= PropertyList::maxContainers);
    for (const char* key : {"a", "Label", "ProgramArguments"}) {
        const PropertyList* const entry = list->entry(key);
        require(entry == nullptr || list->isDictionary());
        if (entry != nullptr) require(isUtf8(entry->asString().value_or("")));
    }
    if (bytes.starts_with("bplist00")) return 0;

    require(isUtf8(bytes) && !bytes.contains('\0') && !bytes.contains('\x1b'));
    // The line end terminates a comment of the old text format.
    for (const std::string& more : {std::string("x"), std::string("<dict/>"), bytes})
        require(!PropertyList::parse(bytes + "\n" + more));
    const auto plain = trimWhitespace(bytes);
    if (plain.ends_with("</plist>")) {
        for (std::size_t left = plain.size() - 8; left < plain.size(); ++left)
            require(!PropertyList::parse(plain.substr(0, left)));
    }
    return 0;
}
