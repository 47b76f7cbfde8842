// A mutex of which clang knows what it guards (-Wthread-safety).
//
// Threading: any.
#pragma once

#include <mutex>

#ifdef __clang__
#define HLV_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define HLV_THREAD_SAFETY(attribute)
#endif

/// Of a member: only with the mutex held; `HLV_POINTEE_GUARDED_BY` is the same for what it points
/// to.
#define HLV_GUARDED_BY(mutex) HLV_THREAD_SAFETY(guarded_by(mutex))
#define HLV_POINTEE_GUARDED_BY(mutex) HLV_THREAD_SAFETY(pt_guarded_by(mutex))
/// Of a function: its caller holds the mutex.
#define HLV_REQUIRES(mutex) HLV_THREAD_SAFETY(requires_capability(mutex))
/// Of a function: every thread that could write has been waited for.
#define HLV_AFTER_ALL_WRITERS HLV_THREAD_SAFETY(no_thread_safety_analysis)

namespace hlv {

class HLV_THREAD_SAFETY(capability("mutex")) Mutex {
 public:
  void lock() HLV_THREAD_SAFETY(acquire_capability()) { mutex_.lock(); }
  void unlock() HLV_THREAD_SAFETY(release_capability()) { mutex_.unlock(); }

 private:
  std::mutex mutex_;
};

/// Holds a mutex to the end of a scope.
class HLV_THREAD_SAFETY(scoped_lockable) Lock {
 public:
  explicit Lock(Mutex& mutex) HLV_THREAD_SAFETY(acquire_capability(mutex)) : mutex_(mutex) {
    mutex_.lock();
  }
  ~Lock() HLV_THREAD_SAFETY(release_capability()) { mutex_.unlock(); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  Mutex& mutex_;
};

}  // namespace hlv
