#pragma once
#pragma clang system_header

// Extended attributes as Darwin has them, with one argument more than Linux.

#include <sys/types.h>

#define XATTR_NOFOLLOW 0x0001

extern "C" {
int removexattr(const char* path, const char* name, int options);
}
