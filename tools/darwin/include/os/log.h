#pragma once
#pragma clang system_header

// The declarations of the unified log that this project uses. The format is a literal, and its arguments are
// checked.

extern "C" {
typedef struct os_log_s* os_log_t;
os_log_t os_log_create(const char* subsystem, const char* category);
void _os_log_fence(os_log_t log, const char* format, ...) __attribute__((format(os_log, 2, 3)));
}
#define os_log(log, format, ...) _os_log_fence(log, "" format, ##__VA_ARGS__)
