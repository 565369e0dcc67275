// Combination positions of stock-option accounts: every strategy formed and
// released, the leg rules refused in Chinese, locked legs, the margin before and
// after, the records of table 1030, and their way through the ledger.
#include "services/trading/paperfixture.h"

#include "seam/tradinghelpers.h"
#include "seam/tradingrecords.h"
#include "seam/subrequest.h"
#include "services/trading/cdesktradeclient.h"
#include "services/trading/cexchangerules.h"
#include "services/trading/cpaperbroker.h"
#include "services/trading/cpaperbrokercore.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cmath>
#include <mutex>

using namespace paperfixture;
using trading::CPaperBrokerCore;
using trading::PaperResult;

namespace {

constexpr int kLong = '0';
constexpr int kShort = '1';

class PaperCombinations : public ::testing::Test {
protected:
    PaperCombinations() : core(market.lookup())
    {
        PaperResult opening;
        core.openAccount(so, opening);
        core.setLoggedIn(so.info->getKey(), true);
        core.onClock(at(10, 0));
        for (const std::string& key : {kCall, kPut, kCall31, kPut31, kCallLater, kCallAdjusted, kCall300}) {
            core.onQuote(quote(key, 0.0500, 0.0502, 100));
        }
    }

    // Holds a position by trading it: a buy to open takes the ask, a sell to open the bid.
    void hold(const std::string& key, int direction, long long volume)
    {
        const bool buy = direction == kLong;
        const PaperResult result = core.submit(command({order(so, key, buy ? nqservice::OT_BUY_OPEN : nqservice::OT_SELL_OPEN,
                                                              nqservice::PT_FIX, buy ? 0.0502 : 0.0500, volume)}));
        ASSERT_TRUE(result.accepted()) << result.refusal;
    }
    boost::shared_ptr<nqservice::CPositionStatics> positionOf(const std::string& key, int direction)
    {
        for (const auto& record : core.table(so.info->getKey(), nqservice::VQ_DATA_TYPE_POSITION_STATICS)) {
            auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(record);
            if (utils::vqStockKey(pos->market, pos->code) == key && pos->direction == direction) {
                return pos;
            }
        }
        return nullptr;
    }
    std::vector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> combinations()
    {
        std::vector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> out;
        for (const auto& record : core.table(so.info->getKey(), nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION)) {
            out.push_back(boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(record));
        }
        return out;
    }
    double margin() { return core.funds(so.info->getKey())->margin; }
    double legMargin(const std::string& key) { return core.marginPerContract(*market.find(key)); }
    // The exchange's margin of one short contract at its previous settlement, without the markup.
    double exchangeMargin(const std::string& key)
    {
        const auto detail = market.find(key);
        return trading::CExchangeRules::shortOptionMargin(*detail, detail->preSettlementPrice, 3.0);
    }
    // The release as the combination position panel builds it from a record.
    boost::shared_ptr<nqservice::CCodeOrderParam> releaseOf(const nqservice::CStkOptCombPositionDetail& detail,
                                                          long long volume)
    {
        auto param = boost::make_shared<nqservice::CCodeOrderParam>();
        param->operationType = nqservice::OT_COMB_STRATEGY_RELEASE;
        param->userName = "trader";
        param->hedgeFlag = nqservice::HF_SPECULATION;
        param->stockInfo.market = detail.market;
        param->stockInfo.code = detail.legOneCode + (detail.legTwoCode.empty() ? "" : "/" + detail.legTwoCode);
        param->stockInfo.name = detail.name;
        param->account = so.info;
        param->volume = volume;
        param->priceType = nqservice::DataHelper::getOptionCombStrategyPriceType(detail.strategyCode);
        param->price = 0.0;
        auto legs = boost::make_shared<nqservice::COptionCombStrategyParam>();
        legs->marketName = detail.market;
        legs->legOneCode = detail.legOneCode;
        legs->legOneType = detail.legOneType;
        legs->legOneExtra = detail.legOneExtra;
        legs->legTwoCode = detail.legTwoCode;
        legs->legTwoType = detail.legTwoType;
        legs->legTwoExtra = detail.legTwoExtra;
        param->extraFlags |= 64;
        EXPECT_TRUE(nqservice::DataHelper::fillExtraParam(param->extraParams,
                                                          nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY, legs));
        param->combPositionKey = detail.combId;
        return param;
    }

