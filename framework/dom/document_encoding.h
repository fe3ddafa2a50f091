#pragma once

#include <string_view>

namespace tav {

/// The encoding that the first bytes of a document show, where its declaration may say another: editors save
/// a file in another encoding and leave its declaration as it was. A byte order mark decides, and so does `<`
/// in two bytes; a document of single bytes that declares an encoding of Unicode is UTF-8. Null where the
/// declaration counts.
const char* encodingInSpiteOf(std::string_view beginning);

}  // namespace tav
