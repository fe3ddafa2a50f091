#include "expressions/script_scanner.h"
#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

void TAVSQLServerXMLAImportBridge::importMdxScript(const TAVDOMElement& element,
                                                   TAVDimension& calculatedMeasures, TAVCube& cube) {
  const TAVDOMElement* commands = element.getFirstElement(kCommands);
  const TAVDOMElement* command = commands ? commands->getFirstElement(kCommand) : nullptr;
  if (!command) return;
  const TAVString text = TAVString(command->getFirstElementValue(kText)).trim();
  const std::string script = tav::removeScriptComments(text);
  for (const tav::CalculatedMeasure& found : tav::findCalculatedMeasures(script)) {
    MeasureDescription description;
    description.name = found.name;
    description.nativeType = "Calculated Measure";
    TAVMeasure& measure =
        createMeasurePair(description, "Binary", found.expression, calculatedMeasures, cube);
    measure.getDestinationOfFeatureMap()->description = found.statement;
  }
}
