#include "seam/formatters.h"

#include <cmath>

namespace WG {

namespace {

QString groupDigits(const QString& number)
{
    // number is "[-]digits[.fraction]"
    const int sign = number.startsWith(QLatin1Char('-')) ? 1 : 0;
    int end = number.indexOf(QLatin1Char('.'));
    if (end < 0) {
        end = number.size();
    }
    QString grouped = number;
    for (int pos = end - 3; pos > sign; pos -= 3) {
        grouped.insert(pos, QLatin1Char(','));
    }
    return grouped;
}

QString trimFraction(QString number)
{
    if (!number.contains(QLatin1Char('.'))) {
        return number;
    }
    while (number.endsWith(QLatin1Char('0'))) {
        number.chop(1);
    }
    if (number.endsWith(QLatin1Char('.'))) {
        number.chop(1);
    }
    return number;
}

QString fixed(long double value, int decimals, FormatFlags flags, bool trimZeros)
{
    const bool percent = flags.testFlag(utils::FNF_PERCENT);
    if (percent) {
        value *= 100.0L;
    }
    decimals = std::max(0, std::min(decimals, 12));
    QString text = QString::number(static_cast<double>(value), 'f', decimals);
    // A value that rounds to zero shows without a sign.
    if (text.startsWith(QLatin1Char('-')) && text.count(QLatin1Char('0')) + text.count(QLatin1Char('.')) == text.size() - 1) {
        text.remove(0, 1);
    }
    if (trimZeros) {
        text = trimFraction(text);
    }
    if (flags.testFlag(utils::FNF_SEGMENTED)) {
        text = groupDigits(text);
    }
    if (percent) {
        text += QLatin1Char('%');
    }
    return text;
}

}  // namespace

QString sToQs(const std::string& text) { return QString::fromUtf8(text.data(), static_cast<int>(text.size())); }

QString formatDoubleNumber(long double value, int decimals, FormatFlags flags, bool trimZeros, const QString& invalidText)
{
    const double asDouble = static_cast<double>(value);
    if (!utils::isUsable(asDouble)) {
        return invalidText;
    }
    return fixed(value, decimals, flags, trimZeros);
}

QString formatIntNumber(int value, int decimals, FormatFlags flags)
{
    if (utils::isAbsent(value)) {
        return QString();
    }
    return fixed(static_cast<long double>(value), decimals, flags, false);
}

QString formatLongLongNumber(long long value, int decimals, FormatFlags flags)
{
    if (utils::isAbsent(value)) {
        return QString();
    }
    if (decimals <= 0 && !flags.testFlag(utils::FNF_PERCENT)) {
        // Exact for values beyond a double's 53 bits.
        QString text = QString::number(value);
        return flags.testFlag(utils::FNF_SEGMENTED) ? groupDigits(text) : text;
    }
    return fixed(static_cast<long double>(value), decimals, flags, false);
}

int decimalsOfTick(double tick)
{
    if (!utils::isUsable(tick) || tick <= 0.0) {
        return 2;
    }
    for (int decimals = 0; decimals <= 6; ++decimals) {
        const double scaled = tick * std::pow(10.0, decimals);
        if (std::fabs(scaled - std::round(scaled)) < 1e-6 * std::max(1.0, scaled)) {
            return decimals;
        }
    }
    return 6;
}

QString formatPriceDoubleNumber(long double value, double tick)
{
    if (!utils::isUsable(static_cast<double>(value))) {
        return QString();
    }
    return fixed(value, decimalsOfTick(tick), FormatFlags(), false);
}

}  // namespace WG
