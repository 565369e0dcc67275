#include "seam/formatters.h"
#include "seam/stockcolor.h"

#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

using WG::FormatFlags;

namespace {
const QString kInvalid = QStringLiteral("非法值");
}

TEST(Formatters, Utf8ToQString)
{
    EXPECT_EQ(WG::sToQs("50ETF购12月2800"), QStringLiteral("50ETF购12月2800"));
    EXPECT_EQ(WG::sToQs(std::string()), QString());
}

struct DoubleCase {
    double value;
    int decimals;
    int flags;
    bool trim;
    const char* expected;
};

class FormatDouble : public testing::TestWithParam<DoubleCase> {};

TEST_P(FormatDouble, Formats)
{
    const DoubleCase& c = GetParam();
    const QString text = WG::formatDoubleNumber(c.value, c.decimals, FormatFlags(c.flags), c.trim, kInvalid);
    EXPECT_EQ(text, QString::fromUtf8(c.expected))
        << "value=" << c.value << " decimals=" << c.decimals << " flags=" << c.flags << " trim=" << c.trim;
}

// Halves round away from zero, as traders read prices.
INSTANTIATE_TEST_SUITE_P(Cases, FormatDouble,
                         testing::Values(DoubleCase{0.1234, 4, 0, false, "0.1234"},
                                         DoubleCase{0.12345, 2, 0, false, "0.12"},
                                         DoubleCase{2.5, 0, 0, false, "3"},
                                         DoubleCase{-0.001, 2, 0, false, "0.00"},
                                         DoubleCase{-1.25, 1, 0, false, "-1.3"},
                                         DoubleCase{1234567.891, 2, utils::FNF_SEGMENTED, false, "1,234,567.89"},
                                         DoubleCase{-1234567.0, 0, utils::FNF_SEGMENTED, false, "-1,234,567"},
                                         DoubleCase{999.5, 1, utils::FNF_SEGMENTED, false, "999.5"},
                                         DoubleCase{0.0523, 2, utils::FNF_PERCENT, false, "5.23%"},
                                         DoubleCase{-0.1, 1, utils::FNF_PERCENT, false, "-10.0%"},
                                         DoubleCase{12.3456, 2, utils::FNF_PERCENT | utils::FNF_SEGMENTED, false,
                                                    "1,234.56%"},
                                         DoubleCase{-1234.5, 4, utils::FNF_SEGMENTED, true, "-1,234.5"},
                                         DoubleCase{999999.9999, 3, utils::FNF_SEGMENTED, false, "1,000,000.000"},
                                         DoubleCase{100.0, 0, utils::FNF_SEGMENTED, false, "100"},
                                         DoubleCase{1000.0, 0, utils::FNF_SEGMENTED, false, "1,000"},
                                         DoubleCase{-0.00001, 2, utils::FNF_PERCENT, false, "0.00%"},
                                         DoubleCase{0.5, 0, utils::FNF_PERCENT, true, "50%"},
                                         DoubleCase{1e17, 2, utils::FNF_SEGMENTED, false, "100,000,000,000,000,000.00"},
                                         DoubleCase{2.8, 4, 0, true, "2.8"},
                                         DoubleCase{3.0, 4, 0, true, "3"},
                                         DoubleCase{DBL_MAX, 2, 0, false, "非法值"},
                                         DoubleCase{HUGE_VAL, 2, 0, false, "非法值"},
                                         DoubleCase{-HUGE_VAL, 2, utils::FNF_PERCENT, false, "非法值"}));

// Formatting by hand must give what Qt's conversion gives, digit for digit,
// wherever a table may meet the number: prices, greeks, volumes, exact halves,
// products that round to a half, negative values that round to zero.
TEST(Formatters, FixedDecimalsMatchQtsConversion)
{
    auto reference = [](double value, int decimals) {
        QString text = QString::number(value, 'f', decimals);
        if (text.startsWith(QLatin1Char('-')) &&
            text.count(QLatin1Char('0')) + text.count(QLatin1Char('.')) == text.size() - 1) {
            text.remove(0, 1);
        }
        return text;
    };
    std::mt19937_64 random(20261122);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::uniform_int_distribution<int> exponent(-8, 14);
    std::uniform_int_distribution<int> places(0, 12);
    int checked = 0;
    auto check = [&](double value, int decimals) {
        ASSERT_EQ(WG::formatDoubleNumber(value, decimals, FormatFlags(), false, kInvalid), reference(value, decimals))
            << "value " << QString::number(value, 'g', 17).toStdString() << " decimals " << decimals;
        ++checked;
    };
    for (int i = 0; i < 400000; ++i) {
        const double value = (unit(random) - 0.5) * std::pow(10.0, exponent(random));
        check(value, places(random));
    }
    // Prices on a tick grid and their halves, where rounding is decided by the last bit.
    for (int cents = -300000; cents <= 300000; ++cents) {
        check(cents / 1000.0, 2);
        check(cents / 10000.0 + 0.00005, 4);
        check(cents * 0.005, 2);
    }
    for (int decimals = 0; decimals <= 12; ++decimals) {
        for (double value : {0.0, -0.0, 0.5, 1.5, 2.5, -2.5, 0.125, -0.375, 1.005, 2.675, 1e-13, -1e-13, 4503599627370495.0,
                             4503599627370497.0, 9.999999999999999e15, 1e17, -1e20, 123456789.125}) {
            check(value, decimals);
        }
    }
    EXPECT_GT(checked, 2000000);
}

