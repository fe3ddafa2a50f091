#include "host/lineage_post.h"

#include <stdexcept>

#include "messages/message.h"

namespace host {
namespace {

const Posting& load() try {
  return ownInterface<const Posting>("libxmla_posting.so", "xmlaPosting");
} catch (const std::runtime_error& error) {
  tav::fail(tav::Message::httpNotAvailable, {error.what()});
}

}  // namespace

const Posting& posting() {
  static const Posting& kPosting = load();
  return kPosting;
}

}  // namespace host
