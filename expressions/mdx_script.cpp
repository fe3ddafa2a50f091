#include "expressions/mdx_script.h"

#include "expressions/script_scanner.h"
#include "framework/model/lineage_writer.h"
#include "framework/model/roles.h"
#include "framework/std/text.h"
#include "reader/run/measures.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {

void importMdxScript(ImportRun& run, const TAVDOMElement& element, TAVDimension& calculatedMeasures,
                     TAVCube& cube) {
  const TAVDOMElement* commands = element.getFirstElement(kCommands);
  const TAVDOMElement* command = commands ? commands->getFirstElement(kCommand) : nullptr;
  if (!command) return;
  const std::string script = removeScriptComments(trimmed(command->getFirstElementValue(kText)));
  for (const CalculatedMeasure& found : findCalculatedMeasures(script)) {
    MeasureDescription description;
    description.name = found.name;
    description.nativeType = label::kCalculatedMeasure;
    TAVMeasure& measure =
        createMeasurePair(run, description, "Binary", found.expression, calculatedMeasures, cube);
    if (run.details) run.elements.addCalculated(cube, measure);
    // The expression is in the operation; the whole statement is what a person finds again in the script.
    featureMapOf(measure).description = found.statement;
  }
}

}  // namespace tav
