// The paper broker's books fed input by input: validation, matching, funds,
// positions, auctions, cancels, splitting and restoring.
#include "services/trading/paperfixture.h"

#include "seam/tradinghelpers.h"
#include "seam/tradingrecords.h"
#include "services/trading/cexchangerules.h"
#include "services/trading/cpaperbrokercore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace paperfixture;
using trading::CPaperBrokerCore;
using trading::PaperResult;

namespace {

class PaperCore : public ::testing::Test {
protected:
    PaperCore() : core(market.lookup())
    {
        PaperResult opening;
        core.openAccount(so, opening);
        core.openAccount(fo, opening);
        core.setLoggedIn(so.info->getKey(), true);
        core.setLoggedIn(fo.info->getKey(), true);
        core.onClock(at(10, 0));
        core.onQuote(quote(kCall, 0.1000, 0.1002));
        core.onQuote(quote(kPut, 0.0800, 0.0802));
        core.onQuote(quote(kMealCall, 100.0, 101.0, 10, 0.5, 300.0, 0.5));
        core.onQuote(quote(kEtf, 3.000, 3.001, 10000, 0.001, 3.3, 2.7));
    }

    PaperResult send(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params)
    {
        return core.submit(command(std::move(params)));
    }
    boost::shared_ptr<nqservice::CAccountDetail> funds(const trading::PaperAccountTerms& terms = {})
    {
        return core.funds(terms.info ? terms.info->getKey() : so.info->getKey());
    }
    template <typename T>
    std::vector<boost::shared_ptr<T>> rows(int type, const trading::PaperAccountTerms* terms = nullptr)
    {
        std::vector<boost::shared_ptr<T>> out;
        for (const auto& record : core.table((terms ? *terms : so).info->getKey(), type)) {
            out.push_back(boost::dynamic_pointer_cast<T>(record));
        }
        return out;
    }
    boost::shared_ptr<nqservice::CPositionStatics> positionOf(const std::string& key, int direction,
                                                              const trading::PaperAccountTerms* terms = nullptr)
    {
        for (const auto& pos : rows<nqservice::CPositionStatics>(nqservice::VQ_DATA_TYPE_POSITION_STATICS, terms)) {
            if (utils::vqStockKey(pos->market, pos->code) == key && pos->direction == direction) {
                return pos;
            }
        }
        return nullptr;
    }
    std::vector<boost::shared_ptr<nqservice::COrderDetail>> orders(const trading::PaperAccountTerms* terms = nullptr)
    {
        return rows<nqservice::COrderDetail>(nqservice::VQ_DATA_TYPE_ORDER, terms);
    }
    std::vector<boost::shared_ptr<nqservice::CDealDetail>> deals(const trading::PaperAccountTerms* terms = nullptr)
    {
        return rows<nqservice::CDealDetail>(nqservice::VQ_DATA_TYPE_QUICK_ORDER, terms);
    }

    Market market;
    trading::PaperAccountTerms so = stockAccount();
    trading::PaperAccountTerms fo = futureAccount();
    CPaperBrokerCore core;
};

TEST_F(PaperCore, OpeningFundsAndHoldings)
{
    EXPECT_DOUBLE_EQ(funds()->availableFunds, 1000000.0);
    const auto etf = positionOf(kEtf, '0');
    ASSERT_TRUE(etf);
    EXPECT_EQ(etf->position, 100000);
    EXPECT_EQ(etf->available, 100000);
    EXPECT_DOUBLE_EQ(funds(fo)->availableFunds, 500000.0);
}

TEST_F(PaperCore, MarketableBuyFillsAcrossLevelsAtTheirPrices)
{
    // Asks: 10 @ 0.1002, 20 @ 0.1003, 30 @ 0.1004; a buy of 25 at 0.1003 takes the first two levels.
    const PaperResult result = send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1003, 25)});
    ASSERT_TRUE(result.accepted()) << result.refusal;
    const auto fills = deals();
    ASSERT_EQ(fills.size(), 2u);
    EXPECT_DOUBLE_EQ(fills[0]->price, 0.1002);
    EXPECT_EQ(fills[0]->volume, 10);
    EXPECT_DOUBLE_EQ(fills[1]->price, 0.1003);
    EXPECT_EQ(fills[1]->volume, 15);
    const auto order = orders().front();
    EXPECT_EQ(order->status, nqservice::OS_FILLED);
    EXPECT_EQ(order->tradedVolume, 25);
    EXPECT_EQ(order->remaining, 0);
    const auto pos = positionOf(kCall, '0');
    ASSERT_TRUE(pos);
    EXPECT_EQ(pos->position, 25);
    EXPECT_EQ(pos->todayPosition, 25);
    EXPECT_NEAR(pos->avgPrice, (0.1002 * 10 + 0.1003 * 15) / 25.0, 1e-9);
    // Premium 1002 x 10 + 1003 x 15 = 25065 元, fees 3.6 元 a contract.
    EXPECT_NEAR(funds()->availableFunds, 1000000.0 - 25065.0 - 25 * 3.6, 1e-6);
    EXPECT_NEAR(funds()->frozenFunds, 0.0, 1e-9);
}

