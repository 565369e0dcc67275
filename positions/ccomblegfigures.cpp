#include "positions/ccomblegfigures.h"

#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/common.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"

namespace TC {

namespace {
const char* const kInvalidText = "非法值";
}  // namespace

CCombLegFigures::CCombLegFigures() : timeValue(utils::kAbsentDouble) {}

CCombLegFigures CCombLegFigures::of(const std::string& stockKey)
{
    CCombLegFigures figures;
    const boost::shared_ptr<nqservice::GreekAndOptionsCalculator> calculator =
        nqservice::GreekAndOptionsCalculator::instance();
    if (!calculator || stockKey.empty()) {
        return figures;
    }
    nqservice::CGreeksValue greeks;
    if (calculator->calcGreeks(stockKey, greeks, false, true)) {
        figures.hasGreeks = true;
        figures.delta = greeks.delta;
        figures.gamma = greeks.gamma;
        figures.theta = greeks.theta;
        figures.vega = greeks.vega;
        figures.rho = greeks.rho;
    }
    // The time value as the chain board reckons it: the option's last price
    // less its intrinsic value at the underlying's last price.
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    if (exchange == nullptr || quotes == nullptr) {
        return figures;
    }
    const QString key = QString::fromStdString(stockKey);
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = exchange->getCodeInfo(key);
    if (!detail || !detail->isOption()) {
        return figures;
    }
    const boost::shared_ptr<CPriceData> option = quotes->getStockPrice(key);
    const boost::shared_ptr<CPriceData> under = quotes->getStockPrice(QString::fromStdString(
        utils::vqStockKey(detail->getTextField(nqservice::IF_UNDERLYING_MARKET),
                          detail->getTextField(nqservice::IF_UNDERLYING_CODE))));
    const double strike = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    if (!option || !under || !utils::isUsable(option->lastPrice) || !utils::isUsable(under->lastPrice) ||
        !utils::isUsable(strike)) {
        return figures;
    }
    const double intrinsic = detail->call ? calculator->calcCallIntrinsicValue(under->lastPrice, strike)
                                          : calculator->calcPutIntrinsicValue(under->lastPrice, strike);
    if (utils::isUsable(intrinsic)) {
        figures.timeValue = calculator->calcTimeValue(option->lastPrice, intrinsic);
    }
    return figures;
}

QString CCombLegFigures::greekText(double value, int formatFlags)
{
    return WG::formatDoubleNumber(value, 4, WG::FormatFlags(formatFlags), false, QString::fromUtf8(kInvalidText));
}

QString CCombLegFigures::timeValueText(double value, int formatFlags)
{
    if (!utils::isUsable(value) || value <= utils::kPriceTolerance) {
        return QStringLiteral("-");
    }
    return WG::formatDoubleNumber(value, 4, WG::FormatFlags(formatFlags), false, QString::fromUtf8(kInvalidText));
}

}  // namespace TC
