#include <algorithm>

#include "app/doctor/DoctorCheck.h"
#include "app/failures/FailureCause.h"
#include "app/texts/DoctorNetworkTexts.h"

namespace tarnik {
namespace {

using Kind = HttpError::Kind;

Finding problem(FailureCause cause) {
    const std::string text(describe(cause));
    const auto end = std::min(text.find(". "), text.size() - 1) + 1;  // of the first sentence
    return {.code = {},
            .severity = Severity::error,
            .sentence = text.substr(0, end),
            .remedy = end < text.size() ? text.substr(end + 1) : ""};
}

// Returns true if one of the two servers failed for this cause.
bool isCause(const Examination& examination, FailureCause cause) {
    for (const auto* probe : {&examination.release(), &examination.service()}) {
        if (!*probe) continue;
        const auto answer = examination.answerOf(**probe);
        if (!answer && causeOf(answer.error()) == cause) return true;
    }
    return false;
}

Finding deadProxy(const Examination::Failed& failed) {
    auto found = finding(Severity::error, DoctorTexts::deadProxy, failed.probe.host);
    found.sentence += failed.error.proxy + ".";
    return found;
}

// Names the proxy in the sentence, because the user may not know which one the system chose.
Finding proxyLogin(const Examination::Failed& failed) {
    auto found = problem(FailureCause::proxyLogin);
    if (!failed.error.proxy.empty()) found.sentence = describe(failed.error);
    return found;
}

std::optional<Finding> checkConnection(Examination& examination) {
    const auto failed = examination.failureOf({Kind::unresolved, Kind::unreachable, Kind::stalled});
    if (failed && !examination.deps().hasNetwork()) return finding(Severity::error, DoctorTexts::offline);
    return std::nullopt;
}

std::optional<Finding> checkName(Examination& examination) {
    const auto failed = examination.failureOf({Kind::unresolved});
    if (failed && !failed->error.proxy.empty()) return deadProxy(*failed);
    if (failed) return finding(Severity::error, DoctorTexts::noName, failed->probe.host);
    return std::nullopt;
}

std::optional<Finding> checkProxy(Examination& examination) {
    if (const auto login = examination.failureOf({Kind::proxyLogin})) return proxyLogin(*login);
    if (isCause(examination, FailureCause::proxyLogin)) return problem(FailureCause::proxyLogin);
    const auto failed = examination.failureOf({Kind::unreachable, Kind::stalled});
    if (failed && !failed->error.proxy.empty()) return deadProxy(*failed);
    return std::nullopt;
}

// Both servers fail in this way if the network or a firewall drops their connections.
std::optional<Finding> checkServers(Examination& examination) {
    for (const auto* probe : {&examination.release(), &examination.service()}) {
        if (!*probe) return std::nullopt;
        const auto answer = examination.answerOf(**probe);
        if (answer) return std::nullopt;
        if (answer.error().kind != Kind::unreachable && answer.error().kind != Kind::stalled)
            return std::nullopt;
    }
    return finding(Severity::error, DoctorTexts::noServers);
}

std::optional<Finding> checkCertificate(Examination& examination) {
    for (const auto cause : {FailureCause::clock, FailureCause::untrustedCertificate})
        if (isCause(examination, cause)) return problem(cause);
    return std::nullopt;
}

std::optional<Finding> checkPortal(Examination& examination) {
    if (isCause(examination, FailureCause::captivePortal)) return problem(FailureCause::captivePortal);
    if (!examination.release()) return std::nullopt;
    const auto answer = examination.answerOf(*examination.release());
    if (answer && causeOfAnswer(answer->body)) return problem(FailureCause::captivePortal);
    return std::nullopt;
}

Finding unreachable(const Examination::Probe& probe, const HttpError& error) {
    if (error.kind == Kind::unreachable)
        return finding(Severity::error, DoctorTexts::noConnection, probe.host);
    auto found = finding(Severity::error, DoctorTexts::badTransfer, probe.host);
    found.sentence += describe(error);
    return found;
}

std::optional<Finding> checkRelease(Examination& examination) {
    const auto& probe = examination.release();
    if (!probe) return std::nullopt;
    const auto answer = examination.answerOf(*probe);
    if (!answer) return unreachable(*probe, answer.error());
    const auto& settings = examination.subject().host.settings;
    const auto manifest = NodeRelease::verifyChannelFile(answer->body, settings.nodeReleasePublicKey,
                                                         examination.deps().crypto);
    auto refused = finding(Severity::error, DoctorTexts::badRelease);
    if (!manifest) {
        refused.sentence += NodeRelease::describe(manifest.error()) + ".";
        return refused;
    }
    if (!manifest->artifacts.contains(examination.subject().host.platform)) {
        refused.sentence += "it has no helper for this computer.";
        return refused;
    }
    return fine("The release server offers the signed helper " + manifest->version + ".");
}

// Any answer of the service proves that it is reachable.
std::optional<Finding> checkService(Examination& examination) {
    const auto& probe = examination.service();
    if (!probe) return std::nullopt;
    const auto answer = examination.answerOf(*probe);
    if (answer || answer.error().kind == Kind::badStatus || answer.error().kind == Kind::tooLarge)
        return fine("The service " + probe->host + " answers.");
    return unreachable(*probe, answer.error());
}

// Returns "7 minutes", "3 hours" or "2 days".
std::string durationText(WallTime::duration duration) {
    using std::chrono::round;
    const auto days = round<std::chrono::days>(duration).count();
    const auto hours = round<std::chrono::hours>(duration).count();
    if (days > 1) return std::to_string(days) + " days";
    if (hours > 1) return std::to_string(hours) + " hours";
    return std::to_string(round<std::chrono::minutes>(duration).count()) + " minutes";
}

std::optional<Finding> checkClock(Examination& examination) {
    constexpr auto allowed = std::chrono::minutes(5);
    for (const auto* probe : {&examination.release(), &examination.service()}) {
        if (!*probe) continue;
        const auto answer = examination.answerOf(**probe);
        if (!answer || !answer->date) continue;
        const auto apart = std::chrono::abs(examination.deps().now() - *answer->date);
        if (apart <= allowed) return fine("The clock agrees with the server's.");
        auto found = finding(Severity::error, DoctorTexts::wrongClock);
        found.sentence += durationText(apart) + ".";
        return found;
    }
    return std::nullopt;
}

}  // namespace

std::vector<DoctorCheck> networkChecks() {
    return {
        {.code = "network.connection", .causes = {}, .run = checkConnection},
        {.code = "network.name", .causes = {"network.connection"}, .run = checkName},
        {.code = "network.proxy", .causes = {"network.name"}, .run = checkProxy},
        {.code = "network.servers", .causes = {"network.proxy"}, .run = checkServers},
        {.code = "network.portal", .causes = {"network.servers"}, .run = checkPortal},
        {.code = "network.clock", .causes = {}, .run = checkClock},
        {.code = "network.certificate",
         .causes = {"network.portal", "network.clock"},
         .run = checkCertificate},
        {.code = "network.release", .causes = {"network.certificate", "build.settings"}, .run = checkRelease},
        {.code = "network.service", .causes = {"network.certificate"}, .run = checkService},
    };
}

}  // namespace tarnik
