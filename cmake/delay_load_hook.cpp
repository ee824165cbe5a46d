// Binds the module's Node-API imports to the program that loaded it, whatever that program's file is called:
// an application host is not named node.exe.

#include <windows.h>

#include <delayimp.h>

#include <cstring>

namespace {

FARPROC WINAPI onDelayLoad(unsigned notification, PDelayLoadInfo info) {
  if (notification != dliNotePreLoadLibrary || _stricmp(info->szDll, "node.exe") != 0) {
    return nullptr;
  }
  return reinterpret_cast<FARPROC>(GetModuleHandleA(nullptr));
}

}  // namespace

extern "C" {
PfnDliHook __pfnDliNotifyHook2 = onDelayLoad;
}
