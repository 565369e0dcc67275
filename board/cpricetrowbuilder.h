// What one quote writes into one side of a chain row, as a list of cell writes
// that the chain table replays: texts, numbers, colour keys, order buttons and
// the net position. Reads the exchange client, the quote client, the
// calculator and the user configuration through the seam; touches no widget,
// so the formulas are tested without a display.
#pragma once

#include "board/cpricettableschema.h"
#include "seam/cpricedata.h"

#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <memory>

namespace nqservice {
class CInstrumentDetail;
}

namespace TC {

// One write of a row function, in the order the row function makes them.
struct CPriceTCellWrite {
    enum EKind : unsigned char {
        CW_TEXT,        // setItemText(text)
        CW_DOUBLE,      // setItemDouble(value, decimals, flags)
        CW_INT,         // setItemInt(intValue, flags, intArg)
        CW_TEXT_COLOR,  // setItemTextColorKey(key)
        CW_BUTTONS,     // the pair of order buttons (buttonId, buttonColor)
        CW_NET,         // the net position of the option text names, as setItemInt(sum, 0, true)
    };
    EKind kind = CW_TEXT;
    int column = -1;
    int decimals = 0;
    int flags = 0;
    bool intArg = false;
    int intValue = 0;
    int buttonId = -1;
    int buttonColor = 0;
    double value = 0.0;
    const char* key = nullptr;
    QString text;
};

using TPriceTCellWrites = QVector<CPriceTCellWrite>;

class CPriceTRowBuilder {
public:
    // The row functions of the quote, info and price sets. Each clears `out`
    // and fills it; false (with `out` empty) when the record is null or its
    // instrument is unknown.
    static bool buildQuote(int row, const boost::shared_ptr<CPriceData>& data, int traderType, TPriceTCellWrites& out);
    static bool buildInfo(int row, const boost::shared_ptr<CPriceData>& data, int traderType, TPriceTCellWrites& out);
    static bool buildPrice(int row, const boost::shared_ptr<CPriceData>& data, int traderType, TPriceTCellWrites& out);
    // The computed sets: Greeks, own and imported, of the risk set; leverage,
    // premium, volatilities, intrinsic and time value of the target set.
    static bool buildRisk(int row, const boost::shared_ptr<CPriceData>& data, int traderType, TPriceTCellWrites& out);
    static bool buildTarget(int row, const boost::shared_ptr<CPriceData>& data, int traderType, TPriceTCellWrites& out);

    // The strike text of the middle column: four decimals, "A" after an adjusted contract.
    static QString strikeText(const nqservice::CInstrumentDetail& detail, int flags);
    // The change ratio in per cent with "%"; empty when the ratio is absent.
    static QString changeText(double changeRatio);
    // The exchange's status name of the option; for a normal contract ("-") the
    // trading phase in words.
    static QString statusText(int optionStatus, const std::string& market, const std::string& code);
    // The words of a trading phase; "-" for the phases the board does not name.
    static QString phaseText(int phase);
    // The estimated margin of one short contract (0.0 without option or underlying).
    static double calcForecastMargin(const std::shared_ptr<nqservice::CInstrumentDetail>& option);
    // The exchange's rule itself: K strike, U contract unit, Z previous settlement of
    // the option, S previous close of the underlying.
    static double forecastMargin(bool call, double K, double U, double Z, double S);
    // The user's digit grouping flag, 0 without a user configuration.
    static int segmentedFlags();
    // Whether an instrument is an adjusted contract: "A" in its name.
    static bool isAdjusted(const nqservice::CInstrumentDetail& detail);
};

}  // namespace TC
