#pragma once

// Which events a server has taken, kept in a file from one run to the next.

#include <fstream>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace host {

/// Events are known by their text and by the server that they go to. Each is noted as soon as it is taken, so
/// that a run which is cut off at any time can be gone on with; the worst is that the last event is sent
/// twice.
class PostedEvents {
 public:
  /// Reads the file `path`, which is made when it is not there. With an empty path nothing is known or kept.
  /// Throws Message::inputNotRead when the file is another one, and what tav::ReplacingFile throws when it
  /// cannot be written.
  PostedEvents(std::string path, std::string target);

  [[nodiscard]] bool contains(std::string_view event) const;
  /// Throws what tav::ReplacingFile throws.
  void add(std::string_view event);

 private:
  void read();
  void write();
  [[nodiscard]] std::string idOf(std::string_view event) const;

  std::string path_;
  std::string target_;
  std::unordered_set<std::string> ids_;
  std::vector<std::string> order_;
  std::ofstream out_;
};

}  // namespace host
