#ifndef SUPPORT_SANITIZED_H
#define SUPPORT_SANITIZED_H

/// The address sanitizer is in the build: it needs terabytes of addresses, is slow, and has an end
/// of its own for memory that can't be had.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

#endif
