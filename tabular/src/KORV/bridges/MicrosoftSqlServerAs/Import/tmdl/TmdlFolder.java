package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import java.io.IOException;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Collections;
import java.util.HashSet;
import java.util.List;
import java.util.Locale;
import java.util.Set;

/** The files of a definition that is a folder. */
final class TmdlFolder {
  /** Beside a definition lie commands of the same language, which are no part of it. */
  private static final String SCRIPTS = "tmdlscripts";
  private static final String DEFINITION = "definition";

  private final TmdlFaults faults;
  private final List<Path> files = new ArrayList<>();
  /** What was seen already, under whatever name: links may lead in a circle. */
  private final Set<Object> seen = new HashSet<>();

  private TmdlFolder(TmdlFaults faults) { this.faults = faults; }

  static boolean isTmdlName(Path file) {
    String name = file.getFileName() == null ? "" : file.getFileName().toString().toLowerCase(Locale.ROOT);
    return name.endsWith(".tmdl") || name.endsWith(".tmd");
  }

  /** The files below a folder, in the order of their paths; those of its folder `definition` if it has one. */
  static List<Path> list(Path folder, TmdlFaults faults) {
    TmdlFolder found = new TmdlFolder(faults);
    Path definition = folder.resolve(DEFINITION);
    found.walk(Files.isDirectory(definition) ? definition : folder);
    Collections.sort(found.files);
    return found.files;
  }

  private void walk(Path start) {
    ArrayDeque<Path> folders = new ArrayDeque<>();
    visit(start, folders);
    while (!folders.isEmpty()) {
      Path folder = folders.pop();
      List<Path> entries = new ArrayList<>();
      try (DirectoryStream<Path> stream = Files.newDirectoryStream(folder)) {
        for (Path entry : stream) entries.add(entry);
      } catch (IOException | DirectoryIteratorException fault) {
        lose(folder, "the folder cannot be read");
      }
      Collections.sort(entries);
      for (Path entry : entries)
        if (!isHidden(entry)) visit(entry, folders);
    }
  }

  private static boolean isHidden(Path entry) {
    String name = entry.getFileName().toString();
    return name.startsWith(".") || name.toLowerCase(Locale.ROOT).equals(SCRIPTS);
  }

  private void visit(Path entry, ArrayDeque<Path> folders) {
    boolean wanted = isTmdlName(entry);
    BasicFileAttributes attributes;
    try {
      attributes = Files.readAttributes(entry, BasicFileAttributes.class);
    } catch (IOException fault) {
      if (wanted) lose(entry, Files.isSymbolicLink(entry) ? "the link leads nowhere" : "the file cannot be read");
      return;
    }
    if (!wanted && !attributes.isDirectory()) return;
    Object key = attributes.fileKey();
    if (key != null && !seen.add(key)) return;
    if (attributes.isDirectory()) {
      if (wanted) lose(entry, "it is a folder");
      folders.add(entry);
    } else if (attributes.isRegularFile()) {
      files.add(entry);
    } else {
      lose(entry, "no regular file");
    }
  }

  private void lose(Path path, String cause) {
    faults.enter(path.toString());
    faults.lose(-1, 0, cause);
  }

  static boolean isRegular(Path file) { return Files.isRegularFile(file); }
}
