// Whether a sanitizer watches the tests, which makes each step up to thirty times slower.
#ifndef TEMBRA_TESTS_KIT_SANITIZED_H
#define TEMBRA_TESTS_KIT_SANITIZED_H

#ifndef __has_feature
#define __has_feature(feature) 0
#endif
#if defined(__SANITIZE_THREAD__) || __has_feature(thread_sanitizer)
#define KIT_THREAD_SANITIZER 1
#else
#define KIT_THREAD_SANITIZER 0
#endif
#if KIT_THREAD_SANITIZER || defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
#define KIT_SANITIZER 1
#else
#define KIT_SANITIZER 0
#endif

namespace kit {

constexpr bool kIsThreadSanitized = KIT_THREAD_SANITIZER == 1;
constexpr bool kIsSanitized = KIT_SANITIZER == 1;

/// A sweep of pure computing takes all of its inputs, and one in so many under a sanitizer.
constexpr int kOneIn = kIsSanitized ? 17 : 1;

}  // namespace kit

#endif
