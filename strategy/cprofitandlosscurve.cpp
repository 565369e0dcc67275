#include "strategy/cprofitandlosscurve.h"

#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/logger.h"

#include <QStringList>

#include <algorithm>

namespace TC {

namespace {

// A strike or price counts when it lies more than 1e-5 from the absent marker.
bool isValid(double value) { return !utils::isAbsent(value); }

}  // namespace

bool CProfitAndLossCurve::isCallByName(const std::string& name)
{
    return name.find("购") != std::string::npos || name.find('C') != std::string::npos;
}

std::vector<CProfitAndLossLeg> CProfitAndLossCurve::collectLegs(const QMap<QString, int>& legOperations)
{
    std::vector<CProfitAndLossLeg> legs;
    legs.reserve(static_cast<std::size_t>(legOperations.size()));
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    for (auto it = legOperations.constBegin(); it != legOperations.constEnd(); ++it) {
        CProfitAndLossLeg leg;
        leg.key = it.key();
        leg.direction = it.value();
        const std::shared_ptr<nqservice::CInstrumentDetail> detail =
            exchange != nullptr ? exchange->getCodeInfo(it.key()) : nullptr;
        if (detail) {
            leg.hasInstrument = true;
            leg.call = isCallByName(detail->name);
            leg.strike = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
        }
        const boost::shared_ptr<CPriceData> price = quotes != nullptr ? quotes->getStockPrice(it.key()) : nullptr;
        if (price) {
            leg.hasPrice = true;
            leg.last = price->lastPrice;
        }
        legs.push_back(leg);
    }
    return legs;
}

double CProfitAndLossCurve::anchorAndStrikes(const std::vector<CProfitAndLossLeg>& legs, std::vector<double>& strikes)
{
    double anchor = 0.0;
    strikes.clear();
    for (const CProfitAndLossLeg& leg : legs) {
        if (!leg.hasInstrument) {
            continue;
        }
        // A second leg on a strike already seen adds nothing: exact comparison.
        if (std::find(strikes.begin(), strikes.end(), leg.strike) != strikes.end()) {
            continue;
        }
        if (!isValid(leg.strike) || !isValid(leg.last) || !leg.hasPrice) {
            continue;
        }
        strikes.push_back(leg.strike);
        // The sell column is not the buy column's mirror: a sold call adds as a bought one.
        if (leg.call) {
            anchor += leg.strike + leg.last;
        } else if (leg.direction == kBuy) {
            anchor += leg.strike - leg.last;
        } else {
            anchor += leg.last - leg.strike;
        }
    }
    return anchor;
}

std::vector<double> CProfitAndLossCurve::priceGrid(double anchor, double low, double high)
{
    std::vector<double> grid;
    grid.push_back(anchor);
    // Repeated addition, not multiplication: the points carry the steps' rounding.
    for (double x = anchor - kGridStep; x >= low; x += -kGridStep) {
        grid.push_back(x);
    }
    for (double x = anchor + kGridStep; x <= high; x += kGridStep) {
        grid.push_back(x);
    }
    std::sort(grid.begin(), grid.end());
    return grid;
}

double CProfitAndLossCurve::payoffAt(const std::vector<CProfitAndLossLeg>& legs, double price)
{
    double value = 0.0;
    for (const CProfitAndLossLeg& leg : legs) {
        if (!leg.hasInstrument || !leg.hasPrice) {
            continue;
        }
        const double k = leg.strike;
        const double l = leg.last;
        // At K = P a put pays nothing and a call counts as out of the money.
        const bool callOutOfMoney = k >= price;
        if (leg.direction == kBuy) {
            if (leg.call) {
                value += callOutOfMoney ? -l : (price - k) - l;
            } else {
                value += callOutOfMoney ? (k - price) - l : -l;
            }
        } else {
            if (leg.call) {
                value += callOutOfMoney ? l : (k - price) + l;
            } else {
                value += callOutOfMoney ? (price - k) + l : l;
            }
        }
    }
    return value;
}

QString CProfitAndLossCurve::formatPoint(double price, double value)
{
    const QString invalid = QStringLiteral("非法值");
    return QStringLiteral("[%1,%2]")
        .arg(WG::formatDoubleNumber(price, 4, WG::FormatFlags(), false, invalid),
             WG::formatDoubleNumber(value, 4, WG::FormatFlags(), false, invalid));
}

QString CProfitAndLossCurve::chartScript(int width, const std::vector<double>& prices, const std::vector<double>& values)
{
    if (prices.size() != values.size()) {
        return QString();
    }
    QStringList items;
    items.reserve(static_cast<int>(prices.size()));
    for (std::size_t i = 0; i < prices.size(); ++i) {
        items << formatPoint(prices[i], values[i]);
    }
    QStringList members;
    members << QStringLiteral("\"width\":%1").arg(width);
    members << QStringLiteral("\"data\":[%1]").arg(items.join(QLatin1Char(',')));
    return QStringLiteral("loadChart('{%1}')").arg(members.join(QLatin1Char(',')));
}

QString CProfitAndLossCurve::themeScript(const QString& themeName, const QList<QPair<QString, QString>>& colours)
{
    // Names and colours are the toolkit's own texts; quotes are kept out all the same.
    const auto clean = [](QString text) { return text.remove(QLatin1Char('\'')).remove(QLatin1Char('"')); };
    QStringList members;
    for (const auto& colour : colours) {
        members << QStringLiteral("\"%1\":\"%2\"").arg(clean(colour.first), clean(colour.second));
    }
    return QStringLiteral("setTheme('%1',{%2})").arg(clean(themeName), members.join(QLatin1Char(',')));
}

void CProfitAndLossCurve::logLengthMismatch(const void* owner)
{
    const QString address = QStringLiteral("0x%1").arg(reinterpret_cast<quintptr>(owner), 0, 16);
    utils::writeLog(utils::kLogLevelError, address.toStdString(), "TC::CProfitAndLossWebView::loadData",
                    "dPriceList.size() != dValueList.size()");
}

CProfitAndLossCurve::SSeries CProfitAndLossCurve::fromSeries(int width, std::vector<double> prices,
                                                             std::vector<double> values, const void* owner)
{
    SSeries series;
    series.prices = std::move(prices);
    series.values = std::move(values);
    if (series.prices.size() != series.values.size()) {
        series.outcome = OC_LENGTH_MISMATCH;
        logLengthMismatch(owner);
        return series;
    }
    series.script = chartScript(width, series.prices, series.values);
    series.outcome = OC_DRAWN;
    return series;
}

CProfitAndLossCurve::SSeries CProfitAndLossCurve::build(int width, const std::vector<CProfitAndLossLeg>& legs,
                                                        const void* owner)
{
    std::vector<double> strikes;
    const double anchor = anchorAndStrikes(legs, strikes);
    std::sort(strikes.begin(), strikes.end());
    if (strikes.empty()) {
        SSeries none;
        none.anchor = anchor;
        return none;
    }
    std::vector<double> prices = priceGrid(anchor, strikes.front() - kGridMargin, strikes.back() + kGridMargin);
    std::vector<double> values;
    values.reserve(prices.size());
    for (double price : prices) {
        values.push_back(payoffAt(legs, price));
    }
    SSeries series = fromSeries(width, std::move(prices), std::move(values), owner);
    series.anchor = anchor;
    series.strikes = std::move(strikes);
    return series;
}

}  // namespace TC
