#include "host/own_library.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>

#include "framework/std/own_folder.h"

namespace host {

void* ownObject(const char* library, const char* factory) {
  const std::filesystem::path path = tav::ownFolder() / library;
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) throw std::runtime_error(dlerror());
  using Factory = void* (*)();
  const auto function = reinterpret_cast<Factory>(dlsym(handle, factory));
  if (!function) throw std::runtime_error(path.string() + " has no factory " + factory);
  void* object = function();
  if (!object) throw std::runtime_error(path.string() + " gives no interface");
  return object;
}

}  // namespace host
