#include "framework/bridgelib/class_path.h"

#include "framework/std/file.h"

bool appendClassPathElement(TAVString& classPath, const TAVString& directory, const TAVString& jarName,
                            TAVLog* /*log*/) {
  const TAVFile jar = TAVFile(directory).getFile(jarName);
  if (!jar.exists()) return false;
  if (!classPath.empty()) classPath += ":";
  classPath += jar.getPath();
  return true;
}
