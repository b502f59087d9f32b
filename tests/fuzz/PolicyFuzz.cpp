// For any bytes: a policy that is accepted has values within the limits, and a second reading gives the same.
// A policy merged with itself stays the same.

#include "app/policy/PolicyParser.h"
#include "tests/fuzz/Require.h"

using namespace tarnik;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textOf(data, size);
    const auto policy = PolicyParser::parse(text, PolicyParser::Releases::bySettings);
    if (const auto list = PropertyList::parse(text))
        (void)PolicyParser::parse(*list, PolicyParser::Releases::bySettings);
    if (!policy) return 0;
    require(policy == PolicyParser::parse(text, PolicyParser::Releases::bySettings));
    if (policy->helperLogBytes) require(policy->helperLogBytes->value >= 65'536);
    if (policy->releaseBase) require(policy->releaseBase->value.scheme().starts_with("http"));
    auto merged = *policy;
    PolicyParser::merge(merged, *policy);
    require(merged == *policy);
    const auto fixed = PolicyParser::parse(text, PolicyParser::Releases::fixed);
    require(fixed.has_value() == !(policy->releaseBase || policy->releaseKey));
    return 0;
}