    Market market;
    trading::PaperAccountTerms so = stockAccount();
    CPaperBrokerCore core;
};

struct Case {
    const char* strategy;
    const char* name;
    std::string one;  // the legs as the strategy orders them
    int oneDirection;
    std::string two;
    int twoDirection;
};

TEST_F(PaperCombinations, EveryStrategyIsFormedAndReleasedWithItsMargin)
{
    const double unit = 10000.0;
    const double markup = 1.0 + trading::CExchangeRules::kBrokerMarginMarkup;
    const std::vector<Case> cases = {
        {"CNSJC", "认购牛市价差", kCall, kLong, kCall31, kShort},
        {"CXSJC", "认购熊市价差", kCall, kShort, kCall31, kLong},
        {"PNSJC", "认沽牛市价差", kPut, kLong, kPut31, kShort},
        {"PXSJC", "认沽熊市价差", kPut, kShort, kPut31, kLong},
        {"KS", "跨式空头", kCall, kShort, kPut, kShort},
        {"KKS", "宽跨式空头", kCall31, kShort, kPut, kShort},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.strategy);
        hold(c.one, c.oneDirection, 2);
        hold(c.two, c.twoDirection, 2);
        const double before = margin();
        double legs = 0.0;
        for (const auto& leg : {std::make_pair(c.one, c.oneDirection), std::make_pair(c.two, c.twoDirection)}) {
            if (leg.second == kShort) {
                legs += 2 * legMargin(leg.first);
            }
        }
        EXPECT_NEAR(before, legs, 0.02);

        // The legs may come in either order: the broker puts them in the strategy's.
        const PaperResult formed = core.submit(command(
            {combination(so, nqservice::OT_COMB_STRATEGY_BUILD, c.strategy, c.two, c.one, 2)},
            nqservice::VQ_TRADER_TYPE_STOCK_OPTION));
        ASSERT_TRUE(formed.accepted()) << formed.refusal;
        bool published = false;
        for (const auto& change : formed.changes) {
            published = published || change.dataType == nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION;
        }
        EXPECT_TRUE(published);
        auto list = combinations();
        ASSERT_EQ(list.size(), 1u);
        const auto record = list.front();
        EXPECT_EQ(record->strategyCode, c.strategy);
        EXPECT_EQ(record->name, c.name);
        EXPECT_EQ(record->market, "SH");
        EXPECT_FALSE(record->combId.empty());
        EXPECT_EQ(record->account->getKey(), so.info->getKey());
        EXPECT_EQ(record->volume, 2);
        EXPECT_EQ(record->releaseVolume, 2);
        EXPECT_EQ(utils::vqStockKey("SH", record->legOneCode), c.one);
        EXPECT_EQ(record->legOneType, c.oneDirection);
        EXPECT_EQ(utils::vqStockKey("SH", record->legTwoCode), c.two);
        EXPECT_EQ(record->legTwoType, c.twoDirection);
        EXPECT_EQ(record->legOneExtra, 2);
        EXPECT_EQ(record->legTwoExtra, 2);

        // The combination's margin instead of the legs'.
        double expected = 0.0;
        const std::string code = c.strategy;
        if (code == "CXSJC" || code == "PNSJC") {
            expected = (3.1 - 3.0) * unit;
        } else if (code == "KS" || code == "KKS") {
            const double a = exchangeMargin(c.one);
            const double b = exchangeMargin(c.two);
            const double settleOne = market.find(c.one)->preSettlementPrice;
            const double settleTwo = market.find(c.two)->preSettlementPrice;
            expected = a >= b ? a + settleTwo * unit : b + settleOne * unit;
        }
        EXPECT_NEAR(margin(), 2 * expected * markup, 0.05);
        EXPECT_NEAR(core.combinationMargin(c.strategy, *market.find(c.one), *market.find(c.two)),
                    expected * markup, 0.01);
        EXPECT_EQ(positionOf(c.one, c.oneDirection)->available, 0);
        EXPECT_EQ(positionOf(c.two, c.twoDirection)->available, 0);
        EXPECT_EQ(core.lockedVolume(so.info->getKey(), c.one, c.oneDirection), 2);

        // Released exactly as the combination position panel builds the command.
        nqservice::COrderComandParam release;
        release.traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
        release.params = {releaseOf(*record, 2)};
        release.orderFlag = 1;
        release.confirmFlag = 1;
        const PaperResult released = core.submit(release);
        ASSERT_TRUE(released.accepted()) << released.refusal;
        bool gone = false;
        for (const auto& change : released.changes) {
            if (change.dataType == nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION) {
                gone = change.removed && boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(
                                             change.record)->volume == 0;
            }
        }
        EXPECT_TRUE(gone);
        EXPECT_TRUE(combinations().empty());
        EXPECT_NEAR(margin(), legs, 0.02);
        EXPECT_EQ(positionOf(c.one, c.oneDirection)->available, 2);
        EXPECT_EQ(positionOf(c.two, c.twoDirection)->available, 2);

        // Flat again for the next strategy.
        for (const auto& leg : {std::make_pair(c.one, c.oneDirection), std::make_pair(c.two, c.twoDirection)}) {
            const bool longLeg = leg.second == kLong;
            const PaperResult closed = core.submit(command({order(
                so, leg.first, longLeg ? nqservice::OT_SELL_CLOSE : nqservice::OT_BUY_CLOSE, nqservice::PT_FIX,
                longLeg ? 0.0500 : 0.0502, 2)}));
            ASSERT_TRUE(closed.accepted()) << closed.refusal;
        }
        EXPECT_NEAR(margin(), 0.0, 0.02);
    }
}

