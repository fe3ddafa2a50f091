#include "framework/std/java_path.h"

#include "framework/std/own_folder.h"

TAVString getTAVJavaPath() {
  return (tav::ownFolder().parent_path() / "share/xmla-bridge/java").string();
}
