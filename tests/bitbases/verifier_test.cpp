// A check that finds nothing proves nothing, unless it finds what is wrong.
#include "../bitbases/verifier.h"

#include <gtest/gtest.h>

#include <random>

#include "../bitbases/packing.h"
#include "../bitbases/solver.h"
#include "../bitbases/table_store.h"
#include "library.h"

namespace bitbase_test {
namespace {

using bitbases::Squares;

TEST(Verifier, FindsAWrongValue) {
  const bitbases::Material material = *bitbases::Material::fromName("KPK");
  bitbases::TableStore store(tables(), 1);
  bitbases::Solver solver(material, store.source(), 1);
  const auto right = solver.solve([](double) {});
  const std::string directory = makeDirectory("wrong");
  const auto wrongPositions = [&](const bitbases::FullTable& table) {
    EXPECT_TRUE(pack(table, store.source(), 0, 1).write(directory));
    const auto set = std::make_unique<bitbases::TableSet>([](const std::string&) {});
    set->setCache(0);
    EXPECT_TRUE(set->add(directory, material));
    for (const bitbases::Material& next : material.successors()) set->add(tables(), next);
    return bitbases::Verifier(*set, 1).verify(material).wrong;
  };
  EXPECT_EQ(wrongPositions(*right), 0U);

  std::mt19937 random(23);
  for (int changed = 0; changed < 20;) {
    bitbases::FullTable table = *right;
    const auto word = static_cast<std::uint32_t>(random() % table.grid.words());
    const Squares king = Squares{1} << random() % 64;
    Squares& won = table.won[0][word];
    const Squares legal = legalSet(table.grid.frame(word), 0);
    if ((legal & king) == 0) continue;
    won ^= king;
    EXPECT_GE(wrongPositions(table), 1U) << word << ' ' << king;
    ++changed;
  }
}

}  // namespace
}  // namespace bitbase_test
