// All of doctor's checks, in an order in which each builds on earlier ones: what a failed check
// would have to be there for is not tried. Nothing is changed on the machine, and nothing left.
#pragma once

#include <string>
#include <vector>

#include "console/doctor/Check.h"
#include "console/doctor/DoctorDisplay.h"
#include "console/doctor/DoctorRequest.h"
#include "console/follow/StopRequests.h"

namespace larkspan::console {

// Tells each check when it begins and when it is done. The password is wiped by the caller.
std::vector<Check> Examine(const DoctorRequest& request, const std::wstring& password,
                           StopRequests& stops, DoctorDisplay& display);

}  // namespace larkspan::console