TEST_F(PaperCombinations, TheLegRulesAreRefusedInChinese)
{
    hold(kCall, kLong, 3);
    hold(kCall31, kShort, 1);
    hold(kPut, kShort, 2);
    hold(kPut31, kShort, 2);
    struct Bad {
        std::string strategy;
        std::string one;
        std::string two;
        long long volume;
        std::string why;
    };
    const std::vector<Bad> bad = {
        {"CNSJC", kCall, kPut, 1, "认购牛市价差的两个合约须均为认购期权"},
        {"PXSJC", kCall, kCall31, 1, "认沽熊市价差的两个合约须均为认沽期权"},
        {"CNSJC", kCall, kCallLater, 1, "两个合约的到期日不同"},
        {"CNSJC", kCall, kCall300, 1, "两个合约的标的证券不同"},
        {"CNSJC", kCall, kCallAdjusted, 1, "两个合约的合约单位不同"},
        {"CNSJC", kCall, kCall, 1, "组合策略的两个合约不能相同"},
        {"KS", kCall, kCall31, 1, "跨式空头须由一个认购期权和一个认沽期权组成"},
        {"KS", kCall, kPut31, 1, "跨式空头的两个合约行权价须相同"},
        {"KKS", kCall, kPut31, 1, "宽跨式空头的认购期权行权价须高于认沽期权行权价"},
        {"CNSJC", kCall, kCall31, 2, "10000003 义务仓可组合数量不足"},
        {"CXSJC", kCall, kCall31, 1, "10000001 义务仓可组合数量不足"},
        {"PNSJC", kPut, kPut31, 1, "10000002 权利仓可组合数量不足"},
        {"XYZ", kCall, kCall31, 1, "不支持的组合策略"},
        {"CNSJC", kCall, kCall31, 0, "组合数量必须大于0"},
    };
    const double marginBefore = margin();
    for (const Bad& b : bad) {
        SCOPED_TRACE(b.why);
        const PaperResult result =
            core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, b.strategy, b.one, b.two, b.volume)}));
        EXPECT_NE(result.refusal.find(b.why), std::string::npos) << result.refusal;
        EXPECT_TRUE(result.changes.empty());
    }
    // Without the combination parameter, or with another price type.
    auto bare = combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 1);
    bare->extraFlags = 0;
    EXPECT_NE(core.submit(command({bare})).refusal.find("组合策略参数缺失"), std::string::npos);
    auto market = combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 1);
    market->priceType = nqservice::PT_OPPONENT;
    EXPECT_NE(core.submit(command({market})).refusal.find("组合策略委托的报价方式无效"), std::string::npos);
    // A release of a combination that is not there, and one of more than it holds.
    EXPECT_NE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_RELEASE, "CNSJC", kCall, kCall31, 1,
                                               "Z99999999")}))
                  .refusal.find("未找到对应的组合策略持仓！"),
              std::string::npos);
    ASSERT_TRUE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 1)}))
                    .accepted());
    const auto record = combinations().front();
    EXPECT_NE(core.submit(command({releaseOf(*record, 2)})).refusal.find("可解除数量不足"), std::string::npos);
    // A second order of one command counts what the first took: all or none.
    const PaperResult both = core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "KS", kCall, kPut, 0),
                                                  releaseOf(*record, 1)}));
    EXPECT_FALSE(both.accepted());
    EXPECT_EQ(combinations().size(), 1u);
    // An ordinary order does not ride along with a combination order.
    const PaperResult mixed = core.submit(command({releaseOf(*record, 1),
                                                   order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0502, 1)}));
    EXPECT_NE(mixed.refusal.find("组合策略指令中不能含有普通委托"), std::string::npos);
    EXPECT_LE(margin(), marginBefore);
}

