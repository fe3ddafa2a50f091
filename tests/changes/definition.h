#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/details/detailed_model.h"

namespace tav::test {

/// A definition that was imported, with its details.
struct Definition {
  std::shared_ptr<const Details> details;
  Owned<TAVModel> model;  ///< null where the text is no definition

  [[nodiscard]] DetailedModel get() const { return {*model, details.get()}; }
};

/// How texts of one kind are imported, and how many at a time.
struct Importer {
  std::vector<Definition> (*importAll)(const std::vector<std::string>& texts);
  std::size_t most;

  [[nodiscard]] Definition importOne(const std::string& text) const {
    return std::move(importAll({text}).front());
  }
};

/// Of several definitions, the one that was imported last goes first.
extern const Importer kXml;
/// One Java for many: starting one takes far longer than an import.
extern const Importer kTabular;

}  // namespace tav::test
