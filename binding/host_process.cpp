// Windows only: which program has the functions of Node.js that the module is
// linked against. They are those of node.exe, but the program that loads the
// module may have another name, or be an application with Node.js inside.

// Not sorted: the second needs the first.
// clang-format off
#include <windows.h>
#include <delayimp.h>
// clang-format on

namespace {

// Called by the linker's code for late loading. Only the host is loaded late.
FARPROC WINAPI findHost(unsigned step, PDelayLoadInfo) {
  if (step != dliNotePreLoadLibrary) return nullptr;
  return reinterpret_cast<FARPROC>(GetModuleHandleW(nullptr));
}

}  // namespace

decltype(__pfnDliNotifyHook2) __pfnDliNotifyHook2 = findHost;
