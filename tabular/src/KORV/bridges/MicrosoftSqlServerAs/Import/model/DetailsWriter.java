package KORV.bridges.MicrosoftSqlServerAs.Import.model;

import java.io.IOException;
import java.io.Writer;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.regex.Pattern;

/** Writes details as a further content of a model's document, in the form of framework/serialization. */
final class DetailsWriter {
  private static final int ELEMENT_TYPE = 296;
  /** What names a subject stands under. */
  private static final String REFERENCE = "ref";
  private static final int MOST_ATTRIBUTES = 64;
  /** XML keeps names that begin with "xml" for itself. */
  private static final Pattern ATTRIBUTE_NAME = Pattern.compile("[A-WYZa-wyz_][A-Za-z0-9_.-]*");

  private final Details details;
  private final Writer out;

  DetailsWriter(Details details, Writer out) {
    this.details = details;
    this.out = out;
  }

  /** Items have the numbers behind `last`, which is that of the model's last object. */
  void write(int last) throws IOException {
    for (Details.Item item : details.items) item.id = ++last;
    out.write("  <TAVDetailsContent elementType=\"" + ELEMENT_TYPE + "\">\n   <items>\n");
    for (Details.Item item : details.items) writeItem(item);
    out.write("   </items>\n   <relations>\n");
    for (Details.Related relation : details.relations) writeRelation(relation);
    out.write("   </relations>\n   <settings>\n");
    for (Map.Entry<Subject, List<Details.Setting>> one : details.settings.entrySet())
      writeSettings(one.getKey(), one.getValue());
    out.write("   </settings>\n   <openNames>\n");
    for (Details.OpenName name : details.openNames) writeOpenName(name);
    out.write("   </openNames>\n   <passedOver>\n");
    for (Map.Entry<Kinds.Passed, Integer> one : details.passed.entrySet())
      out.write("    <" + one.getKey() + " count=\"" + one.getValue() + "\"/>\n");
    out.write("   </passedOver>\n  </TAVDetailsContent>\n");
  }

  private void writeItem(Details.Item item) throws IOException {
    out.write("    <" + item.kind + " id=\"" + item.id + "\"");
    if (item.owner != null) out.write(" owner=\"" + item.owner.id + "\"");
    optional("name", item.name);
    optional("language", item.language);
    optional("text", item.text);
    out.write("/>\n");
  }

  private void writeRelation(Details.Related relation) throws IOException {
    out.write(
        "    <" + relation.kind() + " from=\"" + relation.from().id + "\" to=\"" + relation.to().id + "\"");
    optional("text", relation.text());
    out.write("/>\n");
  }

  /** An element has each attribute once, and only so many that telling them apart takes no time. */
  private void writeSettings(Subject subject, List<Details.Setting> settings) throws IOException {
    out.write("    <item " + REFERENCE + "=\"" + subject.id + "\"");
    Set<String> written = new HashSet<>(Set.of(REFERENCE));
    List<Details.Setting> rest = new ArrayList<>();
    for (Details.Setting setting : settings) {
      String name = setting.name();
      if (written.size() <= MOST_ATTRIBUTES && ATTRIBUTE_NAME.matcher(name).matches() && written.add(name))
        XmlText.attribute(out, name, setting.value());
      else
        rest.add(setting);
    }
    if (!rest.isEmpty()) out.write(">\n");
    for (Details.Setting setting : rest) {
      out.write("     <setting");
      XmlText.attribute(out, "name", setting.name());
      XmlText.attribute(out, "value", setting.value());
      out.write("/>\n");
    }
    out.write(rest.isEmpty() ? "/>\n" : "    </item>\n");
  }

  private void writeOpenName(Details.OpenName name) throws IOException {
    out.write("    <openName " + REFERENCE + "=\"" + name.subject().id + "\"");
    XmlText.attribute(out, "name", name.name());
    XmlText.attribute(out, "state", name.state().name());
    optional("note", name.note());
    out.write("/>\n");
  }

  private void optional(String name, String value) throws IOException {
    if (!value.isEmpty()) XmlText.attribute(out, name, value);
  }
}
