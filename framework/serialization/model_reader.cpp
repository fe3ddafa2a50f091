#include "framework/serialization/model_reader.h"

#include <expat.h>

#include "framework/dom/document_encoding.h"
#include "framework/dom/document_failure.h"
#include "framework/dom/dom.h"
#include "framework/model/reflection.h"
#include "framework/serialization/details_reader.h"
#include "framework/serialization/loading.h"
#include "framework/serialization/model_format.h"
#include "framework/std/file_reader.h"

namespace tav {
namespace {

/// "NAME 11.0.0"; the name may hold blanks.
bool parseDataStore(std::string_view text, TAVDataStore& store) {
  const std::size_t blank = text.rfind(' ');
  if (blank == text.npos) return false;
  store.name = text.substr(0, blank);
  std::string_view version = text.substr(blank + 1);
  for (int* part : {&store.major, &store.minor}) {
    const std::size_t dot = version.find('.');
    if (dot == version.npos || !parseNumber(version.substr(0, dot), *part)) return false;
    version.remove_prefix(dot + 1);
  }
  return parseNumber(version, store.release);
}

class Loader {
 public:
  explicit Loader(std::string_view name) : name_(name) {}

  SavedDocument load(const TAVDOMElement& root) {
    if (root.getTagName() != typeText<TAVMultiModel>()) failAt(root, "this is no saved model");
    if (root.getAttribute(kFormatAttribute) != kFormat)
      failAt(root, "the format '" + std::string(root.getAttribute(kFormatAttribute)) + "' is not known");
    auto multiModel = make<TAVMultiModel>();
    openObject(root, *multiModel);
    while (!open_.empty()) readNext();
    resolve();
    return {std::move(multiModel), details_ ? readDetails(*details_, objects_, name_) : nullptr};
  }

 private:
  /// A role element whose objects are being read, and who gets them.
  struct Role {
    const TAVDOMElement* element;
    TAVObject* owner;
    const LinkInfo* link;
    std::int32_t next = 0;
  };
  /// References wait until every object is there: they may name what stands behind them.
  struct Pending {
    const TAVDOMElement* element;
    TAVObject* from;
    const LinkInfo* link;
    std::string_view ids;
  };

  [[noreturn]] void failAt(const TAVDOMElement& element, std::string_view cause) const {
    failToLoad(std::string(name_) + ":" + std::to_string(element.getLine()), cause);
  }

  void readNext() {
    Role& role = open_.back();
    const TAVDOMElement* element = role.element->getElement(role.next++);
    if (!element) {
      open_.pop_back();
      return;
    }
    if (isDetails(*element, role)) {
      details_ = element;
      return;
    }
    const ClassInfo* info = findClass(element->getTagName());
    if (!info || !info->create || !derives(info->id, role.link->row->target))
      failAt(*element, "'" + std::string(element->getTagName()) + "' cannot stand in '" +
                           std::string(role.link->row->name) + "'");
    // Linked after its attributes: a container's index of names takes in the name that an object comes with.
    Owned<TAVObject> made = info->create();
    TAVObject& object = *made;
    readAttributes(*element, object, *info);
    linkObjects(role.link->number, *role.owner, object);
    static_cast<void>(made.release());
    openObject(*element, object);
  }

  /// Details wait until every object is there. Of several, which nothing writes, the last counts.
  static bool isDetails(const TAVDOMElement& element, const Role& role) {
    return element.getTagName() == kDetailsContent && is<TAVMultiModel>(*role.owner);
  }

  /// Opens the roles of an object, the last first, so that they are read in the order of the document.
  void openObject(const TAVDOMElement& element, TAVObject& object) {
    for (std::int32_t i = element.getElementCount(); i-- > 0;) {
      const TAVDOMElement& role = *element.getElement(i);
      const LinkInfo* link = findLinkOf(object, role.getTagName(), LinkKind::contained);
      if (!link)
        failAt(role, std::string(object.getMetaClass()) + " has no '" + std::string(role.getTagName()) + "'");
      open_.push_back({&role, &object, link});
    }
  }

  static const LinkInfo* findLinkOf(const TAVObject& object, std::string_view name, LinkKind kind) {
    for (const LinkInfo& link : classInfo(object.classId()).links)
      if (link.row->kind == kind && link.row->name == name) return &link;
    return nullptr;
  }

  void readAttributes(const TAVDOMElement& element, TAVObject& object, const ClassInfo& info) {
    for (const DomAttribute& attribute : element.getAttributes()) {
      const std::string_view name = attribute.name->written;
      if (name == kIdAttribute) {
        readId(element, object, attribute.value);
      } else if (name == kNameAttribute) {
        object.setName(attribute.value);
      } else if (const AttributeRow* row = findAttribute(info, name)) {
        readAttribute(element, object, *row, attribute.value);
      } else if (const LinkInfo* link = findLinkOf(object, name, LinkKind::reference)) {
        pending_.push_back({&element, &object, link, attribute.value});
      } else if (name != kElementTypeAttribute) {
        failAt(element, std::string(info.name) + " has no '" + std::string(name) + "'");
      }
    }
  }

  static const AttributeRow* findAttribute(const ClassInfo& info, std::string_view name) {
    for (const AttributeRow* row : info.attributes)
      if (row->name == name) return row;
    return nullptr;
  }

