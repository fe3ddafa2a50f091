#pragma once

// Libraries of the program's own that are loaded when they are first asked for. They lie in the folder of the
// framework's library, and stay loaded to the end: what they gave may be in use until then.

namespace host {

/// What such a library gives is known by a base of this kind.
class OwnInterface {
 public:
  OwnInterface() = default;
  OwnInterface(const OwnInterface&) = delete;
  OwnInterface& operator=(const OwnInterface&) = delete;
  virtual ~OwnInterface() = default;
};

/// The object that `library` gives by its function `factory`, never null. Throws std::runtime_error with the
/// cause when the library is missing, broken or another one.
void* ownObject(const char* library, const char* factory);

/// The same object as the interface that both sides know it by.
template <class Interface> Interface& ownInterface(const char* library, const char* factory) {
  return *static_cast<Interface*>(ownObject(library, factory));
}

}  // namespace host
