#include "services/trading/cpaperbrokercore.h"

#include "seam/common.h"
#include "seam/ctimeservice.h"
#include "seam/marketenums.h"
#include "seam/tradinghelpers.h"
#include "services/market/csessionclock.h"
#include "services/trading/cexchangerules.h"
#include "services/trading/cpapersettlementrecord.h"

#include <boost/make_shared.hpp>

#include <fmt/format.h>

#include <QDateTime>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cmath>
#include <set>

namespace trading {

namespace {

constexpr double kTolerance = utils::kPriceTolerance;
constexpr int kLong = '0';
constexpr int kShort = '1';
constexpr int kCovered = '2';

double round2(double money) { return std::round(money * 100.0) / 100.0; }

// What an operation does to the books.
struct OpInfo {
    bool valid = false;
    bool buy = false;
    bool open = false;
    bool covered = false;
    bool todayOnly = false;
    int direction = kLong;  // the position it opens or closes
    nqservice::EOffset_Flag_Type offset = nqservice::OF_OPEN;
};

OpInfo classify(int operation, nqservice::EInstrumentKind kind)
{
    OpInfo op;
    auto set = [&](bool buy, bool open, int direction, bool covered = false, bool today = false) {
        op.valid = true;
        op.buy = buy;
        op.open = open;
        op.direction = direction;
        op.covered = covered;
        op.todayOnly = today;
        op.offset = open ? nqservice::OF_OPEN : (today ? nqservice::OF_CLOSE_TODAY : nqservice::OF_CLOSE);
    };
    if (kind == nqservice::IK_STOCK_OPTION) {
        switch (operation) {
        case nqservice::OT_BUY_OPEN: set(true, true, kLong); break;
        case nqservice::OT_SELL_CLOSE: set(false, false, kLong); break;
        case nqservice::OT_SELL_OPEN: set(false, true, kShort); break;
        case nqservice::OT_BUY_CLOSE: set(true, false, kShort); break;
        case nqservice::OT_COVERED_OPEN: set(false, true, kCovered, true); break;
        case nqservice::OT_COVERED_CLOSE: set(true, false, kCovered, true); break;
        default: break;
        }
    } else if (kind == nqservice::IK_FUTURE_OPTION) {
        switch (operation) {
        case nqservice::OT_OPEN_LONG: set(true, true, kLong); break;
        case nqservice::OT_CLOSE_LONG: set(false, false, kLong); break;
        case nqservice::OT_CLOSE_LONG_TODAY: set(false, false, kLong, false, true); break;
        case nqservice::OT_OPEN_SHORT: set(false, true, kShort); break;
        case nqservice::OT_CLOSE_SHORT: set(true, false, kShort); break;
        case nqservice::OT_CLOSE_SHORT_TODAY: set(true, false, kShort, false, true); break;
        default: break;
        }
    }
    return op;
}

bool isKnownPriceType(int type)
{
    return (type >= nqservice::PT_ASK5 && type <= nqservice::PT_OPPONENT) ||
           (type >= nqservice::PT_FIX_FOK && type <= nqservice::PT_MARKET_TO_LIMIT);
}

// Orders that take what the book gives instead of resting at a price.
bool isMarketOrder(int type, nqservice::EInstrumentKind kind)
{
    if (nqservice::isRealMarketPrice(static_cast<nqservice::EPriceType>(type))) {
        return true;
    }
    // For commodity options the limit-price type is the exchange's market order.
    return type == nqservice::PT_LIMIT_UP_DOWN && kind == nqservice::IK_FUTURE_OPTION;
}

bool acceptsOrders(int phase)
{
    return phase == TC::TP_CONTINUOUS || phase == TC::TP_OPEN_CALL_AUCTION || phase == TC::TP_AUCTION_MATCHED ||
           phase == TC::TP_CLOSE_CALL_AUCTION;
}

std::string positionKey(const std::string& stockKey, int direction) { return stockKey + "|" + std::to_string(direction); }

std::string padded(char prefix, long long n) { return fmt::format("{0}{1:08d}", prefix, n); }

double unitOf(const nqservice::CInstrumentDetail& detail)
{
    if (detail.kind == nqservice::IK_FUND) {
        return 1.0;
    }
    return utils::isUsable(detail.contractUnit) && detail.contractUnit > 0.0 ? detail.contractUnit : 1.0;
}


struct StrategyTerms {
    const char* code;
    const char* name;
    bool vertical;  // a spread of two calls or two puts; else two shorts, a call and a put
    bool calls;     // spreads: of calls
    bool lowLong;   // spreads: the lower strike is held long
};

const StrategyTerms kStrategies[] = {
    {"CNSJC", "认购牛市价差", true, true, true},  {"CXSJC", "认购熊市价差", true, true, false},
    {"PNSJC", "认沽牛市价差", true, false, true}, {"PXSJC", "认沽熊市价差", true, false, false},
    {"KS", "跨式空头", false, false, false},       {"KKS", "宽跨式空头", false, false, false},
};

const StrategyTerms* strategyTerms(const std::string& code)
{
    for (const StrategyTerms& terms : kStrategies) {
        if (code == terms.code) {
            return &terms;
        }
    }
    return nullptr;
}

int toInt(const QDate& date) { return date.year() * 10000 + date.month() * 100 + date.day(); }

QDate toDate(int yyyymmdd) { return QDate(yyyymmdd / 10000, yyyymmdd / 100 % 100, yyyymmdd % 100); }

// The trading day n trading days before a date.
int tradingDaysBefore(int yyyymmdd, int n)
{
    QDate day = toDate(yyyymmdd);
    while (n > 0 && day.isValid()) {
        day = day.addDays(-1);
        if (market::CSessionClock::isTradingDay(day)) {
            --n;
        }
    }
    return day.isValid() ? toInt(day) : yyyymmdd;
}

bool isCombinationOperation(int operation)
{
    return operation == nqservice::OT_COMB_STRATEGY_BUILD || operation == nqservice::OT_COMB_STRATEGY_RELEASE;
}

}  // namespace

struct CPaperBrokerCore::Account {
    boost::shared_ptr<nqservice::CAccountInfo> info;
    bool loggedIn = false;
    double cash = 0.0;  // all money, frozen and margin included
    double frozen = 0.0;
    double margin = 0.0;
    double fee = 0.0;
    double lastBalance = 0.0;
    double lastFloat = 0.0;
    std::map<std::string, boost::shared_ptr<nqservice::COrderDetail>> orders;  // by orderId
    std::map<std::string, boost::shared_ptr<nqservice::CDealDetail>> deals;    // by dealId
    std::map<std::string, boost::shared_ptr<nqservice::CPositionStatics>> positions;
    std::map<std::string, long long> boughtToday;  // buy-to-open contracts by underlying key
    bool fundsTouched = false;
    std::vector<boost::shared_ptr<nqservice::CPositionStatics>> touched;
    std::map<std::string, std::unique_ptr<Combination>> combinations;  // by combination number
    std::map<std::string, long long> locks;  // position key -> contracts in combinations, shares not yet sellable
    std::map<std::string, boost::shared_ptr<CPaperSettlementRecord>> records;  // the close's steps, by number

    double available() const { return cash - frozen - margin; }
};

struct CPaperBrokerCore::Combination {
    boost::shared_ptr<nqservice::CStkOptCombPositionDetail> record;
    std::string legOneKey;  // position keys of the legs
    std::string legTwoKey;
    double margin = 0.0;  // what the whole volume takes
};

// Two legs put in the order of their strategy, with the side each must be held on.
struct CPaperBrokerCore::CombinationLegs {
    std::shared_ptr<nqservice::CInstrumentDetail> one;
    std::shared_ptr<nqservice::CInstrumentDetail> two;
    int oneDirection = '0';
    int twoDirection = '1';
    std::string name;
};

struct CPaperBrokerCore::Working {
    std::string accountKey;
    boost::shared_ptr<nqservice::COrderDetail> order;
    std::shared_ptr<nqservice::CInstrumentDetail> detail;
    OpInfo op;
    double limit = 0.0;          // worst price it may fill at
    bool market = false;         // takes the book's levels and rests nowhere
    double frozenPerUnit = 0.0;  // money held per contract still working
    double marginPerUnit = 0.0;  // margin a sell to open takes per contract
    double unitFee = 0.0;
    bool released = true;  // false while a paced slice waits for its turn
    int sliceOf = 0;       // the order of the command it is a slice of
    long long seq = 0;     // arrival on the book: time priority
    bool limitIndexed = false;
    double indexedLimit = 0.0;