  void readId(const TAVDOMElement& element, TAVObject& object, std::string_view text) {
    std::uint32_t id = 0;
    if (!parseNumber(text, id)) failAt(element, "the id '" + std::string(text) + "' is no number");
    if (!objects_.emplace(id, &object).second)
      failAt(element, "the id " + std::string(text) + " is there twice");
  }

  void readAttribute(const TAVDOMElement& element, TAVObject& object, const AttributeRow& row,
                     std::string_view text) {
    const auto bad = [&](std::string_view expected) {
      failAt(element,
             "'" + std::string(row.name) + "' is '" + std::string(text) + "', not " + std::string(expected));
    };
    Value value = text;
    if (row.kind == AttributeKind::flag) {
      if (text != "true" && text != "false") bad("true or false");
      value = text == "true";
    } else if (row.kind == AttributeKind::number) {
      std::int64_t number = 0;
      if (!parseNumber(text, number)) bad("a number");
      value = number;
    } else if (row.kind == AttributeKind::dataStore) {
      TAVDataStore store;
      if (!parseDataStore(text, store)) bad("a data store with its version");
      value = store;
    }
    try {
      row.set(object, value);
    } catch (const TAVException& refused) {
      failAt(element, refused.getMessage());
    }
  }

  void resolve() {
    for (const Pending& pending : pending_) {
      std::string_view ids = pending.ids;
      while (!ids.empty()) {
        const std::size_t end = std::min(ids.find(' '), ids.size());
        linkTo(pending, ids.substr(0, end));
        ids.remove_prefix(std::min(end + 1, ids.size()));
      }
    }
  }

  void linkTo(const Pending& pending, std::string_view text) {
    std::uint32_t id = 0;
    const auto found = parseNumber(text, id) ? objects_.find(id) : objects_.end();
    if (found == objects_.end())
      failAt(*pending.element, "'" + std::string(pending.link->row->name) + "' names the object '" +
                                   std::string(text) + "', which is not there");
    TAVObject& target = *found->second;
    if (!derives(target.classId(), pending.link->row->target))
      failAt(*pending.element, "'" + std::string(pending.link->row->name) + "' names object " +
                                   std::string(text) + ", a " + std::string(target.getMetaClass()));
    linkObjects(pending.link->number, *pending.from, target);
  }

  std::string_view name_;
  std::vector<Role> open_;
  std::vector<Pending> pending_;
  LoadedObjects objects_;
  const TAVDOMElement* details_ = nullptr;
};

SavedModel onlyModelOf(SavedDocument document, std::string_view name) {
  const TAVModelContent* content = document.contents->contents.first();
  TAVModel* model = content ? content->models.first() : nullptr;
  if (!model) failToLoad(name, "the document holds no model");
  return {model->removeContent(), std::move(document.details)};
}

/// Stops at the first start tag and keeps its name.
struct RootFinder {
  XML_Parser parser;
  std::string root;
};

void XMLCALL rootFound(void* data, const XML_Char* name, const XML_Char** /*attributes*/) noexcept {
  auto& finder = *static_cast<RootFinder*>(data);
  finder.root = name;
  XML_StopParser(finder.parser, XML_FALSE);
}

}  // namespace

SavedDocument loadDocument(const TAVString& path) {
  TAVDOM dom(nullptr);
  return Loader(path).load(*dom.parseFile(TAVFile(path)));
}

SavedModel loadSavedModel(const TAVString& path) {
  return onlyModelOf(loadDocument(path), path);
}

SavedModel loadSavedModelText(std::string_view text, std::string_view name) {
  TAVDOM dom(nullptr);
  return onlyModelOf(Loader(name).load(*dom.parseText(text, name)), name);
}

Owned<TAVModel> loadModel(const TAVString& path) {
  return loadSavedModel(path).model;
}

Owned<TAVModel> loadModelText(std::string_view text, std::string_view name) {
  return loadSavedModelText(text, name).model;
}

bool isSavedModel(const TAVString& path) {
  if (!TAVFile(path).exists()) return false;
  FileReader file;
  if (!file.open(path.str())) failForDocument(path, file.getError());
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate(nullptr),
                                                                            &XML_ParserFree);
  if (!parser) throw std::bad_alloc();
  RootFinder finder{parser.get(), {}};
  XML_SetUserData(parser.get(), &finder);
  XML_SetStartElementHandler(parser.get(), &rootFound);
  std::array<char, 4096> bytes{};
  for (bool first = true;; first = false) {
    const std::size_t size = file.read(bytes.data(), bytes.size());
    if (!file.getError().empty()) failForDocument(path, file.getError());
    if (first && XML_SetEncoding(parser.get(), encodingInSpiteOf({bytes.data(), size})) != XML_STATUS_OK)
      throw std::bad_alloc();
    const auto status = XML_Parse(parser.get(), bytes.data(), static_cast<int>(size), size == 0);
    if (status == XML_STATUS_ERROR && XML_GetErrorCode(parser.get()) == XML_ERROR_NO_MEMORY)
      throw std::bad_alloc();
    if (status != XML_STATUS_OK || size == 0) return finder.root == typeText<TAVMultiModel>();
  }
}

}  // namespace tav
