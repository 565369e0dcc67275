// The row functions of the quote, info and price sets: every cell, colour,
// status text and guard, the colour key rule and the margin estimate.
#include "board/coptionpricettable.h"
#include "board/cpricetrowbuilder.h"
#include "boardfixture.h"
#include "seam/stockcolor.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

namespace {

using boardtest::BoardTest;
using boardtest::OptionSpec;

class PriceTRows : public BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        table = std::make_unique<TC::COptionPriceTTable>(nullptr);
        tester = std::make_unique<QAbstractItemModelTester>(table->model(),
                                                            QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    void TearDown() override
    {
        tester.reset();
        table.reset();
        BoardTest::TearDown();
    }
    void addOption(const OptionSpec& def)
    {
        market::TInstrumentList list = boardtest::defaultUniverse();
        list.push_back(boardtest::option(def));
        installUniverse(list);
    }
    QString text(int row, int column) { return table->itemText(row, column); }
    QString key(int row, int column) { return table->model()->cellTextColorKey(row, column); }
    QStringList rowTexts(int row)
    {
        QStringList texts;
        for (int column = 0; column < table->columnCount(); ++column) {
            texts << text(row, column);
        }
        return texts;
    }
    static QString fixed(double value, int decimals) { return QString::number(value, 'f', decimals); }

    std::unique_ptr<TC::COptionPriceTTable> table;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST(StockColorKey, ToleranceAndAbsentValuesGiveEqual)
{
    EXPECT_STREQ(TC::getStockColorKey(2.5, 2.5), "tc_clr_priceT_equal");
    EXPECT_STREQ(TC::getStockColorKey(utils::kAbsentDouble, 1.0), "tc_clr_priceT_equal");
    EXPECT_STREQ(TC::getStockColorKey(1.0, utils::kAbsentDouble), "tc_clr_priceT_equal");
    EXPECT_STREQ(TC::getStockColorKey(1.00001, 1.0), "tc_clr_priceT_equal");
    EXPECT_STREQ(TC::getStockColorKey(1.0, 1.00001), "tc_clr_priceT_equal");
    EXPECT_STREQ(TC::getStockColorKey(1.00002, 1.0), "tc_clr_priceT_rise");
    EXPECT_STREQ(TC::getStockColorKey(0.99998, 1.0), "tc_clr_priceT_fall");
}

TEST(ForecastMargin, PublishedExamples)
{
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(true, 3.2, 10000, 0.05, 3.0), 3120.0, 1e-6);
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(false, 3.2, 10000, 0.05, 3.0), 4920.0, 1e-6);
    // A put whose previous settlement exceeds its strike is capped at the strike.
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(false, 3.2, 10000, 3.5, 3.0), 10000 * 3.2 * 1.2, 1e-6);
    // The call's minimum is taken on S, the put's on K.
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(true, 4.0, 10000, 0.01, 3.0), 10000 * (0.01 + 0.21) * 1.2,
                1e-6);
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(false, 2.0, 10000, 0.01, 3.0), 10000 * (0.01 + 0.14) * 1.2,
                1e-6);
}

TEST_F(PriceTRows, ForecastMarginFromTheInstruments)
{
    OptionSpec call;
    call.code = "10000071";
    call.strike = 3.2;
    addOption(call);
    EXPECT_NEAR(TC::CPriceTRowBuilder::calcForecastMargin(exchange->getCodeInfo("10000071.SH")), 3120.0, 1e-6);
    EXPECT_NEAR(TC::CPriceTRowBuilder::calcForecastMargin(exchange->getCodeInfo("10000023.SH")), 4920.0, 1e-6);
    EXPECT_EQ(TC::CPriceTRowBuilder::calcForecastMargin(nullptr), 0.0);
}

