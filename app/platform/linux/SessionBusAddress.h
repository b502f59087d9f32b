#pragma once

namespace tarnik {

// Where no session bus can be found, its library starts one of its own, which nobody else knows and which
// stays behind. From now on this process finds none instead. What our children get was read from the
// environment before.
//
// Before anything looks for the bus, and while no other thread reads the environment.
void disableBusAutolaunch();

}  // namespace tarnik
