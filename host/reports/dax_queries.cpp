#include "host/reports/dax_queries.h"

#include <array>
#include <charconv>
#include <fstream>

#include "framework/bridgelib/class_path.h"
#include "framework/java/java_bridge.h"
#include "framework/java/option_file.h"
#include "framework/serialization/replacing_file.h"
#include "framework/std/java_path.h"
#include "framework/std/temporary_folder.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr const char* kMainClass = "KORV.bridges.MicrosoftSqlServerAs.Import.QueryNames";
constexpr const char* kArchive = "MicrosoftSqlServerAs.jar";
constexpr const char* kInputOption = "BP_FILE";
constexpr std::string_view kQuery = "query";
constexpr std::array<std::string_view, 5> kKinds{"uses", "counts", "takes", "calls", "lacks"};

/// A line that tells of a query: the kind, a tab, and a number or a name.
DaxUse useOf(std::string_view line) {
  const std::size_t tab = line.find('\t');
  const std::string_view value = line.substr(tab + 1);
  DaxUse use{DaxUse::Kind::lacks};
  for (std::size_t i = 0; i < kKinds.size(); ++i)
    if (line.substr(0, tab) == kKinds[i]) use.kind = static_cast<DaxUse::Kind>(i);
  if (use.kind == DaxUse::Kind::calls || use.kind == DaxUse::Kind::lacks) {
    use.name = tav::unescapedField(value);
  } else {
    std::from_chars(value.data(), value.data() + value.size(), use.object);
    --use.object;  // Java counts from 1
  }
  return use;
}

}  // namespace

void DaxQueries::addLine(std::initializer_list<std::string_view> fields) {
  for (const std::string_view field : fields) lines_.append(tav::escapedField(field)).push_back('\t');
  lines_.back() = '\n';
}

void DaxQueries::add(std::string_view table, std::string_view text) {
  addLine({kQuery, table, text});
  ++count_;
}

std::vector<std::vector<DaxUse>> DaxQueries::read() const {
  const tav::TemporaryFolder folder("ReportQueries");
  const TAVFile input = folder.folder().getFile("queries");
  const TAVFile output = folder.folder().getFile("names");
  tav::ReplacingFile written(input.getPath());
  written.stream() << lines_;
  written.commit();
  TAVOptionList options;
  options.add(TAVOption(kInputOption, "Queries", "", OptionType::file, input.getPath()));
  TAVString classPath;
  appendClassPathElement(classPath, getTAVJavaPath(), kArchive, nullptr);
  TAVJavaBridge(kMainClass, classPath, nullptr, TAVJavaExe::JAVA_VERSION_6)
      .javaImport(output, options, nullptr);

  std::vector<std::vector<DaxUse>> queries;
  queries.reserve(count_);
  std::ifstream lines(output.getPath().str());
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(kQuery))
      queries.emplace_back();
    else if (!queries.empty())
      queries.back().push_back(useOf(line));
  }
  if (queries.size() != count_) tav::fail(tav::Message::inputNotRead, {output.getPath(), "it is cut off"});
  return queries;
}

}  // namespace host
