#include "framework/java/option_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "framework/java/child_process.h"
#include "framework/std/exception.h"
#include "framework/std/utf8.h"

namespace tav {
namespace {

[[noreturn]] void failToWrite(const TAVString& path, const std::error_code& error) {
  fail("TAVJAVA_F0003", path.str() + ": " + error.message());
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

void writeNew(const TAVString& path, std::string_view text) {
  const auto systemError = [] { return std::error_code(errno, std::generic_category()); };
  const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (file.get() < 0) failToWrite(path, systemError());
  while (!text.empty()) {
    const ssize_t written = write(file.get(), text.data(), text.size());
    if (written < 0 && errno != EINTR) failToWrite(path, systemError());
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

std::string escapedField(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '\\':
        result += "\\\\";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\t':
        result += "\\t";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::string unescapedField(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size();
    const char c = escape ? text[++i] : text[i];
    plain += !escape ? c : c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
  }
  return plain;
}

OptionFile::OptionFile(const TAVFile& folder, const TAVOptionList& options)
    : path_(folder.getFile("options").getPath()) {
  std::string lines;
  for (const TAVOption& option : options)
    lines += escapedField(option.getKey()) + "\t" + escapedField(handedValue(folder, option)) + "\n";
  writeNew(path_, lines);
}

TAVString OptionFile::handedValue(const TAVFile& folder, const TAVOption& option) {
  const TAVString& value = option.getValue();
  if (option.getType() != OptionType::file || isUtf8(value)) return value;
  TAVString link = folder.getFile(("file" + std::to_string(links_.size())).c_str()).getPath();
  std::error_code error;
  const std::filesystem::path target = std::filesystem::absolute(value.str(), error);
  if (!error) std::filesystem::create_symlink(target, link.str(), error);
  if (error) failToWrite(link, error);
  links_.emplace_back(link, value);
  return link;
}

TAVString OptionFile::original(TAVString text) const {
  for (const auto& [link, value] : links_) text = text.replaceAll(link, value);
  return text;
}

}  // namespace tav
