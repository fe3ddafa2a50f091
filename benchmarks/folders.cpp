#include "benchmarks/folders.h"

#include <fmt/format.h>

#include <fstream>
#include <stdexcept>
#include <string>

namespace tav::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kFeatures = 60;
constexpr int kAttributes = 100;
constexpr const char* kEngine = "xmlns=\"http://schemas.microsoft.com/analysisservices/2003/engine\"";

void writeFile(const fs::path& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

std::string tableText(std::uint64_t number) {
  std::string text = fmt::format("table 'Table {}'\n", number);
  for (int i = 0; i < kFeatures; ++i) {
    text += fmt::format(
        "\n\tmeasure 'Total {1} of {0}' = SUM('Table {0}'[Column {1}])\n\t\tformatString: #,0\n", number, i);
    text += fmt::format("\n\tcolumn 'Column {0}'\n\t\tdataType: int64\n\t\tsourceColumn: Column{0}\n", i);
  }
  return text + "\n";
}

std::string dimensionText(std::uint64_t number, const std::string& nameSpace) {
  std::string text =
      fmt::format("<Dimension{0}><ID>d{1}</ID><Name>Dimension {1}</Name><Attributes>\n", nameSpace, number);
  for (int i = 0; i < kAttributes; ++i) {
    text += fmt::format(
        "<Attribute><ID>a{0}</ID><Name>Attribute "
        "{0}</Name><KeyColumns><KeyColumn><DataType>Integer</DataType>"
        "</KeyColumn></KeyColumns></Attribute>\n",
        i);
  }
  return text + "</Attributes></Dimension>\n";
}

}  // namespace

void writeTmdl(const fs::path& folder, const fs::path& file, std::uint64_t tables) {
  const std::string database = "database Benchmark\n\tcompatibilityLevel: 1567\n\n";
  const std::string model = "model Model\n\tculture: en-US\n\n";
  fs::create_directories(folder / "tables");
  writeFile(folder / "database.tmdl", database);
  writeFile(folder / "model.tmdl", model);
  std::string whole = database + model;
  for (std::uint64_t i = 0; i < tables; ++i) {
    const std::string table = tableText(i);
    writeFile(folder / "tables" / fmt::format("Table {}.tmdl", i), table);
    whole += table;
  }
  writeFile(file, whole);
}

void writeProject(const fs::path& folder, const fs::path& file, std::uint64_t dimensions) {
  const std::string head = "<ID>Benchmark</ID><Name>Benchmark</Name>";
  fs::create_directories(folder);
  writeFile(folder / "Benchmark.database", fmt::format("<Database {}>{}</Database>\n", kEngine, head));
  std::string list = "<Project><Database><FullPath>Benchmark.database</FullPath></Database><Dimensions>\n";
  std::string whole = fmt::format("<Database {}>{}<Dimensions>\n", kEngine, head);
  for (std::uint64_t i = 0; i < dimensions; ++i) {
    const std::string name = fmt::format("Dimension {}.dim", i);
    writeFile(folder / name, dimensionText(i, fmt::format(" {}", kEngine)));
    list += fmt::format("<ProjectItem><Name>{0}</Name><FullPath>{0}</FullPath></ProjectItem>\n", name);
    whole += dimensionText(i, "");
  }
  writeFile(folder / "definition.dwproj", list + "</Dimensions></Project>\n");
  writeFile(file, whole + "</Dimensions></Database>\n");
}

}  // namespace tav::bench
