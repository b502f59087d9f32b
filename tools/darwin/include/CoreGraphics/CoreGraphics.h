#pragma once
#pragma clang system_header

// What we use of Core Graphics.

extern "C" {
bool CGPreflightScreenCaptureAccess(void);
bool CGRequestScreenCaptureAccess(void);
}
