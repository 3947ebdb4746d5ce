// What headers of newer versions of libstdc++ ask for and older libraries do
// not have, so that the module loads wherever GLIBC 2.28 and GLIBCXX 3.4.25 or
// later are. Nothing here is exported: other modules keep what they have.
#include <cstddef>
#include <new>

#if defined(__GLIBC__) && defined(__GLIBCXX__)

// The names are those of the libraries.
// NOLINTBEGIN(bugprone-reserved-identifier)

// While it is not 0, shared pointers count without atomic instructions. Node.js
// always runs several threads, for which the C library's own is 0 too.
extern "C" {
extern const char __libc_single_threaded;
const char __libc_single_threaded = 0;
}

namespace std {

[[noreturn]] void __throw_bad_array_new_length();
void __throw_bad_array_new_length() { throw bad_array_new_length(); }

}  // namespace std

// NOLINTEND(bugprone-reserved-identifier)

#endif
