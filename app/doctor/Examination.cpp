#include "app/doctor/Examination.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <utility>

namespace tarnik {

Examination::Examination(const DoctorSubject& subject, const DoctorDeps& deps)
    : subject_(subject),
      deps_(deps),
      deadline_(after(steadyNow(), networkBudget)),
      release_(start(subject.host.settings.nodeReleaseBase
                         ? std::optional(subject.host.settings.nodeReleaseBase->appending("stable.json"))
                         : std::nullopt)),
      service_(start(subject.host.settings.webOrigin)) {}

// A transfer may outlast the examination, so it runs on a thread that nobody joins.
std::optional<Examination::Probe> Examination::start(const std::optional<Url>& address) const {
    if (!address || !address->host()) return std::nullopt;
    const auto promise = std::make_shared<std::promise<Answer>>();
    Probe probe{.url = address->text(), .host = *address->host(), .answer = promise->get_future().share()};
    const HttpOptions options{.bodyBytes = NodeRelease::maxFileBytes, .timeout = connectTimeout};
    const bool started = deps_.detach("tarnik.probe", [promise, ask = deps_.ask, url = probe.url, options] {
        promise->set_value(ask(url, options));
    });
    if (!started) promise->set_value(std::unexpected(HttpError{.text = "this computer is too busy"}));
    return probe;
}

Examination::Answer Examination::answerOf(const Probe& probe) const {
    // wait_for() counts the sleep of the machine on Darwin, and steadyNow() doesn't.
    while (true) {
        const Seconds left = std::max(Seconds(deadline_ - steadyNow()), Seconds(0));
        if (probe.answer.wait_for(left) == std::future_status::ready) return probe.answer.get();
        if (steadyNow() >= deadline_) return std::unexpected(HttpError{.kind = HttpError::Kind::stalled});
    }
}

std::optional<Examination::Failed> Examination::failureOf(
    std::initializer_list<HttpError::Kind> kinds) const {
    for (const auto* probe : {&release_, &service_}) {
        if (!*probe) continue;
        const auto answer = answerOf(**probe);
        if (!answer && std::ranges::find(kinds, answer.error().kind) != kinds.end())
            return Failed{.probe = **probe, .error = answer.error()};
    }
    return std::nullopt;
}

}  // namespace tarnik