TEST_F(PriceTRows, OptionOfAnUnknownUnderlyingShowsZeroMargin)
{
    OptionSpec orphan;
    orphan.code = "10000072";
    orphan.undlCode = "510999";
    addOption(orphan);
    EXPECT_EQ(TC::CPriceTRowBuilder::calcForecastMargin(exchange->getCodeInfo("10000072.SH")), 0.0);
    publish(quote("10000072", 0.1, 0.1));
    table->setInstrument({"10000072.SH"});
    table->updateTableByPrice(quote("10000072", 0.1, 0.1));
    EXPECT_EQ(text(0, 0), QStringLiteral("0.0000"));
}

TEST_F(PriceTRows, ExpiredContractShowsStatusMarginAndValueOnly)
{
    OptionSpec expired;
    expired.code = "10000073";
    expired.expire = 20261119;
    addOption(expired);
    publish(quote("510050", 3.05, 3.0));
    table->setInstrument({"10000073.SH"});
    auto data = quote("10000073", 0.12, 0.10);
    data->volume = 10;
    data->openInterest = 20;
    table->updateTableByPrice(data);
    EXPECT_EQ(text(0, 0), QStringLiteral("4920.0000"));
    EXPECT_EQ(text(0, 1), QStringLiteral("-"));
    EXPECT_EQ(text(0, 2), QStringLiteral("-0.0700"));
    EXPECT_EQ(text(0, 16), QStringLiteral("3.0000"));
    for (int column : {3, 4, 5, 6, 7, 8, 9, 10, 14, 15}) {
        EXPECT_TRUE(text(0, column).isEmpty()) << column;
    }
    for (int column : {11, 12, 13}) {
        EXPECT_EQ(table->itemWidget(0, column), nullptr) << column;
    }
}

TEST_F(PriceTRows, LastDayUsesTheSecondsLeftAndOffersOrders)
{
    OptionSpec today;
    today.code = "10000074";
    today.expire = 20261120;
    addOption(today);
    publish(quote("510050", 3.05, 3.0));
    table->setInstrument({"10000074.SH"});
    table->updateTableByPrice(quote("10000074", 0.06, 0.05));
    const int seconds = exchange->getRemainSecond();
    ASSERT_GT(seconds, 0);
    const double iv =
        nqservice::GreekAndOptionsCalculator::instance()->calcCallImpliedVolatility(3.05, 3.0, 0, seconds, 0.02, 0.06,
                                                                                    1.5);
    ASSERT_TRUE(utils::isUsable(iv));
    EXPECT_EQ(text(0, 3), fixed(iv, 4));
    for (int column : {11, 12, 13}) {
        EXPECT_NE(table->itemWidget(0, column), nullptr) << column;
    }
    EXPECT_EQ(text(0, 10), QStringLiteral("0.0600"));
}

TEST_F(PriceTRows, OtherTraderTypesShowNoMarginNorStatus)
{
    publish(quote("510050", 3.05, 3.0));
    table->setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    quotes->setTradingPhase("10000011.SH", 52);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    auto call = quote("10000011", 0.12, 0.10);
    call->volume = 1234;
    call->openInterest = 5678;
    table->updateTableByPrice(call);
    table->updateTableByPrice(quote("10000021", 0.08, 0.10));
    EXPECT_EQ(table->columnCount(), 28);
    EXPECT_EQ(text(0, 14), QStringLiteral("3.0000"));
    EXPECT_EQ(text(0, 0), QStringLiteral("-0.0700"));
    EXPECT_EQ(text(0, 2), QStringLiteral("5678"));
    EXPECT_EQ(text(0, 3), QStringLiteral("1234"));
    EXPECT_EQ(text(0, 8), QStringLiteral("0.1200"));
    EXPECT_EQ(text(0, 13), QStringLiteral("10000011.SH"));
    EXPECT_EQ(text(0, 15), QStringLiteral("10000021.SH"));
    EXPECT_EQ(text(0, 19), QStringLiteral("0.0800"));
    EXPECT_EQ(text(0, 27), QStringLiteral("-0.0800"));
    EXPECT_NE(table->itemWidget(0, 9), nullptr);
    EXPECT_NE(table->itemWidget(0, 18), nullptr);
    const QStringList texts = rowTexts(0);
    EXPECT_FALSE(texts.contains(QStringLiteral("集合竞价")));
    EXPECT_FALSE(texts.contains(QStringLiteral("4920.0000")));
}

