#pragma once
#pragma clang system_header

// Empty: GNUstep's headers include it but use no declaration of it.
