// The computed sets of the chain: the Greeks of the risk set, own and
// imported, and the leverage, premium, volatility, intrinsic and time value of
// the target set; their placeholders, zero rules and guards.
#include "board/coptionpricettable.h"
#include "board/cpricetrowbuilder.h"
#include "boardfixture.h"
#include "seam/stockcolor.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using boardtest::BoardTest;
using boardtest::OptionSpec;

// The December pair at strike 3.0: 33 calendar days left on 2026-11-20.
const char* const kCall = "10000041";
const char* const kPut = "10000042";
const QString kCallKey = QStringLiteral("10000041.SH");
const QString kPutKey = QStringLiteral("10000042.SH");

class RiskRows : public BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        table = std::make_unique<TC::COptionPriceTTable>(nullptr);
    }
    void TearDown() override
    {
        table.reset();
        BoardTest::TearDown();
    }
    void addOption(const std::shared_ptr<nqservice::CInstrumentDetail>& detail)
    {
        market::TInstrumentList list = boardtest::defaultUniverse();
        list.push_back(detail);
        installUniverse(list);
    }
    // Publishes the option's quote too: calcGreeks reads the quote client.
    void tick(const std::string& code, double last, double preClose)
    {
        const auto data = quote(code, last, preClose);
        publish(data);
        table->updateTableByPrice(data);
    }
    void show(TC::EPriceTTableType type, const QStringList& codes)
    {
        table->setInstrument(codes);
        table->setTableType(type);
        table->updateAllTable();
    }
    QString text(int column) { return table->itemText(0, column); }
    int buttonId(int column)
    {
        QWidget* widget = table->itemWidget(0, column);
        if (widget == nullptr) {
            return -1;
        }
        WG::CPushButton* button = widget->findChildren<WG::CPushButton*>().value(0);
        return button != nullptr ? button->id() : -1;
    }
    static QString fixed(double value, int decimals) { return QString::number(value, 'f', decimals); }
    static boost::shared_ptr<nqservice::GreekAndOptionsCalculator> calc()
    {
        return nqservice::GreekAndOptionsCalculator::instance();
    }
    static boost::shared_ptr<nqservice::COptionExGreeksVolatility> exRecord(const std::string& code, double base)
    {
        auto record = boost::make_shared<nqservice::COptionExGreeksVolatility>();
        record->code = code;
        record->exSellImpliedVolatility = base + 0.1;
        record->exBuyImpliedVolatility = base + 0.2;
        record->exDelta = base + 0.3;
        record->exGamma = base + 0.4;
        record->exVega = base + 0.5;
        record->exTheta = -(base + 0.6);
        return record;
    }
    // The write a row function made into a column, null without one.
    static const TC::CPriceTCellWrite* writeTo(const TC::TPriceTCellWrites& writes, int column,
                                               TC::CPriceTCellWrite::EKind kind)
    {
        for (const TC::CPriceTCellWrite& write : writes) {
            if (write.column == column && write.kind == kind) {
                return &write;
            }
        }
        return nullptr;
    }

    std::unique_ptr<TC::COptionPriceTTable> table;
};

// ---- the risk set ----