TEST_F(PaperCombinations, AFutureAccountOrAClosedMarketFormsNothing)
{
    trading::PaperAccountTerms fo = futureAccount();
    PaperResult opening;
    core.openAccount(fo, opening);
    core.setLoggedIn(fo.info->getKey(), true);
    hold(kCall, kLong, 1);
    hold(kCall31, kShort, 1);
    auto param = combination(fo, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 1);
    EXPECT_NE(core.submit(command({param})).refusal.find("组合策略只适用于股票期权账户"), std::string::npos);
    core.onClock(at(16, 0));
    EXPECT_NE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 1)}))
                  .refusal.find("非交易时段"),
              std::string::npos);
}

TEST_F(PaperCombinations, LockedLegsAreNotClosable)
{
    hold(kCall, kLong, 3);
    hold(kCall31, kShort, 3);
    ASSERT_TRUE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 2)}))
                    .accepted());
    const std::string account = so.info->getKey();
    EXPECT_EQ(positionOf(kCall, kLong)->available, 1);
    EXPECT_EQ(positionOf(kCall31, kShort)->available, 1);
    EXPECT_EQ(core.availableVolume(account, "SH", "10000001", nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.05), 1);
    EXPECT_EQ(core.availableVolume(account, "SH", "10000003", nqservice::OT_BUY_CLOSE, nqservice::PT_FIX, 0.0502), 1);
    // One free contract of the short leg: its margin is what the leg keeps.
    EXPECT_NEAR(positionOf(kCall31, kShort)->margin, legMargin(kCall31), 0.02);

    const PaperResult refused =
        core.submit(command({order(so, kCall31, nqservice::OT_BUY_CLOSE, nqservice::PT_FIX, 0.0502, 2)}));
    EXPECT_NE(refused.refusal.find("持仓已被组合策略锁定, 请先解除组合"), std::string::npos) << refused.refusal;
    const PaperResult refusedLong =
        core.submit(command({order(so, kCall, nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.0500, 3)}));
    EXPECT_NE(refusedLong.refusal.find("持仓已被组合策略锁定"), std::string::npos) << refusedLong.refusal;
    // Beyond what is held at all, the ordinary reason.
    const PaperResult tooMany =
        core.submit(command({order(so, kCall, nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.0500, 4)}));
    EXPECT_NE(tooMany.refusal.find("可平仓数量不足"), std::string::npos) << tooMany.refusal;
    // The free contract closes, and takes its margin with it.
    ASSERT_TRUE(core.submit(command({order(so, kCall31, nqservice::OT_BUY_CLOSE, nqservice::PT_FIX, 0.0502, 1)}))
                    .accepted());
    EXPECT_EQ(positionOf(kCall31, kShort)->position, 2);
    EXPECT_NEAR(positionOf(kCall31, kShort)->margin, 0.0, 0.02);
    EXPECT_NEAR(margin(), 0.0, 0.02);  // a bull call spread takes none
    // Released, the legs close again.
    ASSERT_TRUE(core.submit(command({releaseOf(*combinations().front(), 2)})).accepted());
    EXPECT_EQ(positionOf(kCall31, kShort)->available, 2);
    EXPECT_TRUE(core.submit(command({order(so, kCall31, nqservice::OT_BUY_CLOSE, nqservice::PT_FIX, 0.0502, 2)}))
                    .accepted());
}

