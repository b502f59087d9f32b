// For any text around a secret, in every source of a report: the secret is not in the report.

#include <string>

#include "app/report/Report.h"
#include "tests/fuzz/Require.h"
#include "tests/support/PrivateTexts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnik;
    static const Redaction redaction(privateNames());
    if (size < 3) return 0;
    const auto& [text, secret] = privateTexts[data[0] % std::size(privateTexts)];
    const char separator = " \n\t\"'(,;"[data[1] % 8];
    const auto around = fuzz::textOf(data + 2, size - 2);
    const auto half = around.size() / 2;
    if (around.contains(secret)) return 0;
    const auto inside = std::string(around.substr(0, half)) + separator + std::string(text) + separator +
                        std::string(around.substr(half));
    const ReportSources sources{.versions = inside,
                                .settings = inside,
                                .findings = {{"x", Severity::error, inside, inside}},
                                .status = inside,
                                .journal = inside,
                                .helperLog = inside};
    fuzz::require(!reportText(sources, redaction).contains(secret));
    return 0;
}