TEST_F(PaperCore, WhatAFillTookStaysTakenUntilTheNextQuote)
{
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 8)}).accepted());
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 8)}).accepted());
    // Only 10 were shown at 0.1002: the second order gets 2 and rests with 6.
    auto list = orders();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0]->tradedVolume, 8);
    EXPECT_EQ(list[1]->tradedVolume, 2);
    EXPECT_EQ(list[1]->status, nqservice::OS_PARTIAL);
    EXPECT_EQ(list[1]->remaining, 6);
    // A new snapshot shows the level again: the rest fills.
    core.onQuote(quote(kCall, 0.1000, 0.1002));
    list = orders();
    EXPECT_EQ(list[1]->status, nqservice::OS_FILLED);
    EXPECT_EQ(positionOf(kCall, '0')->position, 16);
}

TEST_F(PaperCore, RestingOrderFillsWhenALaterQuoteCrossesIt)
{
    const double before = funds()->availableFunds;
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0990, 5)}).accepted());
    EXPECT_EQ(orders().front()->status, nqservice::OS_WORKING);
    EXPECT_NEAR(funds()->frozenFunds, 5 * (0.0990 * 10000 + 3.6), 1e-6);
    EXPECT_EQ(core.workingOrderCount(), 1);
    core.onQuote(quote(kCall, 0.0985, 0.0989));
    const auto fills = deals();
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_DOUBLE_EQ(fills[0]->price, 0.0989);  // the book's price, better than the limit
    EXPECT_EQ(core.workingOrderCount(), 0);
    EXPECT_NEAR(funds()->frozenFunds, 0.0, 1e-9);
    EXPECT_NEAR(funds()->availableFunds, before - 5 * (989.0 + 3.6), 1e-6);
}

TEST_F(PaperCore, CancelReturnsFrozenFundsInFull)
{
    const double before = funds()->availableFunds;
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0900, 7)}).accepted());
    EXPECT_LT(funds()->availableFunds, before);
    const auto order = orders().front();
    const PaperResult cancelled = core.cancel(so.info->getKey(), order->orderId);
    ASSERT_TRUE(cancelled.accepted()) << cancelled.refusal;
    EXPECT_DOUBLE_EQ(funds()->availableFunds, before);
    EXPECT_EQ(orders().front()->status, nqservice::OS_CANCELLED);
    EXPECT_EQ(orders().front()->message, "已撤单");
    EXPECT_EQ(core.cancel(so.info->getKey(), order->orderId).refusal, "委托已完成, 无法撤单");
    EXPECT_EQ(core.cancel(so.info->getKey(), "nope").refusal, "委托不存在");
}

struct Refusal {
    const char* name;
    std::function<void(CPaperBrokerCore&, const trading::PaperAccountTerms&)> setup;
    int operation;
    int priceType;
    double price;
    long long volume;
    const char* reason;
};

class PaperRefusal : public PaperCore, public ::testing::WithParamInterface<Refusal> {};

