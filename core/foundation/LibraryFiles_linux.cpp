#include "core/foundation/LibraryFiles.h"

namespace tarnik {

const char* const LibraryFiles::curl = "libcurl.so.4";
const char* const LibraryFiles::crypto = "libcrypto.so.3";

}  // namespace tarnik
