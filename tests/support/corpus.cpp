#include "tests/support/corpus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace tav::test {

namespace {

constexpr std::string_view kCase = "=== ";
constexpr std::string_view kExpected = "---";

bool isUpdating() {
  const char* update = std::getenv("UPDATE_GOLDENS");
  return update && std::string_view(update) == "1";
}

std::vector<std::string> splitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

struct Corpus {
  std::string comment;  // what stands in front of the first case
  std::vector<CorpusCase> cases;
};

Corpus parseCorpus(const std::string& text) {
  Corpus corpus;
  std::string* part = &corpus.comment;
  int number = 0;
  for (const std::string& line : splitLines(text)) {
    ++number;
    if (line.starts_with(kCase)) {
      corpus.cases.push_back({line.substr(kCase.size()), "", "", number});
      part = &corpus.cases.back().input;
    } else if (line == kExpected && !corpus.cases.empty() && part == &corpus.cases.back().input) {
      part = &corpus.cases.back().expected;
    } else {
      *part += line + "\n";
    }
  }
  for (CorpusCase& c : corpus.cases) {
    if (c.input.ends_with('\n')) c.input.pop_back();
    if (c.expected.ends_with('\n')) c.expected.pop_back();
  }
  return corpus;
}

Corpus read(std::string_view file) {
  Corpus corpus = parseCorpus(readFile(testFile(file)));
  if (corpus.cases.empty()) ADD_FAILURE() << testFile(file) << ": there are no cases";
  return corpus;
}

std::string withLineEnd(const std::string& text) {
  return text.empty() ? text : text + "\n";
}

}  // namespace

std::filesystem::path testFile(std::string_view name) {
  return std::filesystem::path(TEST_DATA_DIR) / name;
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) ADD_FAILURE() << path << ": cannot be read";
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<CorpusCase> loadCorpus(std::string_view file) {
  return read(file).cases;
}

void checkCorpus(std::string_view file, const std::function<std::string(const std::string& input)>& show) {
  Corpus corpus = read(file);
  for (CorpusCase& c : corpus.cases) {
    const std::string actual = show(c.input);
    if (isUpdating())
      c.expected = actual;
    else
      EXPECT_EQ(c.expected, actual) << testFile(file).string() << ":" << c.line << ": " << c.name;
  }
  if (!isUpdating()) return;
  std::ofstream out(testFile(file), std::ios::binary);
  out << corpus.comment;
  for (const CorpusCase& c : corpus.cases)
    out << kCase << c.name << "\n" << withLineEnd(c.input) << kExpected << "\n" << withLineEnd(c.expected);
}

std::string unescape(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      result += text[i];
      continue;
    }
    const char c = text[++i];
    if (c == 'x' && i + 2 < text.size()) {
      result += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      result += c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
    }
  }
  return result;
}

std::string escape(std::string_view text, bool ascii) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n' || c == '\t' || c == '\r' || c == '\\')
      (result += '\\') += c == '\n' ? 'n' : c == '\t' ? 't' : c == '\r' ? 'r' : c;
    else if (byte < 0x20 || byte == 0x7F || (ascii && byte > 0x7E))
      ((result += "\\x") += kDigits[byte >> 4]) += kDigits[byte & 15];
    else
      result += c;
  }
  return result;
}

}  // namespace tav::test
