package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.JsonReader;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelWriter;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Escapes;
import KORV.bridges.MicrosoftSqlServerAs.Import.tmdl.TmdlFaults;
import KORV.bridges.MicrosoftSqlServerAs.Import.tmdl.TmdlReader;
import java.io.BufferedOutputStream;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.Map;

/**
 * Reads a tabular model definition (JSON or TMDL) and writes it as a saved metadata model.
 *
 * <p>Two arguments: the option file, lines "key TAB value" with BP_FILE as the definition's path, and the
 * file to write. Messages go to standard output. A failure is one line on standard error and exit code 1,
 * wrong usage exit code 2.
 */
public final class MicrosoftSqlServerAsImport {
  private static final String INPUT_OPTION = "BP_FILE";
  /** Set to "true" where the definition's details are wanted too. */
  private static final String DETAILS_OPTION = "BP_DETAILS";
  private static final long MEGABYTE = 1 << 20;
  /** Measured: what a definition without blanks needs, which has the most in a byte. */
  private static final long LEAST_HEAP = 64 * MEGABYTE;
  private static final long HEAP_PER_BYTE = 14;

  private MicrosoftSqlServerAsImport() {}

  public static void main(String[] arguments) {
    PrintStream errors =
        new PrintStream(new FileOutputStream(FileDescriptor.err), true, StandardCharsets.UTF_8);
    if (arguments.length != 2) {
      errors.println("usage: MicrosoftSqlServerAsImport OPTION_FILE OUTPUT_FILE");
      System.exit(2);
    }
    PrintStream output = new PrintStream(
        new BufferedOutputStream(new FileOutputStream(FileDescriptor.out)), false, StandardCharsets.UTF_8);
    MessageOutput messages = new MessageOutput(output);
    String failure = run(arguments[0], Path.of(arguments[1]), messages);
    if (failure == null) return;
    errors.println(failure);
    System.exit(1);
  }

  /** Runs the import; null, or the line that tells why it failed. */
  static String run(String optionFile, Path target, MessageOutput messages) {
    String input = optionFile;
    String definition = input;
    try {
      Map<String, String> options = readOptions(optionFile);
      if (!options.containsKey(INPUT_OPTION))
        throw new ImportException(ImportException.OPTION, 0, 0, "the option " + INPUT_OPTION + " is missing");
      input = options.get(INPUT_OPTION);
      definition = input;
      Details details = "true".equals(options.get(DETAILS_OPTION)) ? new Details() : null;
      // Nothing here holds on to the definition, so that its memory is free while the model is written.
      boolean tmdl = TmdlReader.isTmdl(Path.of(input));
      ModelObject model =
          new TabularImport(messages, input, tmdl ? "TMDL" : "JSON", details)
              .importDefinition(tmdl ? readTmdl(input, messages) : read(Path.of(input), details));
      input = target.toString();
      ModelWriter.write(model, details, target);
      return null;
    } catch (ImportException failure) {
      return failure.describe(input);
    } catch (IOException failure) {
      return new ImportException(ImportException.FILE, 0, 0, reason(failure)).describe(input);
    } catch (RuntimeException | StackOverflowError failure) {
      return new ImportException(ImportException.INTERNAL, 0, 0, "the importer failed: " + failure)
          .describe(input);
    } catch (OutOfMemoryError failure) {
      return tooLarge(definition).describe(definition);
    }
  }

  /** Tells what to ask for: as much as the launcher would, or twice what was not enough. */
  private static ImportException tooLarge(String path) {
    long size = Path.of(path).toFile().length();
    long heap = Runtime.getRuntime().maxMemory();
    long wanted = Math.max(LEAST_HEAP + HEAP_PER_BYTE * size, 2 * heap);
    return new ImportException(ImportException.MEMORY, 0, 0,
        "the definition of " + Math.round(size / 1e6) + " MB does not fit into Java's heap of "
            + heap / MEGABYTE + " MB; set JDK_JAVA_OPTIONS to -Xmx" + (wanted + MEGABYTE - 1) / MEGABYTE
            + "m");
  }

  private static Json readTmdl(String path, MessageOutput messages) throws IOException, ImportException {
    return TmdlReader.read(Path.of(path), new TmdlFaults(new TmdlFaults.Output() {
      @Override
      public void lost(String text) {
        messages.error("TAVTAB_E0001", text);
      }

      @Override
      public void warn(String text) {
        messages.warning("TAVTAB_W0004", text);
      }
    }));
  }

  private static Json read(Path path, Details details) throws IOException, ImportException {
    JsonReader.Passed passed = new JsonReader.Passed();
    Json root = JsonReader.read(path, passed);
    if (details != null && passed.stamps > 0) details.passOver(Kinds.Passed.timeStamps, passed.stamps);
    if (details != null && passed.states > 0) details.passOver(Kinds.Passed.processing, passed.states);
    return root;
  }

  static Map<String, String> readOptions(String optionFile) throws IOException {
    Map<String, String> options = new HashMap<>();
    for (String line : Files.readAllLines(Path.of(optionFile), StandardCharsets.UTF_8)) {
      int tab = line.indexOf('\t');
      if (tab > 0) options.putIfAbsent(line.substring(0, tab), Escapes.unescape(line.substring(tab + 1)));
    }
    return options;
  }

  private static String reason(IOException failure) {
    if (failure instanceof java.nio.file.NoSuchFileException) return "no such file";
    if (failure instanceof java.nio.file.AccessDeniedException) return "permission denied";
    String message = failure.getMessage();
    return message == null || message.isEmpty() ? "cannot be read or written" : message;
  }
}
