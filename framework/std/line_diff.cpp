#include "framework/std/line_diff.h"

#include <algorithm>
#include <unordered_map>

#include "framework/std/text.h"

namespace tav {
namespace {

/// Lines as numbers, equal where the lines are.
using Numbers = std::vector<std::uint32_t>;

/// A line of the old text that stays, and its place in the new one.
struct Match {
  std::size_t before;
  std::size_t after;
};

/// A part of both texts, the ends not included.
struct Range {
  std::size_t beforeBegin;
  std::size_t beforeEnd;
  std::size_t afterBegin;
  std::size_t afterEnd;
};

/// How many lines may differ for the shortest list to be looked for: its cost grows with their square.
constexpr std::ptrdiff_t kMostDifferences = 200;

class Matcher {
 public:
  Matcher(const Numbers& before, const Numbers& after) : before_(before), after_(after) {}

  /// The lines that stay, in order.
  std::vector<Match> match() {
    Range range{0, before_.size(), 0, after_.size()};
    const std::size_t end = trimEnd(range);
    trimBegin(range);
    if (!matchShortest(range)) matchAnchors(range);
    for (std::size_t i = 0; i < end; ++i)
      matches_.push_back({before_.size() - end + i, after_.size() - end + i});
    return std::move(matches_);
  }

 private:
  void trimBegin(Range& range) {
    while (range.beforeBegin < range.beforeEnd && range.afterBegin < range.afterEnd &&
           before_[range.beforeBegin] == after_[range.afterBegin])
      matches_.push_back({range.beforeBegin++, range.afterBegin++});
  }

  std::size_t trimEnd(Range& range) const {
    std::size_t count = 0;
    while (range.beforeBegin < range.beforeEnd && range.afterBegin < range.afterEnd &&
           before_[range.beforeEnd - 1] == after_[range.afterEnd - 1]) {
      --range.beforeEnd;
      --range.afterEnd;
      ++count;
    }
    return count;
  }

  /// Follows, for one more difference in each round, how far each diagonal leads (the difference of the
  /// places in both texts), and then goes the way back. False when there are too many differences.
  bool matchShortest(const Range& range) {
    const auto width = static_cast<std::ptrdiff_t>(range.beforeEnd - range.beforeBegin);
    const auto height = static_cast<std::ptrdiff_t>(range.afterEnd - range.afterBegin);
    std::vector<std::vector<std::ptrdiff_t>> rounds;
    for (std::ptrdiff_t round = 0; round <= std::min(kMostDifferences, width + height); ++round) {
      std::vector<std::ptrdiff_t>& reached = rounds.emplace_back(2 * round + 1, -1);
      for (std::ptrdiff_t diagonal = -round; diagonal <= round; diagonal += 2) {
        std::ptrdiff_t x = round == 0 ? 0 : start(rounds[round - 1], round - 1, diagonal);
        std::ptrdiff_t y = x - diagonal;
        if (x > width || y > height || y < 0) continue;
        while (x < width && y < height && before_[range.beforeBegin + x] == after_[range.afterBegin + y])
          ++x, ++y;
        reached[diagonal + round] = x;
        if (x == width && y == height) {
          goBack(range, rounds, diagonal);
          return true;
        }
      }
    }
    return false;
  }

  /// Where a diagonal is entered from its neighbours: behind a line that was removed or one that was added.
  static std::ptrdiff_t start(const std::vector<std::ptrdiff_t>& reached, std::ptrdiff_t round,
                              std::ptrdiff_t diagonal) {
    const auto at = [&](std::ptrdiff_t k) { return k < -round || k > round ? -1 : reached[k + round]; };
    const std::ptrdiff_t removed = at(diagonal - 1) < 0 ? -1 : at(diagonal - 1) + 1;
    return std::max(removed, at(diagonal + 1));
  }

  void goBack(const Range& range, const std::vector<std::vector<std::ptrdiff_t>>& rounds,
              std::ptrdiff_t diagonal) {
    std::vector<Match> back;
    for (auto round = static_cast<std::ptrdiff_t>(rounds.size()) - 1; round >= 0; --round) {
      std::ptrdiff_t x = rounds[round][diagonal + round];
      const std::ptrdiff_t from = round == 0 ? 0 : start(rounds[round - 1], round - 1, diagonal);
      for (; x > from; --x) back.push_back({range.beforeBegin + x - 1, range.afterBegin + x - 1 - diagonal});
      if (round == 0) break;
      const auto& earlier = rounds[round - 1];
      const std::ptrdiff_t left = diagonal - 1 + round - 1;
      const bool wasRemoved = left >= 0 && left < static_cast<std::ptrdiff_t>(earlier.size()) &&
                              earlier[left] >= 0 && earlier[left] + 1 == from;
      diagonal += wasRemoved ? -1 : 1;
    }
    matches_.insert(matches_.end(), back.rbegin(), back.rend());
  }

