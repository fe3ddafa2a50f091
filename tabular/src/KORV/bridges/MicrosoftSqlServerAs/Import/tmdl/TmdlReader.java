package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.JsonReader;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.FileStamp;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Set;

/** Reads a definition in TMDL, a folder or one file, as the tree that the same definition is in JSON. */
public final class TmdlReader {
  /** The first compatibility level of tabular definitions that are not XML. */
  public static final int FIRST_LEVEL = TmdlProperties.FIRST_LEVEL;

  /** So much of a file tells whether it is TMDL. */
  private static final int START = 1 << 12;
  private static final char MARK = '\uFEFF';

  /** A file that is written to while it is read. */
  private static final class ChangedFile extends IOException {
    private static final long serialVersionUID = 1;
  }

  private TmdlReader() {}

  /** Whether the path is a folder or a file of TMDL, by its name or by what it begins with. */
  public static boolean isTmdl(Path path) throws IOException {
    if (Files.isDirectory(path) || TmdlFolder.isTmdlName(path)) return true;
    if (!TmdlFolder.isRegular(path)) return false;
    try (InputStream in = Files.newInputStream(path)) {
      return beginsAsTmdl(decode(in.readNBytes(START)));
    }
  }

  private static boolean beginsAsTmdl(String text) {
    for (String line : text.lines().toList()) {
      String content = line.strip();
      if (content.isEmpty() || content.startsWith("///")) continue;
      int end = 0;
      while (end < content.length() && Character.isLetter(content.charAt(end))) ++end;
      String word = content.substring(0, end);
      boolean whole = end == content.length() || TmdlLines.isBlank(content.charAt(end));
      return whole && (word.equals("ref") || TmdlKind.ROOT.owned(word) != null);
    }
    return false;
  }

  /** The definition. What cannot be read of it is told to `faults` and left out. */
  public static Json read(Path path, TmdlFaults faults) throws IOException, ImportException {
    boolean folder = Files.isDirectory(path);
    if (!folder && Files.exists(path) && !TmdlFolder.isRegular(path))
      throw new ImportException(ImportException.FILE, 0, 0, "no regular file");
    List<Path> files = folder ? TmdlFolder.list(path, faults) : List.of(path);
    if (files.isEmpty())
      throw new ImportException(ImportException.DEFINITION, 0, 0, "no file with the extension .tmdl in the folder");
    TmdlObject root = new TmdlObject(TmdlKind.ROOT, "");
    TmdlEnds ends = new TmdlEnds();
    for (Path file : files) {
      faults.enter(file.toString());
      String text;
      try {
        text = decode(wholeOf(file));
      } catch (ChangedFile fault) {
        if (!folder) throw new ImportException(ImportException.FILE, 0, 0, FileStamp.CHANGED);
        faults.lose(-1, 0, FileStamp.CHANGED);
        continue;
      } catch (IOException fault) {
        if (!folder) throw fault;
        faults.lose(-1, 0, "the file cannot be read");
        continue;
      }
      ends.add(file, text);
      TmdlParser.parse(text, root, faults);
    }
    Set<String> doubtful = ends.tell(faults);
    TmdlObject database = root.part(TmdlKind.DATABASE, "");
    if (!database.declared && database.json.names.isEmpty() && database.parts.isEmpty())
      throw new ImportException(ImportException.DEFINITION, 0, 0, "no database, model or part of a model");
    TmdlGaps.tell(database, folder ? files : List.of(), doubtful, faults);
    return TmdlTree.make(root, nameOf(path), faults);
  }

  private static byte[] wholeOf(Path file) throws IOException {
    FileStamp before = FileStamp.of(file);
    byte[] bytes = Files.readAllBytes(file);
    if (bytes.length != before.size() || !FileStamp.of(file).equals(before)) throw new ChangedFile();
    return bytes;
  }

  /** UTF-8, or UTF-16 with its mark. */
  private static String decode(byte[] bytes) {
    Charset charset = StandardCharsets.UTF_8;
    if (bytes.length > 1 && (bytes[0] & 0xFF) == 0xFF && (bytes[1] & 0xFF) == 0xFE)
      charset = StandardCharsets.UTF_16LE;
    if (bytes.length > 1 && (bytes[0] & 0xFF) == 0xFE && (bytes[1] & 0xFF) == 0xFF)
      charset = StandardCharsets.UTF_16BE;
    String text = new String(bytes, charset);
    return !text.isEmpty() && text.charAt(0) == MARK ? text.substring(1) : text;
  }

  /**
   * What a definition is called that does not say so: by the project around the folder, else like the folder or
   * the file.
   */
  private static String nameOf(Path path) throws IOException {
    Path place = path.toRealPath();
    if (!Files.isDirectory(place)) return withoutExtension(place);
    boolean inner = place.getFileName() != null && place.getFileName().toString().equals("definition");
    if (inner && place.getParent() != null) place = place.getParent();
    String shown = displayName(place.resolve(".platform"));
    return shown.isEmpty() ? withoutProject(place) : shown;
  }

  private static String displayName(Path platform) {
    if (!TmdlFolder.isRegular(platform)) return "";
    try {
      return JsonReader.read(platform, new JsonReader.Passed()).object("metadata").text("displayName");
    } catch (IOException | ImportException fault) {
      return "";  // what it belongs to is no part of the definition
    }
  }

  private static String withoutExtension(Path file) {
    String name = file.getFileName() == null ? "" : file.getFileName().toString();
    int dot = name.lastIndexOf('.');
    return dot > 0 ? name.substring(0, dot) : name;
  }

  private static String withoutProject(Path folder) {
    String name = folder.getFileName() == null ? "" : folder.getFileName().toString();
    boolean project = name.endsWith(".SemanticModel") || name.endsWith(".Dataset");
    return project ? withoutExtension(folder) : name;
  }
}
