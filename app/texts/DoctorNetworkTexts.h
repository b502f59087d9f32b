#pragma once

#include "app/texts/DoctorTexts.h"

// The findings of the doctor about the network, and their remedies.
namespace tarnik::DoctorTexts {

inline constexpr Text offline{"This computer isn't connected to a network.", "Connect it and try again."};
inline constexpr Text noName{" has no address in this network.",
                             "Check the network's name service (DNS), or use another network."};
inline constexpr Text noConnection{" doesn't accept a connection.",
                                   "Try again later; check whether a firewall blocks it."};
inline constexpr Text noServers{
    "No server of tarnik can be reached, although this computer is on a network.",
    "Check whether this network or a firewall blocks tarnik, or use another network."};
inline constexpr Text deadProxy{" can't be reached through the proxy ",
                                "Check the proxy in the network settings of this computer, the variables "
                                "https_proxy and http_proxy, or the settings of your organisation."};
inline constexpr Text badTransfer{" doesn't answer as it should: ", "Try again later."};
inline constexpr Text badRelease{"The server's release can't be used: ",
                                 "Try again later; if it stays so, report it."};
inline constexpr Text wrongClock{"This computer's clock differs from the server's by ",
                                 "Set date and time, or turn on automatic time."};

}  // namespace tarnik::DoctorTexts