TEST_P(PaperRefusal, RefusesTheWholeCommandWithItsReason)
{
    const Refusal& refusal = GetParam();
    if (refusal.setup) {
        refusal.setup(core, so);
    }
    const auto ordersBefore = orders().size();
    const double availableBefore = funds()->availableFunds;
    // A good order first: one bad order refuses the command as a whole.
    const PaperResult result = send({order(so, kPut, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0790, 1),
                                     order(so, kCall, refusal.operation, refusal.priceType, refusal.price, refusal.volume)});
    EXPECT_FALSE(result.accepted());
    EXPECT_NE(result.refusal.find(refusal.reason), std::string::npos) << result.refusal;
    EXPECT_TRUE(result.changes.empty());
    EXPECT_EQ(orders().size(), ordersBefore);
    EXPECT_DOUBLE_EQ(funds()->availableFunds, availableBefore);
}

const Refusal kRefusals[] = {
    {"funds", nullptr, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 999, "可用资金不足"},
    {"closable", nullptr, nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.1000, 1, "可平仓数量不足"},
    {"buyCloseWithoutShort", nullptr, nqservice::OT_BUY_CLOSE, nqservice::PT_FIX, 0.1002, 1, "可平仓数量不足"},
    {"coveredCloseWithoutCovered", nullptr, nqservice::OT_COVERED_CLOSE, nqservice::PT_FIX, 0.1002, 1, "可平仓数量不足"},
    {"limitUp", nullptr, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.4001, 1, "委托价格超出涨跌停范围"},
    {"offTick", nullptr, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.10015, 1, "最小变动价位"},
    {"zeroVolume", nullptr, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 0, "委托数量"},
    {"coveredWithoutEtf", nullptr, nqservice::OT_COVERED_OPEN, nqservice::PT_FIX, 0.1000, 11, "标的证券可用数量不足"},
    {"positionLimit", nullptr, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0001, 5001, "超出持仓限额"},
    {"halted", [](CPaperBrokerCore& c, const trading::PaperAccountTerms&) { c.setHalted(true); }, nqservice::OT_BUY_OPEN,
     nqservice::PT_FIX, 0.1002, 1, "交易已暂停"},
    {"notLoggedIn",
     [](CPaperBrokerCore& c, const trading::PaperAccountTerms& s) { c.setLoggedIn(s.info->getKey(), false); },
     nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 1, "账户未登录"},
    {"lunch", [](CPaperBrokerCore& c, const trading::PaperAccountTerms&) { c.onClock(at(12, 0)); },
     nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 1, "非交易时段"},
    {"marketInAuction", [](CPaperBrokerCore& c, const trading::PaperAccountTerms&) { c.onClock(at(14, 58)); },
     nqservice::OT_BUY_OPEN, nqservice::PT_MARKET_FAK, 0.0, 1, "集合竞价阶段不接受市价委托"},
    {"futureOnStockAccount", nullptr, nqservice::OT_OPEN_LONG, nqservice::PT_FIX, 0.1002, 1, "不支持的委托操作"},
};

INSTANTIATE_TEST_SUITE_P(Reasons, PaperRefusal, ::testing::ValuesIn(kRefusals),
                         [](const ::testing::TestParamInfo<Refusal>& info) { return std::string(info.param.name); });

TEST_F(PaperCore, RefusesWhenTheMarginIsNotThere)
{
    const double margin = core.marginPerContract(*market.find(kCall));
    ASSERT_GT(margin, 3000.0);
    // Room for one contract's margin and commission, not for two.
    trading::PaperAccountTerms poor = stockAccount("SO009", margin + 1000.0);
    PaperResult opening;
    core.openAccount(poor, opening);
    core.setLoggedIn("SO009", true);
    EXPECT_TRUE(core.submit(command({order(poor, kCall, nqservice::OT_SELL_OPEN, nqservice::PT_FIX, 0.1000, 1)})).accepted());
    EXPECT_EQ(core.submit(command({order(poor, kCall, nqservice::OT_SELL_OPEN, nqservice::PT_FIX, 0.1000, 1)})).refusal,
              kCall.substr(0, kCall.find('.')) + " 可用资金不足");
}

