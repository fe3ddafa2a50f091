package KORV.bridges.MicrosoftSqlServerAs.Import.model;

import java.io.BufferedWriter;
import java.io.IOException;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;

/** Writes a model as a saved document. */
public final class ModelWriter {
  private final Writer out;

  private ModelWriter(Writer out) { this.out = out; }

  /** `details` is null where nobody asks for them. */
  public static void write(ModelObject model, Details details, Path target) throws IOException {
    int last = number(model, 0);
    try (BufferedWriter out = Files.newBufferedWriter(target, StandardCharsets.UTF_8)) {
      out.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          + "<TAVMultiModel elementType=\"286\" format=\"tav-model/1\">\n"
          + " <contents>\n  <TAVModelContent elementType=\"295\">\n   <models>\n");
      new ModelWriter(out).writeObject(model, 4);
      out.write("   </models>\n  </TAVModelContent>\n");
      if (details != null) new DetailsWriter(details, out).write(last);
      out.write(" </contents>\n</TAVMultiModel>\n");
    }
  }

  /** Gives numbers in document order; the depth of a model does not depend on its input. */
  private static int number(ModelObject object, int last) {
    object.id = ++last;
    for (ModelObject.Role role : ModelObject.Role.ALL) {
      for (ModelObject part : object.parts(role)) last = number(part, last);
    }
    return last;
  }

  private void writeObject(ModelObject object, int depth) throws IOException {
    indent(depth);
    out.write("<" + object.className + " id=\"" + object.id + "\"");
    List<String> attributes = object.attributes();
    for (int i = 0; i < attributes.size(); i += 2)
      XmlText.attribute(out, attributes.get(i), attributes.get(i + 1));
    for (Map.Entry<String, List<ModelObject>> reference : object.references().entrySet())
      writeReference(reference);
    boolean open = false;
    for (ModelObject.Role role : ModelObject.Role.ALL) {
      List<ModelObject> parts = object.parts(role);
      if (parts.isEmpty()) continue;
      if (!open) out.write(">\n");
      open = true;
      indent(depth + 1);
      out.write("<" + role + ">\n");
      for (ModelObject part : parts) writeObject(part, depth + 2);
      indent(depth + 1);
      out.write("</" + role + ">\n");
    }
    if (open) indent(depth);
    out.write(open ? "</" + object.className + ">\n" : "/>\n");
  }

  private void writeReference(Map.Entry<String, List<ModelObject>> reference) throws IOException {
    out.write(" " + reference.getKey() + "=\"");
    String separator = "";
    for (ModelObject target : reference.getValue()) {
      out.write(separator + target.id);
      separator = " ";
    }
    out.write("\"");
  }

  private void indent(int depth) throws IOException {
    for (int i = 0; i < depth; ++i) out.write(' ');
  }
}
