#pragma once

// The Java that importers run on.

#include "framework/std/string.h"

/// Finds the Java that is used.
class TAV_API TAVJavaExe {
 public:
  /// Versions that an importer can ask for, each the least that it accepts.
  enum JavaVersion : std::int32_t { JAVA_VERSION_6 = 17 };

  /// The path of a Java of at least this version. It is the one that the environment variable
  /// XMLA_BRIDGE_JAVA names, or else the first that will do of $JAVA_HOME/bin/java and the PATH. Throws a
  /// TAVException "[TAVJAVA_F0002] ..." that says what there is and what to install.
  static TAVString find(JavaVersion leastVersion);
};