    std::string key() const { return accountKey + "|" + order->orderId; }
    std::string stockKey() const { return utils::vqStockKey(detail->market, detail->code); }
    bson::BSONObj extra() const
    {
        bson::BSONObjBuilder b;
        b.append("fpu", frozenPerUnit);
        b.append("mpu", marginPerUnit);
        b.append("fee", unitFee);
        b.append("limit", limit);
        b.append("market", market);
        b.append("released", released);
        return b.obj();
    }
};

// What a command asks of one account, added up over its orders.
// A command the broker runs in parts: split over accounts, or an order above
// the largest one sent as slices one after the other.
struct CPaperBrokerCore::Task {
    boost::shared_ptr<nqservice::CTaskDetail> record;
    std::string accountKey;  // the first account, under which the record is kept
};

struct CPaperBrokerCore::Need {
    double money = 0.0;
    std::map<std::string, long long> close;  // position key -> contracts (ETF key -> shares)
    std::map<std::string, long long> longs;  // underlying key -> contracts opened long
    std::map<std::string, long long> opens;  // underlying key -> contracts opened
};

CPaperBrokerCore::CPaperBrokerCore(InstrumentLookup instruments) : m_instruments(std::move(instruments)) {}

CPaperBrokerCore::~CPaperBrokerCore() = default;

CPaperBrokerCore::Account* CPaperBrokerCore::findAccount(const std::string& key)
{
    auto it = m_accounts.find(key);
    return it == m_accounts.end() ? nullptr : it->second.get();
}

const CPaperBrokerCore::Account* CPaperBrokerCore::findAccount(const std::string& key) const
{
    auto it = m_accounts.find(key);
    return it == m_accounts.end() ? nullptr : it->second.get();
}

bool CPaperBrokerCore::hasAccount(const std::string& accountKey) const { return findAccount(accountKey) != nullptr; }

std::vector<std::string> CPaperBrokerCore::accountKeys() const
{
    std::vector<std::string> keys;
    for (const auto& entry : m_accounts) {
        keys.push_back(entry.first);
    }
    return keys;
}

boost::shared_ptr<nqservice::CAccountInfo> CPaperBrokerCore::accountInfo(const std::string& accountKey) const
{
    const Account* account = findAccount(accountKey);
    return account ? account->info : boost::shared_ptr<nqservice::CAccountInfo>();
}

void CPaperBrokerCore::openAccount(const PaperAccountTerms& terms, PaperResult& out)
{
    if (!terms.info) {
        return;
    }
    const std::string key = terms.info->getKey();
    if (Account* existing = findAccount(key)) {
        existing->info = terms.info;  // names may have changed in the settings
        return;
    }
    auto account = std::make_unique<Account>();
    account->info = terms.info;
    account->cash = terms.cash;
    Account& ref = *account;
    m_accounts[key] = std::move(account);
    for (const auto& holding : terms.holdings) {
        const auto detail = m_instruments(holding.first);
        if (!detail || holding.second <= 0) {
            continue;
        }
        auto& pos = position(ref, *detail, kLong);
        pos->position = holding.second;
        pos->available = holding.second;
        pos->avgPrice = utils::isUsable(detail->preClosePrice) ? detail->preClosePrice : 0.0;
        pos->lastPrice = pos->avgPrice;
        ref.touched.push_back(pos);
    }
    ref.fundsTouched = true;
    revalue(ref, out, true);
}

void CPaperBrokerCore::setLoggedIn(const std::string& accountKey, bool loggedIn)
{
    if (Account* account = findAccount(accountKey)) {
        account->loggedIn = loggedIn;
    }
}

int CPaperBrokerCore::phaseOf(const std::string& market) const
{
    return market::CSessionClock::isStockMarket(market) ? m_stockPhase : m_futurePhase;
}

boost::shared_ptr<const TC::CPriceData> CPaperBrokerCore::book(const std::string& stockKey) const
{
    auto it = m_books.find(stockKey);
    return it == m_books.end() ? boost::shared_ptr<const TC::CPriceData>() : it->second;
}

double CPaperBrokerCore::lastPriceOf(const std::string& stockKey, double fallback) const
{
    const auto quote = book(stockKey);
    if (quote && utils::isUsable(quote->lastPrice) && quote->lastPrice > 0.0) {
        return quote->lastPrice;
    }
    return fallback;
}

double CPaperBrokerCore::underlyingPrice(const nqservice::CInstrumentDetail& option) const
{
    const auto underlying = m_instruments(option.underlyingKey());
    return underlying ? underlying->preClosePrice : utils::kAbsentDouble;
}

double CPaperBrokerCore::marginPerContract(const nqservice::CInstrumentDetail& option) const
{
    const double settle = utils::isUsable(option.preSettlementPrice) ? option.preSettlementPrice : option.preClosePrice;
    const double margin = CExchangeRules::shortOptionMargin(option, settle, underlyingPrice(option));
    if (!utils::isUsable(margin)) {
        return utils::kAbsentDouble;
    }
    return round2(margin * (1.0 + CExchangeRules::kBrokerMarginMarkup));
}

boost::shared_ptr<nqservice::CPositionStatics>& CPaperBrokerCore::position(Account& account,
                                                                          const nqservice::CInstrumentDetail& detail,
                                                                          int direction)
{
    auto& pos = account.positions[positionKey(utils::vqStockKey(detail.market, detail.code), direction)];
    if (!pos) {
        pos = boost::make_shared<nqservice::CPositionStatics>();
        pos->account = account.info;
        pos->market = detail.market;
        pos->code = detail.code;
        pos->name = detail.name;
        pos->direction = direction;
    }
    return pos;
}

double CPaperBrokerCore::resolvePrice(const nqservice::CCodeOrderParam& param,
                                      const nqservice::CInstrumentDetail& detail, const TC::CPriceData* quote,
                                      std::string& why) const
{
    const int type = param.priceType;
    const auto operation = param.operationType;
    const bool buy = classify(operation, detail.kind).buy;
    double price = utils::kAbsentDouble;
    if (isMarketOrder(type, detail.kind)) {
        // Market orders hold money at the worst price they could fill at.
        if (quote) {
            price = buy ? quote->upStopPrice : quote->downStopPrice;
        }
    } else if (type == nqservice::PT_FIX || type == nqservice::PT_FIX_FOK ||
               (type >= nqservice::PT_ASK5 && type <= nqservice::PT_BID5)) {
        price = param.price;
        if (!(utils::isUsable(price) && price > kTolerance) && quote && type != nqservice::PT_FIX &&
            type != nqservice::PT_FIX_FOK) {
            price = quote->getPriceForOrder(static_cast<nqservice::EPriceType>(type), operation, 0, nullptr, false);
        }
    } else if (quote) {
        // 12 the limit of the order's side, 13 the own side's best, 14 the other side's best.
        if (type == nqservice::PT_LIMIT_UP_DOWN) {
            price = buy ? quote->upStopPrice : quote->downStopPrice;
        } else if (type == nqservice::PT_QUEUE) {
            price = buy ? quote->bidPrice1 : quote->askPrice1;
        } else if (type == nqservice::PT_OPPONENT) {
            price = buy ? quote->askPrice1 : quote->bidPrice1;
        }
    }
    if (!(utils::isUsable(price) && price > kTolerance)) {
        why = quote ? "委托价格无效" : "无可用行情, 无法确定委托价格";
        return utils::kAbsentDouble;
    }
    const double tick = utils::isUsable(detail.priceTick) && detail.priceTick > 0.0 ? detail.priceTick : 0.0001;
    const double ticks = price / tick;
    if (std::fabs(ticks - std::round(ticks)) > 1e-6 * std::max(1.0, std::fabs(ticks))) {
        why = "委托价格不是最小变动价位的整数倍";
        return utils::kAbsentDouble;
    }
    price = std::round(ticks) * tick;
    if (quote && !isMarketOrder(type, detail.kind)) {
        const bool over = utils::isUsable(quote->upStopPrice) && price > quote->upStopPrice + kTolerance;
        const bool under = utils::isUsable(quote->downStopPrice) && price < quote->downStopPrice - kTolerance;
        if (over || under) {
            why = "委托价格超出涨跌停范围";
            return utils::kAbsentDouble;
        }
    }
    return price;
}

std::string CPaperBrokerCore::check(const nqservice::CCodeOrderParam& param, const nqservice::EVqTraderType traderType,
                                    std::map<std::string, Need>& needs, std::vector<Working>& orders)
{
    if (!param.account) {
        return "账户不存在";
    }
    const std::string accountKey = param.account->getKey();
    Account* account = findAccount(accountKey);
    if (account == nullptr) {
        return "账户不存在";
    }
    if (!account->loggedIn) {
        return "账户未登录";
    }
    const std::string stockKey = utils::vqStockKey(param.stockInfo.market, param.stockInfo.code);
    const auto detail = m_instruments(stockKey);
    if (!detail || !detail->isOption()) {
        return "合约不存在";
    }
    const bool stockOption = detail->kind == nqservice::IK_STOCK_OPTION;
    const int wantedBroker = stockOption ? nqservice::VQ_BROKER_TYPE_STOCK_OPTION : nqservice::VQ_BROKER_TYPE_FUTURE_OPTION;
    if (account->info->accountType != wantedBroker ||
        (traderType != nqservice::VQ_TRADER_TYPE_NONE &&
         traderType != (stockOption ? nqservice::VQ_TRADER_TYPE_STOCK_OPTION : nqservice::VQ_TRADER_TYPE_FUTURE_OPTION))) {
        return "账户类型与合约不符";
    }
    const OpInfo op = classify(param.operationType, detail->kind);
    if (!op.valid) {
        return "不支持的委托操作";
    }
    if (!isKnownPriceType(param.priceType)) {
        return "不支持的报价方式";
    }
    const int phase = phaseOf(detail->market);
    if (!acceptsOrders(phase)) {
        return "非交易时段";
    }
    if (!utils::isAbsent(detail->expireDate) && m_tradingDay > detail->expireDate) {
        return "合约已到期";
    }
    const bool market = isMarketOrder(param.priceType, detail->kind);
    if (market && phase != TC::TP_CONTINUOUS) {
        return "集合竞价阶段不接受市价委托";
    }
    if (param.priceType == nqservice::PT_FIX_FOK && phase != TC::TP_CONTINUOUS) {
        return "集合竞价阶段只接受普通限价委托";
    }
    if (param.volume <= 0) {
        return "委托数量必须大于0";
    }
    const auto quote = book(stockKey);
    if (market && (!quote || !utils::isUsable(quote->upStopPrice) || !utils::isUsable(quote->downStopPrice))) {
        return "无可用行情, 无法市价委托";
    }
    std::string why;
    const double price = resolvePrice(param, *detail, quote.get(), why);
    if (!why.empty()) {
        return why;
    }

    const double unit = unitOf(*detail);
    const auto fees = CExchangeRules::paperFee(accountKey, *detail);
    const double unitFee = nqservice::StockOptionFeeDataHelper::getUnitFee(
        fees, op.offset, op.buy ? nqservice::EBS_BUY : nqservice::EBS_SELL);
    Need& need = needs[accountKey];
    const long long volume = param.volume;
    double perUnit = 0.0;
    double marginPer = 0.0;
    const std::string underlyingKey = detail->underlyingKey();
    if (op.open && op.buy) {
        perUnit = price * unit + unitFee;
    } else if (op.open && op.covered) {
        perUnit = unitFee;
        if (!m_instruments(underlyingKey)) {
            return "标的证券不存在";
        }
        const std::string etf = positionKey(underlyingKey, kLong);
        auto it = account->positions.find(etf);
        const long long free = it == account->positions.end() ? 0 : it->second->position - it->second->frozen;
        need.close[etf] += static_cast<long long>(std::llround(unit)) * volume;
        if (need.close[etf] > free) {
            return "标的证券可用数量不足";
        }
    } else if (op.open) {
        marginPer = marginPerContract(*detail);
        if (!utils::isUsable(marginPer)) {
            return "无法计算保证金";
        }
        perUnit = marginPer + unitFee;
    } else {
        perUnit = op.buy ? price * unit + unitFee : unitFee;
        const std::string key = positionKey(stockKey, op.direction);
        auto it = account->positions.find(key);
        long long closable = 0;
        const long long held = locked(*account, key);
        if (it != account->positions.end()) {
            closable = it->second->position - it->second->frozen - held;
            if (op.todayOnly) {
                closable = std::min(closable, it->second->todayPosition);
            }
        }
        need.close[key] += volume;
        if (need.close[key] > closable) {
            return held > 0 && need.close[key] <= closable + held ? "持仓已被组合策略锁定, 请先解除组合"
                                                                  : "可平仓数量不足";
        }
    }
    need.money += perUnit * static_cast<double>(volume);
    if (need.money > account->available() + 1e-6) {
        return "可用资金不足";
    }
    if (op.open && stockOption) {
        // Positions over every contract of the underlying, working opens included.
        long long longs = 0;
        long long all = 0;
        for (const auto& entry : account->positions) {
            const auto& pos = entry.second;
            const auto posDetail = m_instruments(utils::vqStockKey(pos->market, pos->code));
            if (!posDetail || !posDetail->isOption() || posDetail->underlyingKey() != underlyingKey) {
                continue;
            }
            all += pos->position;
            if (pos->direction == kLong) {
                longs += pos->position;
            }
        }
        for (const auto& entry : m_working) {
            const Working& w = *entry.second;
            if (w.accountKey == accountKey && w.op.open && w.detail->underlyingKey() == underlyingKey) {
                all += w.order->remaining;
                if (w.op.buy) {
                    longs += w.order->remaining;
                }
            }
        }
        need.opens[underlyingKey] += volume;
        if (op.buy) {
            need.longs[underlyingKey] += volume;
        }
        const long long bought = account->boughtToday[underlyingKey];
        if (longs + need.longs[underlyingKey] > CExchangeRules::kLongPositionLimit ||
            all + need.opens[underlyingKey] > CExchangeRules::kTotalPositionLimit ||
            (op.buy && bought + need.longs[underlyingKey] > CExchangeRules::kTotalPositionLimit)) {
            return "超出持仓限额";
        }
    }

    // Orders above the exchange's largest order go out as slices within it.
    const long long slice = std::max(1, CExchangeRules::maxOrderVolume(*detail, param.priceType));
    for (long long left = volume; left > 0; left -= slice) {
        Working work;
        work.accountKey = accountKey;
        work.detail = detail;
        work.op = op;
        work.market = market;
        work.limit = market ? (op.buy ? quote->upStopPrice : quote->downStopPrice) : price;
        work.frozenPerUnit = perUnit;
        work.marginPerUnit = marginPer;
        work.unitFee = unitFee;
        auto order = boost::make_shared<nqservice::COrderDetail>();
        order->account = account->info;
        order->market = detail->market;
        order->code = detail->code;
        order->name = detail->name;
        order->side = op.buy ? nqservice::EBS_BUY : nqservice::EBS_SELL;
        order->price = market ? 0.0 : price;
        order->volume = static_cast<int>(std::min(left, slice));
        order->remaining = order->volume;
        order->operationType = param.operationType;
        order->priceType = param.priceType;
        work.order = order;
        orders.push_back(std::move(work));
    }
    return std::string();
}

PaperResult CPaperBrokerCore::submit(const nqservice::COrderComandParam& command)
{
    PaperResult result;
    if (m_halted) {
        result.refusal = "交易已暂停";
        return result;
    }
    if (command.params.empty()) {
        result.refusal = "指令中没有委托";
        return result;
    }
    for (const auto& param : command.params) {
        if (param && isCombinationOperation(param->operationType)) {
            return submitCombinations(command);
        }
    }
    std::map<std::string, Need> needs;
    std::vector<Working> orders;
    for (const auto& param : command.params) {
        if (!param) {
            result.refusal = "委托参数为空";
            return result;
        }
        const std::size_t before = orders.size();
        const std::string why = check(*param, command.traderType, needs, orders);
        for (std::size_t i = before; i < orders.size(); ++i) {
            orders[i].sliceOf = static_cast<int>(&param - &command.params.front());
        }
        if (!why.empty()) {
            result.refusal = param->stockInfo.code.empty() ? why : param->stockInfo.code + " " + why;
            return result;
        }
    }
    result.commandId = padded('C', ++m_commandSeq);
    // Split commands run as tasks: over accounts every order goes out at once,
    // the slices of one order one after the other.
    std::set<std::string> accountsOfCommand;
    bool sliced = false;
    for (const Working& work : orders) {
        accountsOfCommand.insert(work.accountKey);
    }
    std::vector<bool> waits(orders.size(), false);
    for (std::size_t i = 1; i < orders.size(); ++i) {
        // A slice follows a slice of the same order: same account, instrument and operation.
        const Working& a = orders[i - 1];
        const Working& b = orders[i];
        if (a.sliceOf == b.sliceOf) {
            waits[i] = true;
            sliced = true;
        }
    }
    Task* task = nullptr;
    if (sliced || accountsOfCommand.size() > 1) {
        auto created = std::make_unique<Task>();
        created->accountKey = orders.front().accountKey;
        auto record = boost::make_shared<nqservice::CTaskDetail>();
        record->taskId = static_cast<int>(++m_taskSeq);
        record->accountId = accountNumber(created->accountKey);
        record->status = nqservice::TS_RUNNING;
        record->onServer = !sliced;
        record->serverTaskId = record->onServer ? padded('T', record->taskId) : std::string();
        record->taskName = sliced ? "拆单" : "分仓";
        auto owner = boost::make_shared<nqservice::CTaskOwner>();
        owner->userName = command.params.front()->userName;
        owner->traderType = command.traderType;
        record->owner = owner;
        std::map<std::string, long long> volumes;
        for (const Working& work : orders) {
            volumes[work.accountKey] += work.order->volume;
        }
        for (const auto& entry : volumes) {
            nqservice::CTaskAccount member;
            member.account = findAccount(entry.first)->info;
            member.volume = entry.second;
            record->accounts.push_back(member);
        }
        created->record = record;
        task = created.get();
        m_tasks[record->taskId] = std::move(created);
    }
    std::vector<std::string> accepted;
    for (std::size_t i = 0; i < orders.size(); ++i) {
        Working& work = orders[i];
        work.order->commandId = result.commandId;
        if (waits[i]) {
            work.released = false;
        }
        accept(work, result);
        if (!work.released) {
            auto& order = *m_working.at(work.key())->order;
            order.status = nqservice::OS_PENDING;
            emitOrder(*m_working.at(work.key()), result);
        }
        accepted.push_back(work.key());
        if (task != nullptr) {
            task->record->orderIds.push_back(work.key());
        }
    }
    if (task != nullptr) {
        emitTask(*task, result);
    }
    // Continuous trading fills what crosses at once; call auctions match at their end.
    for (const std::string& key : accepted) {
        auto found = m_working.find(key);
        if (found != m_working.end() && found->second->released &&
            phaseOf(found->second->detail->market) == TC::TP_CONTINUOUS) {
            tryFill(*found->second, result);
        }
    }
    settleTasks(result);
    for (auto& entry : m_accounts) {
        revalue(*entry.second, result, false);
    }
    return result;
}

void CPaperBrokerCore::accept(Working& work, PaperResult& out)
{
    Account& account = *findAccount(work.accountKey);
    auto& order = *work.order;
    order.orderId = padded('O', ++m_orderSeq);
    order.insertTime = m_now;
    order.updateTime = m_now;
    order.status = nqservice::OS_WORKING;
    account.orders[order.orderId] = work.order;
    account.frozen += work.frozenPerUnit * order.remaining;
    account.fundsTouched = true;
    if (work.op.open && work.op.covered) {
        auto it = account.positions.find(positionKey(work.detail->underlyingKey(), kLong));
        if (it != account.positions.end()) {
            auto& etf = it->second;
            etf->frozen += static_cast<long long>(std::llround(unitOf(*work.detail))) * order.remaining;
            etf->available = etf->position - etf->frozen;
            account.touched.push_back(etf);
        }
    } else if (!work.op.open) {
        auto& pos = position(account, *work.detail, work.op.direction);
        pos->frozen += order.remaining;
        setAvailable(account, *pos);
        account.touched.push_back(pos);
    }
    if (work.op.open && work.op.buy) {
        account.boughtToday[work.detail->underlyingKey()] += order.remaining;
    }
    work.seq = m_orderSeq;
    const std::string key = work.key();
    auto stored = std::make_unique<Working>(work);
    index(*stored);
    m_working[key] = std::move(stored);
    emitOrder(work, out);
}

void CPaperBrokerCore::index(Working& work)
{
    InstrumentWork& entry = m_byInstrument[work.stockKey()];
    entry.orders[work.seq] = work.key();
    if (work.released) {
        (work.op.buy ? entry.buys : entry.sells).insert(work.limit);
        work.limitIndexed = true;
        work.indexedLimit = work.limit;
    }
}

void CPaperBrokerCore::unindex(Working& work)
{
    auto it = m_byInstrument.find(work.stockKey());
    if (it == m_byInstrument.end()) {
        return;
    }
    InstrumentWork& entry = it->second;
    entry.orders.erase(work.seq);
    if (work.limitIndexed) {
        auto& limits = work.op.buy ? entry.buys : entry.sells;
        auto found = limits.find(work.indexedLimit);
        if (found != limits.end()) {
            limits.erase(found);
        }
        work.limitIndexed = false;
    }
    if (entry.orders.empty()) {
        m_byInstrument.erase(it);
    }
}

void CPaperBrokerCore::removeWorking(const std::string& orderKey)
{
    auto it = m_working.find(orderKey);
    if (it == m_working.end()) {
        return;
    }
    unindex(*it->second);
    m_working.erase(it);
}

void CPaperBrokerCore::matchBook(const std::string& stockKey, PaperResult& out)
{
    auto it = m_byInstrument.find(stockKey);
    const auto quote = book(stockKey);
    if (it == m_byInstrument.end() || !quote) {
        return;
    }
    // Most quotes cross nothing: a look at the best limits decides without a walk.
    const InstrumentWork& entry = it->second;
    const bool buys = !entry.buys.empty() && utils::isUsable(quote->askPrice1) &&
                      *entry.buys.rbegin() >= quote->askPrice1 - kTolerance;
    const bool sells = !entry.sells.empty() && utils::isUsable(quote->bidPrice1) &&
                       *entry.sells.begin() <= quote->bidPrice1 + kTolerance;
    if (!buys && !sells) {
        return;
    }
    std::vector<std::string> keys;
    keys.reserve(entry.orders.size());
    for (const auto& order : entry.orders) {
        keys.push_back(order.second);
    }
    for (const std::string& key : keys) {
        auto found = m_working.find(key);
        if (found != m_working.end() && found->second->released) {
            tryFill(*found->second, out);
        }
    }
}

bool CPaperBrokerCore::tryFill(Working& work, PaperResult& out)
{
    const std::string stockKey = work.stockKey();
    const auto quote = book(stockKey);
    auto& order = *work.order;
    const int type = order.priceType;
    const bool allOrNone = type == nqservice::PT_FIX_FOK || type == nqservice::PT_MARKET_FOK;
    const bool toLimit = type == nqservice::PT_MARKET_TO_LIMIT && work.market;
    const int levels = toLimit ? 1 : 5;
    auto& taken = m_taken[stockKey];
    const int side = work.op.buy ? 1 : 0;  // the side of the book it takes from: 1 asks, 0 bids

    auto levelOf = [&](int level, double& price, long long& volume) {
        price = work.op.buy ? quote->askPrice(level) : quote->bidPrice(level);
        volume = work.op.buy ? quote->askVolume(level) : quote->bidVolume(level);
        if (!utils::isUsable(price) || price <= 0.0 || volume <= 0) {
            return false;
        }
        if (work.op.buy ? price > work.limit + kTolerance : price < work.limit - kTolerance) {
            return false;
        }
        volume -= taken[{side, level}];
        return true;
    };

    long long filled = 0;
    if (!quote && allOrNone) {
        finish(work, nqservice::OS_CANCELLED, "未能全部成交, 已撤单", out);
        return false;
    }
    if (quote) {
        if (allOrNone) {
            long long reachable = 0;
            for (int level = 1; level <= levels; ++level) {
                double price = 0.0;
                long long volume = 0;
                if (!levelOf(level, price, volume)) {
                    break;
                }
                reachable += std::max(0LL, volume);
            }
            if (reachable < order.remaining) {
                finish(work, nqservice::OS_CANCELLED, "未能全部成交, 已撤单", out);
                return false;
            }
        }
        double lastPrice = 0.0;
        for (int level = 1; level <= levels && order.remaining > 0; ++level) {
            double price = 0.0;
            long long volume = 0;
            if (!levelOf(level, price, volume)) {
                break;
            }
            if (volume <= 0) {
                continue;
            }
            const long long take = std::min<long long>(volume, order.remaining);
            taken[{side, level}] += take;
            fill(work, price, take, out);
            filled += take;
            lastPrice = price;
        }
        if (toLimit && filled > 0 && order.remaining > 0) {
            // The rest becomes a limit order at the price it traded at.
            unindex(work);
            work.market = false;
            work.limit = lastPrice;
            order.price = lastPrice;
            index(work);
        }
    }
    if (order.remaining == 0) {
        order.status = nqservice::OS_FILLED;
        order.updateTime = m_now;
        emitOrder(work, out);
        removeWorking(work.key());
        return true;
    }
    if (work.market) {
        finish(work, nqservice::OS_CANCELLED, filled > 0 ? "剩余部分已撤销" : "无对手方报价, 已撤单", out);
        return filled > 0;
    }
    if (filled > 0) {
        emitOrder(work, out);
    }
    return filled > 0;
}

void CPaperBrokerCore::fill(Working& work, double price, long long volume, PaperResult& out)
{
    Account& account = *findAccount(work.accountKey);
    auto& order = *work.order;
    const auto& detail = *work.detail;
    const double unit = unitOf(detail);
    const double premium = round2(price * unit * static_cast<double>(volume));
    const double fee = round2(work.unitFee * static_cast<double>(volume));
    account.frozen = std::max(0.0, account.frozen - work.frozenPerUnit * static_cast<double>(volume));
    if (account.frozen < 1e-6) {
        account.frozen = 0.0;
    }
    account.fee += fee;
    account.fundsTouched = true;
    order.tradedVolume += static_cast<int>(volume);
    order.remaining -= static_cast<int>(volume);
    order.tradedAmount += premium;
    order.fee += fee;
    order.status = order.remaining == 0 ? nqservice::OS_FILLED : nqservice::OS_PARTIAL;
    order.updateTime = m_now;

    auto& pos = position(account, detail, work.op.direction);
    if (work.op.open) {
        const double before = pos->avgPrice * static_cast<double>(pos->position);
        pos->position += volume;
        pos->todayPosition += volume;
        pos->avgPrice = (before + price * static_cast<double>(volume)) / static_cast<double>(pos->position);
        if (work.op.buy) {
            account.cash -= premium + fee;
        } else {
            account.cash += premium - fee;
            if (!work.op.covered) {
                const double margin = round2(work.marginPerUnit * static_cast<double>(volume));
                pos->margin += margin;
                account.margin += margin;
            }
        }
    } else {
        // Contracts in combinations carry no margin of their own: the free ones share it.
        const long long free = pos->position - locked(account, positionKey(work.stockKey(), kShort));
        if (!work.op.covered && work.op.direction == kShort && free > 0) {
            const double margin = pos->margin * static_cast<double>(volume) / static_cast<double>(free);
            pos->margin -= margin;
            account.margin = std::max(0.0, account.margin - margin);
        }
        pos->position -= volume;
        pos->frozen -= volume;
        if (work.op.todayOnly) {
            pos->todayPosition -= volume;
        } else {
            pos->todayPosition = std::min(pos->todayPosition, pos->position);
        }
        if (pos->position == 0) {
            pos->margin = 0.0;
        }
        if (work.op.covered) {
            auto it = account.positions.find(positionKey(detail.underlyingKey(), kLong));
            if (it != account.positions.end()) {
                auto& etf = it->second;
                etf->frozen -= static_cast<long long>(std::llround(unit)) * volume;
                etf->available = etf->position - etf->frozen;
                account.touched.push_back(etf);
            }
        }
        account.cash += work.op.buy ? -(premium + fee) : premium - fee;
    }
    // A covered open's ETF shares stay locked: by the position now instead of the order.
    setAvailable(account, *pos);
    pos->lastPrice = price;
    account.touched.push_back(pos);
    account.cash = round2(account.cash);

    auto deal = boost::make_shared<nqservice::CDealDetail>();
    deal->account = account.info;
    deal->dealId = padded('D', ++m_dealSeq);
    deal->orderId = order.orderId;
    deal->market = detail.market;
    deal->code = detail.code;
    deal->name = detail.name;
    deal->side = order.side;
    deal->operationType = order.operationType;
    deal->price = price;
    deal->volume = static_cast<int>(volume);
    deal->fee = fee;
    deal->time = m_now;
    account.deals[deal->dealId] = deal;
    PaperChange change;
    change.dataType = nqservice::VQ_DATA_TYPE_QUICK_ORDER;
    change.accountKey = work.accountKey;
    change.record = deal->copy();
    out.changes.push_back(std::move(change));
}

void CPaperBrokerCore::finish(Working& work, nqservice::EOrderStatus status, const std::string& message,
                              PaperResult& out)
{
    Account& account = *findAccount(work.accountKey);
    auto& order = *work.order;
    const long long rest = order.remaining;
    account.frozen = std::max(0.0, account.frozen - work.frozenPerUnit * static_cast<double>(rest));
    if (account.frozen < 1e-6) {
        account.frozen = 0.0;
    }
    account.fundsTouched = true;
    if (work.op.open && work.op.covered) {
        auto it = account.positions.find(positionKey(work.detail->underlyingKey(), kLong));
        if (it != account.positions.end()) {
            auto& etf = it->second;
            etf->frozen -= static_cast<long long>(std::llround(unitOf(*work.detail))) * rest;
            etf->available = etf->position - etf->frozen;
            account.touched.push_back(etf);
        }
    } else if (!work.op.open) {
        auto& pos = position(account, *work.detail, work.op.direction);
        pos->frozen -= rest;
        setAvailable(account, *pos);
        account.touched.push_back(pos);
    }
    if (work.op.open && work.op.buy) {
        long long& bought = account.boughtToday[work.detail->underlyingKey()];
        bought = std::max(0LL, bought - rest);
    }
    order.remaining = 0;
    order.status = status;
    order.message = message;
    order.updateTime = m_now;
    emitOrder(work, out);
    removeWorking(work.key());
}

PaperResult CPaperBrokerCore::cancel(const std::string& accountKey, const std::string& orderId)
{
    PaperResult result;
    Account* account = findAccount(accountKey);
    if (account == nullptr) {
        result.refusal = "账户不存在";
        return result;
    }
    if (!account->loggedIn) {
        result.refusal = "账户未登录";
        return result;
    }
    auto it = m_working.find(accountKey + "|" + orderId);
    if (it == m_working.end()) {
        result.refusal = account->orders.count(orderId) ? "委托已完成, 无法撤单" : "委托不存在";
        return result;
    }
    Working& work = *it->second;
    if (market::CSessionClock::isStockMarket(work.detail->market) && m_now > 0) {
        const QTime time = TC::exchangeDateTime(m_now).time();
        if ((time >= QTime(9, 20) && time < QTime(9, 25)) || (time >= QTime(14, 57) && time < QTime(15, 0))) {
            result.refusal = "集合竞价阶段不可撤单";
            return result;
        }
    }
    finish(work, nqservice::OS_CANCELLED, "已撤单", result);
    settleTasks(result);
    revalue(*account, result, false);
    return result;
}

PaperResult CPaperBrokerCore::onQuote(const boost::shared_ptr<const TC::CPriceData>& quote)
{
    PaperResult result;
    if (!quote) {
        return result;
    }
    const std::string key = utils::vqStockKey(quote->market, quote->code);
    m_books[key] = quote;
    auto taken = m_taken.find(key);
    if (taken != m_taken.end()) {
        taken->second.clear();
    }
    if (phaseOf(quote->market) == TC::TP_CONTINUOUS && m_byInstrument.count(key)) {
        matchBook(key, result);
        if (!result.changes.empty()) {
            settleTasks(result);
        }
        for (auto& entry : m_accounts) {
            revalue(*entry.second, result, false);
        }
    }
    return result;
}

void CPaperBrokerCore::auctionMatch(bool stockMarket, PaperResult& out)
{
    std::vector<std::string> keys;
    for (const auto& entry : m_working) {
        if (market::CSessionClock::isStockMarket(entry.second->detail->market) == stockMarket) {
            keys.push_back(entry.first);
        }
    }
    for (const std::string& key : keys) {
        auto it = m_working.find(key);
        if (it == m_working.end()) {
            continue;
        }
        Working& work = *it->second;
        const auto quote = book(work.stockKey());
        if (!quote || !work.released) {
            continue;
        }
        // The auction's price: its indicative mark, else the last trade.
        double price = quote->quoteMarkB;
        if (!utils::isUsable(price) || price <= 0.0) {
            price = quote->lastPrice;
        }
        if (!utils::isUsable(price) || price <= 0.0) {
            continue;
        }
        const bool crosses = work.op.buy ? work.limit >= price - kTolerance : work.limit <= price + kTolerance;
        if (!crosses) {
            continue;
        }
        fill(work, price, work.order->remaining, out);
        emitOrder(work, out);
        removeWorking(key);
    }
}

void CPaperBrokerCore::endOfDay(PaperResult& out)
{
    std::vector<std::string> keys;
    for (const auto& entry : m_working) {
        keys.push_back(entry.first);
    }
    for (const std::string& key : keys) {
        auto it = m_working.find(key);
        if (it != m_working.end()) {
            finish(*it->second, nqservice::OS_CANCELLED, "收盘未成交, 已撤单", out);
        }
    }
}

void CPaperBrokerCore::beginDay(int tradingDay, PaperResult& out)
{
    const bool firstDay = m_tradingDay == 0;
    const int previous = m_tradingDay;
    m_tradingDay = tradingDay;
    if (firstDay) {
        return;
    }
    if (previous > m_settledDay && previous < tradingDay) {
        // Closes the desk did not see: the last day it traded, and every trading
        // day after it, each at its own settlement, so that marks and expiries
        // fall on their days. Without a source, the books' last prices settle
        // the last day.
        int day = previous;
        while (day < tradingDay) {
            PaperSettlement missed;
            missed.tradingDay = day;
            if (m_settlementSource) {
                missed.prices = m_settlementSource(day);
            }
            settleDay(missed, out);
            if (!m_settlementSource) {
                break;
            }
            day = toInt(market::CSessionClock::nextTradingDay(toDate(day)));
        }
    }
    endOfDay(out);
    settleTasks(out);
    // Yesterday's tasks have ended with their orders; they leave the task table.
    for (auto it = m_tasks.begin(); it != m_tasks.end();) {
        PaperChange change;
        change.dataType = nqservice::VQ_DATA_TYPE_TASK;
        change.accountKey = it->second->accountKey;
        change.record = it->second->record->copy();
        change.removed = true;
        out.changes.push_back(std::move(change));
        it = m_tasks.erase(it);
    }
    for (auto& entry : m_accounts) {
        Account& account = *entry.second;
        account.boughtToday.clear();
        account.fee = 0.0;
        account.fundsTouched = true;
        for (auto& pos : account.positions) {
            if (pos.second->todayPosition != 0) {
                pos.second->todayPosition = 0;
                account.touched.push_back(pos.second);
            }
        }
        // Yesterday's finished orders and deals leave the day's tables.
        auto remove = [&](int dataType, const boost::shared_ptr<nqservice::IData>& record) {
            PaperChange change;
            change.dataType = dataType;
            change.accountKey = entry.first;
            change.record = record;
            change.removed = true;
            out.changes.push_back(std::move(change));
        };
        for (const auto& order : account.orders) {
            remove(nqservice::VQ_DATA_TYPE_ORDER, order.second->copy());
        }
        for (const auto& deal : account.deals) {
            remove(nqservice::VQ_DATA_TYPE_QUICK_ORDER, deal.second->copy());
        }
        account.orders.clear();
        account.deals.clear();
    }
    // Cash and shares of exercises arrive, shares delivered the day before become sellable.
    deliver(tradingDay, out);
    for (auto& entry : m_accounts) {
        revalue(*entry.second, out, false);
    }
}

PaperResult CPaperBrokerCore::onClock(long long epochMs)
{
    PaperResult result;
    if (epochMs < m_now) {
        return result;  // time never runs back
    }
    m_now = epochMs;
    const QDateTime local = TC::exchangeDateTime(epochMs);
    const QDate day = market::CSessionClock::tradingDayOf(nqservice::kMarketSSE, local);
    const int dayInt = day.year() * 10000 + day.month() * 100 + day.day();
    if (dayInt != m_tradingDay) {
        beginDay(dayInt, result);
    }
    const int stockPhase = market::CSessionClock::phaseAt(nqservice::kMarketSSE, local);
    const int futurePhase = market::CSessionClock::phaseAt(nqservice::kMarketDCE, local);
    const int oldStock = m_stockPhase;
    const int oldFuture = m_futurePhase;
    m_stockPhase = stockPhase;
    m_futurePhase = futurePhase;
    auto leftAuction = [](int before, int after) {
        return (before == TC::TP_OPEN_CALL_AUCTION || before == TC::TP_CLOSE_CALL_AUCTION) && before != after &&
               after != TC::TP_AUCTION_MATCHED;
    };
    const bool stockOpenMatched = oldStock == TC::TP_OPEN_CALL_AUCTION && stockPhase == TC::TP_AUCTION_MATCHED;
    if (leftAuction(oldStock, stockPhase) || stockOpenMatched) {
        auctionMatch(true, result);
    }
    if (leftAuction(oldFuture, futurePhase)) {
        auctionMatch(false, result);
    }
    if (oldStock != 0 && oldStock != TC::TP_CLOSED && stockPhase == TC::TP_CLOSED) {
        endOfDay(result);
    }
    if (stockPhase == TC::TP_CONTINUOUS && oldStock != TC::TP_CONTINUOUS) {
        std::vector<std::string> keys;
        for (const auto& entry : m_byInstrument) {
            keys.push_back(entry.first);
        }
        for (const std::string& key : keys) {
            matchBook(key, result);
        }
    }
    // Positions are valued again every few seconds: each valuation is a commit and a publication.
    releaseSlices(result);
    settleTasks(result);
    const bool valueNow = m_now - m_lastRevalue >= 5000;
    if (valueNow) {
        m_lastRevalue = m_now;
    }
    for (auto& entry : m_accounts) {
        revalue(*entry.second, result, valueNow);
    }
    return result;
}

void CPaperBrokerCore::revalue(Account& account, PaperResult& out, bool force)
{
    if (force) {
        for (auto& entry : account.positions) {
            auto& pos = entry.second;
            const double last = lastPriceOf(utils::vqStockKey(pos->market, pos->code), pos->lastPrice);
            if (std::fabs(last - pos->lastPrice) > kTolerance) {
                pos->lastPrice = last;
                account.touched.push_back(pos);
            }
        }
    }
    // Positions first, each once, in the order they were touched.
    std::set<nqservice::CPositionStatics*> seen;
    std::vector<std::string> gone;
    for (const auto& pos : account.touched) {
        if (!seen.insert(pos.get()).second) {
            continue;
        }
        const auto detail = m_instruments(utils::vqStockKey(pos->market, pos->code));
        const double unit = detail ? unitOf(*detail) : 1.0;
        const double sign = pos->direction == kLong ? 1.0 : -1.0;
        pos->floatProfit = round2((pos->lastPrice - pos->avgPrice) * static_cast<double>(pos->position) * unit * sign);
        const bool empty = pos->position == 0 && pos->frozen == 0;
        emitPosition(account, pos, out);
        if (empty) {
            out.changes.back().removed = true;
            gone.push_back(positionKey(utils::vqStockKey(pos->market, pos->code), pos->direction));
        }
        account.fundsTouched = true;
    }
    account.touched.clear();
    for (const std::string& key : gone) {
        auto it = account.positions.find(key);
        if (it != account.positions.end() && it->second->position == 0 && it->second->frozen == 0) {
            account.positions.erase(it);
        }
    }
    if (account.fundsTouched) {
        emitFunds(account, out);
        account.fundsTouched = false;
    }
}

void CPaperBrokerCore::emitOrder(const Working& work, PaperResult& out) const
{
    PaperChange change;
    change.dataType = nqservice::VQ_DATA_TYPE_ORDER;
    change.accountKey = work.accountKey;
    change.record = work.order->copy();
    if (!nqservice::COrderDetailHelper::completed(*work.order)) {
        change.extra = work.extra();
    }
    out.changes.push_back(std::move(change));
}

void CPaperBrokerCore::emitPosition(Account& account, const boost::shared_ptr<nqservice::CPositionStatics>& pos,
                                    PaperResult& out)
{
    PaperChange change;
    change.dataType = nqservice::VQ_DATA_TYPE_POSITION_STATICS;
    change.accountKey = account.info->getKey();
    change.record = pos->copy();
    out.changes.push_back(std::move(change));
}

boost::shared_ptr<nqservice::CAccountDetail> CPaperBrokerCore::funds(const std::string& accountKey) const
{
    const Account* account = findAccount(accountKey);
    if (account == nullptr) {
        return boost::shared_ptr<nqservice::CAccountDetail>();
    }
    auto detail = boost::make_shared<nqservice::CAccountDetail>();
    detail->accountId = accountKey;
    double value = 0.0;
    double floating = 0.0;
    for (const auto& entry : account->positions) {
        const auto& pos = entry.second;
        const auto instrument = m_instruments(utils::vqStockKey(pos->market, pos->code));
        const double unit = instrument ? unitOf(*instrument) : 1.0;
        const double sign = pos->direction == kLong ? 1.0 : -1.0;
        value += sign * pos->lastPrice * unit * static_cast<double>(pos->position);
        floating += pos->floatProfit;
    }
    detail->availableFunds = round2(account->available());
    detail->frozenFunds = round2(account->frozen);
    detail->margin = round2(account->margin);
    detail->fee = round2(account->fee);
    detail->marketValue = round2(value);
    detail->floatProfit = round2(floating);
    detail->balance = round2(account->cash + value);
    return detail;
}

void CPaperBrokerCore::emitFunds(Account& account, PaperResult& out)
{
    PaperChange change;
    change.dataType = nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL;
    change.accountKey = account.info->getKey();
    change.record = funds(change.accountKey);
    bson::BSONObjBuilder b;
    b.append("cash", account.cash);
    b.append("frozen", account.frozen);
    b.append("margin", account.margin);
    b.append("fee", account.fee);
    b.append("info", account.info->toBsonWithBson());
    change.extra = b.obj();
    out.changes.push_back(std::move(change));
}

std::vector<boost::shared_ptr<nqservice::IData>> CPaperBrokerCore::table(const std::string& accountKey,
                                                                       int dataType) const
{
    std::vector<boost::shared_ptr<nqservice::IData>> rows;
    const Account* account = findAccount(accountKey);
    if (account == nullptr) {
        return rows;
    }
    switch (dataType) {
    case nqservice::VQ_DATA_TYPE_ORDER:
        for (const auto& entry : account->orders) {
            rows.push_back(entry.second->copy());
        }
        break;
    case nqservice::VQ_DATA_TYPE_QUICK_ORDER:
        for (const auto& entry : account->deals) {
            rows.push_back(entry.second->copy());
        }
        break;
    case nqservice::VQ_DATA_TYPE_POSITION_STATICS:
        for (const auto& entry : account->positions) {
            if (entry.second->position != 0 || entry.second->frozen != 0) {
                rows.push_back(entry.second->copy());
            }
        }
        break;
    case nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL:
        rows.push_back(funds(accountKey));
        break;
    case nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION:
        for (const auto& entry : account->combinations) {
            rows.push_back(entry.second->record->copy());
        }
        break;
    case kPaperSettlementDataType:
        for (const auto& entry : account->records) {
            rows.push_back(entry.second->copy());
        }
        break;
    case nqservice::VQ_DATA_TYPE_TASK:
        for (const auto& entry : m_tasks) {
            if (entry.second->accountKey == accountKey) {
                rows.push_back(entry.second->record->copy());
            }
        }
        break;
    default:
        break;
    }
    return rows;
}

long long CPaperBrokerCore::availableVolume(const std::string& accountKey, const std::string& market,
                                            const std::string& code, int operation, int priceType,
                                            double price) const
{
    const Account* account = findAccount(accountKey);
    const std::string stockKey = utils::vqStockKey(market, code);
    const auto detail = m_instruments(stockKey);
    if (account == nullptr || !detail || !detail->isOption()) {
        return 0;
    }
    const OpInfo op = classify(operation, detail->kind);
    if (!op.valid) {
        return 0;
    }
    const auto quote = book(stockKey);
    if (!(utils::isUsable(price) && price > kTolerance) || isMarketOrder(priceType, detail->kind)) {
        nqservice::CCodeOrderParam param;
        param.operationType = static_cast<nqservice::EOperationType>(operation);
        param.priceType = static_cast<nqservice::EPriceType>(priceType);
        param.price = price;
        std::string why;
        price = resolvePrice(param, *detail, quote.get(), why);
        if (!why.empty() && quote) {
            price = op.buy ? quote->upStopPrice : quote->downStopPrice;
        }
    }
    const double unit = unitOf(*detail);
    const auto fees = CExchangeRules::paperFee(accountKey, *detail);
    const double unitFee = nqservice::StockOptionFeeDataHelper::getUnitFee(
        fees, op.offset, op.buy ? nqservice::EBS_BUY : nqservice::EBS_SELL);
    const double money = std::max(0.0, account->available());
    auto byMoney = [&](double perUnit) -> long long {
        if (!(perUnit > 0.0) || !std::isfinite(perUnit)) {
            return 0;
        }
        return static_cast<long long>(std::floor(money / perUnit + 1e-9));
    };
    long long volume = 0;
    if (op.open && op.covered) {
        auto it = account->positions.find(positionKey(detail->underlyingKey(), kLong));
        const long long shares = it == account->positions.end() ? 0 : it->second->position - it->second->frozen;
        volume = std::min(shares / std::max(1LL, static_cast<long long>(std::llround(unit))), byMoney(unitFee));
    } else if (op.open) {
        if (!utils::isUsable(price)) {
            return 0;
        }
        volume = op.buy ? byMoney(price * unit + unitFee) : byMoney(marginPerContract(*detail) + unitFee);
    } else {
        auto it = account->positions.find(positionKey(stockKey, op.direction));
        if (it != account->positions.end()) {
            volume = it->second->position - it->second->frozen - locked(*account, it->first);
            if (op.todayOnly) {
                volume = std::min(volume, it->second->todayPosition);
            }
        }
        if (op.buy && utils::isUsable(price)) {
            volume = std::min(volume, byMoney(price * unit + unitFee));
        }
    }
    return std::max(0LL, volume);
}

int CPaperBrokerCore::accountNumber(const std::string& accountKey) const
{
    int number = 1;
    for (const auto& entry : m_accounts) {
        if (entry.first == accountKey) {
            return number;
        }
        ++number;
    }
    return 0;
}

void CPaperBrokerCore::emitTask(const Task& task, PaperResult& out) const
{
    PaperChange change;
    change.dataType = nqservice::VQ_DATA_TYPE_TASK;
    change.accountKey = task.accountKey;
    change.record = task.record->copy();
    out.changes.push_back(std::move(change));
}

void CPaperBrokerCore::releaseSlices(PaperResult& out)
{
    // Paced slices: the next one of each running task goes to the book once the
    // previous one is there, at most one a step and one every 500 ms.
    if (m_now - m_lastRelease < 500) {
        return;
    }
    for (auto& entry : m_tasks) {
        Task& task = *entry.second;
        if (task.record->status != nqservice::TS_RUNNING) {
            continue;
        }
        for (const std::string& key : task.record->orderIds) {
            auto found = m_working.find(key);
            if (found == m_working.end() || found->second->released) {
                continue;
            }
            Working& work = *found->second;
            if (!acceptsOrders(phaseOf(work.detail->market))) {
                break;
            }
            unindex(work);
            work.released = true;
            work.order->status = nqservice::OS_WORKING;
            work.order->updateTime = m_now;
            index(work);
            emitOrder(work, out);
            if (phaseOf(work.detail->market) == TC::TP_CONTINUOUS) {
                tryFill(work, out);
            }
            m_lastRelease = m_now;
            break;
        }
    }
}

void CPaperBrokerCore::settleTasks(PaperResult& out)
{
    for (auto& entry : m_tasks) {
        Task& task = *entry.second;
        if (task.record->status != nqservice::TS_RUNNING) {
            continue;
        }
        bool done = true;
        for (const std::string& key : task.record->orderIds) {
            if (m_working.count(key)) {
                done = false;
                break;
            }
        }
        if (done) {
            task.record->status = nqservice::TS_FINISHED;
            task.record->message = "任务已完成";
            emitTask(task, out);
        }
    }
}

PaperResult CPaperBrokerCore::stopTask(Task& task, const std::string& userName)
{
    PaperResult result;
    if (task.record->owner && !userName.empty() && task.record->owner->userName != userName) {
        result.refusal = "不能终止其他用户的任务";
        return result;
    }
    if (task.record->status != nqservice::TS_RUNNING && task.record->status != nqservice::TS_PAUSED) {
        result.refusal = "任务已结束";
        return result;
    }
    for (const std::string& key : task.record->orderIds) {
        auto found = m_working.find(key);
        if (found != m_working.end()) {
            finish(*found->second, nqservice::OS_CANCELLED, "任务已终止, 已撤单", result);
        }
    }
    task.record->status = nqservice::TS_STOPPED;
    task.record->message = "任务已终止";
    emitTask(task, result);
    for (auto& entry : m_accounts) {
        revalue(*entry.second, result, false);
    }
    return result;
}

PaperResult CPaperBrokerCore::terminateTask(int accountId, int taskId, const std::string& userName)
{
    auto it = m_tasks.find(taskId);
    if (it == m_tasks.end() || it->second->record->accountId != accountId) {
        PaperResult result;
        result.refusal = "任务不存在";
        return result;
    }
    return stopTask(*it->second, userName);
}

PaperResult CPaperBrokerCore::terminateTask(const std::string& serverKey, const std::string& userName)
{
    for (auto& entry : m_tasks) {
        if (nqservice::CTaskHelper::genServerTaskKey(*entry.second->record) == serverKey) {
            return stopTask(*entry.second, userName);
        }
    }
    PaperResult result;
    result.refusal = "任务不存在";
    return result;
}

std::vector<boost::shared_ptr<nqservice::IData>> CPaperBrokerCore::tasks() const
{
    std::vector<boost::shared_ptr<nqservice::IData>> rows;
    for (const auto& entry : m_tasks) {
        rows.push_back(entry.second->record->copy());
    }
    return rows;
}

// --- combinations ------------------------------------------------------------

long long CPaperBrokerCore::locked(const Account& account, const std::string& key) const
{
    auto it = account.locks.find(key);
    return it == account.locks.end() ? 0 : it->second;
}

void CPaperBrokerCore::setAvailable(const Account& account, nqservice::CPositionStatics& pos) const
{
    pos.available = pos.position - pos.frozen - locked(account, positionKey(utils::vqStockKey(pos.market, pos.code), pos.direction));
}

long long CPaperBrokerCore::lockedVolume(const std::string& accountKey, const std::string& stockKey,
                                         int direction) const
{
    const Account* account = findAccount(accountKey);
    return account == nullptr ? 0 : locked(*account, positionKey(stockKey, direction));
}

double CPaperBrokerCore::combinationMargin(const std::string& strategyCode, const nqservice::CInstrumentDetail& one,
                                           const nqservice::CInstrumentDetail& two) const
{
    auto settle = [](const nqservice::CInstrumentDetail& option) {
        return utils::isUsable(option.preSettlementPrice) ? option.preSettlementPrice : option.preClosePrice;
    };
    return combinationMarginAt(strategyCode, one, settle(one), two, settle(two), underlyingPrice(one));
}

double CPaperBrokerCore::combinationMarginAt(const std::string& strategyCode, const nqservice::CInstrumentDetail& one,
                                             double settleOne, const nqservice::CInstrumentDetail& two,
                                             double settleTwo, double underlying) const
{
    const StrategyTerms* terms = strategyTerms(strategyCode);
    if (terms == nullptr) {
        return utils::kAbsentDouble;
    }
    const double unit = unitOf(one);
    double margin = 0.0;
    if (terms->vertical) {
        // Debit spreads cost nothing more; credit spreads hold the strike distance.
        const bool credit = (terms->calls && !terms->lowLong) || (!terms->calls && terms->lowLong);
        margin = credit ? std::fabs(two.exercisePrice - one.exercisePrice) * unit : 0.0;
    } else {
        // The larger leg's margin and the other leg's settlement.
        const double a = CExchangeRules::shortOptionMargin(one, settleOne, underlying);
        const double b = CExchangeRules::shortOptionMargin(two, settleTwo, underlying);
        if (!utils::isUsable(a) || !utils::isUsable(b)) {
            return utils::kAbsentDouble;
        }
        margin = a >= b ? a + settleTwo * unit : b + settleOne * unit;
    }
    return round2(margin * (1.0 + CExchangeRules::kBrokerMarginMarkup));
}

double CPaperBrokerCore::heldCombinationMargin(const std::string& accountKey, const std::string& combId) const
{
    const Account* account = findAccount(accountKey);
    if (account == nullptr) {
        return utils::kAbsentDouble;
    }
    auto found = account->combinations.find(combId);
    return found == account->combinations.end() ? utils::kAbsentDouble : found->second->margin;
}

std::string CPaperBrokerCore::checkLegs(const std::string& strategyCode,
                                        const nqservice::COptionCombStrategyParam& param,
                                        CombinationLegs& legs) const
{
    const StrategyTerms* terms = strategyTerms(strategyCode);
    if (terms == nullptr) {
        return "不支持的组合策略";
    }
    legs.name = terms->name;
    if (param.legOneCode.empty() || param.legTwoCode.empty()) {
        return "组合策略需要两个合约";
    }
    if (param.legOneCode == param.legTwoCode) {
        return "组合策略的两个合约不能相同";
    }
    auto a = m_instruments(utils::vqStockKey(param.marketName, param.legOneCode));
    auto b = m_instruments(utils::vqStockKey(param.marketName, param.legTwoCode));
    if (!a || !b) {
        return "合约不存在";
    }
    if (a->kind != nqservice::IK_STOCK_OPTION || b->kind != nqservice::IK_STOCK_OPTION) {
        return "组合策略只适用于股票期权";
    }
    if (a->underlyingKey() != b->underlyingKey()) {
        return "两个合约的标的证券不同";
    }
    if (a->expireDate != b->expireDate) {
        return "两个合约的到期日不同";
    }
    if (std::fabs(unitOf(*a) - unitOf(*b)) > kTolerance) {
        return "两个合约的合约单位不同";
    }
    const std::string name = terms->name;
    if (terms->vertical) {
        if (a->call != terms->calls || b->call != terms->calls) {
            return name + (terms->calls ? "的两个合约须均为认购期权" : "的两个合约须均为认沽期权");
        }
        if (std::fabs(a->exercisePrice - b->exercisePrice) <= kTolerance) {
            return name + "的两个合约行权价须不同";
        }
        // Lower strike first.
        if (a->exercisePrice > b->exercisePrice) {
            std::swap(a, b);
        }
        legs.oneDirection = terms->lowLong ? kLong : kShort;
        legs.twoDirection = terms->lowLong ? kShort : kLong;
    } else {
        if (a->call == b->call) {
            return name + "须由一个认购期权和一个认沽期权组成";
        }
        // The call first.
        if (!a->call) {
            std::swap(a, b);
        }
        const bool sameStrike = std::fabs(a->exercisePrice - b->exercisePrice) <= kTolerance;
        if (strategyCode == "KS" && !sameStrike) {
            return "跨式空头的两个合约行权价须相同";
        }
        if (strategyCode == "KKS" && !(a->exercisePrice > b->exercisePrice + kTolerance)) {
            return "宽跨式空头的认购期权行权价须高于认沽期权行权价";
        }
        legs.oneDirection = kShort;
        legs.twoDirection = kShort;
    }
    legs.one = a;
    legs.two = b;
    return std::string();
}

PaperResult CPaperBrokerCore::submitCombinations(const nqservice::COrderComandParam& command)
{
    PaperResult result;
    // Every order of the command is checked against what the orders before it
    // take, then all are carried out or none.
    std::map<std::string, long long> used;  // "account|position key" or "account|combination" -> contracts
    std::map<std::string, double> money;    // account -> margin added
    for (const auto& param : command.params) {
        std::string why;
        Account* account = param && param->account ? findAccount(param->account->getKey()) : nullptr;
        if (!param) {
            why = "委托参数为空";
        } else if (account == nullptr) {
            why = "账户不存在";
        } else if (!account->loggedIn) {
            why = "账户未登录";
        } else if (account->info->accountType != nqservice::VQ_BROKER_TYPE_STOCK_OPTION ||
                   (command.traderType != nqservice::VQ_TRADER_TYPE_NONE &&
                    command.traderType != nqservice::VQ_TRADER_TYPE_STOCK_OPTION)) {
            why = "组合策略只适用于股票期权账户";
        } else if (!isCombinationOperation(param->operationType)) {
            why = "组合策略指令中不能含有普通委托";
        } else if (!acceptsOrders(m_stockPhase)) {
            why = "非交易时段";
        } else if (param->volume <= 0) {
            why = "组合数量必须大于0";
        }
        const std::string accountKey = account != nullptr ? account->info->getKey() : std::string();
        const auto legsParam = param && (param->extraFlags & nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY)
                                   ? nqservice::DataHelper::getOptionCombStrategyParam(param->extraParams)
                                   : boost::shared_ptr<nqservice::COptionCombStrategyParam>();
        if (why.empty() && !legsParam) {
            why = "组合策略参数缺失";
        }
        if (why.empty() && param->operationType == nqservice::OT_COMB_STRATEGY_BUILD) {
            const std::string strategy =
                param->stockInfo.textField2.empty() ? param->stockInfo.name : param->stockInfo.textField2;
            CombinationLegs legs;
            why = checkLegs(strategy, *legsParam, legs);
            if (why.empty() && param->priceType != nqservice::DataHelper::getOptionCombStrategyPriceType(strategy)) {
                why = "组合策略委托的报价方式无效";
            }
            if (why.empty() && m_tradingDay > 0 && !utils::isAbsent(legs.one->expireDate)) {
                // Spreads end with E-2, the short straddles with E: none is formed after that.
                const bool vertical = strategyTerms(strategy)->vertical;
                const int lastDay = vertical ? tradingDaysBefore(legs.one->expireDate, 2) : legs.one->expireDate;
                if (m_tradingDay > lastDay) {
                    why = "合约临近到期, 不能再构建该组合策略";
                }
            }
            double released = 0.0;
            for (int leg = 0; why.empty() && leg < 2; ++leg) {
                const auto& detail = leg == 0 ? legs.one : legs.two;
                const int direction = leg == 0 ? legs.oneDirection : legs.twoDirection;
                const std::string key = positionKey(detail->key(), direction);
                auto it = account->positions.find(key);
                const long long held = it == account->positions.end() ? 0 : it->second->position;
                const long long free = held - (it == account->positions.end() ? 0 : it->second->frozen) -
                                       locked(*account, key);
                long long& take = used[accountKey + "|" + key];
                take += param->volume;
                if (take > free) {
                    why = detail->code + (direction == kLong ? " 权利仓可组合数量不足" : " 义务仓可组合数量不足");
                } else if (direction == kShort && held - locked(*account, key) > 0) {
                    released += it->second->margin * static_cast<double>(param->volume) /
                                static_cast<double>(held - locked(*account, key));
                }
            }
            if (why.empty()) {
                const double perUnit = combinationMargin(strategy, *legs.one, *legs.two);
                if (!utils::isUsable(perUnit)) {
                    why = "无法计算组合保证金";
                } else {
                    money[accountKey] += perUnit * static_cast<double>(param->volume) - released;
                }
            }
        } else if (why.empty()) {
            auto found = account->combinations.find(param->combPositionKey);
            if (param->combPositionKey.empty() || found == account->combinations.end()) {
                why = "未找到对应的组合策略持仓！";
            } else {
                const Combination& comb = *found->second;
                const auto& record = *comb.record;
                const std::string code = record.legOneCode + "/" + record.legTwoCode;
                const bool sameLegs = legsParam->legOneCode == record.legOneCode &&
                                      legsParam->legTwoCode == record.legTwoCode &&
                                      (legsParam->marketName.empty() || legsParam->marketName == record.market);
                if (!sameLegs || (!param->stockInfo.code.empty() && param->stockInfo.code != code)) {
                    why = "组合策略参数与组合持仓不符";
                } else if (param->priceType !=
                           nqservice::DataHelper::getOptionCombStrategyPriceType(record.strategyCode)) {
                    why = "组合策略委托的报价方式无效";
                } else {
                    long long& take = used[accountKey + "|" + record.combId];
                    take += param->volume;
                    if (take > record.volume) {
                        why = "可解除数量不足";
                    } else {
                        const double share = comb.margin * static_cast<double>(param->volume) /
                                             static_cast<double>(record.volume);
                        double regained = 0.0;
                        for (const std::string& legKey : {comb.legOneKey, comb.legTwoKey}) {
                            const auto pos = account->positions.find(legKey);
                            if (pos != account->positions.end() && pos->second->direction == kShort) {
                                const auto detail = m_instruments(utils::vqStockKey(pos->second->market, pos->second->code));
                                const double per = detail ? marginPerContract(*detail) : utils::kAbsentDouble;
                                regained += utils::isUsable(per) ? per * static_cast<double>(param->volume) : 0.0;
                            }
                        }
                        money[accountKey] += regained - share;
                    }
                }
            }
        }
        if (why.empty() && money[accountKey] > account->available() + 1e-6) {
            why = param->operationType == nqservice::OT_COMB_STRATEGY_BUILD ? "可用资金不足"
                                                                            : "可用资金不足, 无法解除组合";
        }
        if (!why.empty()) {
            const std::string code = param ? param->stockInfo.code : std::string();
            result.refusal = code.empty() ? why : code + " " + why;
            return result;
        }
    }
    result.commandId = padded('C', ++m_commandSeq);
    for (const auto& param : command.params) {
        Account& account = *findAccount(param->account->getKey());
        if (param->operationType == nqservice::OT_COMB_STRATEGY_BUILD) {
            formCombination(account, *param, result);
        } else {
            releaseCombination(account, *param, result);
        }
    }
    for (auto& entry : m_accounts) {
        revalue(*entry.second, result, false);
    }
    return result;
}

std::string CPaperBrokerCore::formCombination(Account& account, const nqservice::CCodeOrderParam& param,
                                              PaperResult& out)
{
    const std::string strategy = param.stockInfo.textField2.empty() ? param.stockInfo.name : param.stockInfo.textField2;
    CombinationLegs legs;
    const std::string why = checkLegs(strategy, *nqservice::DataHelper::getOptionCombStrategyParam(param.extraParams), legs);
    if (!why.empty()) {
        return why;
    }
    const long long volume = param.volume;
    auto comb = std::make_unique<Combination>();
    comb->legOneKey = positionKey(legs.one->key(), legs.oneDirection);
    comb->legTwoKey = positionKey(legs.two->key(), legs.twoDirection);
    // The short legs hand their margin over to the combination.
    for (const std::string& key : {comb->legOneKey, comb->legTwoKey}) {
        auto& pos = account.positions.at(key);
        const long long free = pos->position - locked(account, key);
        if (pos->direction == kShort && free > 0) {
            const double share = round2(pos->margin * static_cast<double>(volume) / static_cast<double>(free));
            pos->margin -= share;
            account.margin -= share;
        }
        account.locks[key] += volume;
        setAvailable(account, *pos);
        account.touched.push_back(pos);
    }
    comb->margin = round2(combinationMargin(strategy, *legs.one, *legs.two) * static_cast<double>(volume));
    account.margin = std::max(0.0, account.margin + comb->margin);
    account.fundsTouched = true;
    auto record = boost::make_shared<nqservice::CStkOptCombPositionDetail>();
    record->account = account.info;
    record->market = legs.one->market;
    record->combId = padded('Z', ++m_combSeq);
    record->strategyCode = strategy;
    record->name = legs.name;
    record->volume = static_cast<int>(volume);
    record->releaseVolume = record->volume;
    record->legOneCode = legs.one->code;
    record->legOneType = legs.oneDirection;
    record->legOneExtra = record->volume;
    record->legTwoCode = legs.two->code;
    record->legTwoType = legs.twoDirection;
    record->legTwoExtra = record->volume;
    comb->record = record;
    Combination& stored = *comb;
    account.combinations[record->combId] = std::move(comb);
    emitCombination(account, stored, out);
    return std::string();
}

std::string CPaperBrokerCore::releaseCombination(Account& account, const nqservice::CCodeOrderParam& param,
                                                 PaperResult& out)
{
    auto found = account.combinations.find(param.combPositionKey);
    if (found == account.combinations.end()) {
        return "未找到对应的组合策略持仓！";
    }
    release(account, *found->second, param.volume, out);
    return std::string();
}

void CPaperBrokerCore::release(Account& account, Combination& comb, long long volume, PaperResult& out)
{
    auto& record = *comb.record;
    volume = std::min<long long>(volume, record.volume);
    if (volume <= 0) {
        return;
    }
    const double share = round2(comb.margin * static_cast<double>(volume) / static_cast<double>(record.volume));
    comb.margin -= share;
    account.margin = std::max(0.0, account.margin - share);
    for (const std::string& key : {comb.legOneKey, comb.legTwoKey}) {
        long long& lock = account.locks[key];
        lock = std::max(0LL, lock - volume);
        if (lock == 0) {
            account.locks.erase(key);
        }
        auto it = account.positions.find(key);
        if (it == account.positions.end()) {
            continue;
        }
        auto& pos = it->second;
        if (pos->direction == kShort) {
            const auto detail = m_instruments(utils::vqStockKey(pos->market, pos->code));
            const double per = detail ? marginPerContract(*detail) : utils::kAbsentDouble;
            const double margin = utils::isUsable(per) ? round2(per * static_cast<double>(volume)) : 0.0;
            pos->margin += margin;
            account.margin += margin;
        }
        setAvailable(account, *pos);
        account.touched.push_back(pos);
    }
    record.volume -= static_cast<int>(volume);
    record.releaseVolume = record.volume;
    record.legOneExtra = record.volume;
    record.legTwoExtra = record.volume;
    account.fundsTouched = true;
    emitCombination(account, comb, out);
    if (record.volume == 0) {
        out.changes.back().removed = true;
        account.combinations.erase(record.combId);
    }
}

PaperResult CPaperBrokerCore::refreshCombinations(const std::string& accountKey)
{
    PaperResult result;
    const Account* account = findAccount(accountKey);
    if (account == nullptr) {
        result.refusal = "账户不存在";
        return result;
    }
    for (const auto& entry : account->combinations) {
        emitCombination(*account, *entry.second, result);
    }
    return result;
}

void CPaperBrokerCore::emitCombination(const Account& account, const Combination& comb, PaperResult& out) const
{
    PaperChange change;
    change.dataType = nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION;
    change.accountKey = account.info->getKey();
    change.record = comb.record->copy();
    bson::BSONObjBuilder b;
    b.append("margin", comb.margin);
    b.append("one", comb.legOneKey);
    b.append("two", comb.legTwoKey);
    change.extra = b.obj();
    out.changes.push_back(std::move(change));
}

// --- the close of the day and expiry -------------------------------------------

struct CPaperBrokerCore::Delivery {
    std::string accountKey;
    std::string recordId;  // the record that tells of it
    std::string etfKey;    // shares of this fund; empty for cash only
    long long shares = 0;
    double cash = 0.0;
    int valueDay = 0;     // they arrive at the start of this trading day
    int sellableDay = 0;  // the shares are free from this trading day
    int stage = 0;        // 0 to arrive, 1 arrived and locked, 2 done