TEST_F(RiskRows, RiskRowAfterATickShowsTheCalculatorsGreeks)
{
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_RISK, {kCallKey, kPutKey});
    tick(kCall, 0.1234, 0.1);
    tick(kPut, 0.0567, 0.06);

    nqservice::CGreeksValue call;
    nqservice::CGreeksValue put;
    ASSERT_TRUE(calc()->calcGreeks(kCallKey.toStdString(), call, false, true));
    ASSERT_TRUE(calc()->calcGreeks(kPutKey.toStdString(), put, false, true));
    ASSERT_GT(call.delta, 0.0);
    ASSERT_LT(put.delta, 0.0);

    struct Cell {
        int column;
        double value;
    };
    for (const Cell& cell : {Cell{1, call.rho}, Cell{2, call.vega}, Cell{4, call.theta}, Cell{6, call.gamma},
                             Cell{8, call.delta}, Cell{36, put.rho}, Cell{35, put.vega}, Cell{33, put.theta},
                             Cell{31, put.gamma}, Cell{29, put.delta}}) {
        EXPECT_EQ(text(cell.column), fixed(cell.value, 4)) << "column " << cell.column;
    }
    EXPECT_EQ(text(19), QStringLiteral("3.0000"));
    EXPECT_EQ(text(0), TC::CPriceTRowBuilder::statusText(nqservice::SOS_NORMAL, "SH", kCall));
    EXPECT_EQ(text(37), TC::CPriceTRowBuilder::statusText(nqservice::SOS_NORMAL, "SH", kPut));
    EXPECT_EQ(text(12), QStringLiteral("23.40%"));
    EXPECT_EQ(text(13), QStringLiteral("0.1234"));
    EXPECT_EQ(text(14), kCallKey);
    EXPECT_EQ(text(25), QStringLiteral("-5.50%"));
    EXPECT_EQ(text(24), QStringLiteral("0.0567"));
    EXPECT_EQ(text(23), kPutKey);
    EXPECT_EQ(table->model()->cellTextColorKey(0, 13), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(table->model()->cellTextColorKey(0, 24), QStringLiteral("tc_clr_priceT_fall"));
    EXPECT_EQ(buttonId(15), 0);
    EXPECT_EQ(buttonId(16), 2);
    EXPECT_EQ(buttonId(17), 4);
    EXPECT_EQ(buttonId(21), 6);
    EXPECT_EQ(buttonId(22), 8);
    EXPECT_EQ(text(18), QStringLiteral("0"));
    EXPECT_EQ(text(20), QStringLiteral("0"));
}

TEST_F(RiskRows, RiskWritesInTheirOrder)
{
    publish(quote("510050", 3.05, 3.0));
    const auto data = quote(kPut, 0.05, 0.06);
    publish(data);
    TC::TPriceTCellWrites writes;
    ASSERT_TRUE(TC::CPriceTRowBuilder::buildRisk(3, data, nqservice::VQ_TRADER_TYPE_STOCK_OPTION, writes));
    QVector<int> columns;
    for (const TC::CPriceTCellWrite& write : writes) {
        if (write.kind != TC::CPriceTCellWrite::CW_TEXT_COLOR) {
            columns << write.column;
        }
    }
    const QVector<int> expected = {19, 36, 35, 33, 31, 29, 37, 25, 24, 23, 22, 21, 34, 32, 30, 28, 27, 26, 20};
    EXPECT_EQ(columns, expected);
    const TC::CPriceTCellWrite* sell = writeTo(writes, 22, TC::CPriceTCellWrite::CW_BUTTONS);
    ASSERT_NE(sell, nullptr);
    EXPECT_EQ(sell->buttonId, 308);
    EXPECT_EQ(sell->buttonColor, static_cast<int>(TC::BC_SELL));
    const TC::CPriceTCellWrite* net = writeTo(writes, 20, TC::CPriceTCellWrite::CW_NET);
    ASSERT_NE(net, nullptr);
    EXPECT_EQ(net->text, kPutKey);
}

TEST_F(RiskRows, ImportedGreeksShowAndAnEmptyImportClearsThem)
{
    publish(quote("510050", 3.05, 3.0));
    TC::OptionExGreeksMap imported;
    imported.insert(kCallKey, exRecord(kCallKey.toStdString(), 1.0));
    imported.insert(kPutKey, exRecord(kPutKey.toStdString(), 2.0));
    store->replaceOptionExGreeks(imported);
    show(TC::PTT_RISK, {kCallKey, kPutKey});
    tick(kCall, 0.12, 0.1);
    tick(kPut, 0.05, 0.06);
    struct Cell {
        int column;
        const char* text;
    };
    for (const Cell& cell : {Cell{3, "1.5000"}, Cell{5, "-1.6000"}, Cell{7, "1.4000"}, Cell{9, "1.3000"},
                             Cell{10, "1.2000"}, Cell{11, "1.1000"}, Cell{34, "2.5000"}, Cell{32, "-2.6000"},
                             Cell{30, "2.4000"}, Cell{28, "2.3000"}, Cell{27, "2.2000"}, Cell{26, "2.1000"}}) {
        EXPECT_EQ(text(cell.column), QString::fromUtf8(cell.text)) << "column " << cell.column;
    }
    // A pass that no longer has these codes clears them at the next drawing.
    store->replaceOptionExGreeks(TC::OptionExGreeksMap());
    table->updateExGreeksData();
    for (int column : {3, 5, 7, 9, 10, 11, 34, 32, 30, 28, 27, 26}) {
        EXPECT_TRUE(text(column).isEmpty()) << "column " << column << ": " << text(column).toStdString();
    }
}

