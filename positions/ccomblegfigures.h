// The figures of one leg of a combination that the combination table shows:
// the five Greeks of the option and its time value (last price less intrinsic
// value against the underlying's last price). Read from the installed exchange,
// quote client and calculator; safe on the model's worker.
#pragma once

#include <QString>

#include <string>

namespace TC {

class CCombLegFigures {
public:
    // The figures of the option of a stock key; hasGreeks false and an absent
    // time value when the services can't tell.
    static CCombLegFigures of(const std::string& stockKey);

    // Greeks with 4 decimals, "非法值" for an absent value.
    static QString greekText(double value, int formatFlags);
    // "-" at or below 1e-5 (or absent), else 4 decimals.
    static QString timeValueText(double value, int formatFlags);

    bool hasGreeks = false;
    double delta = 0.0;
    double gamma = 0.0;
    double theta = 0.0;
    double vega = 0.0;
    double rho = 0.0;
    double timeValue;

    CCombLegFigures();
};

}  // namespace TC