TEST(Formatters, NanIsInvalid)
{
    EXPECT_EQ(WG::formatDoubleNumber(std::nan(""), 2, FormatFlags(), false, kInvalid), kInvalid);
}

TEST(Formatters, IntAndLongLong)
{
    EXPECT_EQ(WG::formatIntNumber(12345, 0, utils::FNF_SEGMENTED), QStringLiteral("12,345"));
    EXPECT_EQ(WG::formatIntNumber(12345, 0, 0), QStringLiteral("12345"));
    EXPECT_EQ(WG::formatIntNumber(-5, 2, 0), QStringLiteral("-5.00"));
    EXPECT_EQ(WG::formatIntNumber(0x7fffffff, 0, 0), QString());
    EXPECT_EQ(WG::formatLongLongNumber(9007199254740993LL, 0, 0), QStringLiteral("9007199254740993"));
    EXPECT_EQ(WG::formatLongLongNumber(1234567890123LL, 0, utils::FNF_SEGMENTED), QStringLiteral("1,234,567,890,123"));
    EXPECT_EQ(WG::formatLongLongNumber(0x7fffffffffffffffLL, 0, 0), QString());
}

TEST(Formatters, PriceToTheTick)
{
    EXPECT_EQ(WG::formatPriceDoubleNumber(0.12345, 0.0001), QStringLiteral("0.1235"));
    EXPECT_EQ(WG::formatPriceDoubleNumber(2.8, 0.001), QStringLiteral("2.800"));
    EXPECT_EQ(WG::formatPriceDoubleNumber(3010.0, 1.0), QStringLiteral("3010"));
    EXPECT_EQ(WG::formatPriceDoubleNumber(10.5, 0.5), QStringLiteral("10.5"));
    EXPECT_EQ(WG::formatPriceDoubleNumber(DBL_MAX, 0.001), QString());
    EXPECT_EQ(WG::decimalsOfTick(0.0001), 4);
    EXPECT_EQ(WG::decimalsOfTick(0.2), 1);
    EXPECT_EQ(WG::decimalsOfTick(0.0), 2);
}

struct ColorCase {
    double value;
    double reference;
    const char* expected;
};

class StockColorKey : public testing::TestWithParam<ColorCase> {};

TEST_P(StockColorKey, ComparesWithTolerance)
{
    const ColorCase& c = GetParam();
    EXPECT_STREQ(TC::getStockColorKey(c.value, c.reference), c.expected)
        << "value=" << c.value << " reference=" << c.reference;
}

INSTANTIATE_TEST_SUITE_P(Cases, StockColorKey,
                         testing::Values(ColorCase{DBL_MAX, 0.0, "tc_clr_priceT_equal"},
                                         ColorCase{1.0, DBL_MAX, "tc_clr_priceT_equal"},
                                         ColorCase{DBL_MAX, DBL_MAX, "tc_clr_priceT_equal"},
                                         ColorCase{1.00001, 1.0, "tc_clr_priceT_equal"},
                                         ColorCase{0.99999, 1.0, "tc_clr_priceT_equal"},
                                         ColorCase{1.0, 1.0, "tc_clr_priceT_equal"},
                                         ColorCase{1.00002, 1.0, "tc_clr_priceT_rise"},
                                         ColorCase{0.99998, 1.0, "tc_clr_priceT_fall"},
                                         ColorCase{0.05, 0.0, "tc_clr_priceT_rise"},
                                         ColorCase{-0.05, 0.0, "tc_clr_priceT_fall"},
                                         ColorCase{3000.00001, 3000.0, "tc_clr_priceT_equal"},
                                         ColorCase{3000.1, 3000.0, "tc_clr_priceT_rise"}));

TEST(StockColorKeyNan, NanCountsAsNoComparison)
{
    EXPECT_STREQ(TC::getStockColorKey(std::nan(""), 1.0), "tc_clr_priceT_equal");
}
