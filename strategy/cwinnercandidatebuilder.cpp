#include "strategy/cwinnercandidatebuilder.h"

#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "seam/cquoteclient.h"
#include "seam/user.h"

#include <QDateTime>
#include <QMap>

#include <boost/make_shared.hpp>

namespace TC {

namespace {

const char* const kUnlimited = "无限";

// The candidate of one option, before it is paired or shown.
COptionWinnerTableDataPtr single(const QString& key, const nqservice::CInstrumentDetail& detail, int operation,
                                 bool asSecond)
{
    auto row = boost::make_shared<COptionWinnerTableData>();
    row->expireDate = detail.expireDate;
    const QString name = QString::fromStdString(detail.name);
    if (asSecond) {
        row->codeTwo = key;
        row->nameTwo = name;
        row->operationTwo = operation;
        row->quantityTwo = 1;
    } else {
        row->rowKey = key;
        row->codeOne = key;
        row->nameOne = name;
        row->operationOne = operation;
        row->quantityOne = 1;
    }
    return row;
}

}  // namespace

int CWinnerCandidateBuilder::operationOf(int direction)
{
    return direction == WPD_RANGE ? nqservice::OT_SELL : nqservice::OT_BUY;
}

int CWinnerCandidateBuilder::dateOfTime(unsigned seconds)
{
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds)).toString(QStringLiteral("yyyyMMdd")).toInt();
}

bool CWinnerCandidateBuilder::passes(int direction, bool isCall, double strike, int expireDate, int startDate,
                                     int endDate, const CWinnerSetting& setting)
{
    if (!(startDate < expireDate && expireDate <= endDate)) {
        return false;
    }
    const double t = kLevelTolerance;
    switch (direction) {
    case WPD_RISE:
        return isCall && setting.levelOne - strike > t;
    case WPD_FALL:
        return !isCall && setting.levelTwo - strike <= t;
    case WPD_BREAK:
        return isCall ? setting.levelOne - strike <= t : strike - setting.levelTwo <= t;
    case WPD_RANGE:
        return isCall ? setting.levelTwo - strike <= t : strike - setting.levelOne <= t;
    default:
        return false;
    }
}

CWinnerCandidates CWinnerCandidateBuilder::build(CExchangeClient* exchange, const QString& underlying, int direction,
                                                 const CWinnerSetting& setting)
{
    CWinnerCandidates out;
    if (exchange == nullptr || underlying.isEmpty()) {
        return out;
    }
    QMap<QString, QMap<QString, QStringList>> map;
    exchange->getStockOptionMap(map);
    const auto entry = map.constFind(underlying);
    if (entry == map.constEnd()) {
        return out;
    }
    const int operation = operationOf(direction);
    const int startDate = dateOfTime(setting.startTime);
    const int endDate = dateOfTime(setting.endTime);
    const bool pairs = direction == WPD_BREAK || direction == WPD_RANGE;
    QMap<QString, COptionWinnerTableDataPtr> puts;
    QMap<QString, COptionWinnerTableDataPtr> calls;
    for (auto month = entry->constBegin(); month != entry->constEnd(); ++month) {
        for (const QString& key : month.value()) {
            const std::shared_ptr<nqservice::CInstrumentDetail> detail = exchange->getCodeInfo(key);
            if (!detail) {
                continue;
            }
            const bool call = exchange->isCall(detail);
            if (!passes(direction, call, detail->getDoubleField(nqservice::IF_EXERCISE_PRICE), detail->expireDate,
                        startDate, endDate, setting)) {
                continue;
            }
            out.passedKeys << key;
            if (!pairs) {
                COptionWinnerTableDataPtr row = single(key, *detail, operation, false);
                if (direction == WPD_RISE) {
                    row->maxProfitText = QString::fromUtf8(kUnlimited);
                }
                out.rows << row;
            } else if (call) {
                calls.insert(key, single(key, *detail, operation, true));
            } else {
                puts.insert(key, single(key, *detail, operation, false));
            }
        }
    }
    // Every put meets every call of its expiry; strikes are not compared.
    for (const COptionWinnerTableDataPtr& put : qAsConst(puts)) {
        for (const COptionWinnerTableDataPtr& call : qAsConst(calls)) {
            if (put->expireDate != call->expireDate) {
                continue;
            }
            auto row = boost::make_shared<COptionWinnerTableData>(*put);
            row->rowKey = QStringLiteral("%1|%2").arg(put->codeOne, call->codeTwo);
            row->codeTwo = call->codeTwo;
            row->nameTwo = call->nameTwo;
            row->operationTwo = operation;
            row->quantityTwo = 1;
            if (direction == WPD_BREAK) {
                row->maxProfitText = QString::fromUtf8(kUnlimited);
            } else {
                row->maxLossText = QString::fromUtf8(kUnlimited);
            }
            out.rows << row;
        }
    }
    return out;
}

