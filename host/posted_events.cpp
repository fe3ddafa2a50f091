#include "host/posted_events.h"

#include "exports/openlineage/run_id.h"
#include "framework/serialization/replacing_file.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr std::string_view kHeader = "xmla-bridge posted events 1";
constexpr std::size_t kIdSize = 36;

}  // namespace

PostedEvents::PostedEvents(std::string path, std::string target)
    : path_(std::move(path)), target_(std::move(target)) {
  if (path_.empty()) return;
  read();
  // A line on which an earlier run was cut off is gone then, and whether the file can be written is known.
  write();
}

void PostedEvents::read() {
  std::ifstream in(path_, std::ios::binary);
  if (!in) return;
  std::string line(kHeader.size(), '\0');
  in.read(line.data(), static_cast<std::streamsize>(line.size()));
  if (in.gcount() == 0) return;
  if (line != kHeader) tav::fail(tav::Message::inputNotRead, {path_, "it is no list of posted events"});
  while (std::getline(in, line))
    if (line.size() == kIdSize && ids_.insert(line).second) order_.push_back(line);
}

void PostedEvents::write() {
  out_.close();
  tav::ReplacingFile file{TAVString(path_)};
  file.stream() << kHeader << '\n';
  for (const std::string& id : order_) file.stream() << id << '\n';
  file.commit();
  out_.open(path_, std::ios::binary | std::ios::app);
}

bool PostedEvents::contains(std::string_view event) const {
  return !ids_.empty() && ids_.contains(idOf(event));
}

void PostedEvents::add(std::string_view event) {
  if (path_.empty()) return;
  std::string id = idOf(event);
  out_ << id << '\n' << std::flush;
  order_.push_back(id);
  ids_.insert(std::move(id));
  // What no line can be added to is written anew, or that fails with its cause.
  if (!out_) write();
}

std::string PostedEvents::idOf(std::string_view event) const {
  tav::NamedUuid uuid;
  uuid.add(target_);
  uuid.add("\n");
  uuid.add(event);
  return uuid.finish();
}

}  // namespace host