TEST_F(PaperCore, SellToOpenHoldsMarginAndBuyToCloseReleasesIt)
{
    const double margin = core.marginPerContract(*market.find(kCall));
    // 50ETF call 3.0 at settlement 0.1 with S = 3.0: (0.1 + max(0.36 - 0, 0.21)) x 10000 = 4600, plus 10 %.
    EXPECT_NEAR(margin, 4600.0 * 1.1, 1e-6);
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_SELL_OPEN, nqservice::PT_FIX, 0.1000, 4)}).accepted());
    const auto pos = positionOf(kCall, '1');
    ASSERT_TRUE(pos);
    EXPECT_EQ(pos->position, 4);
    EXPECT_NEAR(pos->margin, 4 * margin, 1e-6);
    EXPECT_NEAR(funds()->margin, 4 * margin, 1e-6);
    // Premium 1000 a contract in, commission 2 元 a contract out.
    EXPECT_NEAR(funds()->availableFunds, 1000000.0 + 4 * (1000.0 - 2.0) - 4 * margin, 1e-6);
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_CLOSE, nqservice::PT_FIX, 0.1002, 3)}).accepted());
    EXPECT_EQ(positionOf(kCall, '1')->position, 1);
    EXPECT_NEAR(funds()->margin, margin, 1e-6);
    // A sell to close cannot touch a short position.
    EXPECT_FALSE(send({order(so, kCall, nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.1000, 1)}).accepted());
}

TEST_F(PaperCore, CoveredOpenLocksTheEtfAndCoveredCloseReleasesIt)
{
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_COVERED_OPEN, nqservice::PT_FIX, 0.1000, 3)}).accepted());
    EXPECT_EQ(positionOf(kCall, '2')->position, 3);
    EXPECT_EQ(positionOf(kEtf, '0')->available, 100000 - 30000);
    EXPECT_NEAR(funds()->margin, 0.0, 1e-9);
    // The covered short is not the ordinary short: 35 cannot close it.
    EXPECT_EQ(send({order(so, kCall, nqservice::OT_BUY_CLOSE, nqservice::PT_FIX, 0.1002, 1)}).refusal,
              "10000001 可平仓数量不足");
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_COVERED_CLOSE, nqservice::PT_FIX, 0.1002, 3)}).accepted());
    EXPECT_FALSE(positionOf(kCall, '2'));
    EXPECT_EQ(positionOf(kEtf, '0')->available, 100000);
}

TEST_F(PaperCore, OverTheLargestOrderGoesOutAsSlices)
{
    const PaperResult result = send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0900, 120)});
    ASSERT_TRUE(result.accepted());
    const auto list = orders();
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0]->volume, 50);
    EXPECT_EQ(list[1]->volume, 50);
    EXPECT_EQ(list[2]->volume, 20);
    for (const auto& o : list) {
        EXPECT_EQ(o->commandId, result.commandId);
    }
    // Market orders of stock options: 10 a slice.
    ASSERT_TRUE(send({order(so, kPut, nqservice::OT_BUY_OPEN, nqservice::PT_MARKET_FAK, 0.0, 25)}).accepted());
    EXPECT_EQ(orders().size(), 6u);
}

