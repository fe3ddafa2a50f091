package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import java.util.List;

/**
 * What a value comes from: an object of the model, a range of what its expression named while it was
 * evaluated, or several of these. Sets would be copied from each part of an expression to the one around it.
 */
record Sources(ModelObject object, int begin, int end, List<Sources> parts) {
  static final Sources NONE = new Sources(null, 0, 0, List.of());

  static Sources of(ModelObject object) {
    return new Sources(object, 0, 0, List.of());
  }

  static Sources range(int begin, int end) {
    return new Sources(null, begin, end, List.of());
  }

  static Sources all(List<Sources> parts) {
    return parts.size() == 1 ? parts.get(0) : new Sources(null, 0, 0, parts);
  }
}
