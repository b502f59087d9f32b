#include "core/foundation/LibraryFiles.h"

namespace tarnik {

// The system's own curl; of OpenSSL it has none, so that one comes with the bundle.
const char* const LibraryFiles::curl = "/usr/lib/libcurl.4.dylib";
const char* const LibraryFiles::crypto = "@rpath/libcrypto.3.dylib";

}  // namespace tarnik
