#include "seam/common.h"

#include <gtest/gtest.h>

#include <set>

TEST(Common, AbsentMarkers)
{
    EXPECT_TRUE(utils::isAbsent(DBL_MAX));
    EXPECT_TRUE(utils::isAbsent(1.7976931348623157e308));
    EXPECT_TRUE(utils::isAbsent(utils::kAbsentInt));
    EXPECT_TRUE(utils::isAbsent(0x7fffffff));
    EXPECT_TRUE(utils::isAbsent(utils::kAbsentLongLong));
    EXPECT_FALSE(utils::isAbsent(0.0));
    EXPECT_FALSE(utils::isAbsent(-DBL_MAX));
    EXPECT_FALSE(utils::isAbsent(1e300));
    EXPECT_FALSE(utils::isAbsent(2147483646));
    EXPECT_FALSE(utils::isAbsent(0x7ffffffffffffffeLL));
}

TEST(Common, UsableExcludesAbsentAndNonFinite)
{
    EXPECT_TRUE(utils::isUsable(0.0));
    EXPECT_TRUE(utils::isUsable(-3.5));
    EXPECT_FALSE(utils::isUsable(DBL_MAX));
    EXPECT_FALSE(utils::isUsable(std::nan("")));
    EXPECT_FALSE(utils::isUsable(HUGE_VAL));
}

TEST(Common, PriceEqualityIsInclusiveAtTheTolerance)
{
    EXPECT_TRUE(utils::isPriceEqual(1.00001, 1.0));
    EXPECT_TRUE(utils::isPriceEqual(3000.00001, 3000.0));
    EXPECT_TRUE(utils::isPriceEqual(2.8, 2.8));
    EXPECT_FALSE(utils::isPriceEqual(1.00002, 1.0));
    EXPECT_FALSE(utils::isPriceEqual(1.0, 1.000011));
}

TEST(Common, StockKeyRoundTrip)
{
    const std::string key = utils::vqStockKey("SH", "10004567");
    std::string market;
    std::string code;
    ASSERT_TRUE(utils::splitStockKey(key, market, code));
    EXPECT_EQ(market, "SH");
    EXPECT_EQ(code, "10004567");
    EXPECT_NE(utils::vqStockKey("SH", "510050"), utils::vqStockKey("SZ", "510050"));
    EXPECT_FALSE(utils::splitStockKey("nodot", market, code));
    EXPECT_FALSE(utils::splitStockKey(".SH", market, code));
}

TEST(Common, HashIsStableAndSpreads)
{
    EXPECT_EQ(utils::hash("account-1"), utils::hash("account-1"));
    std::set<unsigned long long> seen;
    for (int i = 0; i < 1000; ++i) {
        seen.insert(utils::hash("account-" + std::to_string(i)));
    }
    EXPECT_EQ(seen.size(), 1000u);
}

TEST(Common, ClockIsMonotonic)
{
    const double first = utils::clockMSec();
    const double second = utils::clockMSec();
    EXPECT_LE(first, second);
}

template <typename T>
class StringMapSumTest : public testing::Test {};
using SumTypes = testing::Types<int, long long, double>;
TYPED_TEST_SUITE(StringMapSumTest, SumTypes);

TYPED_TEST(StringMapSumTest, UpdateReplacesTheKeysShare)
{
    utils::TStringMapSum<TypeParam> sum;
    EXPECT_EQ(sum.sum(), TypeParam(0));
    sum.update(1, TypeParam(10));
    sum.update(2, TypeParam(5));
    EXPECT_EQ(sum.sum(), TypeParam(15));
    sum.update(1, TypeParam(3));
    EXPECT_EQ(sum.sum(), TypeParam(8));
    sum.update(2, TypeParam(-4));
    EXPECT_EQ(sum.sum(), TypeParam(-1));
    sum.remove(1);
    EXPECT_EQ(sum.sum(), TypeParam(-4));
    EXPECT_EQ(sum.size(), 1u);
}

TEST(StringMapSum, DoubleSumCarriesNoDriftFromReplacedShares)
{
    utils::TStringMapSum<double> sum;
    for (int i = 0; i < 100000; ++i) {
        sum.update(7, 0.1 * (i % 10));
        sum.update(8, 0.3);
    }
    sum.update(7, 0.2);
    EXPECT_DOUBLE_EQ(sum.sum(), 0.5);
}

namespace {
struct Service {
    explicit Service(int v) : value(v) {}
    virtual ~Service() { ++destroyed; }
    int value;
    static int destroyed;
};
int Service::destroyed = 0;
struct DerivedService : Service {
    DerivedService() : Service(42) {}
};
}  // namespace

TEST(Singleton, HostCreatesAndDestroys)
{
    using Slot = utils::CManualSingletonT<Service>;
    EXPECT_EQ(Slot::instance(), nullptr);
    Slot::create(5);
    ASSERT_NE(Slot::instance(), nullptr);
    EXPECT_EQ(Slot::instance()->value, 5);
    const int before = Service::destroyed;
    Slot::create<DerivedService>();
    EXPECT_EQ(Service::destroyed, before + 1);
    EXPECT_EQ(Slot::instance()->value, 42);
    Slot::destroy();
    EXPECT_EQ(Slot::instance(), nullptr);
    EXPECT_EQ(Service::destroyed, before + 2);
}

TEST(Flags, TestAndCombine)
{
    utils::CFlags<utils::EFormatNumberFlag> flags(utils::FNF_PERCENT);
    EXPECT_TRUE(flags.testFlag(utils::FNF_PERCENT));
    EXPECT_FALSE(flags.testFlag(utils::FNF_SEGMENTED));
    flags = flags | utils::FNF_SEGMENTED;
    EXPECT_TRUE(flags.testFlag(utils::FNF_SEGMENTED));
    EXPECT_EQ(flags.value(), 0x10001);
    EXPECT_FALSE(utils::CFlags<utils::EFormatNumberFlag>(0).testFlag(utils::FNF_NONE));
}
