package KORV.bridges.MicrosoftSqlServerAs.Import.text;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileTime;

/** By what a file shows that it was written to or replaced. */
public record FileStamp(long size, FileTime written) {
  public static final String CHANGED = "the file changed while it was read";

  public static FileStamp of(Path path) throws IOException {
    BasicFileAttributes attributes = Files.readAttributes(path, BasicFileAttributes.class);
    return new FileStamp(attributes.size(), attributes.lastModifiedTime());
  }
}
