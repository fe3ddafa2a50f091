#pragma once

// Sending lineage events to a server that collects them.

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

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

/// A text that shows a URL without what is secret in it: user, password and query.
std::string publicUrl(const std::string& url);
/// Whether `url` is one that can be posted to.
bool isPostUrl(const std::string& url);
/// Whether a secret goes to another machine without being encrypted.
bool sendsInClear(const PostTarget& target);

/// Posts events one after the other over one connection. Answers 429 and 5xx, and connections that fail, are
/// tried again after a pause that doubles from one second, or that the server asks for, half a minute at
/// most. Servers are known by their certificates, and none sends what it is posted on to another.
class LineagePost {
 public:
  /// Throws Message::badApiKey for an API key that no header can hold.
  explicit LineagePost(PostTarget target);
  LineagePost(const LineagePost&) = delete;
  LineagePost& operator=(const LineagePost&) = delete;
  ~LineagePost();

  /// So many events are to come, beside those before.
  void expect(std::size_t count) noexcept { count_ += count; }
  /// Throws Message::eventNotPosted when it was not taken, which names the target and the event's place.
  void send(std::string_view event);
  /// Passes over an event that the server has already.
  void skip() noexcept { ++place_; }

 private:
  struct Connection;
  struct Answer;

  [[nodiscard]] Answer attempt(std::string_view event);
  [[noreturn]] void giveUp(const Answer& answer, int attempts) const;

  PostTarget target_;
  std::size_t count_ = 0;
  std::size_t place_ = 0;  // of the event that is being sent, from 1
  std::unique_ptr<Connection> connection_;
};

}  // namespace host
