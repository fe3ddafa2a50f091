#include "framework/serialization/details_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/serialization/model_format.h"
#include "framework/serialization/ordered_groups.h"
#include "framework/serialization/xml_text.h"
#include "framework/std/mask.h"

namespace tav {
namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 18;

/// Lists are cut into elements of about so many bytes, for tools that read line by line.
constexpr std::size_t kListSize = 1000;

class DetailsWriter {
 public:
  DetailsWriter(const Details& details, std::uint32_t objects, std::ostream& out, Passwords passwords)
      : details_(details), out_(out), passwords_(passwords) {
    text_.reserve(kFlushSize + (kFlushSize >> 3));
    std::uint32_t next = objects;
    for (const DetailItem& item : details.items())
      numbers_.push_back(item.object ? Numbering::get(*item.object) : ++next);
  }

  void write() {
    text_.append("  <").append(kDetailsContent);
    number(kElementTypeAttribute, kDetailsElementType);
    text_ += ">\n";
    writePart(kItems, &DetailsWriter::writeItems);
    writePart(kRelations, &DetailsWriter::writeRelations);
    writePart(kSettings, &DetailsWriter::writeSettings);
    writePart(kOpenNames, &DetailsWriter::writeOpenNames);
    writePart(kPassedOver, &DetailsWriter::writePassedOver);
    text_.append("  </").append(kDetailsContent).append(">\n");
    flush();
  }

 private:
  void writePart(std::string_view name, void (DetailsWriter::*writeAll)()) {
    text_.append("   <").append(name).append(">\n");
    (this->*writeAll)();
    text_.append("   </").append(name).append(">\n");
  }

  void writeItems() {
    for (ItemId id = 0; id < numbers_.size(); ++id) {
      const DetailItem& item = details_.item(id);
      if (item.object) continue;
      open(rowOf(item.kind).name);
      number(kIdAttribute, numbers_[id]);
      if (item.owner != kNoItem) number(kOwner, numbers_[item.owner]);
      optional(kNameAttribute, item.name);
      optional(kLanguage, item.language);
      optional(kText, item.text);
      close();
    }
  }

  void writeRelations() {
    const auto relations = details_.relations();
    OrderedGroups groups(numbers_.size(), OrderedGroups::Repeats::together);
    for (std::uint32_t i = 0; i < relations.size(); ++i) {
      const DetailRelation& relation = relations[i];
      groups.add(static_cast<std::uint8_t>(relation.kind), relation.text, i, {relation.from, relation.to});
    }
    for (const EntryGroup& group : groups.groups())
      for (std::span<const std::uint32_t> rest(group.entries); !rest.empty();)
        rest = rest.subspan(writeEnds(relations, rest));
  }

  /// Of relations that have one kind and text, as many as an element holds; returns how many those are.
  std::size_t writeEnds(std::span<const DetailRelation> relations, std::span<const std::uint32_t> places) {
    const DetailRelation& first = relations[places.front()];
    open(rowOf(first.kind).name);
    optional(kText, first.text);
    beginList(kEnds);
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    std::size_t count = 0;
    while (count < places.size() && !isListFull()) {
      const DetailRelation& relation = relations[places[count]];
      nextOfList();
      if (count == 0 || numbers_[relation.to] != to) {
        distance(to, numbers_[relation.to]);
        text_ += ':';
      }
      distance(from, numbers_[relation.from]);
      ++count;
    }
    endList();
    return count;
  }

  void writeSettings() {
    const auto settings = details_.settings();
    OrderedGroups groups(numbers_.size(), OrderedGroups::Repeats::apart);
    for (std::uint32_t i = 0; i < settings.size(); ++i)
      groups.add(0, settings[i].name, i, {settings[i].item});
    for (const EntryGroup& group : groups.groups()) writeSettingsOf(group);
  }

