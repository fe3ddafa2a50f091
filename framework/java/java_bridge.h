#pragma once

// Imports that a Java program does.

#include "framework/java/java_exe.h"
#include "framework/std/file.h"
#include "framework/std/log.h"
#include "framework/std/option.h"

class TAVMetadataOrigin;

/// An importer written in Java. It is started as
///
///     java JAVA_OPTIONS -cp CLASSPATH MAINCLASS OPTIONS_FILE OUTPUT_FILE
///
/// where the options ask for a heap that the files among the options of the import need, and name the
/// archive of classes (.jsa) that lies beside the first jar if there is one. It is started
/// without a shell and in the locale C.UTF-8. The options are lines "key<TAB>value" in UTF-8, with \\, \n, \r
/// and \t for what would break a line, in a file that its owner alone can read. The importer writes the
/// output file, and messages to standard output as lines "LEVEL<TAB>IDENTIFIER<TAB>text", LEVEL being the
/// name of a severity. When it fails it writes one line "[identifier] text" to standard error and ends with
/// the exit code 1.
class TAV_API TAVJavaBridge {
 public:
  /// `classPath` is what appendClassPathElement() made; `log` must outlive the bridge and may be null; Java
  /// is at least of version `javaVersion`.
  TAVJavaBridge(TAVString mainClass, TAVString classPath, TAVLog* log, TAVJavaExe::JavaVersion javaVersion);

  /// Runs the importer to its end, its messages going to the log as they come. The origin may be null and has
  /// no meaning: importers write their own. Throws a TAVException when the class path is empty, when there is
  /// no Java that will do, and when the importer fails, in whatever way, or leaves no output file; the
  /// message is the importer's own where it has one. No process and no temporary file is left in any case.
  void javaImport(const TAVFile& outputFile, const TAVOptionList& options, const TAVMetadataOrigin* origin);

 private:
  TAVString mainClass_;
  TAVString classPath_;
  TAVLog* log_;
  TAVJavaExe::JavaVersion javaVersion_;
};
