#include "host/reports/report_reader.h"

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/inputs/json_object.h"
#include "host/inputs/semantic_model.h"
#include "messages/message.h"

namespace host {
namespace {

using Json = nlohmann::json;
using tav::ObjectKind;

const Json kNothing;

/// A member of an object; null when there is none.
const Json& at(const Json& json, const char* name) {
  if (!json.is_object()) return kNothing;
  const auto found = json.find(name);
  return found == json.end() ? kNothing : *found;
}

std::string textAt(const Json& json, const char* name) {
  const Json& text = at(json, name);
  return text.is_string() ? text.get<std::string>() : std::string();
}

/// Without the quotes of a text in an expression.
std::string literal(std::string_view text) {
  if (text.size() < 2 || text.front() != '\'' || text.back() != '\'') return {};
  std::string plain;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    plain += text[i];
    if (text[i] == '\'' && text[i + 1] == '\'' && i + 2 < text.size()) ++i;
  }
  return plain;
}

/// The title that people gave a visual; empty when it has none.
std::string titleOf(const Json& settings) {
  const Json& title = at(settings, "title");
  if (!title.is_array() || title.empty()) return {};
  return literal(textAt(at(at(at(at(title.front(), "properties"), "text"), "expr"), "Literal"), "Value"));
}

std::string firstOf(const std::string& a, const std::string& b) {
  return a.empty() ? b : a;
}

constexpr std::string_view kPages = "definition/pages/";
constexpr std::string_view kVisuals = "/visuals/";
constexpr std::string_view kPageFile = "/page.json";
constexpr std::string_view kVisualFile = "/visual.json";
constexpr std::string_view kBookmarks = "definition/bookmarks/";
constexpr std::string_view kBookmarkFile = ".bookmark.json";

/// The folder that a file is in, or that a path is of, among those of which `outer` bytes are the beginning;
/// empty for a file beside them.
std::string_view folderIn(std::string_view path, std::size_t outer) {
  const std::size_t end = path.find('/', outer);
  if (end != path.npos) return path.substr(0, end);
  return path.ends_with(".json") ? std::string_view() : path;
}

class ReportReader {
 public:
  ReportReader(const ReportPlace& report, MessageLog& log) : report_(report), log_(log) {
    parts_.push_back({.kind = ObjectKind::report, .name = report.name});
  }

  std::vector<ReportPart> read() {
    try {
      files_.emplace(report_);
    } catch (const std::runtime_error& error) {
      lose(report_.path, error.what());
      return std::move(parts_);
    }
    if (!report_.isArchive) checkLink();
    for (const UnreadFolder& folder : files_->unread()) lose(folder.path, folder.cause);
    for (const char* name : {"report.json", "Layout"})
      if (has(name)) readWhole(name, readJson(name));
    if (hasDefinition()) readDefinition();
    nameVisuals();
    return std::move(parts_);
  }

 private:
  static constexpr std::size_t kReport = 0;

  [[nodiscard]] bool has(const std::string& name) const {
    return std::binary_search(files_->names().begin(), files_->names().end(), name);
  }

  /// Says what of a report in a folder is not there or broken and would leave no other trace.
  void checkLink() {
    if (const auto fault = faultOfName(report_.path))
      log_.logEvent(tav::messageEvent(tav::Message::nameNotRead, {fault->file, fault->cause}));
    if (!has("definition.pbir"))
      lose(files_->pathOf("definition.pbir"), "it is not there");
    else
      static_cast<void>(readJson("definition.pbir"));
    if (!has("report.json") && !hasDefinition()) lose(files_->pathOf("report.json"), "it is not there");
  }

  [[nodiscard]] bool hasDefinition() const {
    return std::any_of(files_->names().begin(), files_->names().end(),
                       [](const std::string& name) { return name.starts_with("definition/"); });
  }

  void lose(const std::string& path, std::string_view cause) {
    log_.logEvent(tav::messageEvent(tav::Message::reportFileLost, {path, cause, report_.name}));
  }

  void loseMissing(const std::string& name) { lose(files_->pathOf(name), "it is not there"); }

  /// A file; null when it is missing or broken.
  Json readJson(const std::string& name) {
    if (!has(name)) {
      loseMissing(name);
      return {};
    }
    try {
      JsonObject read = parseJsonObject(files_->textOf(name));
      if (!read.cause.empty()) lose(files_->pathOf(name) + read.place, read.cause);
      return std::move(read.json);
    } catch (const std::runtime_error& error) {
      lose(files_->pathOf(name), error.what());
      return {};
    }
  }

  std::size_t add(ObjectKind kind, std::size_t owner, std::string name, std::string id) {
    parts_.push_back({.kind = kind, .owner = owner, .name = std::move(name), .id = std::move(id)});
    return parts_.size() - 1;
  }

