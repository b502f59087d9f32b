#include "app/doctor/DoctorCheck.h"

namespace tarnik {
namespace {

bool isLoopback(const Url& url) {
    return url.host() == "localhost" || url.host() == "127.0.0.1";
}

std::optional<Finding> checkSettings(Examination& examination) {
    const auto& settings = examination.subject().host.settings;
    if (!settings.nodeReleaseBase || !settings.nodeReleasePublicKey)
        return finding(Severity::error, DoctorTexts::noRelease);
    const auto key = NodeRelease::base64url(*settings.nodeReleasePublicKey);
    constexpr std::size_t keyBytes = 32;
    if (!key || key->size() != keyBytes) return finding(Severity::error, DoctorTexts::badKey);
    for (const auto* url : {&*settings.nodeReleaseBase, &settings.webOrigin})
        if (url->scheme() != "https" && !isLoopback(*url))
            return finding(Severity::warning, DoctorTexts::plainHttp, url->text());
    return fine("The settings of this build are complete.");
}

}  // namespace

std::vector<DoctorCheck> buildChecks() {
    return {{.code = "build.settings", .causes = {}, .run = checkSettings}};
}

}  // namespace tarnik
