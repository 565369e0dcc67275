#include "strategy/cprofitlossanalysistexts.h"

#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "seam/cquoteclient.h"
#include "seam/userrecords.h"

#include <QDate>
#include <QStringList>

namespace TC {

namespace {

QString number(double value, int decimals, WG::FormatFlags flags)
{
    return WG::formatDoubleNumber(value, decimals, flags, false, QStringLiteral("非法值"));
}

}  // namespace

void CProfitLossAnalysisTexts::fill(const COptionWinnerTableData& row, int direction, const CPriceData* priceOne,
                                    const nqservice::CInstrumentDetail* detailOne, const CPriceData* priceTwo,
                                    const nqservice::CInstrumentDetail* detailTwo, WG::FormatFlags flags)
{
    const QDate date = QDate::fromString(QString::number(row.expireDate), QStringLiteral("yyyyMMdd"));
    expiry = QStringLiteral("行权到期日:%1").arg(date.toString(QStringLiteral("yyyy-MM-dd")));
    maxProfit = QStringLiteral("最大盈利:%1").arg(row.maxProfitText);
    maxLoss = QStringLiteral("最大亏损:%1").arg(row.maxLossText);
    netPremium = QStringLiteral("权利金净值:%1").arg(number(row.netPremium, 2, flags));
    profitRange = QStringLiteral("盈利区间:-");
    lossRange = QStringLiteral("亏损区间:-");

    if (priceOne == nullptr || detailOne == nullptr) {
        return;
    }
    const double k1 = detailOne->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    const double l1 = priceOne->lastPrice;
    switch (direction) {
    case WPD_RISE: {
        const QString edge = number(k1 + l1, 3, flags);
        profitRange = QStringLiteral("盈利区间:%1以上").arg(edge);
        lossRange = QStringLiteral("亏损区间:%1以下").arg(edge);
        break;
    }
    case WPD_FALL: {
        const QString edge = number(k1 - l1, 3, flags);
        profitRange = QStringLiteral("盈利区间:%1以下").arg(edge);
        lossRange = QStringLiteral("亏损区间:%1以上").arg(edge);
        break;
    }
    case WPD_BREAK:
    case WPD_RANGE: {
        if (priceTwo == nullptr || detailTwo == nullptr) {
            break;
        }
        // Contract one is the put, two the call: each breakeven moves by the pair's whole premium.
        const double k2 = detailTwo->getDoubleField(nqservice::IF_EXERCISE_PRICE);
        const double l2 = priceTwo->lastPrice;
        const QString high = number(k2 + l1 + l2, 3, flags);
        const QString low = number(k1 - l1 - l2, 3, flags);
        if (direction == WPD_BREAK) {
            profitRange = QStringLiteral("盈利区间:%1以下或%2以上").arg(low, high);
            lossRange = QStringLiteral("亏损区间:%1与%2之间").arg(low, high);
        } else {
            profitRange = QStringLiteral("盈利区间:%1与%2之间").arg(low, high);
            lossRange = QStringLiteral("亏损区间:%1以下或%2以上").arg(low, high);
        }
        break;
    }
    default:
        break;
    }
}

void CProfitLossAnalysisTexts::fill(const COptionWinnerTableData& row, int direction, WG::FormatFlags flags)
{
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    boost::shared_ptr<CPriceData> priceOne;
    boost::shared_ptr<CPriceData> priceTwo;
    std::shared_ptr<nqservice::CInstrumentDetail> detailOne;
    std::shared_ptr<nqservice::CInstrumentDetail> detailTwo;
    if (exchange != nullptr && quotes != nullptr) {
        priceOne = quotes->getStockPrice(row.codeOne);
        detailOne = exchange->getCodeInfo(row.codeOne);
        if (row.isPair()) {
            priceTwo = quotes->getStockPrice(row.codeTwo);
            detailTwo = exchange->getCodeInfo(row.codeTwo);
        }
    }
    fill(row, direction, priceOne.get(), detailOne.get(), priceTwo.get(), detailTwo.get(), flags);
}

QStringList CProfitLossAnalysisTexts::lines() const
{
    return {title, expiry, maxProfit, profitRange, maxLoss, lossRange, netPremium};
}

}  // namespace TC
