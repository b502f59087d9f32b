#pragma once
#pragma clang system_header

// The declarations of Core Graphics that this project uses.

extern "C" {
bool CGPreflightScreenCaptureAccess(void);
bool CGRequestScreenCaptureAccess(void);
}
