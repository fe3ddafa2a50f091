#include <curl/curl.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <thread>
#include <vector>

#include "framework/api.h"
#include "framework/std/text.h"
#include "host/lineage_post.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr std::chrono::seconds kFirstPause{1};
constexpr std::chrono::seconds kLongestPause{30};
constexpr std::size_t kKeptBody = 4096;  // bytes of an answer that are looked at
constexpr std::size_t kShownBody = 300;  // and that a message quotes
constexpr std::string_view kHidden = "***";

using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

Url parseUrl(const std::string& text) {
  Url url(curl_url(), &curl_url_cleanup);
  if (url && curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) != CURLUE_OK) url.reset();
  return url;
}

std::string urlPart(CURLU& url, CURLUPart part, unsigned flags = 0) {
  char* text = nullptr;
  if (curl_url_get(&url, part, &text, flags) != CURLUE_OK) return {};
  const std::unique_ptr<char, decltype(&curl_free)> owner(text, &curl_free);
  return text;
}

/// libcurl's own state, made once and kept to the end of the program.
class CurlLibrary {
 public:
  static void need() { static const CurlLibrary kLibrary; }
  CurlLibrary(const CurlLibrary&) = delete;
  CurlLibrary& operator=(const CurlLibrary&) = delete;
  ~CurlLibrary() { curl_global_cleanup(); }

 private:
  CurlLibrary() {
    if (const CURLcode code = curl_global_init(CURL_GLOBAL_DEFAULT); code != CURLE_OK)
      tav::fail(tav::Message::httpNotAvailable, {curl_easy_strerror(code)});
  }
};

/// What a connection can come to without anyone having decided against the event.
bool isPassing(CURLcode code) {
  constexpr std::array kPassing{CURLE_COULDNT_RESOLVE_PROXY,
                                CURLE_COULDNT_RESOLVE_HOST,
                                CURLE_COULDNT_CONNECT,
                                CURLE_OPERATION_TIMEDOUT,
                                CURLE_SSL_CONNECT_ERROR,
                                CURLE_GOT_NOTHING,
                                CURLE_SEND_ERROR,
                                CURLE_RECV_ERROR,
                                CURLE_PARTIAL_FILE,
                                CURLE_HTTP2,
                                CURLE_HTTP2_STREAM};
  return std::find(kPassing.begin(), kPassing.end(), code) != kPassing.end();
}

std::string hide(std::string text, const std::string& secret) {
  if (secret.empty()) return text;
  for (std::size_t at = text.find(secret); at != text.npos; at = text.find(secret, at + kHidden.size()))
    text.replace(at, secret.size(), kHidden);
  return text;
}

/// What a server is told and nobody else, in every form that it may have come in.
std::vector<std::string> secretsOf(const PostTarget& target) {
  std::vector<std::string> secrets{target.apiKey};
  const Url url = parseUrl(target.url);
  if (!url) return secrets;
  for (const CURLUPart part : {CURLUPART_PASSWORD, CURLUPART_QUERY}) {
    secrets.push_back(urlPart(*url, part));
    secrets.push_back(urlPart(*url, part, CURLU_URLDECODE));
  }
  return secrets;
}

/// The beginning of an answer for a message, without the secrets that the server may have repeated in it.
std::string quoteBody(const std::string& body, const std::vector<std::string>& secrets) {
  std::string hidden = body;
  for (const std::string& secret : secrets) hidden = hide(std::move(hidden), secret);
  const std::string_view text = tav::trimmed(hidden);
  const std::string_view shown = tav::beginningOf(text, kShownBody);
  return std::string(shown) + (shown.size() < text.size() ? " ..." : "");
}

extern "C" std::size_t keepBeginning(char* data, std::size_t /*one*/, std::size_t size, void* target) {
  auto& body = *static_cast<std::string*>(target);
  body.append(data, std::min(size, kKeptBody - body.size()));
  return size;  // what is dropped is taken, too
}

std::string publicForm(const std::string& url) {
  const Url parsed = parseUrl(url);
  if (!parsed) return std::string(kHidden);
  const std::string user = urlPart(*parsed, CURLUPART_USER);
  if (!user.empty() || !urlPart(*parsed, CURLUPART_PASSWORD).empty()) {
    curl_url_set(parsed.get(), CURLUPART_USER, kHidden.data(), 0);
    curl_url_set(parsed.get(), CURLUPART_PASSWORD, nullptr, 0);
  }
  if (!urlPart(*parsed, CURLUPART_QUERY).empty())
    curl_url_set(parsed.get(), CURLUPART_QUERY, kHidden.data(), 0);
  curl_url_set(parsed.get(), CURLUPART_FRAGMENT, nullptr, 0);
  return urlPart(*parsed, CURLUPART_URL);
}

struct Connection {
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle{nullptr, &curl_easy_cleanup};
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers{nullptr, &curl_slist_free_all};
  std::array<char, CURL_ERROR_SIZE> error{};
  std::string body;

  void addHeader(const std::string& header) {
    curl_slist* longer = curl_slist_append(headers.get(), header.c_str());
    if (!longer) throw std::bad_alloc();
    static_cast<void>(headers.release());
    headers.reset(longer);
  }

  template <class Value> void set(CURLoption option, Value value) {
    if (const CURLcode code = curl_easy_setopt(handle.get(), option, value); code != CURLE_OK)
      tav::fail(tav::Message::httpNotAvailable, {curl_easy_strerror(code)});
  }
};

/// What came of one attempt to send an event.
struct Answer {
  long status = 0;                // of HTTP; 0 when there was no answer
  std::string cause;              // in words, empty when the event was taken
  bool again = false;             // whether another attempt may do better
  std::chrono::seconds pause{0};  // that the server asks for
};

