#include "reader/elements/view_details.h"

namespace tav {

void readViewDetails(ImportRun& /*run*/, const TAVDOMElement& /*database*/, IdReferences& /*references*/) {}

}  // namespace tav
