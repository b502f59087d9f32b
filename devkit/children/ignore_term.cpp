// ignore_term: ignores SIGTERM, prints "ready" and waits until it is killed.
#include <csignal>
#include <cstdio>

#include <unistd.h>

int main() {
    std::signal(SIGTERM, SIG_IGN);
    alarm(120);  // a test that lost it must not leave it behind
    std::puts("ready");
    std::fflush(stdout);
    for (;;) pause();
}
