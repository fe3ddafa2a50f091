#include "views/connection_index.h"

#include "framework/model/model.h"

TAVStoreConnection* tav::ConnectionIndex::find(std::string_view nativeId) {
  if (nativeId.empty()) return nullptr;
  for (const std::int32_t count = model_->storeConnections.getCount(); read_ < count; ++read_) {
    TAVStoreConnection* connection = model_->storeConnections[read_];
    connections_.try_emplace(connection->nativeId.str(), connection);
  }
  const auto found = connections_.find(nativeId);
  return found == connections_.end() ? nullptr : found->second;
}