class CurlPost final : public LineagePost {
 public:
  explicit CurlPost(PostTarget target);

  void expect(std::size_t count) noexcept override { count_ += count; }
  void send(std::string_view event) override;
  void skip() noexcept override { ++place_; }

 private:
  [[nodiscard]] Answer attempt(std::string_view event);
  [[noreturn]] void giveUp(const Answer& answer, int attempts) const;

  PostTarget target_;
  std::size_t count_ = 0;
  std::size_t place_ = 0;  // of the event that is being sent, from 1
  std::unique_ptr<Connection> connection_;
};

CurlPost::CurlPost(PostTarget target)
    : target_(std::move(target)), connection_(std::make_unique<Connection>()) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
  if (std::any_of(target_.apiKey.begin(), target_.apiKey.end(), isControl))
    tav::fail(tav::Message::badApiKey);
  CurlLibrary::need();
  connection_->handle.reset(curl_easy_init());
  if (!connection_->handle) throw std::bad_alloc();
  connection_->addHeader("Content-Type: application/json");
  connection_->addHeader("Expect:");  // without it, a large event would wait for a server's leave
  if (!target_.apiKey.empty()) connection_->addHeader("Authorization: Bearer " + target_.apiKey);
  connection_->set(CURLOPT_URL, target_.url.c_str());
  connection_->set(CURLOPT_PROTOCOLS_STR, "http,https");
  connection_->set(CURLOPT_FOLLOWLOCATION, 0L);
  connection_->set(CURLOPT_SSL_VERIFYPEER, 1L);
  connection_->set(CURLOPT_SSL_VERIFYHOST, 2L);
  connection_->set(CURLOPT_NOSIGNAL, 1L);
  connection_->set(CURLOPT_USERAGENT, "xmla-bridge/" XMLA_VERSION);
  connection_->set(CURLOPT_HTTPHEADER, connection_->headers.get());
  connection_->set(CURLOPT_TIMEOUT_MS, static_cast<long>(target_.timeout.count()));
  connection_->set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(target_.timeout.count()));
  connection_->set(CURLOPT_ERRORBUFFER, connection_->error.data());
  connection_->set(CURLOPT_WRITEFUNCTION, &keepBeginning);
  connection_->set(CURLOPT_WRITEDATA, static_cast<void*>(&connection_->body));
  connection_->set(CURLOPT_POST, 1L);
}

void CurlPost::send(std::string_view event) {
  ++place_;
  std::chrono::seconds pause = kFirstPause;
  for (int number = 1;; ++number) {
    const Answer answer = attempt(event);
    if (answer.cause.empty()) return;
    if (!answer.again || number >= target_.attempts) giveUp(answer, number);
    std::this_thread::sleep_for(std::min(std::max(pause, answer.pause), kLongestPause));
    pause *= 2;
  }
}

Answer CurlPost::attempt(std::string_view event) {
  Connection& connection = *connection_;
  connection.body.clear();
  connection.error.front() = '\0';
  connection.set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(event.size()));
  connection.set(CURLOPT_POSTFIELDS, event.data());
  CURL* handle = connection.handle.get();
  const CURLcode code = curl_easy_perform(handle);
  Answer answer;
  if (code != CURLE_OK) {
    answer.again = isPassing(code);
    answer.cause = connection.error.front() ? connection.error.data() : curl_easy_strerror(code);
    return answer;
  }
  curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &answer.status);
  if (answer.status >= 200 && answer.status < 300) return answer;
  curl_off_t seconds = 0;
  curl_easy_getinfo(handle, CURLINFO_RETRY_AFTER, &seconds);
  answer.pause = std::chrono::seconds(std::min<curl_off_t>(seconds, kLongestPause.count()));
  answer.again = answer.status == 429 || answer.status >= 500;
  answer.cause = fmt::format("the server answered {}", answer.status);
  const std::string body = quoteBody(connection.body, secretsOf(target_));
  if (!body.empty()) answer.cause += ": " + body;
  return answer;
}

void CurlPost::giveUp(const Answer& answer, int attempts) const {
  const std::string tried = attempts == 1 ? "" : fmt::format(" in {} attempts", attempts);
  tav::fail(tav::Message::eventNotPosted,
            {std::to_string(place_), std::to_string(count_), publicForm(target_.url), tried, answer.cause});
}

class CurlPosting final : public Posting {
 public:
  [[nodiscard]] std::string publicUrl(const std::string& url) const override { return publicForm(url); }
  [[nodiscard]] bool isPostUrl(const std::string& url) const override;
  [[nodiscard]] bool sendsInClear(const PostTarget& target) const override;
  [[nodiscard]] std::unique_ptr<LineagePost> open(PostTarget target) const override {
    return std::make_unique<CurlPost>(std::move(target));
  }
  [[nodiscard]] std::string httpVersion() const override {
    return curl_version_info(CURLVERSION_NOW)->version;
  }
};

bool CurlPosting::isPostUrl(const std::string& url) const {
  const Url parsed = parseUrl(url);
  if (!parsed) return false;
  const std::string scheme = urlPart(*parsed, CURLUPART_SCHEME);
  return scheme == "http" || scheme == "https";
}

bool CurlPosting::sendsInClear(const PostTarget& target) const {
  const Url url = parseUrl(target.url);
  if (!url || urlPart(*url, CURLUPART_SCHEME) != "http") return false;
  const std::string host = urlPart(*url, CURLUPART_HOST);
  if (host == "localhost" || host.starts_with("127.") || host == "[::1]") return false;
  return !target.apiKey.empty() || !urlPart(*url, CURLUPART_PASSWORD).empty();
}

}  // namespace
}  // namespace host

extern "C" TAV_API const host::Posting* xmlaPosting() {
  static const host::CurlPosting kPosting;
  return &kPosting;
}
