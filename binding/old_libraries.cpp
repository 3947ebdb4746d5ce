// What headers of newer versions of libstdc++ ask for and older libraries do
// not have, so that the module loads wherever GLIBC 2.28 and GLIBCXX 3.4.25 or
// later are. Nothing here is exported: other modules keep what they have.
#include <cstddef>
#include <new>

#if defined(__GLIBC__) && defined(__GLIBCXX__)

// Shared pointers count without atomic instructions while this is not 0. Node.js
// always runs several threads, so the C library's own says the same there.
extern "C" {
extern const char __libc_single_threaded;
const char __libc_single_threaded = 0;
}

namespace std {

[[noreturn]] void __throw_bad_array_new_length();
void __throw_bad_array_new_length() { throw bad_array_new_length(); }

}  // namespace std

#endif
