#pragma once

// Pseudo-terminals as Darwin's libutil declares them. The compiler of the Darwin check lacks this header.

#include <sys/ioctl.h>
#include <sys/types.h>
#include <termios.h>

extern "C" {
int openpty(int* master, int* slave, char* name, struct termios* settings, struct winsize* size);
pid_t forkpty(int* master, char* name, struct termios* settings, struct winsize* size);
int login_tty(int slave);
}
