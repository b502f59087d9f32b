#pragma once
#pragma clang system_header

// Extended attributes of Darwin, whose functions have one more argument than those of Linux.

#include <sys/types.h>

#define XATTR_NOFOLLOW 0x0001

extern "C" {
int removexattr(const char* path, const char* name, int options);
}
