#include "framework/modelbridge/host_observer.h"

#include <utility>

#include "framework/model/model.h"

namespace tav {
namespace {

HostObserver* last = nullptr;

}  // namespace

HostObserver::HostObserver() noexcept : before_(last) {
  last = this;
}

HostObserver::~HostObserver() {
  last = before_;
}

void HostObserver::onParsed(std::uint64_t /*read*/, std::uint64_t /*total*/) {}

void HostObserver::onDatabase() {}

void HostObserver::onMade(TAVStoreModel& /*model*/) {}

bool HostObserver::onModel(const TAVStoreModel& /*model*/) {
  return true;
}

void HostObserver::onDone(Owned<TAVStoreModel> /*model*/) {}

bool HostObserver::wantsDetails() {
  return false;
}

bool areDetailsWanted() {
  return last && last->wantsDetails();
}

void reportDetails(std::unique_ptr<Details> details) {
  if (last) last->details_ = std::move(details);
}

const Details* reportedDetails() {
  return last ? last->details() : nullptr;
}

void reportParsed(std::uint64_t read, std::uint64_t total) {
  if (last) last->onParsed(read, total);
}

void reportDatabase() {
  if (last) last->onDatabase();
}

void reportMade(TAVStoreModel& model) {
  if (last) last->onMade(model);
}

void reportDone(Owned<TAVStoreModel> model) {
  if (last) last->onDone(std::move(model));
}

bool reportModel(const TAVStoreModel& model) {
  return !last || last->onModel(model);
}

}  // namespace tav
