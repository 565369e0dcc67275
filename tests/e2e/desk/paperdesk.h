// What the desk's paper-trading tests share: the account tables as the panels
// read them, and a contract to trade.
#pragma once

#include "seam/cexchangeclient.h"
#include "seam/common.h"
#include "seam/trading.h"

#include <cmath>
#include <string>
#include <vector>

namespace paperdesk {

inline boost::shared_ptr<nqservice::CAccountData> accountData(const std::string& key)
{
    const auto center = nqservice::TraderCenter::instance();
    return center ? center->getDataCenter()->getAccountData(utils::hash(key)) : nullptr;
}

template <typename T>
std::vector<boost::shared_ptr<T>> rows(const std::string& account, int dataType)
{
    std::vector<boost::shared_ptr<T>> out;
    const auto data = accountData(account);
    if (!data) {
        return out;
    }
    std::vector<boost::shared_ptr<nqservice::IData>> records;
    data->getVector(dataType, records);
    for (const auto& record : records) {
        out.push_back(boost::dynamic_pointer_cast<T>(record));
    }
    return out;
}

inline boost::shared_ptr<nqservice::CPositionStatics> positionOf(const std::string& account, const std::string& code,
                                                                 int direction = '0')
{
    for (const auto& pos : rows<nqservice::CPositionStatics>(account, nqservice::VQ_DATA_TYPE_POSITION_STATICS)) {
        if (pos->code == code && pos->direction == direction) {
            return pos;
        }
    }
    return nullptr;
}

inline long long volumeOf(const std::string& account, const std::string& code)
{
    const auto pos = positionOf(account, code);
    return pos ? pos->position : 0;
}

// The at-the-money 50ETF call of the nearest month.
inline std::shared_ptr<nqservice::CInstrumentDetail> atTheMoneyCall()
{
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    QMap<QString, QMap<QString, QStringList>> chains;
    exchange->getStockOptionMap(chains);
    const auto etf = exchange->getCodeInfo(QStringLiteral("510050.SH"));
    std::shared_ptr<nqservice::CInstrumentDetail> best;
    for (const QString& key : chains.value(QStringLiteral("510050.SH")).first()) {
        const auto detail = exchange->getCodeInfo(key);
        if (detail && detail->call && !detail->adjusted &&
            (!best || std::fabs(detail->exercisePrice - etf->preClosePrice) <
                          std::fabs(best->exercisePrice - etf->preClosePrice))) {
            best = detail;
        }
    }
    return best;
}

// One order of an account on an instrument at the other side's best.
inline boost::shared_ptr<nqservice::CCodeOrderParam> opponentOrder(const std::string& account,
                                                                   const nqservice::CInstrumentDetail& detail,
                                                                   nqservice::EOperationType operation, long long volume)
{
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = accountData(account)->getAccountInfo();
    param->operationType = operation;
    param->stockInfo.market = detail.market;
    param->stockInfo.code = detail.code;
    param->priceType = nqservice::PT_OPPONENT;
    param->volume = volume;
    return param;
}

// The 50ETF call of the same month one strike above base, the short leg of a bull call spread.
inline std::shared_ptr<nqservice::CInstrumentDetail> nextCallUp(const nqservice::CInstrumentDetail& base)
{
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    QMap<QString, QMap<QString, QStringList>> chains;
    exchange->getStockOptionMap(chains);
    std::shared_ptr<nqservice::CInstrumentDetail> higher;
    for (const QString& key : chains.value(QStringLiteral("510050.SH")).first()) {
        const auto detail = exchange->getCodeInfo(key);
        if (detail && detail->call && !detail->adjusted && detail->expireDate == base.expireDate &&
            detail->exercisePrice > base.exercisePrice + 1e-6 &&
            (!higher || detail->exercisePrice < higher->exercisePrice)) {
            higher = detail;
        }
    }
    return higher;
}

}  // namespace paperdesk
