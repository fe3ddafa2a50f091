package KORV.bridges.MicrosoftSqlServerAs.Import.text;

/** The backslash escapes of the option file and of messages: \\ \n \r \t. */
public final class Escapes {
  private Escapes() {}

  public static String escape(String text) {
    return text.replace("\\", "\\\\").replace("\n", "\\n").replace("\r", "\\r").replace("\t", "\\t");
  }

  public static String unescape(String text) {
    StringBuilder plain = new StringBuilder(text.length());
    for (int i = 0; i < text.length(); ++i) {
      char c = text.charAt(i);
      if (c != '\\' || i + 1 == text.length()) {
        plain.append(c);
        continue;
      }
      char escaped = text.charAt(++i);
      plain.append(escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped == 't' ? '\t' : escaped);
    }
    return plain.toString();
  }
}
