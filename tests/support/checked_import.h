#pragma once

// Running an import in a test, for tests that care about what any input comes to.

#include <string>
#include <string_view>

#include "framework/model/model.h"
#include "tests/support/corpus.h"

namespace tav::test {

/// What an import came to: a model, or the message of the one exception that ended it.
struct Imported {
  Owned<TAVStoreModel> model;
  std::string error;  // the path of the input shows as FILE
};

/// Imports a file. Any exception but a TAVException comes through, a model that breaks a law is a test
/// failure, and so is an import that takes longer than any of them may.
Imported importFile(const std::filesystem::path& path);

/// Imports documents that are not in a file yet.
class DocumentImporter {
 public:
  Imported import(std::string_view document) { return importFile(folder_.write("document.xmla", document)); }

 private:
  TemporaryFolder folder_;
};

}  // namespace tav::test