  /// A member, or the JSON in the text that it is. Neither is copied: copying goes as deep as JSON does.
  const Json& unwrapped(const std::string& file, const Json& owner, const char* name) {
    const Json& json = at(owner, name);
    if (!json.is_string() || json.get_ref<const std::string&>().empty()) return json;
    const Json& inner = texts_.emplace_back(Json::parse(json.get_ref<const std::string&>(), nullptr, false));
    if (inner.is_discarded() && !std::exchange(hasBrokenText_, true))
      lose(files_->pathOf(file), "a '" + std::string(name) + "' in it is not well-formed JSON");
    return inner;
  }

  void use(std::size_t part, const Json& json, bool filters) {
    appendFieldUses(json, filters, parts_[part].uses);
  }

  /// The older form.
  void readWhole(const std::string& file, const Json& report) {
    const Json& config = unwrapped(file, report, "config");
    readMeasures(at(config, "modelExtensions"));
    use(kReport, unwrapped(file, report, "filters"), true);
    for (const Json& page : at(report, "sections")) readSection(file, page);
    readBookmarks(at(config, "bookmarks"));
  }

  void readSection(const std::string& file, const Json& section) {
    const std::string id = textAt(section, "name");
    const std::size_t page =
        add(ObjectKind::reportPage, kReport, firstOf(textAt(section, "displayName"), id), id);
    use(page, unwrapped(file, section, "filters"), true);
    for (const Json& container : at(section, "visualContainers")) {
      const Json& config = unwrapped(file, container, "config");
      const Json& visual = at(config, "singleVisual");
      const std::size_t part = addVisual(page, titleOf(at(visual, "vcObjects")), textAt(visual, "visualType"),
                                         textAt(config, "name"));
      use(part, visual, false);
      use(part, unwrapped(file, container, "filters"), true);
    }
  }

  std::size_t addVisual(std::size_t page, std::string title, std::string type, std::string id) {
    const std::size_t part = add(ObjectKind::visual, page, std::move(title), std::move(id));
    parts_[part].type = std::move(type);
    return part;
  }

  /// Groups of bookmarks hold others.
  void readBookmarks(const Json& bookmarks) {
    std::vector<const Json*> waiting{&bookmarks};
    while (!waiting.empty()) {
      const Json* list = waiting.back();
      waiting.pop_back();
      if (!list->is_array()) continue;
      for (const Json& bookmark : *list) {
        if (at(bookmark, "children").is_array())
          waiting.push_back(&at(bookmark, "children"));
        else
          readBookmark(bookmark);
      }
    }
  }

  void readBookmark(const Json& bookmark) {
    const std::string id = textAt(bookmark, "name");
    use(add(ObjectKind::bookmark, kReport, firstOf(textAt(bookmark, "displayName"), id), id),
        at(bookmark, "explorationState"), true);
  }

  /// Measures that only the report has, by the tables of the model that they are listed in.
  void readMeasures(const Json& extensions) {
    std::vector<const Json*> all;
    if (extensions.is_array())
      for (const Json& extension : extensions) all.push_back(&extension);
    else
      all.push_back(&extensions);
    for (const Json* extension : all) {
      for (const Json& entity : at(*extension, "entities")) {
        for (const Json& measure : at(entity, "measures")) {
          const std::size_t part = add(ObjectKind::reportMeasure, kReport, textAt(measure, "name"), {});
          parts_[part].table = firstOf(textAt(entity, "extends"), textAt(entity, "name"));
          parts_[part].text = textAt(measure, "expression");
          parts_[part].language = "dax";
        }
      }
    }
  }

  /// The newer form.
  void readDefinition() {
    use(kReport, at(readJson("definition/report.json"), "filterConfig"), true);
    constexpr const char* kExtensions = "definition/reportExtensions.json";
    if (has(kExtensions)) readMeasures(readJson(kExtensions));
    readPages();
    readBookmarkFiles();
    readVisualFiles();
    if (!has(kExtensions) && usesOwnMeasure()) loseMissing(kExtensions);
  }

  [[nodiscard]] bool usesOwnMeasure() const {
    return std::any_of(parts_.begin(), parts_.end(), [](const ReportPart& part) {
      return std::any_of(part.uses.begin(), part.uses.end(),
                         [](const FieldUse& use) { return use.ofReport; });
    });
  }

  /// The folders directly in another, whose path ends in a slash: those of files, and those that are empty.
  std::set<std::string> foldersIn(std::string_view outer) const {
    std::set<std::string> found;
    for (const auto* paths : {&files_->names(), &files_->folders()}) {
      auto path = std::lower_bound(paths->begin(), paths->end(), outer);
      for (; path != paths->end() && path->starts_with(outer); ++path)
        if (const std::string_view folder = folderIn(*path, outer.size()); !folder.empty())
          found.emplace(folder);
    }
    return found;
  }

  struct Page {
    std::string folder;
    Json json;
    std::string id;
    std::size_t part = kReport;
    std::set<std::string> visuals{};  ///< that it has, by their IDs
    std::set<std::string> listed{};   ///< that files of the page name
  };

