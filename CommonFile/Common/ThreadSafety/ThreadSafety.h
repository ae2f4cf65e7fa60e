#pragma once

// Annotations for clang's -Wthread-safety; empty for other compilers.
#if defined(__clang__)
#define TVWALL_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define TVWALL_THREAD_ATTRIBUTE(x)
#endif

#define TVWALL_LOCK TVWALL_THREAD_ATTRIBUTE(capability("lock"))
#define TVWALL_LOCK_SCOPE TVWALL_THREAD_ATTRIBUTE(scoped_lockable)
#define TVWALL_GUARDED_BY(x) TVWALL_THREAD_ATTRIBUTE(guarded_by(x))
#define TVWALL_PT_GUARDED_BY(x) TVWALL_THREAD_ATTRIBUTE(pt_guarded_by(x))
#define TVWALL_REQUIRES(...) TVWALL_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define TVWALL_ACQUIRE(...) TVWALL_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define TVWALL_RELEASE(...) TVWALL_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