TEST_F(PaperCombinations, APartialReleaseKeepsTheRestLocked)
{
    hold(kCall, kShort, 4);
    hold(kPut, kShort, 4);
    ASSERT_TRUE(core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "KS", kCall, kPut, 4)}))
                    .accepted());
    const double together = margin();
    ASSERT_TRUE(core.submit(command({releaseOf(*combinations().front(), 1)})).accepted());
    const auto record = combinations().front();
    EXPECT_EQ(record->volume, 3);
    EXPECT_EQ(record->releaseVolume, 3);
    EXPECT_EQ(positionOf(kCall, kShort)->available, 1);
    EXPECT_NEAR(margin(), together * 3 / 4 + legMargin(kCall) + legMargin(kPut), 0.05);
}

// The exchange's KS margin of one combination of kCall31/kPut31 at the given
// settlements, with the broker's markup, worked out from the leg rule alone.
double straddleMargin(const Market& market, double settleCall, double settlePut, double underlying)
{
    const double unit = 10000.0;
    const double a = trading::CExchangeRules::shortOptionMargin(*market.find(kCall31), settleCall, underlying);
    const double b = trading::CExchangeRules::shortOptionMargin(*market.find(kPut31), settlePut, underlying);
    const double exchange = a >= b ? a + settlePut * unit : b + settleCall * unit;
    return std::round(exchange * (1.0 + trading::CExchangeRules::kBrokerMarginMarkup) * 100.0) / 100.0;
}

TEST_F(PaperCombinations, TheCloseRecomputesTheStraddleMarginAndLeavesSpreadsAlone)
{
    const std::string accountKey = so.info->getKey();
    const double markup = 1.0 + trading::CExchangeRules::kBrokerMarginMarkup;
    hold(kCall, kLong, 1);
    hold(kCall31, kShort, 3);
    hold(kPut, kLong, 1);
    hold(kPut31, kShort, 3);
    for (const Case& c :
         {Case{"KS", "", kCall31, kShort, kPut31, kShort}, Case{"CNSJC", "", kCall, kLong, kCall31, kShort},
          Case{"PNSJC", "", kPut, kLong, kPut31, kShort}}) {
        const PaperResult formed =
            core.submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, c.strategy, c.one, c.two,
                                             std::string(c.strategy) == "KS" ? 2 : 1)}));
        ASSERT_TRUE(formed.accepted()) << c.strategy << " " << formed.refusal;
    }
    std::map<std::string, std::string> ids;  // strategy -> combination number
    for (const auto& record : combinations()) {
        ids[record->strategyCode] = record->combId;
    }
    ASSERT_EQ(ids.size(), 3u);
    const double credit = std::round((3.1 - 3.0) * 10000.0 * markup * 100.0) / 100.0;
    // Formed at the previous settlement (0.06 and 0.12) and the ETF's previous close.
    const double straddleBefore = 2 * straddleMargin(market, 0.0600, 0.1200, 3.0);
    EXPECT_NEAR(core.heldCombinationMargin(accountKey, ids["KS"]), straddleBefore, 0.01);
    EXPECT_NEAR(core.heldCombinationMargin(accountKey, ids["CNSJC"]), 0.0, 1e-9);
    EXPECT_NEAR(core.heldCombinationMargin(accountKey, ids["PNSJC"]), credit, 0.01);
    const auto before = core.funds(accountKey);

    trading::PaperSettlement day;
    day.tradingDay = 20261124;
    day.prices = {{kCall31, 0.0800}, {kPut31, 0.1500}, {kEtf, 3.05}};
    core.onClock(at(15, 1));
    const PaperResult settled = core.settle(day);
    ASSERT_TRUE(settled.accepted()) << settled.refusal;

    const double straddleAfter = 2 * straddleMargin(market, 0.0800, 0.1500, 3.05);
    ASSERT_GT(std::fabs(straddleAfter - straddleBefore), 1.0);
    EXPECT_NEAR(core.heldCombinationMargin(accountKey, ids["KS"]), straddleAfter, 0.01);
    EXPECT_NEAR(core.heldCombinationMargin(accountKey, ids["CNSJC"]), 0.0, 1e-9);
    EXPECT_NEAR(core.heldCombinationMargin(accountKey, ids["PNSJC"]), credit, 0.01);
    // Every short contract is in a combination, so the account moves by the straddle's difference only.
    const auto after = core.funds(accountKey);
    EXPECT_NEAR(after->margin - before->margin, straddleAfter - straddleBefore, 0.02);
    EXPECT_NEAR(after->margin, straddleAfter + credit, 0.02);
    EXPECT_NEAR(after->availableFunds + after->frozenFunds + after->margin,
                before->availableFunds + before->frozenFunds + before->margin, 0.02);
    // Only the straddle's record is published again, with its new margin for the ledger.
    std::vector<std::string> republished;
    for (const auto& change : settled.changes) {
        if (change.dataType == nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION) {
            const auto record = boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(change.record);
            republished.push_back(record->combId);
            EXPECT_FALSE(change.removed);
            EXPECT_EQ(record->volume, 2);
            EXPECT_NEAR(change.extra.getField("margin").numberDouble(), straddleAfter, 0.01);
        }
    }
    EXPECT_EQ(republished, std::vector<std::string>{ids["KS"]});

    // Releasing the straddle the next morning takes off the new margin, not the one it was formed with.
    core.onClock(at(10, 0, 0, QDate(2026, 11, 25)));
    for (const auto& record : combinations()) {
        if (record->combId == ids["KS"]) {
            ASSERT_TRUE(core.submit(command({releaseOf(*record, 2)})).accepted());
        }
    }
    EXPECT_TRUE(utils::isAbsent(core.heldCombinationMargin(accountKey, ids["KS"])));
    EXPECT_NEAR(core.funds(accountKey)->margin, credit + 2 * legMargin(kCall31) + 2 * legMargin(kPut31), 0.05);
}

