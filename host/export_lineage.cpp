#include "host/export_lineage.h"

#include <fmt/ostream.h>

#include <CLI/Error.hpp>
#include <array>
#include <cmath>
#include <cstdlib>

#include "exports/openlineage/lineage_events.h"
#include "exports/openlineage/uri.h"
#include "host/standard_output.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr std::array kOptions{"--openlineage-static", "--server", "--post", "--post-timeout",
                              "--post-attempts"};

std::string checkServer(const std::string& text) {
  return tav::isUri(text) ? "" : "'" + text + "' is no URI, such as ssas://server.example";
}

std::string checkUrl(const std::string& text) {
  return isPostUrl(text) ? "" : "the URL must begin with http:// or https:// and name a host";
}

}  // namespace

void addLineageOptions(CLI::App& parser, tav::ExportOptions& options, PostTarget& post) {
  parser.add_flag("--openlineage-static", options.staticEvents,
                  "openlineage: describe datasets and jobs without runs");
  parser
      .add_option("--server", options.server,
                  "openlineage: the server of the cubes (default: ssas://localhost)")
      ->type_name("URI")
      ->check(checkServer);
  CLI::Option* url = parser
                         .add_option("--post", post.url,
                                     "openlineage: post the events to this endpoint instead of writing them")
                         ->type_name("URL")
                         ->check(checkUrl);
  parser
      .add_option_function<double>(
          "--post-timeout",
          [&post](double seconds) { post.timeout = std::chrono::milliseconds(std::lround(seconds * 1000)); },
          "The timeout of one attempt (default: 30 s)")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, 86400.0))
      ->needs(url);
  parser
      .add_option("--post-attempts", post.attempts, "The maximum number of attempts per event (default: 4)")
      ->type_name("COUNT")
      ->check(CLI::Range(1, 100))
      ->needs(url);
}

void checkLineageOptions(const CLI::App& parser, const std::string& format) {
  if (format == "openlineage") return;
  for (const char* option : kOptions)
    if (parser.count(option) > 0) throw CLI::ValidationError(option, "is an option of --format openlineage");
}

void postLineage(const tav::DetailedModel& model, const tav::ExportOptions& options, PostTarget target,
                 MessageLog& log) {
  if (const char* key = std::getenv("OPENLINEAGE_API_KEY"))  // NOLINT(concurrency-mt-unsafe): never set here
    target.apiKey = key;
  const tav::LineageEvents events(model, options);
  const std::string shown = printable(publicUrl(target.url));
  if (sendsInClear(target)) log.logEvent(tav::messageEvent(tav::Message::keySentInClear, {shown}));
  LineagePost post(std::move(target), events.count());
  std::size_t sent = 0;
  events.write([&](std::string_view event) {
    log.showProgress("Posting to " + shown, static_cast<int>(100 * sent / events.count()));
    post.send(event);
    ++sent;
  });
  log.clearProgress();
  if (log.quiet) return;
  StandardOutput out;
  fmt::print(out.stream(), "Posted {} events to {}\n", sent, shown);
  out.finish();
}

}  // namespace host
