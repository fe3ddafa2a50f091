#pragma once

#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "framework/dom/arena.h"
#include "framework/dom/dom_name.h"

namespace tav {

/// The names of a document, each kept once for each namespace that its prefix stands for, and the
/// declarations of namespaces that hold where the parser is.
class DomNames {
 public:
  using Scope = std::size_t;

  explicit DomNames(Arena& arena);

  /// What holds from here until closeScope with the same value are the declarations made before it and in it.
  [[nodiscard]] Scope openScope() const noexcept { return declared_.size(); }
  void closeScope(Scope scope);
  /// Takes an attribute that may declare a namespace; any other one is passed over.
  void declare(std::string_view attribute, std::string_view value);

  const DomName* tag(std::string_view written);
  const DomName* attribute(std::string_view written);

 private:
  struct Written {
    std::string_view text;
    std::string_view local;
    std::size_t prefix;  // in spaces_
    Written* follower = nullptr;
    const DomName* lastTag = nullptr;
    const DomName* lastAttribute = nullptr;
  };
  struct Declared {
    std::size_t prefix;
    std::string_view before;  // what the prefix stood for outside
  };

  static constexpr std::size_t kNoPrefix = 0;

  Written& find(std::string_view text);
  Written& findHashed(std::string_view text);
  std::size_t prefixIndex(std::string_view prefix);
  std::string_view keepSpace(std::string_view space);
  const DomName* make(const Written& written, std::string_view space);

  Arena& arena_;
  std::unordered_map<std::string_view, Written> written_;
  Written* last_ = nullptr;  // what find gave last
  std::unordered_map<std::string_view, std::size_t> prefixes_;
  std::vector<std::string_view> spaces_;  // what each prefix stands for now
  std::vector<Declared> declared_;        // innermost last
  std::unordered_set<std::string_view> keptSpaces_;
  std::map<std::pair<const char*, const char*>, const DomName*>
      made_;  // by the addresses of text and namespace
};

}  // namespace tav
