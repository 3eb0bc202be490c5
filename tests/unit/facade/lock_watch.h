// LockWatch shows which of the product's mutexes are held when another one is locked.
//
// The mutexes are private to their owners, so a test names them by what locks them. LockWatch does
// not watch mutexes without a name, such as those of the fakes and of the standard library. The
// program's own pthread_mutex_lock replaces that of the C library. ThreadSanitizer does the same,
// so the two cannot be combined; ThreadSanitizer finds inversions itself.

#ifndef UNIT_FACADE_LOCK_WATCH_H
#define UNIT_FACADE_LOCK_WATCH_H

#include <functional>
#include <set>
#include <string>

namespace LockWatch {

/// Names the first mutex that the action locks inside the object.
void Name(const std::string& name, const void* object, std::size_t size,
          const std::function<void()>& action);

/// Returns pairs such as "fileManagerMutex > observerMutex", of all threads since the process
/// began: a thread locked the second mutex while it held the first.
std::set<std::string> Nestings();

/// Returns the mutexes that the calling thread holds now, in the order in which it locked them,
/// such as "fileManagerMutex > observerMutex"; empty when it holds none.
std::string Held();

/// Returns how often the mutex was locked.
std::size_t Count(const std::string& name);

}  // namespace LockWatch

#endif  // UNIT_FACADE_LOCK_WATCH_H
