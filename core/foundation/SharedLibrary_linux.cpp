#include "core/foundation/SharedLibrary.h"

namespace tarnik {

const char* const SharedLibrary::curlFile = "libcurl.so.4";
const char* const SharedLibrary::cryptoFile = "libcrypto.so.3";

}  // namespace tarnik
