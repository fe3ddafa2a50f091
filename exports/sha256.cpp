#include "exports/sha256.h"

#include <openssl/evp.h>

#include <array>
#include <new>

namespace tav {

void Sha256::Free::operator()(evp_md_ctx_st* context) const noexcept {
  EVP_MD_CTX_free(context);
}

Sha256::Sha256() : context_(EVP_MD_CTX_new()) {
  if (!context_ || EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) != 1) throw std::bad_alloc();
}

void Sha256::add(std::string_view bytes) {
  EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size());
}

std::string Sha256::finish() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
  unsigned int size = 0;
  EVP_DigestFinal_ex(context_.get(), bytes.data(), &size);
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (unsigned int i = 0; i < size; ++i) text.append({kDigits[bytes[i] >> 4U], kDigits[bytes[i] & 0xFU]});
  return text;
}

}  // namespace tav
