#include "framework/bridgelib/names.h"

TAVString removeQuotes(const TAVString& text) {
  const std::string_view view = text;
  const bool enclosed = view.size() >= 2 && ((view.front() == '"' && view.back() == '"') ||
                                             (view.front() == '[' && view.back() == ']'));
  return enclosed ? TAVString(view.substr(1, view.size() - 2)) : text;
}

const TAVString& getPhysicalName(const TAVModelObject& object) {
  return object.physicalName;
}
