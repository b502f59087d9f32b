#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/doctor/Examination.h"
#include "app/doctor/Finding.h"
#include "app/texts/DoctorTexts.h"

namespace tarnik {

// One check of the doctor.
struct DoctorCheck {
    std::string_view code;

    // Codes of earlier checks. If one of them found an error, or was itself hidden, this check is hidden,
    // because it would report a symptom.
    std::vector<std::string_view> causes;

    // Returns std::nullopt if the check doesn't apply. The code of the finding is filled in by the caller.
    std::optional<Finding> (*run)(Examination& examination);
};

// Return the tables of checks, in the order in which they run.
std::vector<DoctorCheck> buildChecks();
std::vector<DoctorCheck> policyChecks();
std::vector<DoctorCheck> homeChecks();
std::vector<DoctorCheck> helperChecks();
std::vector<DoctorCheck> networkChecks();
std::vector<DoctorCheck> driverChecks();
std::vector<DoctorCheck> desktopChecks();

// Return a finding without a code.
Finding fine(std::string sentence);
Finding finding(Severity severity, const DoctorTexts::Text& text, const std::string& subject = {});

}  // namespace tarnik
