// Generated commands, cancels, quotes and clock steps against the paper
// broker's books, checking what must hold after every input.
#include "services/trading/paperfixture.h"

#include "seam/tradinghelpers.h"
#include "services/trading/cpaperbrokercore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <set>

using namespace paperfixture;

namespace {

struct Instrument {
    std::string key;
    double mid;
    double tick;
    double up;
    double down;
    bool stock;
};

TEST(PaperProperty, HundredThousandCommandsKeepTheBooksTrue)
{
    Market market;
    trading::CPaperBrokerCore core(market.lookup());
    // One account with room, one that runs short of money, one for commodity options.
    const std::vector<trading::PaperAccountTerms> accounts = {stockAccount("SO001", 20000000.0),
                                                             stockAccount("SO002", 150000.0),
                                                             futureAccount("FO001", 5000000.0)};
    std::map<std::string, double> cash;
    trading::PaperResult opening;
    for (const auto& terms : accounts) {
        core.openAccount(terms, opening);
        core.setLoggedIn(terms.info->getKey(), true);
        cash[terms.info->getKey()] = terms.cash;
    }
    // Positions as the deals add them up: account|key|direction -> volume.
    std::map<std::string, long long> fromDeals;
    for (const auto& terms : accounts) {
        for (const auto& holding : terms.holdings) {
            fromDeals[terms.info->getKey() + "|" + holding.first + "|48"] = holding.second;
        }
    }
    std::vector<Instrument> instruments = {{kCall, 0.1000, 0.0001, 0.4, 0.0001, true},
                                           {kPut, 0.0800, 0.0001, 0.4, 0.0001, true},
                                           {kMealCall, 100.0, 0.5, 300.0, 0.5, false}};
    std::mt19937 random(20261124U);
    auto uniform = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(random); };
    long long now = at(9, 31);
    core.onClock(now);
    for (auto& instrument : instruments) {
        core.onQuote(quote(instrument.key, instrument.mid, instrument.mid + instrument.tick, 10, instrument.tick,
                           instrument.up, instrument.down));
    }
    const int stockOps[] = {nqservice::OT_BUY_OPEN, nqservice::OT_SELL_CLOSE, nqservice::OT_SELL_OPEN,
                            nqservice::OT_BUY_CLOSE, nqservice::OT_COVERED_OPEN, nqservice::OT_COVERED_CLOSE};
    const int futureOps[] = {nqservice::OT_OPEN_LONG, nqservice::OT_CLOSE_LONG, nqservice::OT_CLOSE_LONG_TODAY,
                             nqservice::OT_OPEN_SHORT, nqservice::OT_CLOSE_SHORT, nqservice::OT_CLOSE_SHORT_TODAY};
    const int priceTypes[] = {nqservice::PT_FIX, nqservice::PT_FIX, nqservice::PT_FIX, nqservice::PT_OPPONENT,
                              nqservice::PT_QUEUE, nqservice::PT_LIMIT_UP_DOWN, nqservice::PT_FIX_FOK,
                              nqservice::PT_MARKET_FAK, nqservice::PT_MARKET_FOK, nqservice::PT_MARKET_TO_LIMIT,
                              nqservice::PT_ASK1, nqservice::PT_BID3};

