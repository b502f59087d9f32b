// The sources of the Boost libraries that aren't headers alone. Compiled here, the link keeps of them what is
// used, which is a quarter; of a library that was built before it keeps every file whole.
#include <boost/json/src.hpp>
#include <boost/url/src.hpp>
