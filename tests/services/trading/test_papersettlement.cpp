// The close of the day and expiry driven by a test clock: settlement prices,
// margin, the combinations the exchange releases, exercise, assignment and lapse,
// cash and ETF delivered on the right days, a close missed while away.
#include "services/trading/paperfixture.h"

#include "seam/tradingrecords.h"
#include "services/trading/cexchangerules.h"
#include "services/trading/cpaperbrokercore.h"
#include "services/trading/cpapersettlementrecord.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace paperfixture;
using trading::CPaperBrokerCore;
using trading::CPaperSettlementRecord;
using trading::PaperResult;
using trading::PaperSettlement;

namespace {

constexpr int kLong = '0';
constexpr int kShort = '1';

// Monday 23 to Friday 27 November 2026: the options of the 3.0 and 3.1 strikes expire on Wednesday.
const QDate kMonday(2026, 11, 23);
constexpr int kExpiry = 20261125;

class PaperSettlementTest : public ::testing::Test {
protected:
    PaperSettlementTest() : core(prepared())
    {
        PaperResult opening;
        core.openAccount(so, opening);
        core.openAccount(fo, opening);
        core.setLoggedIn(so.info->getKey(), true);
        core.setLoggedIn(fo.info->getKey(), true);
        morning(kMonday);
    }
    CPaperBrokerCore::InstrumentLookup prepared()
    {
        for (const std::string& key : {kCall, kPut, kCall31, kPut31}) {
            market.find(key)->expireDate = kExpiry;
        }
        market.find(kMealCall)->expireDate = kExpiry;
        return market.lookup();
    }
    void morning(const QDate& day)
    {
        core.onClock(at(10, 0, 0, day));
        for (const std::string& key : {kCall, kPut, kCall31, kPut31}) {
            core.onQuote(quote(key, 0.0500, 0.0502, 100));
        }
        core.onQuote(quote(kMealCall, 100.0, 101.0, 10, 0.5, 300.0, 0.5));
    }
    void hold(const std::string& key, int direction, long long volume)
    {
        const bool buy = direction == kLong;
        const PaperResult result = core.submit(command({order(so, key, buy ? nqservice::OT_BUY_OPEN : nqservice::OT_SELL_OPEN,
                                                              nqservice::PT_FIX, buy ? 0.0502 : 0.0500, volume)}));
        ASSERT_TRUE(result.accepted()) << result.refusal;
    }
    boost::shared_ptr<nqservice::CPositionStatics> positionOf(const std::string& key, int direction,
                                                              const trading::PaperAccountTerms* terms = nullptr)
    {
        for (const auto& record : core.table((terms ? *terms : so).info->getKey(), nqservice::VQ_DATA_TYPE_POSITION_STATICS)) {
            auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(record);
            if (utils::vqStockKey(pos->market, pos->code) == key && pos->direction == direction) {
                return pos;
            }
        }
        return nullptr;
    }
    std::vector<boost::shared_ptr<CPaperSettlementRecord>> records(const std::string& kind,
                                                                  const trading::PaperAccountTerms* terms = nullptr)
    {
        std::vector<boost::shared_ptr<CPaperSettlementRecord>> out;
        for (const auto& record : core.table((terms ? *terms : so).info->getKey(), trading::kPaperSettlementDataType)) {
            auto rec = boost::dynamic_pointer_cast<CPaperSettlementRecord>(record);
            if (rec->kind == kind) {
                out.push_back(rec);
            }
        }
        return out;
    }
    boost::shared_ptr<nqservice::CAccountDetail> funds(const trading::PaperAccountTerms& terms)
    {
        return core.funds(terms.info->getKey());
    }
    PaperResult close(int day, std::map<std::string, double> prices)
    {
        core.onClock(at(15, 1, 0, QDate(day / 10000, day / 100 % 100, day % 100)));
        PaperSettlement settlement;
        settlement.tradingDay = day;
        settlement.prices = std::move(prices);
        return core.settle(settlement);
    }

