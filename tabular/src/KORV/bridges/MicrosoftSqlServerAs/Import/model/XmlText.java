package KORV.bridges.MicrosoftSqlServerAs.Import.model;

import java.io.IOException;
import java.io.Writer;

/** Attributes of the document. */
final class XmlText {
  private XmlText() {}

  static void attribute(Writer out, String name, String value) throws IOException {
    out.write(" " + name + "=\"");
    write(out, value);
    out.write("\"");
  }

  /** What XML cannot hold (controls, lone surrogates, U+FFFE, U+FFFF) becomes U+FFFD. */
  private static void write(Writer out, String text) throws IOException {
    for (int i = 0; i < text.length(); ++i) {
      char c = text.charAt(i);
      switch (c) {
        case '&' -> out.write("&amp;");
        case '<' -> out.write("&lt;");
        case '>' -> out.write("&gt;");
        case '"' -> out.write("&quot;");
        case '\t' -> out.write("&#9;");
        case '\n' -> out.write("&#10;");
        case '\r' -> out.write("&#13;");
        default -> {
          boolean second = i + 1 < text.length() && Character.isLowSurrogate(text.charAt(i + 1));
          if (Character.isHighSurrogate(c) && second) {
            out.write(c);
            out.write(text.charAt(++i));
          } else {
            boolean forbidden = c < 0x20 || Character.isSurrogate(c) || c >= 0xFFFE;
            out.write(forbidden ? '\uFFFD' : c);
      }
    }
  }
}
}
}