TEST_F(PaperCore, MarketOrdersTakeWhatTheLevelsGive)
{
    // FAK: the five ask levels hold 10+20+30+40+50 = 150; 200 fills 150, the rest is cancelled.
    // (Money is held at the limit-up of 150: 200 lots x 1,500 元 fit the account.)
    core.onQuote(quote(kMealCall, 100.0, 101.0, 10, 0.5, 150.0, 0.5));
    ASSERT_TRUE(send({order(fo, kMealCall, nqservice::OT_OPEN_LONG, nqservice::PT_MARKET_FAK, 0.0, 200)}).accepted());
    auto list = orders(&fo);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]->tradedVolume, 150);
    EXPECT_EQ(list[0]->status, nqservice::OS_CANCELLED);
    EXPECT_EQ(list[0]->message, "剩余部分已撤销");
    core.onQuote(quote(kMealCall, 100.0, 101.0, 10, 0.5, 150.0, 0.5));
    // FOK: all or nothing.
    ASSERT_TRUE(send({order(fo, kMealCall, nqservice::OT_OPEN_LONG, nqservice::PT_MARKET_FOK, 0.0, 151)}).accepted());
    list = orders(&fo);
    EXPECT_EQ(list[1]->tradedVolume, 0);
    EXPECT_EQ(list[1]->status, nqservice::OS_CANCELLED);
    // Rest to limit: the best level only, the rest a limit order at its price.
    ASSERT_TRUE(
        send({order(fo, kMealCall, nqservice::OT_OPEN_LONG, nqservice::PT_MARKET_TO_LIMIT, 0.0, 15)}).accepted());
    list = orders(&fo);
    EXPECT_EQ(list[2]->tradedVolume, 10);
    EXPECT_EQ(list[2]->status, nqservice::OS_PARTIAL);
    EXPECT_DOUBLE_EQ(list[2]->price, 101.0);
    // Limit FOK within its price: 10 reachable at 101.0, 30 asked.
    ASSERT_TRUE(send({order(fo, kMealCall, nqservice::OT_OPEN_LONG, nqservice::PT_FIX_FOK, 101.0, 30)}).accepted());
    EXPECT_EQ(orders(&fo)[3]->status, nqservice::OS_CANCELLED);
    EXPECT_EQ(orders(&fo)[3]->tradedVolume, 0);
}

TEST_F(PaperCore, PriceTypesResolveFromTheBook)
{
    // 14 the other side's best (ask for a buy), 13 the own side's best (bid for a buy), 12 the limit-up.
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_OPPONENT, 0.0, 1)}).accepted());
    EXPECT_DOUBLE_EQ(deals().back()->price, 0.1002);
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_QUEUE, 0.0, 1)}).accepted());
    EXPECT_DOUBLE_EQ(orders().back()->price, 0.1000);
    EXPECT_EQ(orders().back()->status, nqservice::OS_WORKING);
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_LIMIT_UP_DOWN, 0.0, 1)}).accepted());
    EXPECT_DOUBLE_EQ(orders().back()->price, 0.4);
    EXPECT_EQ(orders().back()->status, nqservice::OS_FILLED);
    // A level type carries the level's price in the order.
    ASSERT_TRUE(send({order(so, kPut, nqservice::OT_SELL_OPEN, nqservice::PT_BID2, 0.0799, 3)}).accepted());
    EXPECT_DOUBLE_EQ(deals().back()->price, 0.0800);
}

TEST_F(PaperCore, CommodityCloseTodayClosesOnlyTodaysLots)
{
    ASSERT_TRUE(send({order(fo, kMealCall, nqservice::OT_OPEN_LONG, nqservice::PT_FIX, 101.0, 5)}).accepted());
    EXPECT_EQ(positionOf(kMealCall, '0', &fo)->todayPosition, 5);
    // The next trading day: yesterday's lots are not today's.
    core.onClock(at(15, 30));
    core.onClock(at(10, 0, 0, QDate(2026, 11, 25)));
    core.onQuote(quote(kMealCall, 100.0, 101.0, 10, 0.5, 300.0, 0.5));
    EXPECT_EQ(positionOf(kMealCall, '0', &fo)->todayPosition, 0);
    EXPECT_EQ(send({order(fo, kMealCall, nqservice::OT_CLOSE_LONG_TODAY, nqservice::PT_FIX, 100.0, 1)}).refusal,
              "m2601-C-3200 可平仓数量不足");
    ASSERT_TRUE(send({order(fo, kMealCall, nqservice::OT_OPEN_LONG, nqservice::PT_FIX, 101.0, 2)}).accepted());
    ASSERT_TRUE(send({order(fo, kMealCall, nqservice::OT_CLOSE_LONG_TODAY, nqservice::PT_FIX, 100.0, 2)}).accepted());
    EXPECT_EQ(positionOf(kMealCall, '0', &fo)->position, 5);
    EXPECT_EQ(positionOf(kMealCall, '0', &fo)->todayPosition, 0);
    ASSERT_TRUE(send({order(fo, kMealCall, nqservice::OT_CLOSE_LONG, nqservice::PT_FIX, 100.0, 5)}).accepted());
    EXPECT_FALSE(positionOf(kMealCall, '0', &fo));
}