    Market market;
    trading::PaperAccountTerms so = stockAccount();
    trading::PaperAccountTerms fo = futureAccount();
    CPaperBrokerCore core;
};

TEST_F(PaperSettlementTest, TheCloseMarksAtSettlementRecomputesMarginAndExpiresWorkingOrders)
{
    hold(kCall31, kShort, 2);
    hold(kPut, kLong, 3);
    ASSERT_TRUE(core.submit(command({order(so, kPut, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0400, 1)})).accepted());
    EXPECT_EQ(core.workingOrderCount(), 1);

    const PaperResult result = close(20261123, {{kCall31, 0.0700}, {kPut, 0.0450}, {kEtf, 3.05}});
    ASSERT_TRUE(result.accepted()) << result.refusal;
    EXPECT_EQ(core.workingOrderCount(), 0);
    for (const auto& record : core.table(so.info->getKey(), nqservice::VQ_DATA_TYPE_ORDER)) {
        const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(record);
        if (order->price == 0.0400) {
            EXPECT_EQ(order->status, nqservice::OS_CANCELLED);
            EXPECT_EQ(order->message, "收盘未成交, 已撤单");
        }
    }
    const auto shortCall = positionOf(kCall31, kShort);
    ASSERT_TRUE(shortCall);
    EXPECT_DOUBLE_EQ(shortCall->lastPrice, 0.0700);
    EXPECT_DOUBLE_EQ(shortCall->avgPrice, 0.0700);
    EXPECT_DOUBLE_EQ(shortCall->floatProfit, 0.0);
    const double per = trading::CExchangeRules::shortOptionMargin(*market.find(kCall31), 0.0700, 3.05);
    const double margin = std::round(per * 1.1 * 100.0) / 100.0 * 2;
    EXPECT_NEAR(shortCall->margin, margin, 0.01);
    EXPECT_NEAR(funds(so)->margin, margin, 0.01);
    // The day's result: short 2 sold at 0.05 now 0.07, long 3 bought at 0.0502 now 0.045.
    const auto settled = records("结算");
    ASSERT_EQ(settled.size(), 1u);
    const double expected = (0.0500 - 0.0700) * 2 * 10000 + (0.0450 - 0.0502) * 3 * 10000 + 0.0;
    // The ETF holding is marked too, from its opening price 3.0.
    EXPECT_NEAR(settled.front()->amount, expected + (3.05 - 3.0) * 100000, 0.01);
    EXPECT_EQ(settled.front()->tradingDay, 20261123);
    EXPECT_EQ(core.settledDay(), 20261123);
    EXPECT_EQ(close(20261123, {}).refusal, "该交易日已结算");
}

TEST_F(PaperSettlementTest, SpreadsAreReleasedAtTheEndOfEMinusTwoAndStraddlesAtTheEndOfE)
{
    hold(kCall, kLong, 2);
    hold(kCall31, kShort, 3);
    hold(kPut31, kShort, 1);
    ASSERT_TRUE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 2)}))
                    .accepted());
    ASSERT_TRUE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "KS", kCall31, kPut31, 1)}))
                    .accepted());
    EXPECT_EQ(core.table(so.info->getKey(), nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION).size(), 2u);

    ASSERT_TRUE(close(20261123, {}).accepted());  // E-2
    auto left = core.table(so.info->getKey(), nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(left.front())->strategyCode, "KS");
    ASSERT_EQ(records("组合自动解除").size(), 1u);
    EXPECT_EQ(positionOf(kCall, kLong)->available, 2);

    // After E-2 no spread of these is formed again.
    morning(kMonday.addDays(1));
    EXPECT_NE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 1)}))
                  .refusal.find("合约临近到期"),
              std::string::npos);
    ASSERT_TRUE(close(20261124, {}).accepted());
    EXPECT_EQ(core.table(so.info->getKey(), nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION).size(), 1u);
    morning(kMonday.addDays(2));
    ASSERT_TRUE(close(kExpiry, {{kEtf, 3.0}}).accepted());
    EXPECT_TRUE(core.table(so.info->getKey(), nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION).empty());
    EXPECT_EQ(records("组合自动解除").size(), 2u);
}

TEST_F(PaperSettlementTest, ExpiryExercisesAssignsAndLapsesAndDeliversOnTheRightDays)
{
    hold(kCall, kLong, 2);    // 3.0 call: in the money at 3.2, exercised
    hold(kCall31, kShort, 3); // 3.1 call: in the money, assigned
    hold(kPut31, kShort, 1);  // 3.1 put: out of the money, lapses
    hold(kPut, kLong, 1);     // 3.0 put: out of the money, lapses
    morning(kMonday.addDays(2));
    // What is free now, and the margin the shorts hold: it comes free when they expire.
    const double cashBefore = funds(so)->availableFunds + funds(so)->margin;
    EXPECT_GT(funds(so)->margin, 0.0);
    ASSERT_TRUE(close(kExpiry, {{kEtf, 3.2}, {kCall, 0.2}, {kCall31, 0.1}, {kPut, 0.0001}, {kPut31, 0.0001}}).accepted());

    for (const std::string& key : {kCall, kCall31, kPut31, kPut}) {
        EXPECT_FALSE(positionOf(key, kLong)) << key;
        EXPECT_FALSE(positionOf(key, kShort)) << key;
    }
    EXPECT_NEAR(funds(so)->margin, 0.0, 0.01);
    const auto exercised = records("行权");
    ASSERT_EQ(exercised.size(), 1u);
    EXPECT_EQ(exercised.front()->code, "10000001");
    EXPECT_EQ(exercised.front()->volume, 2);
    EXPECT_NEAR(exercised.front()->amount, -(3.0 * 10000 * 2 + 0.6 * 2), 0.01);
    EXPECT_EQ(exercised.front()->valueDay, 20261126);
    const auto assigned = records("被指派");
    ASSERT_EQ(assigned.size(), 1u);
    EXPECT_EQ(assigned.front()->code, "10000003");
    EXPECT_NEAR(assigned.front()->amount, 3.1 * 10000 * 3, 0.01);
    EXPECT_EQ(records("到期作废").size(), 2u);
    // The assigned calls took their shares at once; nothing else moves before E+1.
    EXPECT_EQ(positionOf(kEtf, kLong)->position, 100000 - 30000);
    EXPECT_NEAR(funds(so)->availableFunds, cashBefore, 0.01);

    // E+1: the cash of both, and the exerciser's shares, not yet sellable.
    morning(kMonday.addDays(3));
    EXPECT_NEAR(funds(so)->availableFunds, cashBefore - 60001.2 + 93000.0, 0.01);
    EXPECT_EQ(positionOf(kEtf, kLong)->position, 90000);
    EXPECT_EQ(positionOf(kEtf, kLong)->available, 70000);
    // E+2: sellable.
    morning(kMonday.addDays(4));
    EXPECT_EQ(positionOf(kEtf, kLong)->available, 90000);
}

