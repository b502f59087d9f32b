#include "core/foundation/SharedLibrary.h"

namespace tarnik {

// macOS includes curl, but not OpenSSL, which is in our bundle.
const char* const SharedLibrary::curlFile = "/usr/lib/libcurl.4.dylib";
const char* const SharedLibrary::cryptoFile = "@rpath/libcrypto.3.dylib";

}  // namespace tarnik
