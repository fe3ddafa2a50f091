#include "checks/rule_file.h"

#include <re2/re2.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

#include "framework/std/nearest_word.h"
#include "messages/message.h"

namespace tav {
namespace {

/// Whether a text is like a pattern in which "*" stands for any characters. Linear but for the number of
/// stars.
bool isLike(std::string_view text, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t in = 0;
  std::size_t star = pattern.npos;
  std::size_t behind = 0;
  while (at < text.size()) {
    if (in < pattern.size() && pattern[in] == '*') {
      star = in++;
      behind = at;
    } else if (in < pattern.size() && pattern[in] == text[at]) {
      ++in;
      ++at;
    } else if (star != pattern.npos) {
      in = star + 1;
      at = ++behind;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', in) == pattern.npos;
}

/// "; did you mean 'coverage'?", or the words that there are where none is near.
std::string offer(std::string_view word, const std::vector<std::string_view>& words) {
  if (std::string nearest = offerNearest(word, words); !nearest.empty()) return nearest;
  std::string all = "; expected ";
  for (const std::string_view known : words) all.append(known == words.front() ? "" : ", ").append(known);
  return all;
}

std::vector<CheckSettings> defaults() {
  std::vector<CheckSettings> settings;
  for (const CheckRule& rule : checkRules())
    settings.push_back({rule.severity, rule.floor, {rule.kinds.begin(), rule.kinds.end()}, {}, nullptr, {}});
  return settings;
}

}  // namespace

bool isAccepted(const CheckSettings& settings, const CheckFinding& finding) {
  return std::any_of(
      settings.exceptions.begin(), settings.exceptions.end(), [&](const CheckException& exception) {
        return isLike(finding.object, exception.object) || isLike(finding.path, exception.object);
      });
}

/// Reads one file.
class RuleFileReader {
 public:
  explicit RuleFileReader(const std::string& path) : path_(path) {}

  CheckRuleFile read() {
    CheckRuleFile file;
    try {
      const YAML::Node root = YAML::LoadFile(path_);
      if (root.IsNull()) return file;
      expectMap(root, "a rule file");
      for (const auto& entry : root)
        if (const std::string key = textOf(entry.first); key != "rules" && key != "models")
          failAt(entry.first, "'" + key + "' is no part of a rule file" + offer(key, {"rules", "models"}));
      // What holds for all models comes first, wherever it stands.
      if (const YAML::Node rules = root["rules"])
        readRules(rules, file.settings_, [](CheckSettings& settings) -> CheckSettings& { return settings; });
      if (const YAML::Node models = root["models"]) readModels(models, file);
    } catch (const YAML::BadFile&) {
      fail(Message::rulesNotRead, {path_, "the file cannot be read"});
    } catch (const YAML::Exception& error) {
      failAt(error.mark, error.msg);
    }
    return file;
  }

 private:
  [[noreturn]] void failAt(const YAML::Mark& mark, const std::string& cause) const {
    std::string place = path_;
    if (!mark.is_null()) place += ":" + std::to_string(mark.line + 1) + ":" + std::to_string(mark.column + 1);
    fail(Message::rulesNotRead, {place, cause});
  }
  [[noreturn]] void failAt(const YAML::Node& node, const std::string& cause) const {
    failAt(node.Mark(), cause);
  }

  /// A map that says each thing once.
  void expectMap(const YAML::Node& node, const std::string& what) const {
    if (!node.IsMap()) failAt(node, what + " is a map of names and values");
    std::set<std::string> names;
    for (const auto& entry : node)
      if (entry.first.IsScalar() && !names.insert(entry.first.Scalar()).second)
        failAt(entry.first, "'" + entry.first.Scalar() + "' is there twice");
  }

  [[nodiscard]] std::string textOf(const YAML::Node& node) const {
    if (!node.IsScalar()) failAt(node, "expected a text");
    return node.Scalar();
  }

  template <class Settings, class Access>
  void readRules(const YAML::Node& node, std::vector<Settings>& all, Access access) {
    expectMap(node, "'rules'");
    for (const auto& entry : node) {
      const std::size_t rule = ruleOf(entry.first);
      readRule(entry.second, checkRules()[rule], access(all[rule]));
    }
  }

  [[nodiscard]] std::size_t ruleOf(const YAML::Node& node) const {
    const std::string id = textOf(node);
    std::vector<std::string_view> ids;
    for (std::size_t i = 0; i < checkRules().size(); ++i) {
      ids.push_back(checkRules()[i].id);
      if (ids.back() == id) return i;
    }
    failAt(node, "there is no rule '" + id + "'" + offer(id, ids));
  }

  void readRule(const YAML::Node& node, const CheckRule& rule, CheckSettings& settings) {
    if (node.IsScalar()) {
      settings.severity = severityOf(node);
      return;
    }
    expectMap(node, "a rule");
    for (const auto& entry : node) readOption(entry.first, entry.second, rule, settings);
  }

  void readOption(const YAML::Node& name, const YAML::Node& value, const CheckRule& rule,
                  CheckSettings& settings) {
    const std::string option = textOf(name);
    std::vector<std::string_view> options{"severity", "except"};
    if (rule.floor > 0) options.emplace_back("floor");
    if (!rule.kinds.empty()) options.emplace_back("kinds");
    if (rule.hasPattern) options.emplace_back("pattern");
    if (std::find(options.begin(), options.end(), option) == options.end())
      failAt(name,
             "the rule " + std::string(rule.id) + " has no option '" + option + "'" + offer(option, options));
    if (option == "severity")
      settings.severity = severityOf(value);
    else if (option == "floor")
      settings.floor = percentOf(value);
    else if (option == "kinds")
      settings.kinds = kindsOf(value);
    else if (option == "pattern")
      readPattern(value, settings);
    else
      readExceptions(value, settings);
  }

  [[nodiscard]] CheckSeverity severityOf(const YAML::Node& node) const {
    const std::string name = textOf(node);
    if (const auto severity = checkSeverityOf(name)) return *severity;
    failAt(node, "'" + name + "' is no severity" + offer(name, {"off", "info", "warning", "error"}));
  }

  [[nodiscard]] std::size_t percentOf(const YAML::Node& node) const {
    constexpr std::size_t kWhole = 100;
    const std::string text = textOf(node);
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number > kWhole)
      failAt(node, "expected a whole number of percent, from 0 to 100");
    return number;
  }

  [[nodiscard]] std::vector<NodeKind> kindsOf(const YAML::Node& node) const {
    if (!node.IsSequence()) failAt(node, "expected a list of kinds");
    std::vector<NodeKind> kinds;
    for (const YAML::Node& one : node) {
      const std::string name = textOf(one);
      const auto kind = objectKindOf(name);
      if (!kind) failAt(one, "there is no kind '" + name + "'" + offer(name, kindNames()));
      kinds.push_back(*kind);
    }
    return kinds;
  }

  static std::vector<std::string_view> kindNames() {
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < kNodeKindCount; ++i) names.push_back(nodeKindName(static_cast<NodeKind>(i)));
    return names;
  }

