#pragma once

namespace tarnik {

// The files of the libraries that are loaded on demand, of the version that the headers describe.
struct LibraryFiles {
    static const char* const curl;
    static const char* const crypto;  // OpenSSL's
};

}  // namespace tarnik
