#include "host/inputs/archive.h"

namespace host {

const Archives& archives() {
  static const Archives& kArchives = ownInterface<const Archives>("libxmla_archives.so", "xmlaArchives");
  return kArchives;
}

}  // namespace host
