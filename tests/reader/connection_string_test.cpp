#include <gtest/gtest.h>

#include "framework/std/connection_string.h"
#include "framework/types/providers.h"
#include "tests/support/corpus.h"

namespace {

TEST(ConnectionString, GivesTheProviderAndItsDataStore) {
  tav::test::checkCorpus("reader/connection_strings.txt", [](const std::string& input) {
    const TAVString provider = getConnectionStringValue(TAVString(tav::test::unescape(input)), "Provider");
    const TAVDataStoreVersion* store = findDataStoreByProvider(provider);
    return "<" + provider.str() + "> " + store->getDataStore().str() + " " +
           std::to_string(store->getMajor());
  });
}

}  // namespace