    bson::BSONObj extra() const
    {
        bson::BSONObjBuilder b;
        b.append("etf", etfKey);
        b.append("shares", shares);
        b.append("cash", cash);
        b.append("valueDay", valueDay);
        b.append("sellable", sellableDay);
        b.append("stage", stage);
        return b.obj();
    }
};

double CPaperBrokerCore::settlementOf(const PaperSettlement& day, const std::string& stockKey, double fallback) const
{
    auto it = day.prices.find(stockKey);
    if (it != day.prices.end() && utils::isUsable(it->second) && it->second > 0.0) {
        return it->second;
    }
    return lastPriceOf(stockKey, fallback);
}

void CPaperBrokerCore::record(Account& account, int tradingDay, const std::string& kind,
                              const nqservice::CInstrumentDetail* detail, long long volume, double price,
                              double amount, int valueDay, const std::string& note, PaperResult& out,
                              const Delivery* pending)
{
    auto rec = boost::make_shared<CPaperSettlementRecord>();
    rec->account = account.info;
    rec->recordId = pending != nullptr && !pending->recordId.empty() ? pending->recordId : padded('J', ++m_recordSeq);
    rec->tradingDay = tradingDay;
    rec->kind = kind;
    if (detail != nullptr) {
        rec->market = detail->market;
        rec->code = detail->code;
        rec->name = detail->name;
    }
    rec->volume = volume;
    rec->price = price;
    rec->amount = round2(amount);
    rec->valueDay = valueDay;
    rec->note = note;
    account.records[rec->recordId] = rec;
    PaperChange change;
    change.dataType = kPaperSettlementDataType;
    change.accountKey = account.info->getKey();
    change.record = rec->copy();
    if (pending != nullptr) {
        change.extra = pending->extra();
    }
    out.changes.push_back(std::move(change));
}

void CPaperBrokerCore::deliver(int tradingDay, PaperResult& out)
{
    for (auto& entry : m_deliveries) {
        Delivery& d = *entry;
        Account* account = findAccount(d.accountKey);
        if (account == nullptr || d.stage == 2) {
            continue;
        }
        auto found = account->records.find(d.recordId);
        if (found == account->records.end()) {
            continue;
        }
        const auto rec = found->second;
        const std::string etf = positionKey(d.etfKey, kLong);
        if (d.stage == 0 && tradingDay >= d.valueDay) {
            account->cash = round2(account->cash + d.cash);
            account->fundsTouched = true;
            if (d.shares != 0 && !d.etfKey.empty()) {
                const auto detail = m_instruments(d.etfKey);
                if (detail) {
                    auto& pos = position(*account, *detail, kLong);
                    pos->position += d.shares;
                    if (d.shares > 0 && tradingDay < d.sellableDay) {
                        account->locks[etf] += d.shares;
                    }
                    setAvailable(*account, *pos);
                    account->touched.push_back(pos);
                }
            }
            d.stage = d.shares > 0 && tradingDay < d.sellableDay ? 1 : 2;
        } else if (d.stage == 1 && tradingDay >= d.sellableDay) {
            long long& lock = account->locks[etf];
            lock = std::max(0LL, lock - d.shares);
            if (lock == 0) {
                account->locks.erase(etf);
            }
            auto pos = account->positions.find(etf);
            if (pos != account->positions.end()) {
                setAvailable(*account, *pos->second);
                account->touched.push_back(pos->second);
            }
            d.stage = 2;
        } else {
            continue;
        }
        rec->note = d.stage == 1 ? "已到账, 次一交易日可卖出" : "已到账";
        PaperChange change;
        change.dataType = kPaperSettlementDataType;
        change.accountKey = d.accountKey;
        change.record = rec->copy();
        change.extra = d.extra();
        out.changes.push_back(std::move(change));
    }
    m_deliveries.erase(std::remove_if(m_deliveries.begin(), m_deliveries.end(),
                                      [](const std::unique_ptr<Delivery>& d) { return d->stage == 2; }),
                       m_deliveries.end());
}

void CPaperBrokerCore::expire(Account& account, const std::string& key, const PaperSettlement& day, PaperResult& out)
{
    auto it = account.positions.find(key);
    if (it == account.positions.end()) {
        return;
    }
    auto pos = it->second;
    const auto detail = m_instruments(utils::vqStockKey(pos->market, pos->code));
    if (!detail || pos->position <= 0) {
        return;
    }
    const long long volume = pos->position;
    const double unit = unitOf(*detail);
    const double strike = detail->exercisePrice;
    const std::string underlyingKey = detail->underlyingKey();
    const double underlying = settlementOf(day, underlyingKey, underlyingPrice(*detail));
    const double intrinsic = utils::isUsable(underlying) && utils::isUsable(strike)
                                 ? (detail->call ? underlying - strike : strike - underlying)
                                 : 0.0;
    const int valueDay = toInt(market::CSessionClock::nextTradingDay(toDate(day.tradingDay)));
    const int sellableDay = toInt(market::CSessionClock::nextTradingDay(toDate(valueDay)));
    auto pending = [&](double cash, long long shares) {
        auto d = std::make_unique<Delivery>();
        d->accountKey = account.info->getKey();
        d->etfKey = shares != 0 ? underlyingKey : std::string();
        d->shares = shares;
        d->cash = cash;
        d->valueDay = valueDay;
        d->sellableDay = sellableDay;
        return d;
    };
    auto queue = [&](std::unique_ptr<Delivery> d, const std::string& kind, double amount, const std::string& note) {
        record(account, day.tradingDay, kind, detail.get(), volume, strike, amount, valueDay, note, out, d.get());
        d->recordId = padded('J', m_recordSeq);  // the number record() just gave
        m_deliveries.push_back(std::move(d));
    };
    auto etfPosition = [&]() -> boost::shared_ptr<nqservice::CPositionStatics> {
        auto found = account.positions.find(positionKey(underlyingKey, kLong));
        return found == account.positions.end() ? boost::shared_ptr<nqservice::CPositionStatics>() : found->second;
    };
    const long long shares = static_cast<long long>(std::llround(unit)) * volume;

    if (detail->kind == nqservice::IK_FUTURE_OPTION) {
        // The exchange exercises what is in the money; the desk trades no
        // futures, so the difference to the futures' settlement is paid in cash.
        if (intrinsic > kTolerance) {
            const double amount = round2(intrinsic * unit * static_cast<double>(volume)) * (pos->direction == kLong ? 1 : -1);
            account.cash = round2(account.cash + amount);
            record(account, day.tradingDay, "现金结算", detail.get(), volume, strike, amount, 0,
                   "实值期权按标的期货结算价现金结算", out);
        } else {
            record(account, day.tradingDay, "到期作废", detail.get(), volume, strike, 0.0, 0, "虚值期权到期作废", out);
        }
    } else if (pos->direction == kLong) {
        const double fee = CExchangeRules::kStockOptionExerciseFee;
        if (!m_autoExercise || intrinsic * unit <= fee + kTolerance) {
            record(account, day.tradingDay, "到期作废", detail.get(), volume, strike, 0.0, 0,
                   m_autoExercise ? "未达自动行权条件, 到期作废" : "未申报行权, 到期作废", out);
        } else if (detail->call) {
            // Pays the strike, receives the shares on E+1.
            const double amount = -(strike * unit * static_cast<double>(volume) + fee * static_cast<double>(volume));
            account.fee += fee * static_cast<double>(volume);
            queue(pending(round2(amount), shares), "行权", amount, "自动行权: 次一交易日交收, 证券再次一交易日可卖出");
        } else {
            // Delivers shares it holds free now, receives the strike on E+1.
            const auto etf = etfPosition();
            const long long free = etf ? etf->position - etf->frozen - locked(account, positionKey(underlyingKey, kLong)) : 0;
            const long long exercised = std::min(volume, free / std::max(1LL, static_cast<long long>(std::llround(unit))));
            if (exercised > 0) {
                const long long given = static_cast<long long>(std::llround(unit)) * exercised;
                etf->position -= given;
                setAvailable(account, *etf);
                account.touched.push_back(etf);
                const double amount = strike * unit * static_cast<double>(exercised) - fee * static_cast<double>(exercised);
                account.fee += fee * static_cast<double>(exercised);
                queue(pending(round2(amount), 0), "行权", amount, "自动行权: 交付标的证券, 次一交易日收到行权款");
            }
            if (exercised < volume) {
                record(account, day.tradingDay, "到期作废", detail.get(), volume - exercised, strike, 0.0, 0,
                       "标的证券不足, 未能行权", out);
            }
        }
    } else {
        // Shorts are assigned when the longs have reason to exercise.
        const bool covered = pos->direction == kCovered;
        const auto etf = etfPosition();
        if (covered && etf) {
            etf->frozen = std::max(0LL, etf->frozen - shares);  // the covered shares are locked no more
            setAvailable(account, *etf);
            account.touched.push_back(etf);
        }
        if (intrinsic * unit <= CExchangeRules::kStockOptionExerciseFee + kTolerance) {
            record(account, day.tradingDay, "到期作废", detail.get(), volume, strike, 0.0, 0, "义务仓到期未被指派", out);
        } else if (detail->call) {
            // Delivers the shares; what it lacks is settled in cash at the underlying's settlement.
            const long long free = etf ? etf->position - etf->frozen - locked(account, positionKey(underlyingKey, kLong)) : 0;
            const long long given = std::min(shares, std::max(0LL, free));
            if (given > 0) {
                etf->position -= given;
                setAvailable(account, *etf);
                account.touched.push_back(etf);
            }
            const double shortfall = static_cast<double>(shares - given) * underlying;
            const double amount = strike * unit * static_cast<double>(volume) - shortfall;
            queue(pending(round2(amount), 0), "被指派", amount,
                  shares > given ? "交付标的证券, 不足部分按结算价现金结算" : "交付标的证券, 次一交易日收到行权款");
        } else {
            const double amount = -strike * unit * static_cast<double>(volume);
            queue(pending(round2(amount), shares), "被指派", amount, "支付行权款, 次一交易日收到标的证券");
        }
    }
    account.margin = std::max(0.0, account.margin - pos->margin);
    pos->margin = 0.0;
    pos->position = 0;
    pos->todayPosition = 0;
    pos->frozen = 0;
    pos->available = 0;
    account.touched.push_back(pos);
    account.fundsTouched = true;
}

PaperResult CPaperBrokerCore::settle(const PaperSettlement& day)
{
    PaperResult result;
    if (day.tradingDay <= m_settledDay) {
        result.refusal = "该交易日已结算";
        return result;
    }
    settleDay(day, result);
    return result;
}

void CPaperBrokerCore::settleDay(const PaperSettlement& day, PaperResult& out)
{
    m_settledDay = day.tradingDay;
    endOfDay(out);
    settleTasks(out);
    for (auto& entry : m_accounts) {
        Account& account = *entry.second;
        // Combinations the exchange releases: spreads at the end of E-2, the short straddles at the end of E.
        std::vector<std::string> ids;
        for (const auto& comb : account.combinations) {
            ids.push_back(comb.first);
        }
        for (const std::string& id : ids) {
            Combination& comb = *account.combinations.at(id);
            const auto record_ = *comb.record;
            const auto one = m_instruments(utils::vqStockKey(record_.market, record_.legOneCode));
            const StrategyTerms* terms = strategyTerms(record_.strategyCode);
            if (!one || terms == nullptr || utils::isAbsent(one->expireDate)) {
                continue;
            }
            const int lastDay = terms->vertical ? tradingDaysBefore(one->expireDate, 2) : one->expireDate;
            if (day.tradingDay >= lastDay) {
                release(account, comb, record_.volume, out);
                record(account, day.tradingDay, "组合自动解除", one.get(), record_.volume, 0.0, 0.0, 0,
                       record_.name + " " + record_.combId + " 由交易所自动解除", out);
            }
        }
        // Options that expire today.
        std::vector<std::string> expiring;
        for (const auto& pos : account.positions) {
            const auto detail = m_instruments(utils::vqStockKey(pos.second->market, pos.second->code));
            if (detail && detail->isOption() && !utils::isAbsent(detail->expireDate) &&
                detail->expireDate <= day.tradingDay && pos.second->position > 0) {
                expiring.push_back(pos.first);
            }
        }
        for (const std::string& key : expiring) {
            expire(account, key, day, out);
        }
        // What stays is marked at the settlement: its floating profit becomes the day's result.
        double result = 0.0;
        for (auto& item : account.positions) {
            auto& pos = item.second;
            if (pos->position <= 0) {
                continue;
            }
            const std::string stockKey = utils::vqStockKey(pos->market, pos->code);
            const auto detail = m_instruments(stockKey);
            const double unit = detail ? unitOf(*detail) : 1.0;
            const double settle = settlementOf(day, stockKey, pos->lastPrice);
            const double sign = pos->direction == kLong ? 1.0 : -1.0;
            result += (settle - pos->avgPrice) * static_cast<double>(pos->position) * unit * sign;
            pos->avgPrice = settle;
            pos->lastPrice = settle;
            pos->floatProfit = 0.0;
            // The margin of a short from the day's settlement, for the contracts outside combinations.
            if (detail && detail->isOption() && pos->direction == kShort) {
                const double underlying = settlementOf(day, detail->underlyingKey(), underlyingPrice(*detail));
                const double per = CExchangeRules::shortOptionMargin(*detail, settle, underlying);
                if (utils::isUsable(per)) {
                    const long long free = pos->position - locked(account, item.first);
                    const double margin =
                        round2(per * (1.0 + CExchangeRules::kBrokerMarginMarkup)) * static_cast<double>(free);
                    account.margin = std::max(0.0, account.margin + margin - pos->margin);
                    pos->margin = margin;
                }
            }
            account.touched.push_back(pos);
        }
        remarginCombinations(account, day, out);
        account.fundsTouched = true;
        record(account, day.tradingDay, "结算", nullptr, 0, 0.0, result, 0,
               fmt::format("按结算价盯市, 浮动盈亏 {0:.2f} 元转入当日盈亏, 保证金按结算价重算", result), out);
        revalue(account, out, false);
    }
}

void CPaperBrokerCore::remarginCombinations(Account& account, const PaperSettlement& day, PaperResult& out)
{
    // Spreads come out as they were (strikes fix them); KS and KKS follow the day's prices.
    for (auto& entry : account.combinations) {
        Combination& comb = *entry.second;
        const auto& rec = *comb.record;
        const auto one = m_instruments(utils::vqStockKey(rec.market, rec.legOneCode));
        const auto two = m_instruments(utils::vqStockKey(rec.market, rec.legTwoCode));
        if (!one || !two || rec.volume <= 0) {
            continue;
        }
        auto settle = [&](const nqservice::CInstrumentDetail& option) {
            const double previous =
                utils::isUsable(option.preSettlementPrice) ? option.preSettlementPrice : option.preClosePrice;
            return settlementOf(day, option.key(), previous);
        };
        const double underlying = settlementOf(day, one->underlyingKey(), underlyingPrice(*one));
        const double per = combinationMarginAt(rec.strategyCode, *one, settle(*one), *two, settle(*two), underlying);
        if (!utils::isUsable(per)) {
            continue;
        }
        const double margin = round2(per * static_cast<double>(rec.volume));
        if (std::fabs(margin - comb.margin) <= kTolerance) {
            continue;
        }
        account.margin = std::max(0.0, account.margin + margin - comb.margin);
        comb.margin = margin;
        account.fundsTouched = true;
        emitCombination(account, comb, out);
    }
}

std::map<std::string, long long> CPaperBrokerCore::meta() const
{
    return {{"orderSeq", m_orderSeq},
            {"dealSeq", m_dealSeq},
            {"commandSeq", m_commandSeq},
            {"taskSeq", m_taskSeq},
            {"combSeq", m_combSeq},
            {"recordSeq", m_recordSeq},
            {"settledDay", m_settledDay},
            {"tradingDay", m_tradingDay}};
}

void CPaperBrokerCore::setMeta(const std::map<std::string, long long>& values)
{
    auto get = [&](const char* key, long long fallback) {
        auto it = values.find(key);
        return it == values.end() ? fallback : it->second;
    };
    m_orderSeq = std::max(m_orderSeq, get("orderSeq", 0));
    m_dealSeq = std::max(m_dealSeq, get("dealSeq", 0));
    m_commandSeq = std::max(m_commandSeq, get("commandSeq", 0));
    m_taskSeq = std::max(m_taskSeq, get("taskSeq", 0));
    m_combSeq = std::max(m_combSeq, get("combSeq", 0));
    m_recordSeq = std::max(m_recordSeq, get("recordSeq", 0));
    m_settledDay = static_cast<int>(get("settledDay", m_settledDay));
    m_tradingDay = static_cast<int>(get("tradingDay", m_tradingDay));
}

void CPaperBrokerCore::restore(int dataType, const std::string& accountKey, const bson::BSONObj& record,
                               const bson::BSONObj& extra)
{
    Account* account = findAccount(accountKey);
    if (account == nullptr) {
        auto created = std::make_unique<Account>();
        created->info = boost::make_shared<nqservice::CAccountInfo>();
        created->info->accountId = accountKey;
        account = created.get();
        m_accounts[accountKey] = std::move(created);
    }
    switch (dataType) {
    case nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL: {
        account->cash = extra.getField("cash").numberDouble();
        account->frozen = extra.getField("frozen").numberDouble();
        account->margin = extra.getField("margin").numberDouble();
        account->fee = extra.getField("fee").numberDouble();
        if (extra.hasField("info")) {
            account->info->bsonValueFromObj(extra.getField("info").embeddedObject(), true, nullptr);
        }
        break;
    }
    case nqservice::VQ_DATA_TYPE_POSITION_STATICS: {
        auto pos = boost::make_shared<nqservice::CPositionStatics>();
        pos->bsonValueFromObj(record, true, nullptr);
        pos->account = account->info;
        account->positions[positionKey(utils::vqStockKey(pos->market, pos->code), pos->direction)] = pos;
        break;
    }
    case nqservice::VQ_DATA_TYPE_QUICK_ORDER: {
        auto deal = boost::make_shared<nqservice::CDealDetail>();
        deal->bsonValueFromObj(record, true, nullptr);
        deal->account = account->info;
        account->deals[deal->dealId] = deal;
        break;
    }
    case nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION: {
        auto comb = std::make_unique<Combination>();
        comb->record = boost::make_shared<nqservice::CStkOptCombPositionDetail>();
        comb->record->bsonValueFromObj(record, true, nullptr);
        comb->record->account = account->info;
        comb->margin = extra.getField("margin").numberDouble();
        comb->legOneKey = extra.getField("one").str();
        comb->legTwoKey = extra.getField("two").str();
        const std::string id = comb->record->combId;
        const long long number = id.size() > 1 ? std::atoll(id.c_str() + 1) : 0;
        m_combSeq = std::max(m_combSeq, number);
        account->combinations[id] = std::move(comb);
        break;
    }
    case kPaperSettlementDataType: {
        auto rec = boost::make_shared<CPaperSettlementRecord>();
        rec->bsonValueFromObj(record, true, nullptr);
        rec->account = account->info;
        account->records[rec->recordId] = rec;
        const long long number = rec->recordId.size() > 1 ? std::atoll(rec->recordId.c_str() + 1) : 0;
        m_recordSeq = std::max(m_recordSeq, number);
        m_deliveries.erase(std::remove_if(m_deliveries.begin(), m_deliveries.end(),
                                          [&](const std::unique_ptr<Delivery>& d) {
                                              return d->accountKey == accountKey && d->recordId == rec->recordId;
                                          }),
                           m_deliveries.end());
        if (extra.hasField("stage") && extra.getField("stage").numberInt() != 2) {
            auto d = std::make_unique<Delivery>();
            d->accountKey = accountKey;
            d->recordId = rec->recordId;
            d->etfKey = extra.getField("etf").str();
            d->shares = extra.getField("shares").numberLong();
            d->cash = extra.getField("cash").numberDouble();
            d->valueDay = extra.getField("valueDay").numberInt();
            d->sellableDay = extra.getField("sellable").numberInt();
            d->stage = extra.getField("stage").numberInt();
            m_deliveries.push_back(std::move(d));
        }
        break;
    }
    case nqservice::VQ_DATA_TYPE_TASK: {
        auto task = std::make_unique<Task>();
        task->record = boost::make_shared<nqservice::CTaskDetail>();
        task->record->bsonValueFromObj(record, true, nullptr);
        task->accountKey = accountKey;
        m_taskSeq = std::max<long long>(m_taskSeq, task->record->taskId);
        m_tasks[task->record->taskId] = std::move(task);
        break;
    }
    case nqservice::VQ_DATA_TYPE_ORDER: {
        auto order = boost::make_shared<nqservice::COrderDetail>();
        order->bsonValueFromObj(record, true, nullptr);
        order->account = account->info;
        account->orders[order->orderId] = order;
        const std::string key = accountKey + "|" + order->orderId;
        const auto detail = m_instruments(utils::vqStockKey(order->market, order->code));
        if (nqservice::COrderDetailHelper::completed(*order) || !detail || extra.isEmpty()) {
            m_working.erase(key);
            break;
        }
        auto work = std::make_unique<Working>();
        work->accountKey = accountKey;
        work->order = order;
        work->detail = detail;
        work->op = classify(order->operationType, detail->kind);
        work->frozenPerUnit = extra.getField("fpu").numberDouble();
        work->marginPerUnit = extra.getField("mpu").numberDouble();
        work->unitFee = extra.getField("fee").numberDouble();
        work->limit = extra.getField("limit").numberDouble();
        work->market = extra.getField("market").trueValue();
        work->released = !extra.hasField("released") || extra.getField("released").trueValue();
        m_working[key] = std::move(work);
        break;
    }
    default:
        break;
    }
}

void CPaperBrokerCore::finishRestore()
{
    m_byInstrument.clear();
    for (auto& entry : m_working) {
        Working& work = *entry.second;
        // Order ids grow with arrival: their number is the time priority.
        const std::string& id = work.order->orderId;
        work.seq = id.size() > 1 ? std::atoll(id.c_str() + 1) : 0;
        work.limitIndexed = false;
        index(work);
        if (work.op.open && work.op.buy) {
            findAccount(work.accountKey)->boughtToday[work.detail->underlyingKey()] += work.order->remaining;
        }
    }
    for (auto& entry : m_accounts) {
        // The legs' locks follow from the combinations held.
        Account& account = *entry.second;
        account.locks.clear();
        for (const auto& comb : account.combinations) {
            comb.second->record->account = account.info;
            account.locks[comb.second->legOneKey] += comb.second->record->volume;
            account.locks[comb.second->legTwoKey] += comb.second->record->volume;
        }
        for (const auto& d : m_deliveries) {
            if (d->accountKey == entry.first && d->stage == 1) {
                account.locks[positionKey(d->etfKey, kLong)] += d->shares;
            }
        }
        for (auto& pos : entry.second->positions) {
            pos.second->account = entry.second->info;
            setAvailable(account, *pos.second);
        }
        for (const auto& deal : entry.second->deals) {
            const auto detail = m_instruments(utils::vqStockKey(deal.second->market, deal.second->code));
            const OpInfo op = detail ? classify(deal.second->operationType, detail->kind) : OpInfo();
            if (op.valid && op.open && op.buy) {
                entry.second->boughtToday[detail->underlyingKey()] += deal.second->volume;
            }
        }
    }
}

}  // namespace trading