    std::map<std::string, int> reasons;
    long long accepted = 0;
    long long refused = 0;
    long long fills = 0;
    auto absorb = [&](const trading::PaperResult& result) {
        for (const auto& change : result.changes) {
            if (change.dataType != nqservice::VQ_DATA_TYPE_QUICK_ORDER || change.removed) {
                continue;
            }
            const auto deal = boost::dynamic_pointer_cast<nqservice::CDealDetail>(change.record);
            ASSERT_TRUE(deal);
            ++fills;
            const auto detail = market.find(utils::vqStockKey(deal->market, deal->code));
            const double unit = detail->contractUnit;
            const double premium = std::round(deal->price * unit * deal->volume * 100.0) / 100.0;
            const bool buy = deal->side == nqservice::EBS_BUY;
            cash[change.accountKey] += buy ? -(premium + deal->fee) : premium - deal->fee;
            const int op = deal->operationType;
            int direction = '0';
            int sign = 1;
            switch (op) {
            case nqservice::OT_BUY_OPEN: case nqservice::OT_OPEN_LONG: break;
            case nqservice::OT_SELL_CLOSE: case nqservice::OT_CLOSE_LONG: case nqservice::OT_CLOSE_LONG_TODAY: sign = -1; break;
            case nqservice::OT_SELL_OPEN: case nqservice::OT_OPEN_SHORT: direction = '1'; break;
            case nqservice::OT_BUY_CLOSE: case nqservice::OT_CLOSE_SHORT: case nqservice::OT_CLOSE_SHORT_TODAY: direction = '1'; sign = -1; break;
            case nqservice::OT_COVERED_OPEN: direction = '2'; break;
            case nqservice::OT_COVERED_CLOSE: direction = '2'; sign = -1; break;
            default: FAIL() << "unexpected operation " << op;
            }
            fromDeals[change.accountKey + "|" + utils::vqStockKey(deal->market, deal->code) + "|" +
                      std::to_string(direction)] += sign * deal->volume;
        }
    };
    auto checkFunds = [&](int step) {
        for (const auto& terms : accounts) {
            const auto funds = core.funds(terms.info->getKey());
            ASSERT_GE(funds->availableFunds, -1e-6) << "step " << step << " " << terms.info->getKey();
            ASSERT_GE(funds->frozenFunds, -1e-6) << "step " << step;
        }
    };
    auto checkPositions = [&](int step) {
        std::map<std::string, long long> held;
        for (const auto& terms : accounts) {
            for (const auto& record : core.table(terms.info->getKey(), nqservice::VQ_DATA_TYPE_POSITION_STATICS)) {
                const auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(record);
                ASSERT_GE(pos->position, 0);
                ASSERT_GE(pos->available, 0) << "step " << step;
                ASSERT_LE(pos->todayPosition, pos->position);
                held[terms.info->getKey() + "|" + utils::vqStockKey(pos->market, pos->code) + "|" +
                     std::to_string(pos->direction)] = pos->position;
            }
        }
        for (const auto& entry : fromDeals) {
            auto it = held.find(entry.first);
            ASSERT_EQ(it == held.end() ? 0 : it->second, entry.second) << "step " << step << " " << entry.first;
        }
        for (const auto& entry : held) {
            ASSERT_TRUE(fromDeals.count(entry.first)) << entry.first;
        }
        for (const auto& terms : accounts) {
            const auto funds = core.funds(terms.info->getKey());
            ASSERT_NEAR(funds->availableFunds + funds->frozenFunds + funds->margin, cash[terms.info->getKey()], 0.05)
                << "step " << step << " " << terms.info->getKey();
        }
    };

