#pragma once

// The Java that importers run on.

#include "framework/std/string.h"

class TAV_API TAVJavaExe {
 public:
  /// The least version of Java that is accepted.
  static constexpr int JAVA_VERSION_6 = 17;

  /// The path of a Java of at least this version. It is the one that the environment variable
  /// XMLA_BRIDGE_JAVA names, or else the first that will do of $JAVA_HOME/bin/java and the PATH. Throws a
  /// TAVException
  /// "[TAVJAVA_F0002] ..." that says what there is and what to install.
  static TAVString find(int leastVersion);
};