  /// In the order of the report, those that it does not list last. One that is listed is there, or lost.
  void readPages() {
    const std::set<std::string> folders = foldersIn(kPages);
    const std::vector<std::string> order = pageOrder();
    if (folders.empty() && order.empty()) loseMissing("definition/pages");
    std::unordered_map<std::string, std::size_t> byId;
    for (const std::string& folder : folders) {
      Page page{folder, readJson(folder + std::string(kPageFile)), {}};
      page.id = firstOf(textAt(page.json, "name"), folder.substr(kPages.size()));
      byId.emplace(page.id, pages_.size());
      pages_.push_back(std::move(page));
    }
    for (const std::string& id : order) {
      if (const auto [found, isNew] = byId.emplace(id, pages_.size()); isNew) {
        loseMissing(std::string(kPages) + id + std::string(kPageFile));
        pages_.push_back({std::string(kPages) + id, {}, id});
      }
    }
    std::vector<std::size_t> places;
    places.reserve(order.size() + pages_.size());
    for (const std::string& id : order) places.push_back(byId[id]);
    for (std::size_t i = 0; i < pages_.size(); ++i) places.push_back(i);
    for (const std::size_t place : places)
      if (pages_[place].part == kReport) readPage(pages_[place]);
  }

  /// A report need not have the file.
  std::vector<std::string> pageOrder() {
    constexpr const char* kList = "definition/pages/pages.json";
    std::vector<std::string> ids;
    const Json list = has(kList) ? readJson(kList) : Json();
    for (const Json& id : at(list, "pageOrder"))
      if (id.is_string()) ids.push_back(id.get<std::string>());
    return ids;
  }

  void readPage(Page& page) {
    page.part =
        add(ObjectKind::reportPage, kReport, firstOf(textAt(page.json, "displayName"), page.id), page.id);
    use(page.part, at(page.json, "filterConfig"), true);
    for (const Json& interaction : at(page.json, "visualInteractions"))
      for (const char* end : {"source", "target"}) page.listed.insert(textAt(interaction, end));
  }

  void readBookmarkFiles() {
    std::set<std::string> known;
    for (const std::string& name : files_->names()) {
      if (!name.ends_with(kBookmarkFile)) continue;
      const Json bookmark = readJson(name);
      readBookmark(bookmark);
      const std::string file = name.substr(name.rfind('/') + 1);
      known.insert(file.substr(0, file.size() - kBookmarkFile.size()));
      known.insert(textAt(bookmark, "name"));
    }
    const std::string list = std::string(kBookmarks) + "bookmarks.json";
    if (!has(list)) return;  // which tells their order only
    for (const std::string& id : listedBookmarks(readJson(list)))
      if (!known.contains(id)) loseMissing(std::string(kBookmarks) + id + std::string(kBookmarkFile));
  }

  /// Groups name the bookmarks in them and have no file.
  static std::vector<std::string> listedBookmarks(const Json& list) {
    std::vector<std::string> ids;
    for (const Json& item : at(list, "items")) {
      const Json& children = at(item, "children");
      if (!children.is_array()) ids.push_back(textAt(item, "name"));
      for (const Json& child : children)
        if (child.is_string()) ids.push_back(child.get<std::string>());
    }
    return ids;
  }

  void readVisualFiles() {
    for (Page& page : pages_) {
      const std::string visuals = page.folder + std::string(kVisuals);
      for (const std::string& folder : foldersIn(visuals)) {
        page.visuals.insert(folder.substr(visuals.size()));
        readVisual(folder + std::string(kVisualFile), page);
      }
      for (const std::string& id : page.listed)
        if (!id.empty() && !page.visuals.contains(id)) loseMissing(visuals + id + std::string(kVisualFile));
    }
  }

  void readVisual(const std::string& name, Page& page) {
    const Json container = readJson(name);
    const Json& visual = at(container, "visual");
    const std::string id = textAt(container, "name");
    page.visuals.insert(id);
    page.listed.insert(textAt(container, "parentGroupName"));
    const std::size_t part =
        addVisual(page.part, titleOf(at(visual, "visualContainerObjects")), textAt(visual, "visualType"), id);
    use(part, visual, false);
    use(part, at(container, "filterConfig"), true);
  }

  /// A visual without a title is called by its type. Of several of one name on a page, each has its ID too.
  void nameVisuals() {
    std::map<std::pair<std::size_t, std::string>, std::vector<std::size_t>> byName;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      if (parts_[i].kind != ObjectKind::visual) continue;
      if (parts_[i].name.empty()) parts_[i].name = firstOf(parts_[i].type, "visual");
      byName[{parts_[i].owner, parts_[i].name}].push_back(i);
    }
    for (const auto& [name, places] : byName)
      if (places.size() > 1)
        for (const std::size_t i : places) parts_[i].name += " " + parts_[i].id;
  }

  const ReportPlace& report_;
  MessageLog& log_;
  std::optional<ReportFiles> files_;
  std::vector<ReportPart> parts_;
  std::vector<Page> pages_;
  std::deque<Json> texts_;
  bool hasBrokenText_ = false;
};

}  // namespace

std::vector<ReportPart> readReport(const ReportPlace& report, MessageLog& log) {
  return ReportReader(report, log).read();
}

}  // namespace host
