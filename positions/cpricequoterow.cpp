#include "positions/cpricequoterow.h"

#include "positions/cpricequoteschema.h"
#include "seam/common.h"
#include "seam/formatters.h"
#include "seam/stockcolor.h"

#include <cstring>

namespace TC {

namespace {

using S = CPriceQuoteSchema;

const QString& invalidText()
{
    static const QString text = QStringLiteral("非法值");
    return text;
}

const QString& blankText(bool hasInstrument)
{
    static const QString none;
    static const QString dash = QStringLiteral("-");
    return hasInstrument ? dash : none;
}

// The rise and fall keys as long-lived strings: the table resolves them on every paint.
const QString& stockColorKey(double value, double reference)
{
    static const QString rise = QStringLiteral("tc_clr_priceT_rise");
    static const QString fall = QStringLiteral("tc_clr_priceT_fall");
    static const QString equal = QStringLiteral("tc_clr_priceT_equal");
    const char* key = getStockColorKey(value, reference);
    if (std::strcmp(key, "tc_clr_priceT_rise") == 0) {
        return rise;
    }
    if (std::strcmp(key, "tc_clr_priceT_fall") == 0) {
        return fall;
    }
    return equal;
}

}  // namespace

CPriceQuoteRow::CPriceQuoteRow(const QString& key, int months)
    : strikeKey(key),
      stockKeys(months),
      exerciseStyles(months),
      lastPrices(months, utils::kAbsentDouble),
      changeRatios(months, utils::kAbsentDouble),
      changeAmounts(months, utils::kAbsentDouble),
      bidPrices(months, utils::kAbsentDouble),
      intrinsicValues(months, utils::kAbsentDouble),
      premiumRates(months, utils::kAbsentDouble),
      leverages(months, utils::kAbsentDouble),
      impliedVolatilities(months, utils::kAbsentDouble),
      historicalVolatility(months, utils::kAbsentDouble),
      deltas(months, utils::kAbsentDouble),
      gammas(months, utils::kAbsentDouble),
      thetas(months, utils::kAbsentDouble),
      vegas(months, utils::kAbsentDouble),
      rhos(months, utils::kAbsentDouble),
      preCloses(months, utils::kAbsentDouble),
      volumes(months, utils::kAbsentInt),
      openInterests(months, utils::kAbsentInt),
      contractUnits(months, utils::kAbsentInt),
      expireDate(months, utils::kAbsentInt),
      lastExerciseDates(months, utils::kAbsentInt),
      monthCount(months)
{
}

CPriceQuoteRow::~CPriceQuoteRow() = default;

bool CPriceQuoteRow::hasInstrument(int month) const
{
    return inRange(month) && month < stockKeys.size() && !stockKeys.at(month).isEmpty();
}

const QVector<double>* CPriceQuoteRow::doubles(int subIndex) const
{
    switch (subIndex) {
    case S::PQ_LAST:
        return &lastPrices;
    case S::PQ_CHANGE_RATIO:
        return &changeRatios;
    case S::PQ_CHANGE:
        return &changeAmounts;
    case S::PQ_BID:
        return &bidPrices;
    case S::PQ_INTRINSIC:
        return &intrinsicValues;
    case S::PQ_PREMIUM:
        return &premiumRates;
    case S::PQ_LEVERAGE:
        return &leverages;
    case S::PQ_IMPLIED_VOL:
        return &impliedVolatilities;
    case S::PQ_HISTORICAL_VOL:
        return &historicalVolatility;
    case S::PQ_DELTA:
        return &deltas;
    case S::PQ_GAMMA:
        return &gammas;
    case S::PQ_THETA:
        return &thetas;
    case S::PQ_VEGA:
        return &vegas;
    case S::PQ_RHO:
        return &rhos;
    default:
        return nullptr;
    }
}

const QVector<int>* CPriceQuoteRow::ints(int subIndex) const
{
    switch (subIndex) {
    case S::PQ_VOLUME:
        return &volumes;
    case S::PQ_OPEN_INTEREST:
        return &openInterests;
    case S::PQ_UNIT:
        return &contractUnits;
    case S::PQ_EXPIRE:
        return &expireDate;
    case S::PQ_LAST_EXERCISE:
        return &lastExerciseDates;
    default:
        return nullptr;
    }
}

QString CPriceQuoteRow::cellTextValue(int column) const
{
    if (column == 0) {
        return strikeKey;
    }
    const int month = S::monthOf(column);
    if (!inRange(month)) {
        return QString();
    }
    switch (S::subIndexOf(column)) {
    case S::PQ_CODE:
        return stockKeys.at(month);
    case S::PQ_STYLE:
        return exerciseStyles.at(month);
    default:
        return QString();
    }
}

int CPriceQuoteRow::cellInt(int column) const
{
    const int month = S::monthOf(column);
    const QVector<int>* values = ints(S::subIndexOf(column));
    return values != nullptr && inRange(month) ? values->at(month) : utils::kAbsentInt;
}

double CPriceQuoteRow::cellDouble(int column) const
{
    const int month = S::monthOf(column);
    const QVector<double>* values = doubles(S::subIndexOf(column));
    return values != nullptr && inRange(month) ? values->at(month) : utils::kAbsentDouble;
}

QString CPriceQuoteRow::cellText(int column, int formatFlags) const
{
    if (column == 0) {
        return strikeKey;
    }
    const int month = S::monthOf(column);
    if (!inRange(month)) {
        return QString();
    }
    const QString& blank = blankText(!stockKeys.at(month).isEmpty());
    const int sub = S::subIndexOf(column);
    switch (sub) {
    case S::PQ_CODE:
    case S::PQ_STYLE:
        return cellTextValue(column);
    case S::PQ_CHANGE_RATIO: {
        // The product is what is tested: an absent ratio overflows to infinity
        // and shows the invalid text rather than the blank.
        const double percent = changeRatios.at(month) * 100.0;
        if (utils::isAbsent(percent)) {
            return blank;
        }
        return WG::formatDoubleNumber(percent, 2, formatFlags, false, invalidText());
    }
    case S::PQ_PREMIUM:
    case S::PQ_LEVERAGE:
    case S::PQ_IMPLIED_VOL:
    case S::PQ_HISTORICAL_VOL: {
        const double value = doubles(sub)->at(month);
        return utils::isAbsent(value) ? blank : WG::formatDoubleNumber(value, 2, formatFlags, false, invalidText());
    }
    case S::PQ_VOLUME:
    case S::PQ_OPEN_INTEREST:
    case S::PQ_UNIT: {
        const int value = ints(sub)->at(month);
        return utils::isAbsent(value) ? blank : WG::formatIntNumber(value, 0, formatFlags);
    }
    case S::PQ_EXPIRE:
    case S::PQ_LAST_EXERCISE: {
        // A date is never grouped, whatever the user's setting.
        const int value = ints(sub)->at(month);
        return utils::isAbsent(value) ? blank : WG::formatIntNumber(value, 0, 0);
    }
    default: {
        const QVector<double>* values = doubles(sub);
        if (values == nullptr) {
            return QString();
        }
        const double value = values->at(month);
        return utils::isAbsent(value) ? blank : WG::formatDoubleNumber(value, 4, formatFlags, false, invalidText());
    }
    }
}

const QString& CPriceQuoteRow::textColorKey(int column) const
{
    static const QString strike = QStringLiteral("tc_clr_pricet_exercise_price");
    static const QString total = QStringLiteral("tc_clr_priceT_total");
    static const QString number = QStringLiteral("tc_clr_priceT_number");
    static const QString equal = QStringLiteral("tc_clr_priceT_equal");
    if (column == 0) {
        return strike;
    }
    const int month = S::monthOf(column);
    if (!inRange(month)) {
        return equal;
    }
    switch (S::subIndexOf(column)) {
    case S::PQ_LAST:
    case S::PQ_CHANGE_RATIO:
    case S::PQ_CHANGE:
        return stockColorKey(changeAmounts.at(month), 0.0);
    case S::PQ_VOLUME:
        return total;
    case S::PQ_BID:
        return stockColorKey(bidPrices.at(month), preCloses.at(month));
    case S::PQ_CODE:
        return equal;
    default:
        return number;
    }
}

const QString* CPriceQuoteRow::backgroundKey(int column) const
{
    static const QString inside = QStringLiteral("tc_clr_priceT_actual_value_background");
    static const QString outside = QStringLiteral("tc_clr_priceT_null_value_background");
    if (column <= 0) {
        return nullptr;
    }
    const int month = S::monthOf(column);
    if (!hasInstrument(month)) {
        return nullptr;
    }
    return inTheMoney ? &inside : &outside;
}

}  // namespace TC
