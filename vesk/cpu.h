// Code for the processor at hand.
#pragma once

// 1 where a sanitizer watches every access to memory and every call.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TOV_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define TOV_SANITIZED 1
#endif
#endif
#ifndef TOV_SANITIZED
#define TOV_SANITIZED 0
#endif

// Compiles a function a second time for processors with fused multiplication, and with it every function that
// it calls and that is marked TOV_INLINE; the loader chooses. Results are the same bit for bit: nothing is
// fused that the source does not fuse. (Sanitizers cannot follow the choice.)
#if defined(__x86_64__) && defined(__linux__) && !TOV_SANITIZED
#define TOV_FUSED_CLONE __attribute__((target_clones("fma", "default")))
#else
#define TOV_FUSED_CLONE
#endif

#define TOV_INLINE __attribute__((always_inline)) inline
