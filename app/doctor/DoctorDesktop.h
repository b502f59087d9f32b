#pragma once

#include "app/doctor/Doctor.h"

namespace tarnik {

// Returns the operations of this system. On Linux they need no toolkit; on macOS app/platform/macos has them.
DoctorDesktop doctorDesktop(const DoctorSubject& subject);

}  // namespace tarnik