// --- through the broker: publication, ledger, restart, refresh ------------------

class PaperCombinationBroker : public ::testing::Test {
protected:
    std::unique_ptr<trading::CPaperBroker> makeBroker()
    {
        trading::PaperBrokerConfig config;
        config.ledgerPath = dir.filePath(QStringLiteral("paper.sqlite"));
        config.instruments = market.lookup();
        config.accounts = {so};
        auto broker = std::make_unique<trading::CPaperBroker>(config);
        QString report;
        EXPECT_TRUE(broker->start(&report));
        broker->setLoggedIn(so.info->getKey(), true);
        broker->step(at(10, 0));
        for (const std::string& key : {kCall, kCall31}) {
            broker->feedQuote(quote(key, 0.0500, 0.0502, 100));
        }
        broker->flush();
        return broker;
    }
    std::vector<boost::shared_ptr<nqservice::IData>> table(trading::CPaperBroker& broker, int type)
    {
        std::vector<boost::shared_ptr<nqservice::IData>> out;
        broker.getVector(so.info->getKey(), type, out);
        return out;
    }

    QTemporaryDir dir;
    Market market;
    trading::PaperAccountTerms so = stockAccount();
};

TEST_F(PaperCombinationBroker, RecordsArePublishedKeptAndReloaded)
{
    std::string combination1030;
    double marginBefore = 0.0;
    {
        auto broker = makeBroker();
        std::mutex mutex;
        std::vector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> seen;
        auto handle = broker->subscribe(so.info->getKey(), nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION, "",
                                        [&](const boost::shared_ptr<nqservice::IData>& data) {
                                            std::lock_guard<std::mutex> lock(mutex);
                                            seen.push_back(
                                                boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(data));
                                        });
        broker->submit(command({order(so, kCall31, nqservice::OT_SELL_OPEN, nqservice::PT_FIX, 0.0500, 3)}));
        broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0502, 3)}));
        std::string refusal = "not answered";
        broker->submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall31, kCall, 3)}),
                       [&](const std::string&, const std::string& why) { refusal = why; });
        broker->flush();
        EXPECT_EQ(refusal, "");
        {
            std::lock_guard<std::mutex> lock(mutex);
            ASSERT_EQ(seen.size(), 1u);
            EXPECT_EQ(seen.front()->volume, 3);
        }
        const auto rows = table(*broker, nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION);
        ASSERT_EQ(rows.size(), 1u);
        combination1030 = rows.front()->toString();
        marginBefore = broker->accountDetail(so.info->getKey())->margin;
        // A refresh sends the same records again.
        trading::CDeskTradeClient client;
        client.setBroker(broker.get());
        client.checkStkOptCombPosition_async(so.info);
        broker->flush();
        std::lock_guard<std::mutex> lock(mutex);
        ASSERT_EQ(seen.size(), 2u);
        EXPECT_EQ(seen.back()->toString(), combination1030);
    }
    auto broker = makeBroker();
    const auto rows = table(*broker, nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows.front()->toString(), combination1030);
    EXPECT_DOUBLE_EQ(broker->accountDetail(so.info->getKey())->margin, marginBefore);
    // The legs stay locked after the restart.
    EXPECT_EQ(broker->availableVolume(so.info->getKey(), "SH", "10000001", nqservice::OT_SELL_CLOSE,
                                      nqservice::PT_FIX, 0.05),
              0);
    std::string refusal;
    broker->submit(command({order(so, kCall, nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.0500, 1)}),
                   [&](const std::string&, const std::string& why) { refusal = why; });
    broker->flush();
    EXPECT_NE(refusal.find("持仓已被组合策略锁定"), std::string::npos) << refusal;
    // The next combination gets a new number; the release empties the table.
    const auto record = boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(rows.front());
    auto release = combination(so, nqservice::OT_COMB_STRATEGY_RELEASE, "CNSJC", kCall, kCall31, 3, record->combId);
    broker->submit(command({release}), [&](const std::string&, const std::string& why) { refusal = why; });
    broker->flush();
    EXPECT_EQ(refusal, "");
    EXPECT_TRUE(table(*broker, nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION).empty());
    broker->submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "CNSJC", kCall, kCall31, 1)}));
    broker->flush();
    const auto again = table(*broker, nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION);
    ASSERT_EQ(again.size(), 1u);
    EXPECT_NE(boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(again.front())->combId, record->combId);
}

