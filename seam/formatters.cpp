#include "seam/formatters.h"

#include <cmath>
#include <cstring>

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

// Cells are rewritten by the thousand every tick, so the common case is
// formatted here without Qt's general conversion. It gives what
// QString::number(value, 'f', decimals) gives (halves away from zero, decided
// on the exact binary value) whenever the scaled value stays below 2^52;
// anything larger returns false and takes Qt's way.
bool fastFixed(double value, int decimals, FormatFlags flags, bool trimZeros, QString& out)
{
    static constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
    const double magnitude = std::fabs(value);
    const double power = kPowers[decimals];
    const double scaled = magnitude * power;
    if (!(scaled < 4503599627370496.0)) {  // 2^52: every half is representable below it
        return false;
    }
    double whole = std::floor(scaled);
    const double fraction = scaled - whole;
    if (fraction > 0.5) {
        whole += 1.0;
    } else if (fraction == 0.5) {
        // The product was rounded to this half; its exact value decides.
        if (std::fma(magnitude, power, -scaled) >= 0.0) {
            whole += 1.0;
        }
    }
    auto units = static_cast<unsigned long long>(whole);
    const bool negative = std::signbit(value) && units != 0;  // zero shows without a sign

    char digits[24];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + units % 10);
        units /= 10;
    } while (units != 0);
    while (count <= decimals) {
        digits[count++] = '0';
    }
    int fractionDigits = decimals;
    if (trimZeros) {
        int dropped = 0;
        while (dropped < fractionDigits && digits[dropped] == '0') {
            ++dropped;
        }
        std::memmove(digits, digits + dropped, static_cast<std::size_t>(count - dropped));
        count -= dropped;
        fractionDigits -= dropped;
    }
    const bool grouped = flags.testFlag(utils::FNF_SEGMENTED);

    char text[48];
    int length = 0;
    if (negative) {
        text[length++] = '-';
    }
    for (int i = count - 1; i >= fractionDigits; --i) {
        text[length++] = digits[i];
        const int left = i - fractionDigits;  // integer digits still to come
        if (grouped && left > 0 && left % 3 == 0) {
            text[length++] = ',';
        }
    }
    if (fractionDigits > 0) {
        text[length++] = '.';
        for (int i = fractionDigits - 1; i >= 0; --i) {
            text[length++] = digits[i];
        }
    }
    if (flags.testFlag(utils::FNF_PERCENT)) {
        text[length++] = '%';
    }
    out = QString::fromLatin1(text, length);
    return true;
}

QString fixed(long double value, int decimals, FormatFlags flags, bool trimZeros)
{
    const bool percent = flags.testFlag(utils::FNF_PERCENT);
    if (percent) {
        value *= 100.0L;
    }
    decimals = std::max(0, std::min(decimals, 12));
    QString text;
    if (fastFixed(static_cast<double>(value), decimals, flags, trimZeros, text)) {
        return text;
    }
    text = QString::number(static_cast<double>(value), 'f', decimals);
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
