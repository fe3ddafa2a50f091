#include "framework/std/secret_names.h"

#include <algorithm>
#include <array>

namespace tav {
namespace {

// In order, in lower case and without hyphens and underscores.
constexpr std::array<std::string_view, 17> kNames{"accesstoken",
                                                  "accountkey",
                                                  "apikey",
                                                  "authorization",
                                                  "clientsecret",
                                                  "functionskey",
                                                  "ocpapimsubscriptionkey",
                                                  "password",
                                                  "proxyauthorization",
                                                  "pwd",
                                                  "refreshtoken",
                                                  "sharedaccesskey",
                                                  "sharedaccesssignature",
                                                  "subscriptionkey",
                                                  "xapikey",
                                                  "xauthtoken",
                                                  "xfunctionskey"};
constexpr std::array<std::string_view, 6> kQueryNames{"code", "key", "secret", "sig", "signature", "token"};

static_assert(std::is_sorted(kNames.begin(), kNames.end()));
static_assert(std::is_sorted(kQueryNames.begin(), kQueryNames.end()));

/// The letters and digits of a name in lower case; empty when it is too long for one of a secret.
class PlainName {
 public:
  explicit PlainName(std::string_view name) {
    if (name.size() > kLongestSecretName) return;
    for (const char c : name)
      if (c != '-' && c != '_')
        letters_[size_++] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }

  [[nodiscard]] std::string_view text() const { return {letters_.data(), size_}; }

 private:
  std::array<char, kLongestSecretName> letters_{};
  std::size_t size_ = 0;
};

}  // namespace

bool isSecretName(std::string_view name) {
  return std::binary_search(kNames.begin(), kNames.end(), PlainName(name).text());
}

bool isSecretQueryName(std::string_view name) {
  return std::binary_search(kQueryNames.begin(), kQueryNames.end(), PlainName(name).text());
}

}  // namespace tav
