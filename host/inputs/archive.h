#pragma once

// Zip archives, read in memory.

#include <memory>
#include <string>
#include <vector>

struct zip;

namespace host {

/// An open archive. What is wrong with it is thrown as std::runtime_error with the cause.
class Archive {
 public:
  explicit Archive(const std::string& path);

  [[nodiscard]] bool holds(const std::string& entry) const;
  /// The names of what it holds, in its order.
  [[nodiscard]] std::vector<std::string> entries() const;
  /// The bytes of an entry. One that is unpacked to more than such files have is refused.
  [[nodiscard]] std::string read(const std::string& entry) const;

 private:
  struct Close {
    void operator()(zip* archive) const noexcept;
  };
  std::unique_ptr<zip, Close> archive_;
};

}  // namespace host
