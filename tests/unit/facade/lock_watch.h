// LockWatch shows which of the product's mutexes are held when another one is locked.
//
// The mutexes are private to their owners, so a test names them by what locks them. What is not
// named (those of the fakes, of the standard library) is not watched. The program's own
// pthread_mutex_lock stands before the C library's, which does not go together with
// ThreadSanitizer; that one finds inversions itself.

#ifndef UNIT_FACADE_LOCK_WATCH_H
#define UNIT_FACADE_LOCK_WATCH_H

#include <functional>
#include <set>
#include <string>

namespace LockWatch {

/// The first mutex that the action locks inside the object is known by the name from now on.
void Name(const std::string& name, const void* object, std::size_t size,
          const std::function<void()>& action);

/// As "fileManagerMutex > observerMutex": the second was locked while the first was held by
/// the same thread. Of all threads, since the process began.
std::set<std::string> Nestings();

/// What the calling thread holds now, in the order in which it was locked, as
/// "fileManagerMutex > observerMutex"; empty when it holds none.
std::string Held();

/// How often the mutex was locked.
std::size_t Count(const std::string& name);

}  // namespace LockWatch

#endif  // UNIT_FACADE_LOCK_WATCH_H
