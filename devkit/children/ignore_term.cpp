// ignore_term: ignores SIGTERM, prints "ready" and waits for SIGKILL.
#include <csignal>
#include <cstdio>

#include <unistd.h>

int main() {
    std::signal(SIGTERM, SIG_IGN);
    alarm(120);  // in case the test doesn't end it
    std::puts("ready");
    std::fflush(stdout);
    for (;;) pause();
}
