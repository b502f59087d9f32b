#include "app/report/Report.h"

#include <gtest/gtest.h>

#include "app/report/ReportChild.h"
#include "tests/support/PrivateTexts.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

TEST(Report, losesWhatIsPrivateInEverySource) {
    const Redaction redaction(privateNames());
    for (const auto& [text, secret] : privateTexts) {
        for (const char* around : {" ", "\n", "\"", "(", ", "}) {
            const auto inside = "before" + std::string(around) + std::string(text) + around + "after";
            const ReportSources sources{.versions = inside,
                                        .settings = inside,
                                        .findings = {{"x", Severity::error, inside, inside}},
                                        .status = inside,
                                        .journal = inside,
                                        .helperLog = inside};
            EXPECT_FALSE(reportText(sources, redaction).contains(secret)) << text << " in " << around;
        }
    }
    const std::string code = "k3jX9aQz77bVmN2pLr8w";
    for (const std::size_t before : {990U, 1990U}) {
        const auto cut = std::string(before, '.') + " " + code;
        const ReportSources sources{.versions = cut,
                                    .settings = {},
                                    .findings = {{"x", Severity::error, cut, ""}},
                                    .status = {},
                                    .journal = {},
                                    .helperLog = {}};
        EXPECT_FALSE(reportText(sources, redaction).contains("k3jX9")) << before;
    }
}

TEST(ReportChild, returnsTheReportOrTheReason) {
    const TemporaryFolder folder;
    const auto report = [&](const std::string& script) {
        const auto program = folder.write("tarnik", "#!/bin/sh\n" + script);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return ReportChild{
            .executable = program, .environment = {}, .nodeHome = "/home/of node", .bundle = "/b"}
            .run();
    };
    EXPECT_EQ(report("printf '%s|' \"$@\""), "report|--node-home|/home/of node|--bundle|/b|");
    EXPECT_EQ(report("echo part; echo why; exit 1").error(), "The details couldn't be gathered: part why");
    EXPECT_EQ(report("kill -9 $$").error(), "The details couldn't be gathered: signal 9");
}

TEST(Report, keepsWhatExplainsAFailure) {
    const Redaction redaction(privateNames());
    for (const char* text :
         {"2026-05-01T12:34:56Z helper.ended: The helper stopped (exit 3) after 1.2 s.",
          "error home.modes: /var/lib/tarnik can't be written.", "tarnik 0.1.0, helper 2026.5.1, Linux 6.1.0",
          "connect to 127.0.0.1:8080 failed", "The file is ~/.tarnik/node/app/bin/tarnik-node."})
        EXPECT_EQ(redaction.apply(text), text);
    EXPECT_EQ(redaction.apply("/home/alice.miller/.tarnik"), "~/.tarnik");
    EXPECT_EQ(redaction.apply("aliced.millers"), "aliced.millers") << "another word";
}

}  // namespace
}  // namespace tarnik