bool CWinnerCandidateBuilder::reprice(COptionWinnerTableData& row, int direction, const CPriceData* priceOne,
                                      const nqservice::CInstrumentDetail* detailOne, const CPriceData* priceTwo,
                                      const nqservice::CInstrumentDetail* detailTwo, WG::FormatFlags flags)
{
    if (priceOne == nullptr || detailOne == nullptr) {
        return false;
    }
    row.lastOne = priceOne->lastPrice;
    row.volumeOne = priceOne->volume;
    row.changeOne = priceOne->changeAmount;
    const double u1 = detailOne->getDoubleField(nqservice::IF_CONTRACT_UNIT);
    switch (direction) {
    case WPD_RISE:
        row.netPremium = u1 * row.lastOne * -1.0;
        row.maxLossText = moneyText(row.netPremium, flags);
        break;
    case WPD_FALL:
        row.netPremium = u1 * row.lastOne * -1.0;
        row.maxProfitText =
            moneyText(u1 * detailOne->getDoubleField(nqservice::IF_EXERCISE_PRICE) + row.netPremium, flags);
        row.maxLossText = moneyText(row.netPremium, flags);
        break;
    case WPD_BREAK:
    case WPD_RANGE: {
        if (priceTwo == nullptr || detailTwo == nullptr) {
            break;
        }
        row.lastTwo = priceTwo->lastPrice;
        row.volumeTwo = priceTwo->volume;
        row.changeTwo = priceTwo->changeAmount;
        const double u2 = detailTwo->getDoubleField(nqservice::IF_CONTRACT_UNIT);
        const double received = u2 * row.lastTwo + u1 * row.lastOne;
        if (direction == WPD_BREAK) {
            row.netPremium = received * -1.0;
            row.maxLossText = moneyText(row.netPremium, flags);
        } else {
            row.netPremium = received;
            row.maxProfitText = moneyText(row.netPremium, flags);
        }
        break;
    }
    default:
        break;
    }
    return true;
}

bool CWinnerCandidateBuilder::reprice(COptionWinnerTableData& row, int direction, WG::FormatFlags flags)
{
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    if (exchange == nullptr || quotes == nullptr) {
        return false;
    }
    const boost::shared_ptr<CPriceData> priceOne = quotes->getStockPrice(row.codeOne);
    const std::shared_ptr<nqservice::CInstrumentDetail> detailOne = exchange->getCodeInfo(row.codeOne);
    boost::shared_ptr<CPriceData> priceTwo;
    std::shared_ptr<nqservice::CInstrumentDetail> detailTwo;
    if (row.isPair()) {
        priceTwo = quotes->getStockPrice(row.codeTwo);
        detailTwo = exchange->getCodeInfo(row.codeTwo);
    }
    return reprice(row, direction, priceOne.get(), detailOne.get(), priceTwo.get(), detailTwo.get(), flags);
}

WG::FormatFlags CWinnerCandidateBuilder::segmentedFlags()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr ? WG::FormatFlags(static_cast<int>(config->getSegmentedFormatFlag())) : WG::FormatFlags();
}

QString CWinnerCandidateBuilder::moneyText(double value, WG::FormatFlags flags)
{
    return WG::formatDoubleNumber(value, 4, flags, false, QStringLiteral("非法值"));
}

}  // namespace TC