TEST_F(PriceTRows, NormalStatusShowsTheTradingPhase)
{
    table->setInstrument({"10000011.SH", "10000021.SH"});
    quotes->setTradingPhase("10000011.SH", 52);
    table->updateTableByPrice(quote("10000011", 0.12, 0.10));
    EXPECT_EQ(text(0, 1), QStringLiteral("集合竞价"));
    struct Phase {
        int phase;
        const char* text;
    };
    for (const Phase& p : {Phase{48, "开盘前"}, Phase{49, "非交易"}, Phase{51, "集合竞价"}, Phase{53, "集合竞价"},
                           Phase{54, "闭市"}, Phase{64, "盘后定价中"}, Phase{50, "-"}}) {
        EXPECT_EQ(TC::CPriceTRowBuilder::phaseText(p.phase), QString::fromUtf8(p.text)) << p.phase;
    }
    auto halted = quote("10000021", 0.08, 0.10);
    halted->optionStatus = nqservice::SOS_SUSPENDED;
    table->updateTableByPrice(halted);
    EXPECT_EQ(text(0, 30), QStringLiteral("停牌"));
}

TEST_F(PriceTRows, UnsetChangeRatioGivesAnEmptyCell)
{
    table->setInstrument({"10000011.SH"});
    auto data = quote("10000011", 0.12, 0.10);
    data->changeRatio = utils::kAbsentDouble;
    table->updateTableByPrice(data);
    EXPECT_EQ(text(0, 10), QStringLiteral("0.1200"));
    EXPECT_TRUE(text(0, 8).isEmpty());
    EXPECT_EQ(TC::CPriceTRowBuilder::changeText(utils::kAbsentDouble), QString());
    EXPECT_EQ(TC::CPriceTRowBuilder::changeText(-0.0123), QStringLiteral("-1.23%"));
}

TEST_F(PriceTRows, AdjustedContractStrikeEndsInA)
{
    OptionSpec adjusted;
    adjusted.code = "10000075";
    adjusted.strike = 2.95;
    adjusted.adjusted = true;
    addOption(adjusted);
    table->setInstrument({"10000075.SH"});
    table->updateTableByPrice(quote("10000075", 0.12, 0.10));
    EXPECT_EQ(text(0, 16), QStringLiteral("2.9500A"));
    table->setTableType(TC::PTT_PRICE);
    table->updateTableByPrice(quote("10000075", 0.12, 0.10));
    EXPECT_EQ(text(0, 4), QStringLiteral("2.9500A"));
}

TEST_F(PriceTRows, UnderlyingRecordChangesNoRow)
{
    publish(quote("510050", 3.05, 3.0));
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateTableByPrice(quote("10000011", 0.12, 0.10));
    const QStringList before = rowTexts(0);
    publish(quote("510050", 3.20, 3.0));
    table->updateTableByPrice(quote("510050", 3.20, 3.0));
    EXPECT_EQ(rowTexts(0), before);
    // The implied volatility moves on the option's own next quote.
    table->updateTableByPrice(quote("10000011", 0.12, 0.10));
    EXPECT_NE(text(0, 3), before.at(3));
}

TEST_F(PriceTRows, RecordsOfUnknownCodesAreDropped)
{
    table->setInstrument({"10000011.SH"});
    table->updateTableByPrice(quote("77777777", 0.12, 0.10));
    table->updateTableByPrice(boost::shared_ptr<TC::CPriceData>());
    table->updateTableByPrice(quote("10000041", 0.12, 0.10));  // known, but in no row
    EXPECT_TRUE(rowTexts(0).join(QString()).isEmpty());
}

