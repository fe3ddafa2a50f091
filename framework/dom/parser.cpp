#include "framework/dom/parser.h"

#include "framework/dom/document_failure.h"
#include "framework/dom/expat_run.h"
#include "framework/dom/scanner.h"

namespace tav {

const TAVDOMElement* parseDocument(ByteSource& source, TreeBuilder tree, TAVLog* log,
                                   std::string_view document) {
  Scanner scanner(source, tree);
  bool isPlain = false;
  try {
    isPlain = scanner.scan();
  } catch (const TreeLimit& limit) {
    failAt(document, scanner.place(), limit.what());
  }
  if (source.isEmpty()) failAt(document, {1, 1}, "the file is empty");
  if (!isPlain) {
    ExpatRun expat(tree, log, document);
    if (scanner.hasBegun()) expat.enter(scanner.place());
    source.giveBack(scanner.rest());
    expat.read(source);
  }
  source.reportProgress();
  return tree.finish();
}

}  // namespace tav
