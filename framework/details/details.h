#pragma once

// What a definition says beyond its model. The model is what integrations read and keeps its shape; people
// ask about their definition, which says more: keys and orders, usages of dimensions, roles, sets, scripts,
// formats.

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/details/kinds.h"
#include "framework/details/passed_over.h"
#include "framework/model/model.h"
#include "framework/std/pointer_map.h"
#include "framework/std/sized_text.h"

namespace tav {

/// The place of an item in Details::items().
using ItemId = std::uint32_t;
inline constexpr ItemId kNoItem = 0xFFFFFFFF;

/// What relations and settings speak of: an object of the model, or one that only the details have.
struct DetailItem {
  const TAVModelObject* object = nullptr;  ///< null for what only the details have
  // The rest is empty for objects of the model.
  ItemId owner = kNoItem;
  ObjectKind kind = ObjectKind::other;
  SizedText name;
  SizedText text;      ///< the expression or statement that it consists of
  SizedText language;  ///< of the text: "mdx", "dax", "sql" or "m"
};

struct DetailRelation {
  RelationKind kind;
  ItemId from;     ///< what is named
  ItemId to;       ///< what names it
  SizedText text;  ///< says more of it: the number of a key column, a language; often empty
};

struct DetailSetting {
  ItemId item;
  SizedText name;  ///< as the definition calls it: "FormatString", "KeyColumns.NullProcessing"
  SizedText value;
};

/// Why a name in an expression has no source in the model.
enum class OpenNameState : std::uint8_t {
  exists,   ///< it names something that is no attribute or measure: a set, a member, a hierarchy
  mistake,  ///< nothing in the definition has this name
  beyond,   ///< it names something outside this definition: a linked object, another database, a function
};
inline constexpr std::size_t kOpenNameStateCount = 3;
TAV_API std::string_view openNameStateText(OpenNameState state) noexcept;
/// The state of that text, or nothing.
TAV_API std::optional<OpenNameState> openNameStateOf(std::string_view text) noexcept;

/// The notes of names beyond the definition that a query of the database reads, as it writes them.
inline constexpr std::string_view kTableOfDatabase = "a table of the database";
inline constexpr std::string_view kColumnOfDatabase = "a column of the database";

struct OpenName {
  ItemId item;  ///< in whose expression it stands
  OpenNameState state;
  SizedText name;
  SizedText note;  ///< what it is, or the nearest spelling; may be empty
};

/// Whether a name stands for a table or column of the database, beyond the definition.
[[nodiscard]] inline bool isOfDatabase(const OpenName& name) noexcept {
  return name.state == OpenNameState::beyond &&
         (name.note == kTableOfDatabase || name.note == kColumnOfDatabase);
}

/// The details of one definition. Items belong to it; objects of the model are only named, and must live as
/// long or be let go of with replace(). Texts are copied.
class TAV_API Details {
 public:
  Details() = default;
  Details(const Details&) = delete;
  Details& operator=(const Details&) = delete;

  /// The item of an object of the model, made when it has none.
  ItemId itemOf(const TAVModelObject& object);
  /// The item of an object of the model; kNoItem when it has none.
  [[nodiscard]] ItemId find(const TAVModelObject& object) const;
  /// A new item that only the details have.
  ItemId add(ObjectKind kind, ItemId owner, std::string_view name, std::string_view text = {},
             std::string_view language = {});
  /// Gives an item that only the details have the text that it consists of.
  void setText(ItemId item, std::string_view text, std::string_view language);
  /// Puts such an item below another owner.
  void setOwner(ItemId item, ItemId owner) { items_[item].owner = owner; }
  void relate(RelationKind kind, ItemId from, ItemId to, std::string_view text = {});
  /// Two settings of an item may have one name, as an element may stand twice.
  void set(ItemId item, std::string_view name, std::string_view value);
  void addOpenName(ItemId item, std::string_view name, OpenNameState state, std::string_view note = {});
  void passOver(PassedOver what, std::size_t count = 1);

  /// Lets go of an object that the model loses: what is said of it is said of `now` from here on, another
  /// object of the model. Does nothing for an object that has no item.
  void replace(const TAVModelObject& object, const TAVModelObject& now);
  /// The same for an object that nothing takes the place of: it becomes an item that only the details have.
  void release(const TAVModelObject& object, ObjectKind kind, ItemId owner);

  [[nodiscard]] std::span<const DetailItem> items() const noexcept { return items_; }
  [[nodiscard]] const DetailItem& item(ItemId id) const noexcept { return items_[id]; }
  [[nodiscard]] std::span<const DetailRelation> relations() const noexcept { return relations_; }
  [[nodiscard]] std::span<const DetailSetting> settings() const noexcept { return settings_; }
  [[nodiscard]] std::span<const OpenName> openNames() const noexcept { return openNames_; }
  /// How many elements were passed over, by PassedOver.
  [[nodiscard]] std::size_t passedOver(PassedOver what) const noexcept;

 private:
  SizedText keep(std::string_view text);
  SizedText keepName(std::string_view name);

  std::vector<DetailItem> items_;
  std::vector<DetailRelation> relations_;
  std::vector<DetailSetting> settings_;
  std::vector<OpenName> openNames_;
  std::array<std::size_t, kPassedOverCount> passedOver_{};
  PointerMap<ItemId> byObject_;
  std::unordered_map<std::string_view, SizedText> names_;  // of settings, each kept once
  std::deque<std::unique_ptr<char[]>> blocks_;
  std::span<char> free_;  // at the end of the last block
};

}  // namespace tav