TEST_F(PaperCombinationBroker, TheStraddleMarginOfTheCloseIsKeptThroughARestart)
{
    double marginSettled = 0.0;
    std::string combId;
    {
        auto broker = makeBroker();
        broker->feedQuote(quote(kPut31, 0.0500, 0.0502, 100));
        broker->flush();
        for (const std::string& leg : {kCall31, kPut31}) {
            broker->submit(command({order(so, leg, nqservice::OT_SELL_OPEN, nqservice::PT_FIX, 0.0500, 2)}));
        }
        std::string refusal = "not answered";
        auto answer = [&](const std::string&, const std::string& why) { refusal = why; };
        broker->submit(command({combination(so, nqservice::OT_COMB_STRATEGY_BUILD, "KS", kCall31, kPut31, 2)}), answer);
        broker->flush();
        ASSERT_EQ(refusal, "");
        const double formed = broker->accountDetail(so.info->getKey())->margin;
        const auto rows = table(*broker, nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION);
        ASSERT_EQ(rows.size(), 1u);
        combId = boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(rows.front())->combId;

        broker->step(at(15, 1));
        trading::PaperSettlement day;
        day.tradingDay = 20261124;
        day.prices = {{kCall31, 0.0800}, {kPut31, 0.1500}, {kEtf, 3.05}};
        refusal = "not answered";
        broker->settle(day, answer);
        broker->flush();
        ASSERT_EQ(refusal, "");
        marginSettled = broker->accountDetail(so.info->getKey())->margin;
        // All four shorts are in the straddle: the account's margin is the straddle's at the new prices.
        EXPECT_NEAR(marginSettled, 2 * straddleMargin(market, 0.0800, 0.1500, 3.05), 0.02);
        EXPECT_GT(marginSettled - formed, 1.0);
    }
    auto broker = makeBroker();
    EXPECT_DOUBLE_EQ(broker->accountDetail(so.info->getKey())->margin, marginSettled);
    broker->step(at(10, 0, 0, QDate(2026, 11, 25)));
    // The reopened ledger holds the straddle at its new margin: releasing it takes that off exactly,
    // and the legs take theirs back.
    std::string refusal = "not answered";
    broker->submit(command({combination(so, nqservice::OT_COMB_STRATEGY_RELEASE, "KS", kCall31, kPut31, 2, combId)}),
                   [&](const std::string&, const std::string& why) { refusal = why; });
    broker->flush();
    ASSERT_EQ(refusal, "");
    EXPECT_TRUE(table(*broker, nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION).empty());
    trading::CPaperBrokerCore core(market.lookup());
    const double legs =
        2 * core.marginPerContract(*market.find(kCall31)) + 2 * core.marginPerContract(*market.find(kPut31));
    EXPECT_NEAR(broker->accountDetail(so.info->getKey())->margin, legs, 0.05);
}

}  // namespace
