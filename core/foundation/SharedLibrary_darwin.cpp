#include "core/foundation/SharedLibrary.h"

namespace tarnik {

// macOS comes with curl, but not with OpenSSL: that is in our bundle.
const char* const SharedLibrary::curlFile = "/usr/lib/libcurl.4.dylib";
const char* const SharedLibrary::cryptoFile = "@rpath/libcrypto.3.dylib";

}  // namespace tarnik
