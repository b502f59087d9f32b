// The sources of the Boost libraries that aren't header-only. Compiled here, the linker drops unused
// functions, three quarters of them; it can't do that with the installed libraries.
#include <boost/json/src.hpp>
#include <boost/url/src.hpp>
