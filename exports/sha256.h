#pragma once

#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace tav {

/// The SHA-256 of bytes that come in pieces.
class Sha256 {
 public:
  Sha256();

  void add(std::string_view bytes);
  /// The sum in hexadecimal digits. Nothing is added behind it.
  std::string finish();

 private:
  struct Free {
    void operator()(evp_md_ctx_st* context) const noexcept;
  };
  std::unique_ptr<evp_md_ctx_st, Free> context_;
};

}  // namespace tav
