#pragma once

// The arguments of the process, as Darwin's C library declares them.
extern "C" {
char*** _NSGetArgv(void);
int* _NSGetArgc(void);
}
