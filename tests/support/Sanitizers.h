#pragma once

// QNL_THREAD_SANITIZER is 1 in builds that the thread sanitizer watches: there operator new is its own, and
// memory that nobody touched is resident. QNL_SANITIZERS is 1 in these and in those that the address
// sanitizer watches: all runs many times longer there.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define QNL_THREAD_SANITIZER 1
#endif
#if __has_feature(address_sanitizer)
#define QNL_SANITIZERS 1
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define QNL_THREAD_SANITIZER 1
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(QNL_THREAD_SANITIZER)
#define QNL_SANITIZERS 1
#endif
#ifndef QNL_THREAD_SANITIZER
#define QNL_THREAD_SANITIZER 0
#endif
#ifndef QNL_SANITIZERS
#define QNL_SANITIZERS 0
#endif
