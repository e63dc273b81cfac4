#pragma once

// QNL_THREAD_SANITIZER is 1 in builds that the thread sanitizer watches: there operator new is its own, and
// memory that nobody touched is resident.
#if defined(__SANITIZE_THREAD__)
#define QNL_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define QNL_THREAD_SANITIZER 1
#endif
#endif
#ifndef QNL_THREAD_SANITIZER
#define QNL_THREAD_SANITIZER 0
#endif