TEST_F(PriceTRows, RowFunctionsWriteOnlyInTheirOwnSet)
{
    table->setInstrument({"10000011.SH"});
    table->updateInfoTable(0, quote("10000011", 0.12, 0.10));
    table->updatePriceTable(0, quote("10000011", 0.12, 0.10));
    EXPECT_TRUE(rowTexts(0).join(QString()).isEmpty());
    table->updateQuoteTable(0, quote("10000011", 0.12, 0.10));
    EXPECT_EQ(text(0, 10), QStringLiteral("0.1200"));
}

TEST_F(PriceTRows, InfoRowEveryCell)
{
    publish(quote("510050", 3.05, 3.0));
    table->setTableType(TC::PTT_INFO);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateTableByPrice(quote("10000011", 0.12, 0.10));
    table->updateTableByPrice(quote("10000021", 0.08, 0.10));
    const QStringList expected = {"4920.0000", "3.0000", "10000", "欧式", "20261125", "20261125", "20.00%", "0.1200",
                                  "10000011.SH", "", "", "", "0", "3.0000", "0", "", "", "10000021.SH", "0.0800",
                                  "-20.00%", "20261125", "20261125", "欧式", "10000", "3.0000", "4920.0000"};
    EXPECT_EQ(rowTexts(0), expected);
    EXPECT_EQ(key(0, 6), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(key(0, 7), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(key(0, 18), QStringLiteral("tc_clr_priceT_fall"));
    EXPECT_EQ(key(0, 19), QStringLiteral("tc_clr_priceT_fall"));
    struct Buttons {
        int column;
        int id;
    };
    for (const Buttons& b : {Buttons{9, 0}, Buttons{10, 2}, Buttons{11, 4}, Buttons{15, 6}, Buttons{16, 8}}) {
        QWidget* widget = table->itemWidget(0, b.column);
        ASSERT_NE(widget, nullptr) << b.column;
        EXPECT_EQ(widget->findChildren<WG::CPushButton*>().value(0)->id(), b.id);
    }
    // Future options are American; the margin stays.
    table->setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    table->updateTableByPrice(quote("10000011", 0.12, 0.10));
    EXPECT_EQ(text(0, 3), QStringLiteral("美式"));
    EXPECT_EQ(text(0, 0), QStringLiteral("4920.0000"));
}

TEST_F(PriceTRows, PriceRowEveryCell)
{
    table->setTableType(TC::PTT_PRICE);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    auto call = quote("10000011", 0.12, 0.10);
    call->bidPrice1 = 0.119;
    call->askPrice1 = 0.10;
    table->updateTableByPrice(call);
    auto put = quote("10000021", 0.08, 0.10);
    put->bidPrice1 = 0.079;
    put->askPrice1 = 0.081;
    table->updateTableByPrice(put);
    const QStringList expected = {"0.1190", "0.1000",      "0.1200", "10000011.SH", "3.0000",
                                  "10000021.SH", "0.0800", "0.0810", "0.0790"};
    EXPECT_EQ(rowTexts(0), expected);
    EXPECT_EQ(key(0, 0), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(key(0, 1), QStringLiteral("tc_clr_priceT_equal"));
    EXPECT_EQ(key(0, 2), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(key(0, 6), QStringLiteral("tc_clr_priceT_fall"));
    EXPECT_EQ(key(0, 8), QStringLiteral("tc_clr_priceT_fall"));
}

TEST_F(PriceTRows, PriceRowOfAnExpiredContractShowsOnlyTheStrike)
{
    OptionSpec expired;
    expired.code = "10000076";
    expired.expire = 20261119;
    addOption(expired);
    table->setTableType(TC::PTT_PRICE);
    table->setInstrument({"10000076.SH"});
    table->updateTableByPrice(quote("10000076", 0.12, 0.10));
    EXPECT_EQ(rowTexts(0), (QStringList{"", "", "", "", "3.0000", "", "", "", ""}));
}

}  // namespace