TEST_F(PaperCore, CallAuctionOrdersRestAndFillAtTheAuctionPrice)
{
    core.onClock(at(9, 16, 0, QDate(2026, 11, 25)));
    auto q = quote(kCall, 0.1000, 0.1002);
    q->quoteMarkB = 0.1001;
    core.onQuote(q);
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1010, 4)}).accepted());
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0990, 4)}).accepted());
    EXPECT_TRUE(deals().empty());  // nothing matches during the auction
    // Cancels are refused from 9:20.
    core.onClock(at(9, 21, 0, QDate(2026, 11, 25)));
    EXPECT_EQ(core.cancel(so.info->getKey(), orders()[1]->orderId).refusal, "集合竞价阶段不可撤单");
    core.onClock(at(9, 25, 0, QDate(2026, 11, 25)));
    ASSERT_EQ(deals().size(), 1u);
    EXPECT_DOUBLE_EQ(deals()[0]->price, 0.1001);
    EXPECT_EQ(deals()[0]->volume, 4);
    EXPECT_EQ(orders()[1]->status, nqservice::OS_WORKING);
}

TEST_F(PaperCore, TheCloseCancelsWhatStillWorks)
{
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0900, 2)}).accepted());
    const double frozen = funds()->frozenFunds;
    EXPECT_GT(frozen, 0.0);
    core.onClock(at(14, 57, 30));
    EXPECT_EQ(core.cancel(so.info->getKey(), orders()[0]->orderId).refusal, "集合竞价阶段不可撤单");
    core.onClock(at(15, 0, 1));
    EXPECT_EQ(orders()[0]->status, nqservice::OS_CANCELLED);
    EXPECT_EQ(orders()[0]->message, "收盘未成交, 已撤单");
    EXPECT_NEAR(funds()->frozenFunds, 0.0, 1e-9);
}

TEST_F(PaperCore, AvailableVolumeFollowsFundsPositionsAndCover)
{
    const long long buy = core.availableVolume(so.info->getKey(), "SH", "10000001", nqservice::OT_BUY_OPEN,
                                               nqservice::PT_FIX, 0.1002);
    EXPECT_EQ(buy, static_cast<long long>(std::floor(1000000.0 / (1002.0 + 3.6))));
    EXPECT_EQ(core.availableVolume(so.info->getKey(), "SH", "10000001", nqservice::OT_COVERED_OPEN, nqservice::PT_FIX,
                                   0.1000),
              10);
    EXPECT_EQ(core.availableVolume(so.info->getKey(), "SH", "10000001", nqservice::OT_SELL_CLOSE, nqservice::PT_FIX,
                                   0.1000),
              0);
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 6)}).accepted());
    EXPECT_EQ(core.availableVolume(so.info->getKey(), "SH", "10000001", nqservice::OT_SELL_CLOSE, nqservice::PT_FIX,
                                   0.1000),
              6);
    // A working close holds its contracts.
    ASSERT_TRUE(send({order(so, kCall, nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.1100, 4)}).accepted());
    EXPECT_EQ(core.availableVolume(so.info->getKey(), "SH", "10000001", nqservice::OT_SELL_CLOSE, nqservice::PT_FIX,
                                   0.1000),
              2);
}

