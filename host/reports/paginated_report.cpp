#include "host/reports/paginated_report.h"

#include <string_view>

#include "framework/dom/dom.h"
#include "framework/expression/lexer.h"
#include "framework/expression/words.h"
#include "framework/std/exception.h"
#include "framework/std/string.h"
#include "host/reports/mdx_names.h"
#include "messages/message.h"

namespace host {
namespace {

/// Whether a data source is a model. One that is kept apart from the report does not tell; then its queries
/// do.
bool mayBeModel(const TAVDOMElement& report, std::string_view name) {
  const TAVDOMElement* sources = report.getFirstElement("DataSources");
  if (!sources) return true;
  for (const TAVDOMElement& source : sources->getElements()) {
    const TAVDOMElement* connection = source.getFirstElement("ConnectionProperties");
    if (!connection || source.getAttribute("Name") != name) continue;
    const std::string provider = tav::foldCase(connection->getFirstElementValue("DataProvider"));
    return provider == "oledb-md" || provider == "pbidataset" || provider == "powerbidataset";
  }
  return true;
}

/// The language of a query; empty for one that asks no model.
std::string_view languageOf(std::string_view query) {
  tav::PieceBuffer pieces;
  const tav::Token first = tav::Lexer(query, tav::ExpressionLanguage::mdx, pieces).next(false);
  if (tav::isWord(first.text, "EVALUATE") || tav::isWord(first.text, "DEFINE")) return "dax";
  return isMdxQuery(query) ? "mdx" : std::string_view();
}

}  // namespace

std::vector<ReportPart> readPaginatedReport(const ReportPlace& report, MessageLog& log) {
  std::vector<ReportPart> parts{{.kind = tav::ObjectKind::report, .name = report.name}};
  TAVDOM dom(nullptr);
  const TAVDOMElement* root = nullptr;
  try {
    root = dom.parseFile(TAVFile(TAVString(report.path)));
  } catch (const TAVException& error) {
    log.logEvent(tav::messageEvent(tav::Message::reportFileLost,
                                   {report.path, error.getMessage().view(), report.name}));
  }
  const TAVDOMElement* sets = root ? root->getFirstElement("DataSets") : nullptr;
  if (!sets) return parts;
  for (const TAVDOMElement& set : sets->getElements()) {
    const TAVDOMElement* query = set.getFirstElement("Query");
    if (!query || !mayBeModel(*root, query->getFirstElementValue("DataSourceName"))) continue;
    const std::string_view text = query->getFirstElementValue("CommandText");
    const std::string_view language = languageOf(text);
    if (language.empty()) continue;
    parts.push_back({.kind = tav::ObjectKind::reportDataSet,
                     .owner = 0,
                     .name = std::string(set.getAttribute("Name")),
                     .text = std::string(text),
                     .language = language});
  }
  return parts;
}

}  // namespace host