TEST_F(RiskRows, WithoutImportTheImportedCellsStayEmptyAfterLaterQuotes)
{
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_RISK, {kCallKey});
    table->setItemText(0, 9, QStringLiteral("stale"));
    tick(kCall, 0.12, 0.1);
    for (int column : {3, 5, 7, 9, 10, 11}) {
        EXPECT_TRUE(text(column).isEmpty()) << "column " << column;
    }
    tick(kCall, 0.13, 0.1);
    for (int column : {3, 5, 7, 9, 10, 11}) {
        EXPECT_TRUE(text(column).isEmpty()) << "column " << column;
    }
    EXPECT_EQ(text(13), QStringLiteral("0.1300"));
}

TEST_F(RiskRows, GreeksStayWhenTheCalculatorHasNoAnswer)
{
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_RISK, {kCallKey});
    tick(kCall, 0.12, 0.1);
    const QString delta = text(8);
    const QString vega = text(2);
    ASSERT_FALSE(delta.isEmpty());
    // The underlying loses its price: no Greeks, the old ones stay.
    publish(quote("510050", utils::kAbsentDouble, utils::kAbsentDouble));
    nqservice::CGreeksValue value;
    ASSERT_FALSE(calc()->calcGreeks(kCallKey.toStdString(), value, false, true));
    tick(kCall, 0.13, 0.1);
    EXPECT_EQ(text(8), delta);
    EXPECT_EQ(text(2), vega);
    EXPECT_EQ(text(13), QStringLiteral("0.1300"));
}

TEST_F(RiskRows, RiskWithoutCalculatorWritesTheRestButNoGreeks)
{
    nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_RISK, {kCallKey});
    tick(kCall, 0.12, 0.1);
    for (int column : {1, 2, 4, 6, 8}) {
        EXPECT_TRUE(text(column).isEmpty()) << "column " << column;
    }
    EXPECT_EQ(text(13), QStringLiteral("0.1200"));
    EXPECT_EQ(text(14), kCallKey);
    EXPECT_EQ(buttonId(15), 0);
}

TEST_F(RiskRows, UnknownInstrumentWritesNothing)
{
    TC::TPriceTCellWrites writes;
    writes.append(TC::CPriceTCellWrite());
    EXPECT_FALSE(TC::CPriceTRowBuilder::buildRisk(0, quote("19999999", 0.1, 0.1), 0, writes));
    EXPECT_TRUE(writes.isEmpty());
    EXPECT_FALSE(TC::CPriceTRowBuilder::buildTarget(0, quote("19999999", 0.1, 0.1), 0, writes));
    EXPECT_TRUE(writes.isEmpty());
    EXPECT_FALSE(TC::CPriceTRowBuilder::buildTarget(0, boost::shared_ptr<TC::CPriceData>(), 0, writes));
}

// ---- the target set ----

