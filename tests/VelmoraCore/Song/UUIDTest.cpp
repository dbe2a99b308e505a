#include <future>
#include <gtest/gtest.h>
#include <unordered_set>
#include <vector>

#include "VelmoraCore/Song/UUID.h"

namespace velmora {
namespace {

TEST(UUID, ReadsTheCanonicalFormInEitherCase) {
  const std::string text = "0123ABCD-4567-89EF-0011-22334455667F";
  for (const char* same : {text.c_str(), "0123abcd-4567-89ef-0011-22334455667f"})
    EXPECT_EQ(UUID::parse(same).value().text(), text);
  for (const std::string bad :
       {"", "0123ABCD-4567-89EF-0011-22334455667", "0123ABCD-4567-89EF-0011-22334455667F0",
        "{123ABCD-4567-89EF-0011-22334455667}", "0123ABCDE4567-89EF-0011-22334455667F",
        "0123ABCG-4567-89EF-0011-22334455667F", "0123ABC--4567-89EF-0011-22334455667F",
        " 123ABCD-4567-89EF-0011-22334455667F", "0123ABCD-4567-89EF-00112-2334455667F"}) {
    EXPECT_FALSE(UUID::parse(bad)) << bad;
  }
}

TEST(UUID, RandomOnesDifferAcrossThreads) {
  const auto draw = [] {
    std::vector<UUID> ids(50000);
    for (UUID& id : ids) id = UUID::random();
    return ids;
  };
  auto other = std::async(std::launch::async, draw);
  std::unordered_set<UUID> seen;
  for (const auto& ids : {draw(), other.get()}) seen.insert(ids.begin(), ids.end());
  EXPECT_EQ(seen.size(), 100000U);
  EXPECT_EQ(UUID::random().text()[14], '4');
}

}  // namespace
}  // namespace velmora
