#include "host/reports/report_reader.h"

#include <algorithm>
#include <deque>
#include <map>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

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

/// ":line:column" of the byte that is the `count`th.
std::string placeIn(std::string_view text, std::size_t count) {
  const std::string_view before = text.substr(0, count > 0 ? count - 1 : 0);
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
  return ":" + std::to_string(lines + 1) + ":" + std::to_string(column);
}

std::string firstOf(const std::string& a, const std::string& b) {
  return a.empty() ? b : a;
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
    for (const char* name : {"report.json", "Layout"})
      if (has(name)) readWhole(readJson(name));
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

  /// A file; null when it is missing or broken.
  Json readJson(const std::string& name) {
    std::string text;
    try {
      text = files_->textOf(name);
      Json json = Json::parse(text, nullptr, true, true);
      if (json.is_object()) return json;
      lose(files_->pathOf(name), "it holds no JSON object");
    } catch (const Json::parse_error& error) {
      lose(files_->pathOf(name) + placeIn(text, error.byte), "it is not well-formed JSON");
    } catch (const std::runtime_error& error) {
      lose(files_->pathOf(name), error.what());
    }
    return {};
  }

  std::size_t add(ObjectKind kind, std::size_t owner, std::string name, std::string id) {
    parts_.push_back({.kind = kind, .owner = owner, .name = std::move(name), .id = std::move(id)});
    return parts_.size() - 1;
  }

  /// A value, or the JSON in the text that it is. Neither is copied: copying goes as deep as JSON does.
  const Json& unwrapped(const Json& json) {
    if (!json.is_string()) return json;
    return texts_.emplace_back(Json::parse(json.get_ref<const std::string&>(), nullptr, false));
  }

  void use(std::size_t part, const Json& json, bool filters) {
    appendFieldUses(json, filters, parts_[part].uses);
  }

  /// The older form.
  void readWhole(const Json& report) {
    const Json& config = unwrapped(at(report, "config"));
    readMeasures(at(config, "modelExtensions"));
    use(kReport, unwrapped(at(report, "filters")), true);
    for (const Json& page : at(report, "sections")) readSection(page);
    readBookmarks(at(config, "bookmarks"));
  }

  void readSection(const Json& section) {
    const std::string id = textAt(section, "name");
    const std::size_t page =
        add(ObjectKind::reportPage, kReport, firstOf(textAt(section, "displayName"), id), id);
    use(page, unwrapped(at(section, "filters")), true);
    for (const Json& container : at(section, "visualContainers")) {
      const Json& config = unwrapped(at(container, "config"));
      const Json& visual = at(config, "singleVisual");
      const std::size_t part = addVisual(page, titleOf(at(visual, "vcObjects")), textAt(visual, "visualType"),
                                         textAt(config, "name"));
      use(part, visual, false);
      use(part, unwrapped(at(container, "filters")), true);
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
    if (has("definition/report.json"))
      use(kReport, at(readJson("definition/report.json"), "filterConfig"), true);
    else
      lose(files_->pathOf("definition/report.json"), "it is not there");
    if (has("definition/reportExtensions.json")) readMeasures(readJson("definition/reportExtensions.json"));
    std::map<std::string, std::size_t> pages;  // by their folders
    for (const std::string& folder : pageFolders()) pages[folder] = readPage(folder);
    constexpr std::string_view kVisual = "/visual.json";
    constexpr std::string_view kBookmark = ".bookmark.json";
    for (const std::string& name : files_->names()) {
      const std::size_t visuals = name.find("/visuals/");
      if (name.ends_with(kVisual) && visuals != name.npos) {
        if (const auto page = pages.find(name.substr(0, visuals)); page != pages.end())
          readVisual(name, page->second);
      } else if (name.ends_with(kBookmark)) {
        readBookmark(readJson(name));
      }
    }
  }

  /// In the order of the report, those that it does not list last. One that is listed is there, or lost.
  std::vector<std::string> pageFolders() {
    constexpr std::string_view kPage = "/page.json";
    std::unordered_map<std::string, std::size_t> order;
    if (has("definition/pages/pages.json")) {
      const Json list = readJson("definition/pages/pages.json");
      for (const Json& id : at(list, "pageOrder"))
        if (id.is_string()) order.emplace("definition/pages/" + id.get<std::string>(), order.size());
    }
    std::vector<std::string> folders;
    for (const auto& [folder, rank] : order)
      if (!has(folder + std::string(kPage))) folders.push_back(folder);
    for (const std::string& name : files_->names())
      if (name.ends_with(kPage)) folders.push_back(name.substr(0, name.size() - kPage.size()));
    const auto rank = [&](const std::string& folder) {
      const auto found = order.find(folder);
      return found == order.end() ? order.size() : found->second;
    };
    std::stable_sort(folders.begin(), folders.end(),
                     [&](const std::string& a, const std::string& b) { return rank(a) < rank(b); });
    return folders;
  }

  std::size_t readPage(const std::string& folder) {
    const std::string file = folder + "/page.json";
    if (!has(file)) lose(files_->pathOf(file), "it is not there");
    const Json page = has(file) ? readJson(file) : Json();
    const std::string id = firstOf(textAt(page, "name"), folder.substr(folder.rfind('/') + 1));
    const std::size_t part =
        add(ObjectKind::reportPage, kReport, firstOf(textAt(page, "displayName"), id), id);
    use(part, at(page, "filterConfig"), true);
    return part;
  }

  void readVisual(const std::string& name, std::size_t page) {
    const Json container = readJson(name);
    const Json& visual = at(container, "visual");
    const std::size_t part = addVisual(page, titleOf(at(visual, "visualContainerObjects")),
                                       textAt(visual, "visualType"), textAt(container, "name"));
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
  std::deque<Json> texts_;
};

}  // namespace

std::vector<ReportPart> readReport(const ReportPlace& report, MessageLog& log) {
  return ReportReader(report, log).read();
}

}  // namespace host