TEST_F(RiskRows, TargetRowMatchesTheCalculator)
{
    const double S = 3.05;
    const double K = 3.0;
    const double P = 0.1234;
    const double rate = 0.02;
    const double hv = 0.2;
    publish(quote("510050", S, 3.0));
    show(TC::PTT_TARGET, {kCallKey, kPutKey});
    tick(kCall, P, 0.1);

    const int days = exchange->getRemainDays(QStringLiteral("20261223"));
    ASSERT_EQ(days, 33);
    const double leverage = calc()->calcLeverageRatio(P, S, 1.0);
    std::map<std::string, double> greeks;
    calc()->calcCallGreeks(greeks, S, K, days, 0, rate, hv, nqservice::OGB_UNIT, "", false, false);
    const double iv = calc()->calcCallImpliedVolatility(S, K, days, 0, rate, P, 1.5);
    const double premium = calc()->calcCallPremiumRate(K, P, 10000, S);
    const double intrinsic = calc()->calcCallIntrinsicValue(S, K);
    const double real = calc()->calcRealLeverageRatio(greeks["C_Delta"], leverage);
    const double timeValue = calc()->calcTimeValue(P, intrinsic);
    ASSERT_TRUE(utils::isUsable(iv));
    ASSERT_GT(real, 0.0);

    EXPECT_EQ(text(15), QStringLiteral("3.0000"));
    EXPECT_EQ(text(0), TC::CPriceTRowBuilder::statusText(nqservice::SOS_NORMAL, "SH", kCall));
    EXPECT_EQ(text(1), fixed(real, 4));
    EXPECT_EQ(text(2), fixed(leverage, 4));
    EXPECT_EQ(text(3), fixed(premium * 100.0, 2) + QStringLiteral("%"));
    EXPECT_EQ(text(4), fixed(iv, 4));
    EXPECT_EQ(text(5), QStringLiteral("0.2000"));
    EXPECT_EQ(text(6), fixed(timeValue, 4));
    EXPECT_EQ(text(7), QStringLiteral("0.0500"));
    EXPECT_EQ(text(8), QStringLiteral("23.40%"));
    EXPECT_EQ(table->model()->cellTextColorKey(0, 8), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(text(9), QStringLiteral("0.1234"));
    EXPECT_EQ(text(10), kCallKey);
    EXPECT_EQ(buttonId(11), 0);
    EXPECT_EQ(buttonId(12), 2);
    EXPECT_EQ(buttonId(13), 4);
    EXPECT_EQ(text(14), QStringLiteral("0"));
}

TEST_F(RiskRows, TargetWritesInTheirOrder)
{
    publish(quote("510050", 3.05, 3.0));
    const auto data = quote(kPut, 0.05, 0.06);
    TC::TPriceTCellWrites writes;
    ASSERT_TRUE(TC::CPriceTRowBuilder::buildTarget(2, data, nqservice::VQ_TRADER_TYPE_STOCK_OPTION, writes));
    QVector<int> columns;
    for (const TC::CPriceTCellWrite& write : writes) {
        if (write.kind != TC::CPriceTCellWrite::CW_TEXT_COLOR) {
            columns << write.column;
        }
    }
    const QVector<int> expected = {15, 29, 21, 28, 27, 26, 25, 24, 23, 22, 20, 19, 18, 17, 16};
    EXPECT_EQ(columns, expected);
    const TC::CPriceTCellWrite* buy = writeTo(writes, 17, TC::CPriceTCellWrite::CW_BUTTONS);
    ASSERT_NE(buy, nullptr);
    EXPECT_EQ(buy->buttonId, 206);
    EXPECT_EQ(buy->buttonColor, static_cast<int>(TC::BC_BUY));
}

TEST_F(RiskRows, UserVolatilityOfTheExpiryDrivesTheGreeks)
{
    const double S = 3.05;
    const double P = 0.1234;
    publish(quote("510050", S, 3.0));
    store->setHistoryRate(QStringLiteral("20261223"), QStringLiteral("510050.SH"), 0.35);
    show(TC::PTT_TARGET, {kCallKey});
    tick(kCall, P, 0.1);
    std::map<std::string, double> own;
    std::map<std::string, double> historical;
    calc()->calcCallGreeks(own, S, 3.0, 33, 0, 0.02, 0.35, nqservice::OGB_UNIT, "", false, false);
    calc()->calcCallGreeks(historical, S, 3.0, 33, 0, 0.02, 0.2, nqservice::OGB_UNIT, "", false, false);
    const double leverage = calc()->calcLeverageRatio(P, S, 1.0);
    const double real = calc()->calcRealLeverageRatio(own["C_Delta"], leverage);
    ASSERT_NE(fixed(real, 4), fixed(calc()->calcRealLeverageRatio(historical["C_Delta"], leverage), 4));
    EXPECT_EQ(text(1), fixed(real, 4));
    // The cell of the historical volatility keeps the contract's own figure.
    EXPECT_EQ(text(5), QStringLiteral("0.2000"));
}

TEST_F(RiskRows, PercentBenchmarkScalesTheDeltaOfTheRealLeverage)
{
    const double S = 3.05;
    const double P = 0.1234;
    publish(quote("510050", S, 3.0));
    store->setUserDataInt(TC::UM_GREEK_BENCHMARK, nqservice::OGB_PERCENT);
    show(TC::PTT_TARGET, {kCallKey});
    tick(kCall, P, 0.1);
    std::map<std::string, double> greeks;
    calc()->calcCallGreeks(greeks, S, 3.0, 33, 0, 0.02, 0.2, nqservice::OGB_PERCENT, "", false, false);
    EXPECT_EQ(text(1), fixed(calc()->calcRealLeverageRatio(greeks["C_Delta"], calc()->calcLeverageRatio(P, S, 1.0)), 4));
}

TEST_F(RiskRows, OutOfTheMoneyPutShowsDashForIntrinsicAndItsPriceAsTimeValue)
{
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_TARGET, {kCallKey, kPutKey});
    tick(kPut, 0.0567, 0.06);
    EXPECT_EQ(text(22), QStringLiteral("-"));
    EXPECT_EQ(text(23), QStringLiteral("0.0567"));
    EXPECT_NE(text(27), QStringLiteral("0.0000"));
    EXPECT_EQ(text(24), QStringLiteral("0.2000"));
}

