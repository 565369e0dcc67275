// A small fixed market for the paper broker's tests, benchmarks and soak
// program: 50ETF with a call and a put, and a soybean meal future with a call;
// quotes and times made by hand.
#pragma once

#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "seam/marketenums.h"
#include "seam/tradinghelpers.h"
#include "seam/tradingrecords.h"
#include "services/trading/cpaperbrokercore.h"

#include <boost/make_shared.hpp>

#include <QDateTime>

#include <map>
#include <memory>
#include <string>

namespace paperfixture {

inline const std::string kEtf = "510050.SH";
inline const std::string kCall = "10000001.SH";
inline const std::string kPut = "10000002.SH";
inline const std::string kFuture = "m2601.DCE";
inline const std::string kMealCall = "m2601-C-3200.DCE";
// More 50ETF options for combinations: the 3.1 strike of the same month, a
// call of another month, one with an adjusted unit, and a 300ETF call.
inline const std::string kCall31 = "10000003.SH";
inline const std::string kPut31 = "10000004.SH";
inline const std::string kCallLater = "10000005.SH";
inline const std::string kCallAdjusted = "10000006.SH";
inline const std::string kCall300 = "10000007.SH";

// Exchange-local time (UTC+8) as epoch milliseconds.
inline long long at(int hour, int minute, int second = 0, const QDate& day = QDate(2026, 11, 24))
{
    return QDateTime(day, QTime(hour, minute, second), Qt::OffsetFromUTC, 8 * 3600).toMSecsSinceEpoch();
}

class Market {
public:
    Market()
    {
        auto etf = make("SH", "510050", "50ETF", nqservice::IK_FUND, 0.001, 1.0);
        etf->preClosePrice = 3.0;
        auto call = option("SH", "10000001", "50ETF购12月3000", true, 3.0, 10000.0, 0.0001, 0.1000);
        auto put = option("SH", "10000002", "50ETF沽12月3000", false, 3.0, 10000.0, 0.0001, 0.0800);
        call->kind = put->kind = nqservice::IK_STOCK_OPTION;
        option("SH", "10000003", "50ETF购12月3100", true, 3.1, 10000.0, 0.0001, 0.0600);
        option("SH", "10000004", "50ETF沽12月3100", false, 3.1, 10000.0, 0.0001, 0.1200);
        option("SH", "10000005", "50ETF购1月3100", true, 3.1, 10000.0, 0.0001, 0.0700)->expireDate = 20280126;
        option("SH", "10000006", "50ETF购12月3100A", true, 3.1, 10150.0, 0.0001, 0.0600);
        auto other = option("SH", "10000007", "300ETF购12月4000", true, 4.0, 10000.0, 0.0001, 0.1000);
        other->underlyingCode = "510300";
        auto future = make("DCE", "m2601", "豆粕2601", nqservice::IK_FUTURE, 1.0, 10.0);
        future->preClosePrice = future->preSettlementPrice = 3200.0;
        auto meal = option("DCE", "m2601-C-3200", "豆粕2601购3200", true, 3200.0, 10.0, 0.5, 100.0);
        meal->kind = nqservice::IK_FUTURE_OPTION;
        meal->underlyingCode = "m2601";
        meal->underlyingMarket = "DCE";
        meal->maxOrderVolume = 1000;
    }

    std::shared_ptr<nqservice::CInstrumentDetail> find(const std::string& key) const
    {
        auto it = m_instruments.find(key);
        return it == m_instruments.end() ? nullptr : it->second;
    }
    trading::CPaperBrokerCore::InstrumentLookup lookup() const
    {
        auto copy = m_instruments;
        return [copy](const std::string& key) {
            auto it = copy.find(key);
            return it == copy.end() ? std::shared_ptr<nqservice::CInstrumentDetail>() : it->second;
        };
    }

private:
    std::shared_ptr<nqservice::CInstrumentDetail> make(const char* market, const char* code, const char* name,
                                                       nqservice::EInstrumentKind kind, double tick, double unit)
    {
        auto detail = std::make_shared<nqservice::CInstrumentDetail>();
        detail->market = market;
        detail->code = code;
        detail->name = name;
        detail->kind = kind;
        detail->priceTick = tick;
        detail->contractUnit = unit;
        detail->expireDate = 20271222;
        m_instruments[detail->key()] = detail;
        return detail;
    }
    std::shared_ptr<nqservice::CInstrumentDetail> option(const char* market, const char* code, const char* name,
                                                         bool call, double strike, double unit, double tick,
                                                         double settle)
    {
        auto detail = make(market, code, name, nqservice::IK_STOCK_OPTION, tick, unit);
        detail->call = call;
        detail->exercisePrice = strike;
        detail->underlyingCode = "510050";
        detail->underlyingMarket = "SH";
        detail->preSettlementPrice = settle;
        detail->preClosePrice = settle;
        detail->maxOrderVolume = 50;
        detail->exerciseStyle = nqservice::ES_EUROPEAN;
        return detail;
    }

