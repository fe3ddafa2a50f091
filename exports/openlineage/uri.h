#pragma once

#include <string_view>

namespace tav {

/// Whether `text` is a URI with a scheme (RFC 3986). A host in brackets, an IPv6 address, may hold
/// hexadecimal digits, colons and dots in any order.
bool isUri(std::string_view text) noexcept;

}  // namespace tav
