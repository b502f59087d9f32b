#pragma once

#include "app/doctor/Doctor.h"

namespace tarnik {

// Returns the operations of this system that need no toolkit.
DoctorDesktop doctorDesktop(const DoctorSubject& subject);

}  // namespace tarnik
