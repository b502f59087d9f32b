#pragma once
#pragma clang system_header

// Included by GNUstep's headers, which need nothing of it.
