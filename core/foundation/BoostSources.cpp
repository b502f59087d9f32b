// The sources of the Boost libraries that aren't header-only. They are compiled here, so that the linker can
// drop the unused functions. These are three quarters of all functions. The linker can't drop functions of
// the installed libraries.
#include <boost/json/src.hpp>
#include <boost/url/src.hpp>