    std::map<std::string, std::shared_ptr<nqservice::CInstrumentDetail>> m_instruments;
};

// A book around a mid price: level i at mid -/+ i ticks with volume size * i.
inline boost::shared_ptr<TC::CPriceData> quote(const std::string& key, double bid1, double ask1, int size = 10,
                                               double tick = 0.0001, double limitUp = 0.4, double limitDown = 0.0001)
{
    auto q = boost::make_shared<TC::CPriceData>();
    const auto dot = key.rfind('.');
    q->code = key.substr(0, dot);
    q->market = key.substr(dot + 1);
    q->lastPrice = (bid1 + ask1) / 2.0;
    q->preClose = q->lastPrice;
    for (int level = 1; level <= 5; ++level) {
        q->setBid(level, bid1 - (level - 1) * tick, size * level);
        q->setAsk(level, ask1 + (level - 1) * tick, size * level);
    }
    q->upStopPrice = limitUp;
    q->downStopPrice = limitDown;
    q->tradingPhase = TC::TP_CONTINUOUS;
    return q;
}

inline boost::shared_ptr<nqservice::CAccountInfo> account(const std::string& id, int brokerType)
{
    auto info = boost::make_shared<nqservice::CAccountInfo>();
    info->accountId = id;
    info->displayName = id;
    info->accountType = brokerType;
    return info;
}

inline trading::PaperAccountTerms stockAccount(const std::string& id = "SO001", double cash = 1000000.0)
{
    trading::PaperAccountTerms terms;
    terms.info = account(id, nqservice::VQ_BROKER_TYPE_STOCK_OPTION);
    terms.cash = cash;
    terms.holdings = {{kEtf, 100000}};
    return terms;
}

inline trading::PaperAccountTerms futureAccount(const std::string& id = "FO001", double cash = 500000.0)
{
    trading::PaperAccountTerms terms;
    terms.info = account(id, nqservice::VQ_BROKER_TYPE_FUTURE_OPTION);
    terms.cash = cash;
    return terms;
}

inline boost::shared_ptr<nqservice::CCodeOrderParam> order(const trading::PaperAccountTerms& terms, const std::string& key,
                                                           int operation, int priceType, double price, long long volume)
{
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = terms.info;
    const auto dot = key.rfind('.');
    param->stockInfo.code = key.substr(0, dot);
    param->stockInfo.market = key.substr(dot + 1);
    param->operationType = static_cast<nqservice::EOperationType>(operation);
    param->priceType = static_cast<nqservice::EPriceType>(priceType);
    param->price = price;
    param->volume = volume;
    param->orderKind = nqservice::OK_SINGLE;
    return param;
}

inline nqservice::COrderComandParam command(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params,
                                            nqservice::EVqTraderType type = nqservice::VQ_TRADER_TYPE_NONE)
{
    nqservice::COrderComandParam command;
    command.traderType = type;
    command.params = std::move(params);
    return command;
}

// One combination order: a build names the strategy, a release the combination
// number; the legs go in the combination parameter (bit 64), the code is "A/B".
inline boost::shared_ptr<nqservice::CCodeOrderParam> combination(const trading::PaperAccountTerms& terms, int operation,
                                                                 const std::string& strategy, const std::string& one,
                                                                 const std::string& two, long long volume,
                                                                 const std::string& combId = std::string())
{
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = terms.info;
    const std::string codeOne = one.substr(0, one.rfind('.'));
    const std::string codeTwo = two.substr(0, two.rfind('.'));
    param->stockInfo.market = one.substr(one.rfind('.') + 1);
    param->stockInfo.code = codeOne + "/" + codeTwo;
    param->stockInfo.textField2 = strategy;
    param->operationType = static_cast<nqservice::EOperationType>(operation);
    param->priceType = nqservice::DataHelper::getOptionCombStrategyPriceType(strategy);
    param->price = 0.0;
    param->volume = volume;
    param->hedgeFlag = nqservice::HF_SPECULATION;
    param->combPositionKey = combId;
    auto legs = boost::make_shared<nqservice::COptionCombStrategyParam>();
    legs->marketName = param->stockInfo.market;
    legs->legOneCode = codeOne;
    legs->legTwoCode = codeTwo;
    param->extraFlags |= nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY;
    nqservice::DataHelper::fillExtraParam(param->extraParams, nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY, legs);
    return param;
}

}  // namespace paperfixture