TEST_F(RiskRows, OutOfTheMoneyCallShowsDashForIntrinsic)
{
    publish(quote("510050", 2.95, 3.0));
    show(TC::PTT_TARGET, {kCallKey});
    tick(kCall, 0.04, 0.05);
    EXPECT_EQ(text(7), QStringLiteral("-"));
    EXPECT_EQ(text(6), QStringLiteral("0.0400"));
}

TEST_F(RiskRows, PriceBelowIntrinsicShowsNegativeTimeValueOnlyOnTheCallSide)
{
    // Strike 2.9 call and 3.2 put of the November expiry.
    publish(quote("510050", 3.2, 3.0));
    show(TC::PTT_TARGET, {QStringLiteral("10000010.SH")});
    tick("10000010", 0.25, 0.2);
    EXPECT_EQ(text(7), QStringLiteral("0.3000"));
    EXPECT_EQ(text(6), QStringLiteral("-0.0500"));

    publish(quote("510050", 2.9, 3.0));
    table->doClear();
    show(TC::PTT_TARGET, {QStringLiteral("10000023.SH")});
    tick("10000023", 0.25, 0.2);
    EXPECT_EQ(text(22), QStringLiteral("0.3000"));
    EXPECT_EQ(text(23), QStringLiteral("-"));
}

TEST_F(RiskRows, ExpiredContractShowsStatusPriceCodeButtonsAndZeros)
{
    OptionSpec expired;
    expired.code = "10000073";
    expired.expire = 20261119;
    addOption(boardtest::option(expired));
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_TARGET, {QStringLiteral("10000073.SH")});
    tick("10000073", 0.12, 0.1);
    EXPECT_FALSE(text(0).isEmpty());
    for (int column : {1, 2, 4, 6}) {
        EXPECT_EQ(text(column), QStringLiteral("0.0000")) << "column " << column;
    }
    EXPECT_EQ(text(3), QStringLiteral("0.00%"));
    EXPECT_EQ(text(7), QStringLiteral("-"));
    EXPECT_EQ(text(9), QStringLiteral("0.1200"));
    EXPECT_EQ(text(10), QStringLiteral("10000073.SH"));
    EXPECT_EQ(buttonId(11), 0);
    EXPECT_EQ(buttonId(12), 2);
    EXPECT_EQ(buttonId(13), 4);
}

TEST_F(RiskRows, TargetWithoutUnderlyingPriceShowsZeros)
{
    show(TC::PTT_TARGET, {kCallKey, kPutKey});
    tick(kPut, 0.05, 0.06);
    for (int column : {28, 27, 25}) {
        EXPECT_EQ(text(column), QStringLiteral("0.0000")) << "column " << column;
    }
    EXPECT_EQ(text(26), QStringLiteral("0.00%"));
    EXPECT_EQ(text(23), QStringLiteral("-"));
    EXPECT_EQ(text(22), QStringLiteral("-"));
    EXPECT_EQ(text(20), QStringLiteral("0.0500"));
    EXPECT_EQ(buttonId(17), 6);
    EXPECT_EQ(buttonId(18), 8);
}

TEST_F(RiskRows, TargetWithoutCalculatorShowsZeros)
{
    nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_TARGET, {kCallKey});
    tick(kCall, 0.12, 0.1);
    for (int column : {1, 2, 4, 6}) {
        EXPECT_EQ(text(column), QStringLiteral("0.0000")) << "column " << column;
    }
    EXPECT_EQ(text(3), QStringLiteral("0.00%"));
    EXPECT_EQ(text(7), QStringLiteral("-"));
}