  /// Lines that occur once in each text, as many of them as stand in the same order, and what is equal
  /// around them.
  void matchAnchors(Range range) {
    for (const Match& anchor : anchorsOf(range)) {
      if (anchor.before < range.beforeBegin || anchor.after < range.afterBegin) continue;
      Range gap{range.beforeBegin, anchor.before, range.afterBegin, anchor.after};
      const std::size_t end = trimEnd(gap);
      trimBegin(gap);
      for (std::size_t i = 0; i < end; ++i) matches_.push_back({gap.beforeEnd + i, gap.afterEnd + i});
      matches_.push_back(anchor);
      range.beforeBegin = anchor.before + 1;
      range.afterBegin = anchor.after + 1;
      trimBegin(range);
    }
  }

  [[nodiscard]] std::vector<Match> anchorsOf(const Range& range) const {
    struct Places {
      std::size_t beforeCount = 0;
      std::size_t afterCount = 0;
      std::size_t after = 0;
    };
    std::unordered_map<std::uint32_t, Places> places;
    for (std::size_t i = range.beforeBegin; i < range.beforeEnd; ++i) ++places[before_[i]].beforeCount;
    for (std::size_t i = range.afterBegin; i < range.afterEnd; ++i) {
      Places& at = places[after_[i]];
      ++at.afterCount;
      at.after = i;
    }
    std::vector<Match> once;
    for (std::size_t i = range.beforeBegin; i < range.beforeEnd; ++i)
      if (const Places& at = places[before_[i]]; at.beforeCount == 1 && at.afterCount == 1)
        once.push_back({i, at.after});
    return longestRising(once);
  }

  /// The most of the matches, which are in order of the old text, that are in order of the new one too.
  static std::vector<Match> longestRising(const std::vector<Match>& matches) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> ends;  // by length: the match that ends such a row earliest
    std::vector<std::size_t> previous(matches.size(), kNone);
    for (std::size_t i = 0; i < matches.size(); ++i) {
      const auto at =
          std::lower_bound(ends.begin(), ends.end(), matches[i].after,
                           [&](std::size_t end, std::size_t after) { return matches[end].after < after; });
      if (at != ends.begin()) previous[i] = *(at - 1);
      if (at == ends.end())
        ends.push_back(i);
      else
        *at = i;
    }
    std::vector<Match> rising;
    for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = previous[i])
      rising.push_back(matches[i]);
    std::reverse(rising.begin(), rising.end());
    return rising;
  }

  const Numbers& before_;
  const Numbers& after_;
  std::vector<Match> matches_;
};

}  // namespace

std::vector<DiffLine> lineDiff(std::string_view before, std::string_view after) {
  const std::vector<std::string_view> oldLines = linesOf(before);
  const std::vector<std::string_view> newLines = linesOf(after);
  std::unordered_map<std::string_view, std::uint32_t> numbers;
  const auto numbersOf = [&](const std::vector<std::string_view>& lines) {
    Numbers list;
    for (const std::string_view line : lines)
      list.push_back(numbers.try_emplace(line, static_cast<std::uint32_t>(numbers.size())).first->second);
    return list;
  };
  const Numbers oldNumbers = numbersOf(oldLines);
  const Numbers newNumbers = numbersOf(newLines);
  std::vector<Match> matches = Matcher(oldNumbers, newNumbers).match();
  matches.push_back({oldLines.size(), newLines.size()});
  std::vector<DiffLine> lines;
  std::size_t i = 0;
  std::size_t j = 0;
  for (const Match& match : matches) {
    while (i < match.before) lines.push_back({DiffLine::Kind::removed, oldLines[i++]});
    while (j < match.after) lines.push_back({DiffLine::Kind::added, newLines[j++]});
    if (i == oldLines.size() || j == newLines.size()) continue;
    lines.push_back({DiffLine::Kind::same, oldLines[i++]});
    ++j;
  }
  return lines;
}

}  // namespace tav
