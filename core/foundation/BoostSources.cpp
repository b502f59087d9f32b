// The sources of the Boost libraries that aren't header-only. They are compiled here, so that the linker
// drops the unused functions, which are three quarters of them. It can't do that with the installed
// libraries.
#include <boost/json/src.hpp>
#include <boost/url/src.hpp>
