#include "exports/answers/estate_diff.h"

#include <sstream>

#include "exports/answers/diff_report.h"
#include "exports/answers/markdown.h"
#include "framework/std/json_writer.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

std::string_view changeName(const EstateChange& change) {
  if (!change.before) return "added";
  return change.after ? "changed" : "removed";
}

/// Of a model that was added or removed, the version that there is.
const EstateVersion& onlyVersion(const EstateChange& change) {
  return change.after ? *change.after : *change.before;
}

std::string nothingChanged(const DiffEnds& ends) {
  return (ends.areTimes ? "No model changed from " + ends.before + " to "
                        : "No model differs between " + ends.before + " and ") +
         ends.after + ".\n";
}

class TextReport : public EstateDiffReport {
 public:
  TextReport(std::ostream& out, const TextStyle& style) : out_(out), text_(out, style) {}

  void begin(const DiffEnds& ends) override { ends_ = ends; }
  void add(const EstateChange& change, const ModelDiff* diff) override {
    if (count_++ > 0) text_.begin().end();
    text_.begin(0, 3).add("== ").add(printable(change.source), Look::name).add(": ");
    text_.add(changeName(change), Look::changed).end();
    if (diff)
      writeDiffText(*diff, out_, text_.style());
    else
      text_.begin().add(printable(onlyVersion(change).name)).end();
  }
  void end(bool complete) override {
    if (count_ == 0 && complete) out_ << nothingChanged(ends_);
  }

 private:
  std::ostream& out_;
  ShownText text_;
  DiffEnds ends_;
  std::size_t count_ = 0;
};

class MarkdownReport : public EstateDiffReport {
 public:
  explicit MarkdownReport(std::ostream& out) : out_(out) {}

  void begin(const DiffEnds& ends) override { ends_ = ends; }
  void add(const EstateChange& change, const ModelDiff* diff) override {
    out_ << (count_++ > 0 ? "\n" : "") << "## " << markdownCode(change.source) << "\n\n";
    if (diff)
      writeDiffMarkdown(*diff, out_);
    else
      out_ << "The model " << markdownCode(onlyVersion(change).name) << " was " << changeName(change)
           << ".\n";
  }
  void end(bool complete) override {
    if (count_ == 0 && complete) out_ << nothingChanged(ends_);
  }

 private:
  std::ostream& out_;
  DiffEnds ends_;
  std::size_t count_ = 0;
};

class JsonReport : public EstateDiffReport {
 public:
  explicit JsonReport(std::ostream& out) : out_(out), json_(text_) {}

  void begin(const DiffEnds& ends) override {
    json_.begin('{');
    json_.member("format", ends.areTimes ? "xmla-estate-diff/1" : "xmla-models-diff/1");
    json_.member(ends.areTimes ? "since" : "old", ends.before);
    json_.member(ends.areTimes ? "until" : "new", ends.after);
    json_.open("models", '[');
  }
  void add(const EstateChange& change, const ModelDiff* diff) override {
    json_.line();
    json_.open('{');
    json_.member("source", change.source);
    json_.member("change", changeName(change));
    writeVersion("old", change.before);
    writeVersion("new", change.after);
    if (diff) {
      std::ostringstream written;
      writeDiffJson(*diff, written);
      std::string document = std::move(written).str();
      document.pop_back();  // the end of the line
      json_.raw("diff", document);
    }
    json_.close('}');
    out_ << text_;
    text_.clear();
  }
  void end(bool /*complete*/) override {
    json_.closeOnLine(']');
    json_.close('}');
    out_ << text_ << "\n";
  }

 private:
  void writeVersion(std::string_view key, const std::optional<EstateVersion>& version) {
    if (!version) return;
    json_.open(key, '{');
    json_.member("name", version->name);
    json_.optional("imported", version->imported);
    json_.close('}');
  }

  std::ostream& out_;
  std::string text_;
  JsonWriter json_;
};

}  // namespace

std::unique_ptr<EstateDiffReport> makeEstateDiffReport(std::string_view format, std::ostream& out,
                                                       const TextStyle& style) {
  if (format == "json") return std::make_unique<JsonReport>(out);
  if (format == "markdown") return std::make_unique<MarkdownReport>(out);
  return std::make_unique<TextReport>(out, style);
}

}  // namespace tav