TEST_F(RiskRows, TargetWithoutOptionPriceShowsZeros)
{
    publish(quote("510050", 3.05, 3.0));
    show(TC::PTT_TARGET, {kCallKey});
    tick(kCall, utils::kAbsentDouble, 0.1);
    for (int column : {1, 2, 4, 6}) {
        EXPECT_EQ(text(column), QStringLiteral("0.0000")) << "column " << column;
    }
}

TEST_F(RiskRows, NoHistoricalVolatilityLeavesZerosUnlessInClientMode)
{
    OptionSpec def;
    def.code = "10000075";
    def.expire = 20261223;
    auto detail = boardtest::option(def);
    detail->historyVolatility = utils::kAbsentDouble;
    addOption(detail);
    publish(quote("510050", 3.05, 3.0));
    auto data = quote("10000075", 0.12, 0.1);
    publish(data);

    TC::TPriceTCellWrites writes;
    ASSERT_TRUE(TC::CPriceTRowBuilder::buildTarget(0, data, 0, writes));
    for (int column : {1, 2, 4, 5, 6}) {
        const TC::CPriceTCellWrite* write = writeTo(writes, column, TC::CPriceTCellWrite::CW_DOUBLE);
        ASSERT_NE(write, nullptr) << column;
        if (column == 5) {
            EXPECT_EQ(write->value, utils::kAbsentDouble);  // the sentinel as it is
        } else {
            EXPECT_EQ(write->value, 0.0) << column;
        }
    }
    const TC::CPriceTCellWrite* premium = writeTo(writes, 3, TC::CPriceTCellWrite::CW_TEXT);
    ASSERT_NE(premium, nullptr);
    EXPECT_EQ(premium->text, QStringLiteral("0.00%"));
    const TC::CPriceTCellWrite* intrinsic = writeTo(writes, 7, TC::CPriceTCellWrite::CW_TEXT);
    ASSERT_NE(intrinsic, nullptr);
    EXPECT_EQ(intrinsic->text, QStringLiteral("-"));

    // In client mode the implied volatility stands in for it.
    store->setUserDataInt(TC::UM_KELVAN_CLIENT_MODE, 1);
    ASSERT_TRUE(TC::CPriceTRowBuilder::buildTarget(0, data, 0, writes));
    const double iv = calc()->calcCallImpliedVolatility(3.05, 3.0, 33, 0, 0.02, 0.12, 1.5);
    ASSERT_TRUE(utils::isUsable(iv));
    std::map<std::string, double> greeks;
    calc()->calcCallGreeks(greeks, 3.05, 3.0, 33, 0, 0.02, iv, nqservice::OGB_UNIT, "", false, false);
    const double leverage = calc()->calcLeverageRatio(0.12, 3.05, 1.0);
    const TC::CPriceTCellWrite* real = writeTo(writes, 1, TC::CPriceTCellWrite::CW_DOUBLE);
    ASSERT_NE(real, nullptr);
    EXPECT_NEAR(real->value, calc()->calcRealLeverageRatio(greeks["C_Delta"], leverage), 1e-12);
    const TC::CPriceTCellWrite* lev = writeTo(writes, 2, TC::CPriceTCellWrite::CW_DOUBLE);
    ASSERT_NE(lev, nullptr);
    EXPECT_NEAR(lev->value, leverage, 1e-12);
    const TC::CPriceTCellWrite* vol = writeTo(writes, 4, TC::CPriceTCellWrite::CW_DOUBLE);
    ASSERT_NE(vol, nullptr);
    EXPECT_NEAR(vol->value, iv, 1e-12);
}

TEST_F(RiskRows, SwitchingSetsRedrawsFromTheQuoteClient)
{
    publish(quote("510050", 3.05, 3.0));
    publish(quote(kCall, 0.12, 0.1));
    table->setInstrument({kCallKey});
    table->setTableType(TC::PTT_TARGET);
    EXPECT_EQ(text(9), QStringLiteral("0.1200"));
    EXPECT_NE(text(2), QStringLiteral("0.0000"));
    table->setTableType(TC::PTT_RISK);
    EXPECT_EQ(text(13), QStringLiteral("0.1200"));
    EXPECT_FALSE(text(8).isEmpty());
}

}  // namespace
