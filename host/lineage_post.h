#pragma once

// Sending lineage events to a server that collects them.

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "host/own_library.h"

namespace host {

/// Where events go, and how long to keep trying.
struct PostTarget {
  /// http or https; a user and password in it are for the server and never shown.
  std::string url;
  /// Sent as a bearer token when it is not empty; never shown.
  std::string apiKey;
  /// How long one attempt may take.
  std::chrono::milliseconds timeout{30'000};
  /// How often an event is sent at most.
  int attempts = 4;
  /// The file of events that were taken; empty when none is kept.
  std::string resume;
};

/// Events that are posted one after the other over one connection.
class LineagePost : public OwnInterface {
 public:
  /// So many events are to come, beside those before.
  virtual void expect(std::size_t count) noexcept = 0;
  /// Throws Message::eventNotPosted when it was not taken, which names the target and the event's place.
  virtual void send(std::string_view event) = 0;
  /// Passes over an event that the server has already.
  virtual void skip() noexcept = 0;
};

/// What posts, in a library of its own: it needs thirty others, which a run that posts nothing does without.
class Posting : public OwnInterface {
 public:
  /// A text that shows a URL without what is secret in it: user, password and query.
  [[nodiscard]] virtual std::string publicUrl(const std::string& url) const = 0;
  /// Whether `url` is one that can be posted to.
  [[nodiscard]] virtual bool isPostUrl(const std::string& url) const = 0;
  /// Whether a secret goes to another machine without being encrypted.
  [[nodiscard]] virtual bool sendsInClear(const PostTarget& target) const = 0;
  /// Answers 429 and 5xx, and connections that fail, are tried again after a pause that doubles from one
  /// second, or that the server asks for, half a minute at most. Servers are known by their certificates, and
  /// none sends what it is posted on to another. Throws Message::badApiKey for an API key that no header can
  /// hold.
  [[nodiscard]] virtual std::unique_ptr<LineagePost> open(PostTarget target) const = 0;
  /// The version of the library that speaks HTTP.
  [[nodiscard]] virtual std::string httpVersion() const = 0;
};

/// Throws Message::httpNotAvailable when it cannot be loaded.
const Posting& posting();

}  // namespace host