    constexpr int kCommands = 100000;
    for (int step = 0; step < kCommands; ++step) {
        // A move of the book now and then.
        if (uniform(0, 2) == 0) {
            Instrument& instrument = instruments[static_cast<std::size_t>(uniform(0, 2))];
            instrument.mid = std::max(instrument.tick * 5,
                                      instrument.mid + instrument.tick * uniform(-3, 3));
            absorb(core.onQuote(quote(instrument.key, instrument.mid, instrument.mid + instrument.tick * uniform(1, 3),
                                      uniform(1, 20), instrument.tick, instrument.up, instrument.down)));
        }
        if (uniform(0, 9) == 0) {
            // Cancel something (working or not, of any account).
            const auto& terms = accounts[static_cast<std::size_t>(uniform(0, 2))];
            const auto list = core.table(terms.info->getKey(), nqservice::VQ_DATA_TYPE_ORDER);
            if (!list.empty()) {
                const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(
                    list[static_cast<std::size_t>(uniform(0, static_cast<int>(list.size()) - 1))]);
                const trading::PaperResult result = core.cancel(terms.info->getKey(), order->orderId);
                if (!result.accepted()) {
                    ASSERT_TRUE(result.changes.empty());
                }
                absorb(result);
            }
        }
        if (uniform(0, 499) == 0) {
            // A step of the clock, now and then into a closing auction or a new day.
            now += 1000LL * uniform(1, 600);
            const QDateTime local = QDateTime::fromMSecsSinceEpoch(now, Qt::OffsetFromUTC, 8 * 3600);
            if (local.time() > QTime(15, 5)) {
                now = at(9, 31, 0, local.date().addDays(local.date().dayOfWeek() >= 5 ? 8 - local.date().dayOfWeek() : 1));
            }
            absorb(core.onClock(now));
        }
        std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
        const int legs = uniform(0, 9) == 0 ? 2 : 1;
        for (int leg = 0; leg < legs; ++leg) {
            const Instrument& instrument = instruments[static_cast<std::size_t>(uniform(0, 2))];
            const auto& terms = accounts[instrument.stock ? static_cast<std::size_t>(uniform(0, 1)) : 2];
            const int op = instrument.stock ? stockOps[uniform(0, 5)] : futureOps[uniform(0, 5)];
            const int type = priceTypes[uniform(0, 11)];
            double price = instrument.mid + instrument.tick * uniform(-4, 6);
            if (uniform(0, 99) == 0) {
                price += instrument.tick / 3.0;  // off the tick
            }
            auto param = order(terms, instrument.key, op, type, price, uniform(0, 99) == 0 ? 0 : uniform(1, 60));
            if (uniform(0, 199) == 0) {
                param->account = account("GHOST", nqservice::VQ_BROKER_TYPE_STOCK_OPTION);
            }
            params.push_back(param);
        }
        const trading::PaperResult result = core.submit(command(params));
        if (result.accepted()) {
            ++accepted;
        } else {
            ++refused;
            const auto space = result.refusal.rfind(' ');
            ++reasons[space == std::string::npos ? result.refusal : result.refusal.substr(space + 1)];
            ASSERT_TRUE(result.changes.empty()) << "a refused command left a trace at step " << step;
        }
        absorb(result);
        checkFunds(step);
        if (step % 1000 == 0) {
            checkPositions(step);
        }
    }
    checkPositions(kCommands);
    // Cancelling everything that works returns every frozen yuan and contract.
    for (const auto& terms : accounts) {
        for (const auto& record : core.table(terms.info->getKey(), nqservice::VQ_DATA_TYPE_ORDER)) {
            const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(record);
            if (!nqservice::COrderDetailHelper::completed(*order)) {
                absorb(core.cancel(terms.info->getKey(), order->orderId));
            }
        }
    }
    EXPECT_EQ(core.workingOrderCount(), 0);
    for (const auto& terms : accounts) {
        const auto funds = core.funds(terms.info->getKey());
        EXPECT_NEAR(funds->frozenFunds, 0.0, 1e-6);
        for (const auto& record : core.table(terms.info->getKey(), nqservice::VQ_DATA_TYPE_POSITION_STATICS)) {
            const auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(record);
            if (utils::vqStockKey(pos->market, pos->code) != kEtf) {
                EXPECT_EQ(pos->frozen, 0) << pos->code;
            }
        }
    }
    checkPositions(kCommands + 1);
    // The run exercised both outcomes and real matching.
    for (const auto& reason : reasons) {
        std::printf("refused %6d  %s\n", reason.second, reason.first.c_str());
    }
    std::printf("accepted %lld, refused %lld, fills %lld\n", accepted, refused, fills);
    EXPECT_GT(accepted, kCommands / 10);
    EXPECT_GT(refused, kCommands / 10);
    EXPECT_GT(fills, 10000);
    RecordProperty("accepted", static_cast<int>(accepted));
    RecordProperty("fills", static_cast<int>(fills));
}

}  // namespace
