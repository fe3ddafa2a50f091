#include "host/inputs/project_document.h"

#include <fmt/format.h>
#include <filesystem>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "framework/std/text.h"
#include "host/inputs/object_text.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr std::string_view kEngine = "http://schemas.microsoft.com/analysisservices/2003/engine";

std::string escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else
      escaped += c;
  }
  return escaped;
}

/// What a file of partitions has for each measure group, by the group's ID.
class CubeParts {
 public:
  explicit CubeParts(const ObjectText& file) : file_(file) {
    for (std::size_t i = 0; i < file.elements.size(); ++i) {
      if (!isMeasureGroup(file, i)) continue;
      const TextElement* id = file.child(i, "ID");
      if (id) groups_.emplace(tav::trimmed(file.inner(*id)), i);
    }
  }

  /// Whether an element of the third level is that of a measure group.
  static bool isMeasureGroup(const ObjectText& cube, std::size_t i) {
    return cube.elements[i].depth == 2 && cube.elements[i].name == "MeasureGroup";
  }

  /// The parts of a group: their text, and their tags. Null when the file has none for it, or when they were
  /// taken before.
  struct Parts {
    std::string text;
    std::unordered_set<std::string_view> tags;
  };
  std::optional<Parts> take(std::string_view id) {
    const auto group = groups_.find(id);
    if (group == groups_.end()) return std::nullopt;
    Parts parts;
    for (std::size_t i = group->second + 1; i < file_.elements.size() && file_.elements[i].depth > 2; ++i) {
      const TextElement& element = file_.elements[i];
      if (element.name == "ID") continue;
      parts.text.append(file_.text, element.begin, element.end - element.begin);
      parts.tags.insert(element.name);
    }
    groups_.erase(group);
    return parts;
  }

  /// The IDs of the groups that were not taken.
  [[nodiscard]] std::vector<std::string_view> left() const {
    std::vector<std::string_view> ids;
    for (const auto& [id, place] : groups_) ids.push_back(id);
    return ids;
  }

 private:
  const ObjectText& file_;
  std::unordered_map<std::string_view, std::size_t> groups_;
};

class Assembly {
 public:
  Assembly(const Project& project, MessageLog& log) : project_(project), log_(log), out_(project.file) {}

  MemoryFile assemble() {
    beginDatabase();
    for (std::size_t i = 0; i < kProjectGroups.size(); ++i)
      writeGroup(kProjectGroups[i], project_.objects[i]);
    out_.write("</Database>\n");
    return std::move(out_);
  }

 private:
  [[nodiscard]] std::optional<ObjectText> read(const std::string& file, std::string_view root) const {
    try {
      return readObjectText(file, root);
    } catch (const BrokenObject& fault) {
      reportLostFile(file + fault.place(), fault.what(), project_.file, log_);
      return std::nullopt;
    }
  }

  /// The database's own file has its name, and parts that no other file has. Without it the project still
  /// has a name.
  void beginDatabase() {
    if (!project_.database.empty()) own_ = read(project_.database, "Database");
    if (own_) return copyDatabase(*own_);
    const std::string name =
        project_.target.empty() ? std::filesystem::path(project_.file).stem().string() : project_.target;
    out_.write(fmt::format("<Database xmlns=\"{0}\"><ID>{1}</ID><Name>{1}</Name>\n", kEngine, escaped(name)));
  }

  void copyDatabase(const ObjectText& own) {
    std::string root = own.text.substr(0, own.elements.front().inner);
    if (root.ends_with("/>")) root.erase(root.size() - 2, 1);
    out_.write(root);
    const TextElement* id = own.child(0, "ID");
    const TextElement* name = own.child(0, "Name");
    // Deployed under another name, a database that is called like its ID gets both anew.
    const bool both = id && name && own.inner(*id) == own.inner(*name);
    for (const TextElement& element : own.elements) {
      if (element.depth != 1) continue;
      if (isCollection(element.name)) continue;
      const bool renamed = !project_.target.empty() && (&element == name || (both && &element == id));
      if (renamed)
        out_.write(fmt::format("<{0}>{1}</{0}>", element.name, escaped(project_.target)));
      else
        out_.write(std::string_view(own.text).substr(element.begin, element.end - element.begin));
      out_.write("\n");
    }
  }

  static bool isCollection(std::string_view name) {
    for (const ProjectGroup& group : kProjectGroups)
      if (group.collection == name) return true;
    return false;
  }

  void writeGroup(const ProjectGroup& group, const std::vector<ProjectObject>& objects) {
    const TextElement* own = own_ ? own_->child(0, group.collection) : nullptr;
    if (objects.empty() && !own) return;
    out_.write(fmt::format("<{}>\n", group.collection));
    if (own) out_.write(own_->inner(*own));
    std::unordered_map<std::string, const std::string*> files;  // by the ID of the object
    for (const ProjectObject& object : objects) {
      const std::optional<ObjectText> text = read(object.file, group.object);
      if (!text) continue;
      const TextElement* id = text->child(0, "ID");
      const auto [other, isNew] =
          files.emplace(id ? tav::trimmed(text->inner(*id)) : std::string_view(), &object.file);
      if (isNew)
        writeObject(*text, object);
      else
        reportLostFile(object.file, fmt::format("it defines '{}' like {}", other->first, *other->second),
                       project_.file, log_);
    }
    out_.write(fmt::format("</{}>\n", group.collection));
  }

  void writeObject(const ObjectText& text, const ProjectObject& object) {
    std::optional<ObjectText> partitions;
    if (!object.partitions.empty()) partitions = read(object.partitions, "Cube");
    if (partitions)
      writeCube(text, *partitions, object);
    else
      out_.write(text.text);
    out_.write("\n");
  }

  /// A cube leaves the parts out, or empty, that its file of partitions has.
  void writeCube(const ObjectText& cube, const ObjectText& partitions, const ProjectObject& object) {
    CubeParts parts(partitions);
    std::size_t written = 0;
    const auto writeUpTo = [&](std::size_t place) {
      out_.write(std::string_view(cube.text).substr(written, place - written));
      written = place;
    };
    for (std::size_t i = 0; i < cube.elements.size(); ++i) {
      if (!CubeParts::isMeasureGroup(cube, i)) continue;
      const TextElement* id = cube.child(i, "ID");
      const auto own = id ? parts.take(tav::trimmed(cube.inner(*id))) : std::nullopt;
      if (!own) continue;
      for (std::size_t j = i + 1; j < cube.elements.size() && cube.elements[j].depth > 2; ++j) {
        if (!own->tags.contains(cube.elements[j].name)) continue;
        writeUpTo(cube.elements[j].begin);
        written = cube.elements[j].end;
      }
      writeUpTo(cube.elements[i].innerEnd);
      out_.write(own->text);
    }
    writeUpTo(cube.text.size());
    for (const std::string_view id : parts.left())
      log_.logEvent(tav::messageEvent(tav::Message::strayPartitions, {object.partitions, id, object.file}));
  }

  const Project& project_;
  MessageLog& log_;
  MemoryFile out_;
  std::optional<ObjectText> own_;  // the database's own file
};

}  // namespace

MemoryFile assembleProject(const Project& project, MessageLog& log) {
  return Assembly(project, log).assemble();
}

}  // namespace host