TEST_F(PaperSettlementTest, WithoutAutomaticExerciseALongInTheMoneyLapses)
{
    core.setAutoExercise(false);
    hold(kCall, kLong, 1);
    morning(kMonday.addDays(2));
    ASSERT_TRUE(close(kExpiry, {{kEtf, 3.5}}).accepted());
    EXPECT_TRUE(records("行权").empty());
    const auto lapsed = records("到期作废");
    ASSERT_EQ(lapsed.size(), 1u);
    EXPECT_EQ(lapsed.front()->note, "未申报行权, 到期作废");
}

TEST_F(PaperSettlementTest, CommodityOptionsInTheMoneyAreSettledInCash)
{
    ASSERT_TRUE(core.submit(command({order(fo, kMealCall, nqservice::OT_OPEN_LONG, nqservice::PT_FIX, 101.0, 2)}))
                    .accepted());
    morning(kMonday.addDays(2));
    const double before = funds(fo)->availableFunds;
    ASSERT_TRUE(close(kExpiry, {{kFuture, 3300.0}, {kMealCall, 100.0}}).accepted());
    const auto cash = records("现金结算", &fo);
    ASSERT_EQ(cash.size(), 1u);
    EXPECT_NEAR(cash.front()->amount, (3300.0 - 3200.0) * 10 * 2, 0.01);
    EXPECT_NEAR(funds(fo)->availableFunds, before + 2000.0, 0.01);
    EXPECT_FALSE(positionOf(kMealCall, kLong, &fo));
}

TEST_F(PaperSettlementTest, ACloseMissedWhileAwayIsSettledWhenTheNextDayStarts)
{
    hold(kCall31, kShort, 1);
    morning(kMonday.addDays(1));  // no settle of Monday was given
    EXPECT_EQ(core.settledDay(), 20261123);
    ASSERT_EQ(records("结算").size(), 1u);
    EXPECT_EQ(records("结算").front()->tradingDay, 20261123);
}

// Away from Monday's session until Thursday, over Wednesday's expiry: each day
// the desk missed settles at its own prices, and the expiry falls on its day
// at the underlying's settlement of that day.
TEST_F(PaperSettlementTest, ClosesMissedOverSeveralDaysSettleEachDayAtItsOwnPrices)
{
    std::vector<int> asked;
    core.setSettlementSource([&asked](int day) {
        asked.push_back(day);
        // The underlying ends Wednesday at 3.2: the 3.0 call is in the money at its expiry.
        const double etf = day == kExpiry ? 3.2 : 3.05;
        const double call = day == 20261123 ? 0.0710 : (day == 20261124 ? 0.0820 : 0.2);
        return std::map<std::string, double>{{kEtf, etf}, {kCall, call}, {kCall31, 0.0300}};
    });
    hold(kCall, kLong, 2);
    morning(kMonday.addDays(3));  // Thursday
    EXPECT_EQ(asked, (std::vector<int>{20261123, 20261124, 20261125}));
    EXPECT_EQ(core.settledDay(), kExpiry);
    const auto marks = records("结算");
    ASSERT_EQ(marks.size(), 3u);
    EXPECT_EQ(marks.at(0)->tradingDay, 20261123);
    EXPECT_EQ(marks.at(1)->tradingDay, 20261124);
    EXPECT_EQ(marks.at(2)->tradingDay, kExpiry);
    // Tuesday's mark runs from Monday's settlement to Tuesday's (the ETF holdings
    // settle at 3.05 both days and add nothing).
    EXPECT_NEAR(marks.at(1)->amount, (0.0820 - 0.0710) * 10000 * 2, 0.01);
    const auto exercised = records("行权");
    ASSERT_EQ(exercised.size(), 1u);
    EXPECT_EQ(exercised.front()->tradingDay, kExpiry);
    EXPECT_EQ(exercised.front()->volume, 2);
    EXPECT_FALSE(positionOf(kCall, kLong));
}

}  // namespace
