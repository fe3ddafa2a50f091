#pragma once

#include <random>
#include <string>

namespace tav::test {

/// Damages documents; what it does follows from its seed alone, on every machine.
class Damage {
 public:
  explicit Damage(unsigned seed) : random_(seed) {}

  /// Changes, moves or drops a few bytes.
  std::string bytes(std::string text);
  /// Drops elements, doubles them, and puts them inside or in place of others. A well-formed document without
  /// comments, declarations and CDATA stays one.
  std::string elements(std::string document);

 private:
  std::size_t below(std::size_t bound) { return random_() % bound; }

  std::mt19937 random_;
};

}  // namespace tav::test
