#include "framework/serialization/details_writer.h"

#include <algorithm>
#include <numeric>
#include <unordered_set>

#include "framework/serialization/model_format.h"
#include "framework/serialization/xml_text.h"
#include "framework/std/mask.h"

namespace tav {
namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 18;

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

/// Whether a setting's name can be that of an attribute. XML keeps names that begin with "xml" for itself.
bool isAttributeName(std::string_view name) {
  const auto isNameCharacter = [](char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
  };
  return !name.empty() && isLetter(name.front()) && name != kSettingItem && (name.front() | 0x20) != 'x' &&
         std::all_of(name.begin(), name.end(), isNameCharacter);
}

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
    for (const DetailRelation& relation : details_.relations()) {
      open(rowOf(relation.kind).name);
      number(kFrom, numbers_[relation.from]);
      number(kTo, numbers_[relation.to]);
      optional(kText, relation.text);
      close();
    }
  }

  /// Those of one item stand together, in their order.
  void writeSettings() {
    const auto settings = details_.settings();
    std::vector<std::uint32_t> places(settings.size());
    std::iota(places.begin(), places.end(), 0U);
    std::stable_sort(places.begin(), places.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return settings[a].item < settings[b].item; });
    for (std::size_t i = 0; i < places.size();) {
      std::size_t end = i;
      while (end < places.size() && settings[places[end]].item == settings[places[i]].item) ++end;
      writeSettingsOf(std::span(places).subspan(i, end - i));
      i = end;
    }
  }

  void writeSettingsOf(std::span<const std::uint32_t> places) {
    const auto settings = details_.settings();
    open(kSettingsOfItem);
    number(kSettingItem, numbers_[settings[places.front()].item]);
    // An element has each attribute once, and only so many that telling them apart takes no time.
    constexpr std::size_t kMostAttributes = 64;
    std::unordered_set<std::string_view> written;
    std::vector<std::uint32_t> rest;
    for (const std::uint32_t place : places) {
      const auto& [item, name, value] = settings[place];
      // Attributes are read before what the element holds: behind the first that is none, all are elements.
      if (rest.empty() && written.size() < kMostAttributes && isAttributeName(name) &&
          written.insert(name).second)
        attribute(name, shown(name, value));
      else
        rest.push_back(place);
    }
    if (rest.empty()) return close();
    text_ += ">\n";
    for (const std::uint32_t place : rest) {
      text_ += ' ';
      open(kSetting);
      attribute(kNameAttribute, settings[place].name);
      optional(kValue, shown(settings[place].name, settings[place].value));
      close();
    }
    text_.append("    </").append(kSettingsOfItem).append(">\n");
  }

  void writeOpenNames() {
    for (const OpenName& name : details_.openNames()) {
      open(kOpenName);
      number(kSettingItem, numbers_[name.item]);
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
  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  const Details& details_;
  std::ostream& out_;
  Passwords passwords_;
  std::string text_;
  std::vector<std::uint32_t> numbers_;  // by item
};

}  // namespace

void writeDetails(const Details& details, std::uint32_t objects, std::ostream& out, Passwords passwords) {
  DetailsWriter(details, objects, out, passwords).write();
}

}  // namespace tav