TEST_F(PaperCore, RestoringTheChangesGivesTheSameBooks)
{
    // Every change an input produced, replayed into a fresh core, rebuilds the same tables.
    std::vector<trading::PaperChange> log;
    Market market2;
    CPaperBrokerCore first(market.lookup());
    auto keep = [&](const PaperResult& r) { log.insert(log.end(), r.changes.begin(), r.changes.end()); };
    PaperResult opening;
    first.openAccount(so, opening);
    keep(opening);
    first.setLoggedIn(so.info->getKey(), true);
    keep(first.onClock(at(10, 0)));
    keep(first.onQuote(quote(kCall, 0.1000, 0.1002)));
    keep(first.submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1003, 25)})));
    keep(first.submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0950, 3)})));
    keep(first.submit(command({order(so, kCall, nqservice::OT_SELL_OPEN, nqservice::PT_FIX, 0.1000, 2)})));

    CPaperBrokerCore second(market2.lookup());
    // As the ledger keeps them: the latest of each record, in the order of its last write.
    std::map<std::pair<int, std::string>, std::pair<std::size_t, trading::PaperChange>> latest;
    for (std::size_t i = 0; i < log.size(); ++i) {
        const auto key = std::make_pair(log[i].dataType, log[i].record->getKey());
        if (log[i].removed) {
            latest.erase(key);
        } else {
            latest[key] = {i, log[i]};
        }
    }
    std::vector<std::pair<std::size_t, trading::PaperChange>> rowsInOrder;
    for (const auto& entry : latest) {
        rowsInOrder.push_back(entry.second);
    }
    std::sort(rowsInOrder.begin(), rowsInOrder.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& row : rowsInOrder) {
        second.restore(row.second.dataType, row.second.accountKey, row.second.record->toBsonWithBson(),
                       row.second.extra);
    }
    second.setMeta(first.meta());
    second.finishRestore();
    for (int type : {nqservice::VQ_DATA_TYPE_ORDER, nqservice::VQ_DATA_TYPE_QUICK_ORDER,
                     nqservice::VQ_DATA_TYPE_POSITION_STATICS, nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL}) {
        const auto a = first.table(so.info->getKey(), type);
        const auto b = second.table(so.info->getKey(), type);
        ASSERT_EQ(a.size(), b.size()) << type;
        for (std::size_t i = 0; i < a.size(); ++i) {
            EXPECT_EQ(a[i]->toString(), b[i]->toString()) << type;
        }
    }
    EXPECT_EQ(second.workingOrderCount(), 1);
    // The restored working order still fills.
    second.setLoggedIn(so.info->getKey(), true);
    second.onClock(at(10, 1));
    second.onQuote(quote(kCall, 0.0940, 0.0950));
    EXPECT_EQ(second.workingOrderCount(), 0);
}

TEST_F(PaperCore, ACommandOverTwoAccountsRunsAsATaskWithEveryOrderOnTheBook)
{
    trading::PaperAccountTerms second = stockAccount("SO002");
    PaperResult opening;
    core.openAccount(second, opening);
    core.setLoggedIn("SO002", true);
    auto a = order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0950, 1);
    auto b = order(second, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0950, 2);
    a->userName = b->userName = "paper";
    const PaperResult result = core.submit(command({a, b}, nqservice::VQ_TRADER_TYPE_STOCK_OPTION));
    ASSERT_TRUE(result.accepted());
    const auto tasks = core.tasks();
    ASSERT_EQ(tasks.size(), 1u);
    const auto task = boost::dynamic_pointer_cast<nqservice::CTaskDetail>(tasks.front());
    EXPECT_EQ(task->status, nqservice::TS_RUNNING);
    EXPECT_TRUE(task->onServer);
    EXPECT_FALSE(task->serverTaskId.empty());
    ASSERT_TRUE(task->owner);
    EXPECT_EQ(task->owner->userName, "paper");
    EXPECT_EQ(task->owner->traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    ASSERT_EQ(task->accounts.size(), 2u);
    EXPECT_EQ(task->orderIds.size(), 2u);
    EXPECT_EQ(orders().front()->status, nqservice::OS_WORKING);
    EXPECT_EQ(orders(&second).front()->status, nqservice::OS_WORKING) << "both on the book at once";
    // Both fill: the task is finished.
    core.onQuote(quote(kCall, 0.0940, 0.0950));
    const auto done = boost::dynamic_pointer_cast<nqservice::CTaskDetail>(core.tasks().front());
    EXPECT_EQ(done->status, nqservice::TS_FINISHED);
    EXPECT_EQ(core.terminateTask(nqservice::CTaskHelper::genServerTaskKey(*done), "paper").refusal, "任务已结束");
}

