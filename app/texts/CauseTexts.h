#pragma once

#include <string_view>

// The causes of failures that the user can remove.
namespace tarnik::CauseTexts {

using Text = std::string_view;

inline constexpr Text line = "Cause: {cause}";

inline constexpr Text offline =
    "This computer can't reach the server. Check whether it is online and whether a firewall blocks tarnik.";
inline constexpr Text proxyLogin =
    "The proxy of this network requires a name and a password. Add them to the proxy's address, or use "
    "another network.";
inline constexpr Text captivePortal =
    "This network may require a sign-in. Open a web page in your browser, sign in, and try again.";
inline constexpr Text clock =
    "The server's certificate isn't valid at this computer's date. Check the date and the time.";
inline constexpr Text untrustedCertificate =
    "The server's certificate isn't trusted, so this network may read the connection. Use another network, "
    "or "
    "ask who runs this one.";
inline constexpr Text diskFull = "The disk is full. Free some space.";
inline constexpr Text notAllowed =
    "tarnik isn't allowed to use a file or folder that it needs. Change its permissions.";

}  // namespace tarnik::CauseTexts
