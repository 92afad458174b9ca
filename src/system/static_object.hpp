#pragma once

#include <new>

namespace varnoth {

/// The one mechanism for process-wide objects that other static objects use. The object is complete
/// before its first user's static initialisation and outlives its last user's destruction.
///
/// A header that offers such an object declares a user and a name for the object:
///
///     static const STATIC_OBJECT<LOG> log_user;
///     inline LOG& GlobalLog = STATIC_OBJECT<LOG>::Get();
///
/// Each file that includes the header then counts itself in before it builds its own static
/// objects, and out after they are gone. The first one in makes the object, the last one out
/// destroys it. The count takes no lock.
template <class T>
class STATIC_OBJECT {
 public:
  STATIC_OBJECT() {
    if (users++ == 0) ::new (static_cast<void*>(memory)) T;
  }
  ~STATIC_OBJECT() {
    if (--users == 0) Get().~T();
  }
  STATIC_OBJECT(const STATIC_OBJECT&) = delete;
  STATIC_OBJECT& operator=(const STATIC_OBJECT&) = delete;

  /// The object; valid while there is at least one user.
  static T& Get() noexcept { return *reinterpret_cast<T*>(memory); }

 private:
  static inline constinit int users = 0;
  alignas(T) static inline constinit unsigned char memory[sizeof(T)] = {};
};

}  // namespace varnoth