TEST_F(PaperCore, TheSlicesOfAnOrderAboveTheLimitArePacedAndATerminationStopsThem)
{
    const double before = funds()->availableFunds;
    auto big = order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0900, 120);
    big->userName = "paper";
    ASSERT_TRUE(core.submit(command({big}, nqservice::VQ_TRADER_TYPE_STOCK_OPTION)).accepted());
    auto list = orders();
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0]->status, nqservice::OS_WORKING);
    EXPECT_EQ(list[1]->status, nqservice::OS_PENDING);
    EXPECT_EQ(list[2]->status, nqservice::OS_PENDING);
    const auto task = boost::dynamic_pointer_cast<nqservice::CTaskDetail>(core.tasks().front());
    EXPECT_FALSE(task->onServer) << "slices are paced by the local task";
    // A pending slice does not trade even when the market crosses it.
    core.onQuote(quote(kCall, 0.0890, 0.0895, 100));
    list = orders();
    EXPECT_EQ(list[0]->status, nqservice::OS_FILLED);
    EXPECT_EQ(list[1]->tradedVolume, 0);
    // The next step of the clock sends the next slice, which then fills.
    core.onClock(at(10, 0, 1));
    list = orders();
    EXPECT_NE(list[1]->status, nqservice::OS_PENDING);
    EXPECT_EQ(list[2]->status, nqservice::OS_PENDING);
    core.onQuote(quote(kCall, 0.1000, 0.1002));
    // Another user cannot stop it; its owner can, and what it has left is cancelled.
    EXPECT_EQ(core.terminateTask(task->accountId, task->taskId, "other").refusal, "不能终止其他用户的任务");
    EXPECT_EQ(core.terminateTask(task->accountId, 999, "paper").refusal, "任务不存在");
    const PaperResult stopped = core.terminateTask(task->accountId, task->taskId, "paper");
    ASSERT_TRUE(stopped.accepted()) << stopped.refusal;
    list = orders();
    EXPECT_EQ(list[2]->status, nqservice::OS_CANCELLED);
    EXPECT_EQ(list[2]->message, "任务已终止, 已撤单");
    const auto after = boost::dynamic_pointer_cast<nqservice::CTaskDetail>(core.tasks().front());
    EXPECT_EQ(after->status, nqservice::TS_STOPPED);
    EXPECT_EQ(core.workingOrderCount(), 0);
    EXPECT_NEAR(funds()->frozenFunds, 0.0, 1e-9);
    // What was filled was paid for, nothing more is held.
    const long long bought = positionOf(kCall, '0')->position;
    EXPECT_GE(bought, 50);
    EXPECT_LT(funds()->availableFunds, before);
}

TEST(ExchangeRules, ShortMarginFollowsTheExchangesFormulas)
{
    Market market;
    const auto call = market.find(kCall);
    const auto put = market.find(kPut);
    // Out of the money call, S = 2.8: 0.1 + max(0.336 - 0.2, 0.196) = 0.296 -> 2960 元.
    EXPECT_NEAR(trading::CExchangeRules::shortOptionMargin(*call, 0.1, 2.8), 2960.0, 1e-6);
    // Put, S = 3.2 (OTM 0.2): min(0.08 + max(0.384 - 0.2, 0.21), 3.0) = 0.29 -> 2900 元.
    EXPECT_NEAR(trading::CExchangeRules::shortOptionMargin(*put, 0.08, 3.2), 2900.0, 1e-6);
    // DCE call at F = 3200, K = 3200: premium 1000 + futures margin 2560 (8 %), no OTM.
    const auto meal = market.find(kMealCall);
    EXPECT_NEAR(trading::CExchangeRules::shortOptionMargin(*meal, 100.0, 3200.0), 1000.0 + 2560.0, 1e-6);
    // Far out of the money: premium + half the futures margin.
    EXPECT_NEAR(trading::CExchangeRules::shortOptionMargin(*meal, 1.0, 2000.0), 10.0 + 0.5 * 0.08 * 2000 * 10, 1e-6);
    EXPECT_FALSE(utils::isUsable(trading::CExchangeRules::shortOptionMargin(*call, utils::kAbsentDouble, 2.8)));
    EXPECT_EQ(trading::CExchangeRules::maxOrderVolume(*call, nqservice::PT_FIX), 50);
    EXPECT_EQ(trading::CExchangeRules::maxOrderVolume(*call, nqservice::PT_MARKET_FAK), 10);
}

}  // namespace
