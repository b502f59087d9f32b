#pragma once

#include <expected>
#include <future>
#include <optional>
#include <string>

#include "app/doctor/Doctor.h"

namespace tarnik {

// One run of the doctor: the subject, the effects, and the answers of the network that several checks use.
// Lives on one thread.
class Examination {
public:
    using Answer = std::expected<HttpAnswer, HttpError>;

    // An address that the program needs.
    struct Probe {
        std::string url;
        std::string host;
        std::shared_future<Answer> answer = {};
    };

    static constexpr Seconds connectTimeout = Seconds(7);
    static constexpr Seconds networkBudget = Seconds(14);  // for all answers together

    // Starts both requests in the background.
    Examination(const DoctorSubject& subject, const DoctorDeps& deps);

    const DoctorSubject& subject() const { return subject_; }
    const DoctorDeps& deps() const { return deps_; }

    // Return std::nullopt if the build has no such address.
    const std::optional<Probe>& release() const { return release_; }
    const std::optional<Probe>& service() const { return service_; }

    // Waits for the answer until the budget is used up. The error is `stalled` then.
    Answer answerOf(const Probe& probe) const;

    // Returns the first failure of the two probes that is of one of these kinds, and its probe.
    struct Failed {
        Probe probe;
        HttpError error;
    };
    std::optional<Failed> failureOf(std::initializer_list<HttpError::Kind> kinds) const;

private:
    std::optional<Probe> start(const std::optional<Url>& address) const;

    const DoctorSubject& subject_;
    const DoctorDeps& deps_;
    const TimePoint deadline_;
    const std::optional<Probe> release_;
    const std::optional<Probe> service_;
};

}  // namespace tarnik
