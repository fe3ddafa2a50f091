#include "host/export_lineage.h"

#include <fmt/ostream.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "exports/openlineage/lineage_events.h"
#include "exports/openlineage/uri.h"
#include "host/standard_output.h"
#include "messages/message.h"

namespace host {
namespace {

/// An option, and the formats that it is one of.
struct FormatOption {
  const char* name;
  bool ofEvents;
  bool ofProposals;
};

constexpr std::array kOptions{
    FormatOption{"--server", true, true},         FormatOption{"--openlineage-static", true, false},
    FormatOption{"--post", true, false},          FormatOption{"--post-timeout", true, false},
    FormatOption{"--post-attempts", true, false}, FormatOption{"--post-resume", true, false},
    FormatOption{"--datahub-env", false, true},   FormatOption{"--datahub-instance", false, true},
    FormatOption{"--datahub-tables", false, true}};

std::string checkServer(const std::string& text) {
  return tav::isUri(text) ? "" : "'" + text + "' is no URI, such as ssas://server.example";
}

std::string checkUrl(const std::string& text) {
  return posting().isPostUrl(text) ? "" : "the URL must begin with http:// or https:// and name a host";
}

std::string checkEnvironment(const std::string& text) {
  const bool holds = !text.empty() && std::all_of(text.begin(), text.end(),
                                                  [](char c) { return (c >= 'A' && c <= 'Z') || c == '_'; });
  return holds ? "" : "'" + text + "' is no environment, such as PROD or DEV";
}

/// An instance has no "=", so that the last one ends the server.
std::string checkInstance(const std::string& text) {
  const std::size_t equals = text.rfind('=');
  const bool holds = equals != text.npos && equals + 1 < text.size() &&
                     (tav::isUri(text.substr(0, equals)) || text.find(':') == text.npos);
  return holds ? "" : "'" + text + "' is no SERVER=NAME, such as mssql://warehouse.example:1433=warehouse";
}

void addProposalOptions(const CommandParser& parser, tav::DatahubOptions& options) {
  parser
      .addOption("--datahub-env ENV", options.environment,
                 "datahub: the environment of data sets (default: PROD)")
      .check(checkEnvironment);
  parser
      .addOption(
          "--datahub-instance SERVER=NAME",
          [&options](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) {
              const std::size_t equals = text.rfind('=');
              options.instances.emplace_back(text.substr(0, equals), text.substr(equals + 1));
            }
          },
          "datahub: the platform instance that a server is")
      .oneEachTime()
      .check(checkInstance);
  parser.addFlag("--datahub-tables", options.describesTables,
                 "datahub: describe the tables of databases too, in the place of what others say of them");
}

PostTarget withKey(PostTarget target, MessageLog& log, const std::string& shown) {
  if (const char* key = std::getenv("OPENLINEAGE_API_KEY"))  // NOLINT(concurrency-mt-unsafe): never set here
    target.apiKey = key;
  if (posting().sendsInClear(target)) log.logEvent(tav::messageEvent(tav::Message::keySentInClear, {shown}));
  return target;
}

}  // namespace

void addLineageOptions(const CommandParser& parser, tav::ExportOptions& options, PostTarget& post) {
  parser.addFlag("--openlineage-static", options.staticEvents,
                 "openlineage: describe datasets and jobs without runs");
  parser
      .addOption("--server URI", options.server,
                 "openlineage, datahub: the server of the cubes (default: ssas://localhost)")
      .check(checkServer);
  const Option url = parser
                         .addOption("--post URL", post.url,
                                    "openlineage: post the events to this endpoint instead of writing them")
                         .check(checkUrl);
  parser
      .addOption(
          "--post-timeout SECONDS",
          [&post](double seconds) { post.timeout = std::chrono::milliseconds(std::lround(seconds * 1000)); },
          "The timeout of one attempt (default: 30 s)")
      .between(0.001, 86400.0)
      .needs(url);
  parser
      .addOption("--post-attempts COUNT", post.attempts,
                 "The maximum number of attempts per event (default: 4)")
      .between(1, 100)
      .needs(url);
  parser
      .addOption("--post-resume FILE", post.resume,
                 "The file that notes the events which were taken: they are not posted again")
      .needs(url);
  addProposalOptions(parser, options.datahub);
}

void checkLineageOptions(const CommandParser& parser, const std::string& format) {
  for (const FormatOption& option : kOptions) {
    if (!parser.isGiven(option.name)) continue;
    if ((format == "openlineage" && option.ofEvents) || (format == "datahub" && option.ofProposals)) continue;
    const std::string formats = !option.ofProposals ? "openlineage"
                                : option.ofEvents   ? "openlineage or datahub"
                                                    : "datahub";
    throw UsageError(option.name, "is an option of --format " + formats);
  }
}

EventPosting::EventPosting(const PostTarget& target, MessageLog& log)
    : log_(log),
      shown_(printable(posting().publicUrl(target.url))),
      posted_(target.resume, posting().publicUrl(target.url)),
      post_(posting().open(withKey(target, log, shown_))) {}

void EventPosting::post(const tav::DetailedModel& model, const tav::ExportOptions& options) {
  const tav::LineageEvents events(model, options);
  const std::size_t before = sent_ + skipped_;
  post_->expect(events.count());
  events.write([&](std::string_view event) {
    const std::size_t done = sent_ + skipped_ - before;
    log_.showProgress("Posting to " + shown_, static_cast<int>(100 * done / events.count()));
    if (posted_.contains(event)) {
      post_->skip();
      ++skipped_;
      return;
    }
    post_->send(event);
    posted_.add(event);
    ++sent_;
  });
  log_.clearProgress();
}

void EventPosting::finish() {
  if (log_.quiet) return;
  StandardOutput out;
  const std::string before = skipped_ > 0 ? fmt::format(", {} were posted before", skipped_) : "";
  fmt::print(out.stream(), "Posted {} events to {}{}\n", sent_, shown_, before);
  out.finish();
}

}  // namespace host
