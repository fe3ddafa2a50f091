#pragma once

#include <array>
#include <string>
#include <string_view>

#include "benchmarks/random.h"

namespace tav::bench {

inline constexpr std::array<std::string_view, 24> kAreas{
    "Harbour", "Orchard", "Quarry",   "Foundry", "Lantern",  "Meadow", "Granary", "Tannery",
    "Rookery", "Sawmill", "Vineyard", "Bakery",  "Canal",    "Depot",  "Fishery", "Gasworks",
    "Kiln",    "Laundry", "Nursery",  "Pottery", "Ropewalk", "Smithy", "Theatre", "Weaver"};
inline constexpr std::array<std::string_view, 24> kThings{
    "Customer", "Product",    "Store",   "Supplier",  "Employee", "Contract", "Route",    "Vehicle",
    "Account",  "Budget",     "Channel", "Carrier",   "Machine",  "Material", "Campaign", "Region",
    "Season",   "Price List", "Shift",   "Warehouse", "Claim",    "Project",  "Invoice",  "Return"};
inline constexpr std::array<std::string_view, 24> kQualities{
    "Class", "Group",  "Status", "Colour", "Size",   "City",    "Country", "Category",
    "Owner", "Origin", "Grade",  "Line",   "Brand",  "Sector",  "Branch",  "Zone",
    "Kind",  "Style",  "Weight", "Phone",  "Street", "Manager", "Rank",    "Series"};
inline constexpr std::array<std::string_view, 16> kFigures{
    "Amount", "Quantity", "Cost",  "Margin", "Discount", "Freight", "Tax",    "Weight",
    "Hours",  "Orders",   "Price", "Stock",  "Rebate",   "Target",  "Volume", "Rate"};
inline constexpr std::array<std::string_view, 20> kForeign{
    "Región",  "Année",   "Größe",     "Catégorie", "Número",  "Straße",      "Société",
    "Almacén", "Fläche",  "Période",   "Dirección", "Qualité", "Menge",       "Länge",
    "Código",  "Montant", "Übersicht", "Señal",     "Größte",  "Rémunération"};
inline constexpr std::array<std::string_view, 16> kProse{
    "the", "sum",  "of",    "all",     "orders", "that",   "were",  "shipped",
    "in",  "this", "month", "without", "those",  "of the", "other", "branch"};

/// `word` and, from the second round through the list on, the number of the round.
template <class Words> std::string numbered(const Words& words, std::size_t number) {
  std::string text(words[number % words.size()]);
  if (number >= words.size()) text += " " + std::to_string(number / words.size() + 1);
  return text;
}

/// A translated caption of two or three words.
inline std::string foreignCaption(Random& random) {
  std::string text(random.pick(kForeign));
  for (std::uint64_t n = 1 + random.below(2); n > 0; --n) (text += ' ') += random.pick(kForeign);
  return text;
}

/// A sentence of that many words.
inline std::string sentence(Random& random, std::size_t words) {
  std::string text = "Shows";
  while (words-- > 1) (text += ' ') += random.pick(kProse);
  return text += '.';
}

}  // namespace tav::bench