  /// Those of one name, which no item has twice: together where they have one value, too.
  void writeSettingsOf(const EntryGroup& group) {
    const auto settings = details_.settings();
    std::unordered_map<std::string_view, std::uint32_t> values;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> places;  // behind the number of their value
    places.reserve(group.entries.size());
    for (const std::uint32_t place : group.entries) {
      const auto number = static_cast<std::uint32_t>(values.size());
      places.emplace_back(values.try_emplace(settings[place].value, number).first->second, place);
    }
    std::sort(places.begin(), places.end());
    open(kSetting);
    attribute(kNameAttribute, group.text);
    text_ += ">\n";
    for (std::span rest(places); !rest.empty();) rest = rest.subspan(writeValue(rest));
    text_.append("    </").append(kSetting).append(">\n");
  }

  /// A value with as many of the items that have it as an element holds; returns how many those are.
  std::size_t writeValue(std::span<const std::pair<std::uint32_t, std::uint32_t>> places) {
    const DetailSetting& first = details_.settings()[places.front().second];
    text_ += ' ';
    open(kIs);
    optional(kValue, shown(first.name, first.value));
    beginList(kOf);
    std::uint32_t item = 0;
    std::size_t count = 0;
    while (count < places.size() && places[count].first == places.front().first && !isListFull()) {
      nextOfList();
      distance(item, numbers_[details_.settings()[places[count].second].item]);
      ++count;
    }
    endList();
    return count;
  }

  void writeOpenNames() {
    for (const OpenName& name : details_.openNames()) {
      open(kOpenName);
      number(kRef, numbers_[name.item]);
      attribute(kNameAttribute, name.name);
      attribute(kState, openNameStateText(name.state));
      optional(kNote, name.note);
      close();
    }
  }

  void writePassedOver() {
    for (std::size_t i = 0; i < kPassedOverCount; ++i) {
      const auto what = static_cast<PassedOver>(i);
      if (details_.passedOver(what) == 0) continue;
      open(rowOf(what).name);
      number(kCount, static_cast<std::int64_t>(details_.passedOver(what)));
      close();
    }
  }

  [[nodiscard]] std::string shown(std::string_view setting, std::string_view value) const {
    return passwords_ == Passwords::masked ? maskProperty(setting, value) : std::string(value);
  }
  void open(std::string_view tag) { text_.append("    <").append(tag); }
  void close() {
    text_ += "/>\n";
    if (text_.size() > kFlushSize) flush();
  }
  void attribute(std::string_view name, std::string_view value) {
    text_.append(" ").append(name).append("=\"");
    if (passwords_ == Passwords::masked)
      appendAttributeText(text_, maskPasswords(value));
    else
      appendAttributeText(text_, value);
    text_ += '"';
  }
  void optional(std::string_view name, std::string_view value) {
    if (!value.empty()) attribute(name, value);
  }
  void number(std::string_view name, std::int64_t value) {
    text_.append(" ").append(name).append("=\"").append(std::to_string(value)).append("\"");
  }

  void beginList(std::string_view name) {
    text_.append(" ").append(name).append("=\"");
    listStart_ = text_.size();
  }
  void nextOfList() {
    if (text_.size() != listStart_) text_ += ' ';
  }
  [[nodiscard]] bool isListFull() const noexcept { return text_.size() - listStart_ >= kListSize; }
  void endList() {
    text_ += '"';
    close();
  }
  /// How far a number lies behind the last one, which it becomes.
  void distance(std::uint32_t& last, std::uint32_t number) {
    std::array<char, 16> digits;
    const auto end =
        std::to_chars(digits.begin(), digits.end(), std::int64_t{number} - std::int64_t{last}).ptr;
    text_.append(digits.data(), end);
    last = number;
  }

  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  const Details& details_;
  std::ostream& out_;
  Passwords passwords_;
  std::string text_;
  std::size_t listStart_ = 0;           // in the text
  std::vector<std::uint32_t> numbers_;  // by item
};

}  // namespace

void writeDetails(const Details& details, std::uint32_t objects, std::ostream& out, Passwords passwords) {
  DetailsWriter(details, objects, out, passwords).write();
}

}  // namespace tav
