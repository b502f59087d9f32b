// Stands in for the libraries of the core when the Darwin check links it: they are not there for Darwin, and
// what the check looks for are missing system symbols. Never run.

#include <cstdlib>

#include <utf8proc.h>

utf8proc_ssize_t utf8proc_iterate(const utf8proc_uint8_t*, utf8proc_ssize_t, utf8proc_int32_t*) {
    std::abort();
}

utf8proc_bool utf8proc_grapheme_break_stateful(utf8proc_int32_t, utf8proc_int32_t, utf8proc_int32_t*) {
    std::abort();
}

int main() {}
