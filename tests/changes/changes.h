#pragma once

// The changes that can be made to one place of a definition, made when they are asked for.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tav::test {

/// What is done to a place.
enum class Way {
  removed,
  doubled,
  changed,
  swapped,  ///< changes places with the next one of its kind beside it
  moved     ///< stands below the next owner of the same kind
};

/// Which kind of place is changed how: "Dimensions/Dimension/Name changed".
std::string kindOfChange(std::string_view path, Way way);
/// A path below the database, without numbers.
std::string kindOfPlace(std::string_view path);
/// Another value of the same type, as far as the text tells its type.
std::string otherValue(std::string_view value);

class Changes {
 public:
  /// An element, an attribute, a member: whatever can be taken out by itself.
  using Place = std::size_t;

  Changes() = default;
  Changes(const Changes&) = delete;
  Changes& operator=(const Changes&) = delete;
  virtual ~Changes() = default;

  /// Those of one place stand together.
  [[nodiscard]] std::size_t size() const { return changes_.size(); }
  [[nodiscard]] Place place(std::size_t i) const { return changes_[i].place; }
  [[nodiscard]] std::string kind(std::size_t i) const {
    return kindOfChange(path(changes_[i].place), changes_[i].way);
  }
  /// The document with that change.
  [[nodiscard]] virtual std::string at(std::size_t i) const = 0;
  /// From the root down, the nth of its kind as kind[n] from the second on.
  [[nodiscard]] virtual std::string path(Place place) const = 0;
  /// What a place stands in; nothing for the root.
  [[nodiscard]] virtual std::optional<Place> around(Place place) const = 0;
  /// The document without it.
  [[nodiscard]] virtual std::string without(Place place) const = 0;
  /// Whether it only says how the document is written.
  [[nodiscard]] virtual bool isWriting(Place place) const = 0;

 protected:
  struct Change {
    Place place;
    Way way;
    Place other = 0;  ///< the one beside it, or its next owner
  };
  std::vector<Change> changes_;
};

}  // namespace tav::test