  void readPattern(const YAML::Node& node, CheckSettings& settings) {
    settings.pattern = textOf(node);
    const auto regex = std::make_shared<re2::RE2>(settings.pattern, re2::RE2::Quiet);
    if (!regex->ok()) failAt(node, "no regular expression: " + regex->error());
    settings.regex = regex;
  }

  void readExceptions(const YAML::Node& node, CheckSettings& settings) {
    if (!node.IsSequence()) failAt(node, "expected a list of exceptions");
    for (const YAML::Node& one : node) {
      expectMap(one, "an exception");
      CheckException exception;
      for (const auto& entry : one) {
        const std::string key = textOf(entry.first);
        if (key != "object" && key != "reason")
          failAt(entry.first, "an exception has no '" + key + "'" + offer(key, {"object", "reason"}));
        (key == "object" ? exception.object : exception.reason) = textOf(entry.second);
      }
      if (exception.object.empty() || exception.reason.empty())
        failAt(one, "an exception names an object and a reason");
      settings.exceptions.push_back(std::move(exception));
    }
  }

  void readModels(const YAML::Node& node, CheckRuleFile& file) {
    if (!node.IsSequence()) failAt(node, "expected a list of models");
    for (const YAML::Node& one : node) {
      expectMap(one, "a model");
      CheckRuleFile::Part part{{}, std::vector<std::optional<CheckSettings>>(checkRules().size())};
      for (const auto& entry : one) {
        const std::string key = textOf(entry.first);
        if (key == "match") {
          part.match = textOf(entry.second);
        } else if (key == "rules") {
          std::size_t rule = 0;
          readRules(entry.second, part.settings,
                    [&](std::optional<CheckSettings>& settings) -> CheckSettings& {
                      rule = static_cast<std::size_t>(&settings - part.settings.data());
                      if (!settings) settings = file.settings_[rule];
                      return *settings;
                    });
        } else {
          failAt(entry.first, "a model has no '" + key + "'" + offer(key, {"match", "rules"}));
        }
      }
      if (part.match.empty()) failAt(one, "a model says by 'match' which models it is about");
      file.parts_.push_back(std::move(part));
    }
  }

  std::string path_;
};

CheckRuleFile::CheckRuleFile() : settings_(defaults()) {}

CheckRuleFile CheckRuleFile::load(const std::string& path) {
  return RuleFileReader(path).read();
}

std::vector<CheckSettings> CheckRuleFile::settingsFor(const std::string& input,
                                                      const std::string& name) const {
  std::vector<CheckSettings> settings = settings_;
  for (const Part& part : parts_) {
    if (!isLike(input, part.match) && !isLike(name, part.match)) continue;
    for (std::size_t i = 0; i < settings.size(); ++i)
      if (part.settings[i]) settings[i] = *part.settings[i];
  }
  return settings;
}

std::string CheckRuleFile::text() {
  std::string text = "rules:\n";
  for (const CheckRule& rule : checkRules()) {
    text.append("  # ").append(rule.summary).append(".\n  ").append(rule.id).append(":\n");
    text.append("    severity: ").append(checkSeverityName(rule.severity)).append("\n");
    if (rule.floor > 0) text.append("    floor: ").append(std::to_string(rule.floor)).append("\n");
    if (rule.hasPattern) text.append("    pattern: \".\"\n");
    if (rule.kinds.empty()) continue;
    text += "    kinds: [";
    for (const NodeKind& kind : rule.kinds)
      text.append(&kind == rule.kinds.data() ? "" : ", ").append(nodeKindName(kind));
    text += "]\n";
  }
  return text;
}

}  // namespace tav
