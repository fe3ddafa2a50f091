// A host of its own: loads the installed plug-in and prints the version that it states.
#include <dlfcn.h>

#include <iostream>

#include "framework/std/dll_interface.h"

int main() {
  void* library = dlopen(PLUGIN, RTLD_NOW);
  if (!library) {
    std::cerr << dlerror() << '\n';
    return 1;
  }
  auto* factory = reinterpret_cast<KORVDllInterface* (*)()>(
      dlsym(library, "getTAVMicrosoftSqlServerXMLAImportInterface"));
  if (!factory) {
    std::cerr << dlerror() << '\n';
    return 1;
  }
  std::cout << factory()->getBuildVersion().view() << '\n';
  return 0;
}
