#pragma once

// The state of one import: what its steps share. It lies below all of them and knows none; a step is a
// function that takes it, and what only that step needs, as arguments.

#include <deque>
#include <memory>
#include <string>

#include "framework/details/details.h"
#include "framework/dom/dom.h"
#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"
#include "reader/run/id_index.h"
#include "reader/run/import_types.h"
#include "reader/run/open_expressions.h"
#include "reader/run/read_elements.h"
#include "reader/run/records.h"
#include "reader/run/view_columns.h"

namespace tav {

struct ImportRun {
  explicit ImportRun(TAVLog* messages) : log(messages), types(messages), records(messages) {}

  TAVLog* log;
  TAVStoreModel* model = nullptr;           ///< the caller's; there when the first step begins
  TAVFile file;                             ///< the input
  std::unique_ptr<TAVDOM> document;         ///< while it is read; nothing in the model points into it
  std::unique_ptr<Details> details;         ///< null when nobody asks for them
  std::vector<OpenExpression> expressions;  ///< of the details, which are resolved at the end
  std::deque<std::string> texts;            ///< of such expressions that the document has in other words
  ReadElements elements;                    ///< of the details; empty without them
  ImportTypes types;
  ViewColumns columns;               ///< of the data source views
  IdIndex<TAVDimension> dimensions;  ///< of the database
  Records records;
};

/// Notes what an element was made into, for the details.
inline void note(ImportRun& run, const TAVDOMElement& element, const TAVModelObject& object) {
  if (run.details) run.elements.add(element, object);
}

/// Copies an element's name and description to an object.
void setNameDescription(const TAVDOMElement& element, TAVElement& object);
/// The same with its ID, which the model loses at the end of the import.
void setNameIdDescription(const TAVDOMElement& element, TAVElement& object);

}  // namespace tav
