// Number and text formatting for cells and captions. Absent and non-finite
// values never show as numbers.
#pragma once

#include "seam/common.h"

#include <QString>

#include <string>

namespace WG {

using FormatFlags = utils::CFlags<utils::EFormatNumberFlag>;

QString sToQs(const std::string& text);

// Fixed decimals; digits grouped by thousands with FNF_SEGMENTED; a ratio shown
// as a percentage ("12.34%") with FNF_PERCENT. trimZeros drops trailing zeros of
// the fraction. invalidText stands for an absent or non-finite value.
QString formatDoubleNumber(long double value, int decimals, FormatFlags flags = FormatFlags(), bool trimZeros = false,
                           const QString& invalidText = QString());
// The same for integers; the absent marker gives an empty text.
QString formatIntNumber(int value, int decimals, FormatFlags flags = FormatFlags());
QString formatLongLongNumber(long long value, int decimals, FormatFlags flags = FormatFlags());
// A price with as many decimals as its tick has (0.0001 gives four); absent gives an empty text.
QString formatPriceDoubleNumber(long double value, double tick);
// The decimals a tick needs, 0 to 6.
int decimalsOfTick(double tick);

}  // namespace WG
