#include "board/cpricetrowbuilder.h"

#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/stockcolor.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/user.h"

#include <algorithm>

namespace TC {

namespace {

const char* const kInvalidText = "非法值";

bool valid(double value) { return !utils::isAbsent(value); }

CExchangeClient* exchange() { return utils::CManualSingletonT<CExchangeClient>::instance(); }
CQuoteClient* quotes() { return utils::CManualSingletonT<CQuoteClient>::instance(); }

QString undlKeyOf(const nqservice::CInstrumentDetail& detail)
{
    return WG::sToQs(utils::vqStockKey(detail.getTextField(nqservice::IF_UNDERLYING_MARKET),
                                       detail.getTextField(nqservice::IF_UNDERLYING_CODE)));
}

// Appends writes to one list; keeps the row functions close to their column tables.
class CWriter {
public:
    explicit CWriter(TPriceTCellWrites& out) : m_out(out) {}

    void text(int column, const QString& text)
    {
        CPriceTCellWrite& write = add(CPriceTCellWrite::CW_TEXT, column);
        write.text = text;
    }
    void number(int column, double value, int decimals, int flags)
    {
        CPriceTCellWrite& write = add(CPriceTCellWrite::CW_DOUBLE, column);
        write.value = value;
        write.decimals = decimals;
        write.flags = flags;
    }
    void integer(int column, int value, int flags, bool arg)
    {
        CPriceTCellWrite& write = add(CPriceTCellWrite::CW_INT, column);
        write.intValue = value;
        write.flags = flags;
        write.intArg = arg;
    }
    void colour(int column, const char* key)
    {
        CPriceTCellWrite& write = add(CPriceTCellWrite::CW_TEXT_COLOR, column);
        write.key = key;
    }
    void buttons(int column, int id, ButtonColor color)
    {
        CPriceTCellWrite& write = add(CPriceTCellWrite::CW_BUTTONS, column);
        write.buttonId = id;
        write.buttonColor = color;
    }
    void net(int column, const QString& code)
    {
        CPriceTCellWrite& write = add(CPriceTCellWrite::CW_NET, column);
        write.text = code;
    }

private:
    CPriceTCellWrite& add(CPriceTCellWrite::EKind kind, int column)
    {
        m_out.append(CPriceTCellWrite());
        CPriceTCellWrite& write = m_out.last();
        write.kind = kind;
        write.column = column;
        return write;
    }
    TPriceTCellWrites& m_out;
};

// What every row function starts with: the record's key and instrument.
bool prepare(const boost::shared_ptr<CPriceData>& data, QString& code,
             std::shared_ptr<nqservice::CInstrumentDetail>& detail, TPriceTCellWrites& out)
{
    out.clear();
    if (!data) {
        return false;
    }
    CExchangeClient* client = exchange();
    if (client == nullptr) {
        return false;
    }
    code = WG::sToQs(utils::vqStockKey(data->market, data->code));
    detail = client->getCodeInfo(code);
    return detail != nullptr;
}

}  // namespace

bool CPriceTRowBuilder::isAdjusted(const nqservice::CInstrumentDetail& detail)
{
    return detail.name.find('A') != std::string::npos;
}

int CPriceTRowBuilder::segmentedFlags()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr ? static_cast<int>(config->getSegmentedFormatFlag()) : 0;
}

QString CPriceTRowBuilder::strikeText(const nqservice::CInstrumentDetail& detail, int flags)
{
    const QString suffix = isAdjusted(detail) ? QStringLiteral("A") : QString();
    return QStringLiteral("%1%2").arg(
        WG::formatDoubleNumber(detail.getDoubleField(nqservice::IF_EXERCISE_PRICE), 4, flags, false,
                               QString::fromUtf8(kInvalidText)),
        suffix);
}

QString CPriceTRowBuilder::changeText(double changeRatio)
{
    if (!valid(changeRatio)) {
        return QString();
    }
    return WG::formatDoubleNumber(changeRatio * 100.0, 2, 0, false, QString::fromUtf8(kInvalidText)) +
           QStringLiteral("%");
}

QString CPriceTRowBuilder::phaseText(int phase)
{
    switch (phase) {
    case 48:
        return QStringLiteral("开盘前");
    case 49:
        return QStringLiteral("非交易");
    case 51:
    case 52:
    case 53:
        return QStringLiteral("集合竞价");
    case 54:
        return QStringLiteral("闭市");
    case 64:
        return QStringLiteral("盘后定价中");
    default:
        return QStringLiteral("-");
    }
}

QString CPriceTRowBuilder::statusText(int optionStatus, const std::string& market, const std::string& code)
{
    // The stock-option trader's names, whatever the board's trader type.
    const QString status = WG::sToQs(nqservice::TypeManager::instance()->getEnumItemName(
        "nqservice::EStockOptionStatus", optionStatus, nqservice::VQ_TRADER_TYPE_STOCK_OPTION));
    if (status != QStringLiteral("-")) {
        return status;
    }
    int phase = utils::kAbsentInt;
    boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    boost::shared_ptr<nqservice::IDataCenter> dataCenter = center ? center->getDataCenter() : nullptr;
    if (dataCenter) {
        phase = dataCenter->getTradingPhase(market, code);
    } else if (CQuoteClient* client = quotes()) {
        // Without trading services the quote client, which the data centre asks too, answers.
        phase = client->getTradingPhase(market, code);
    }
    return phaseText(phase);
}

double CPriceTRowBuilder::forecastMargin(bool call, double K, double U, double Z, double S)
{
    if (call) {
        const double otm = std::max(0.0, K - S);
        const double base = std::max(0.07 * S, 0.12 * S - otm);
        return U * (Z + base) * 1.2;
    }
    const double otm = std::max(0.0, S - K);
    const double base = std::max(0.07 * K, 0.12 * S - otm);
    const double amount = std::min(K, Z + base);
    return U * amount * 1.2;
}

double CPriceTRowBuilder::calcForecastMargin(const std::shared_ptr<nqservice::CInstrumentDetail>& option)
{
    CExchangeClient* client = exchange();
    if (!option || client == nullptr) {
        return 0.0;
    }
    const std::shared_ptr<nqservice::CInstrumentDetail> undl = client->getCodeInfo(undlKeyOf(*option));
    if (!undl) {
        return 0.0;
    }
    return forecastMargin(client->isCall(option), option->getDoubleField(nqservice::IF_EXERCISE_PRICE),
                          option->getDoubleField(nqservice::IF_CONTRACT_UNIT),
                          option->getDoubleField(nqservice::IF_PRE_SETTLEMENT), undl->preClosePrice);
}

bool CPriceTRowBuilder::buildQuote(int row, const boost::shared_ptr<CPriceData>& data, int traderType,
                                   TPriceTCellWrites& out)
{
    QString code;
    std::shared_ptr<nqservice::CInstrumentDetail> detail;
    if (!prepare(data, code, detail, out)) {
        return false;
    }
    CExchangeClient* client = exchange();
    const bool stock = traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    const bool call = client->isCall(detail);
    const int flags = segmentedFlags();
    // Column of a cell by side and trader type: (put, call) for trader type 32, then for the others.
    auto col = [&](int put32, int call32, int putOther, int callOther) {
        return stock ? (call ? call32 : put32) : (call ? callOther : putOther);
    };
    CWriter write(out);

    write.text(stock ? 16 : 14, strikeText(*detail, flags));
    if (stock) {
        write.number(call ? 0 : 31, calcForecastMargin(detail), 4, flags);
        write.text(call ? 1 : 30, statusText(data->optionStatus, detail->market, detail->code));
    }

    CQuoteClient* quoteClient = quotes();
    const boost::shared_ptr<CPriceData> undl =
        quoteClient != nullptr ? quoteClient->getStockPrice(undlKeyOf(*detail)) : boost::shared_ptr<CPriceData>();
    const double strike = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    const boost::shared_ptr<nqservice::GreekAndOptionsCalculator> calculator =
        nqservice::GreekAndOptionsCalculator::instance();

    // The value at expiry for a buyer at the last price with the underlying unchanged.
    if (undl && calculator && valid(data->lastPrice) && valid(strike) && valid(undl->lastPrice)) {
        const double value = call ? calculator->calcCallTheroticalValue(undl->lastPrice, strike, -data->lastPrice)
                                  : calculator->calcPutTheroticalValue(undl->lastPrice, strike, -data->lastPrice);
        write.number(col(29, 2, 27, 0), value, 4, flags);
    }

    const int days = client->getRemainDays(QString::number(detail->expireDate));
    if (days < 0) {
        return true;  // an expired contract keeps its other cells and offers no order
    }
    const int seconds = days == 0 ? client->getRemainSecond() : 0;
    const double rate = detail->getDoubleField(nqservice::IF_RISK_FREE_RATE);
    if (undl && calculator && valid(strike) && valid(undl->lastPrice) && !utils::isAbsent(days) &&
        !utils::isAbsent(seconds) && valid(rate)) {
        const double iv = call ? calculator->calcCallImpliedVolatility(undl->lastPrice, strike, days, seconds, rate,
                                                                       data->lastPrice, 1.5)
                               : calculator->calcPutImpliedVolatility(undl->lastPrice, strike, days, seconds, rate,
                                                                      data->lastPrice, 1.5);
        write.number(col(28, 3, 26, 1), iv, 4, flags);
    }

    write.number(col(27, 4, 25, 2), data->openInterest, 0, flags);
    write.integer(col(26, 5, 24, 3), data->volume, 0, flags != 0);

    const int bidColumn = col(25, 6, 23, 4);
    write.number(bidColumn, data->bidPrice1, 4, flags);
    write.colour(bidColumn, getStockColorKey(data->bidPrice1, data->preClose));
    const int askColumn = col(24, 7, 22, 5);
    write.number(askColumn, data->askPrice1, 4, flags);
    write.colour(askColumn, getStockColorKey(data->askPrice1, data->preClose));

    const char* riseKey = getStockColorKey(data->changeAmount, 0);
    const int changeRatioColumn = col(23, 8, 21, 6);
    write.text(changeRatioColumn, changeText(data->changeRatio));
    write.colour(changeRatioColumn, riseKey);
    const int changeColumn = col(22, 9, 20, 7);
    write.number(changeColumn, data->changeAmount, 4, flags);
    write.colour(changeColumn, riseKey);
    const int lastColumn = col(21, 10, 19, 8);
    write.number(lastColumn, data->lastPrice, 4, flags);
    write.colour(lastColumn, riseKey);

    write.text(col(17, 15, 15, 13), code);

    const int base = row * 100;
    if (call) {
        write.buttons(col(0, 11, 0, 9), base, BC_COVERED);
        write.buttons(col(0, 12, 0, 10), base + 2, BC_SELL);
        write.buttons(col(0, 13, 0, 11), base + 4, BC_BUY);
    } else {
        write.buttons(col(19, 0, 17, 0), base + 6, BC_BUY);
        write.buttons(col(20, 0, 18, 0), base + 8, BC_SELL);
    }
    write.net(col(18, 14, 16, 12), code);
    return true;
}

bool CPriceTRowBuilder::buildInfo(int row, const boost::shared_ptr<CPriceData>& data, int traderType,
                                  TPriceTCellWrites& out)
{
    QString code;
    std::shared_ptr<nqservice::CInstrumentDetail> detail;
    if (!prepare(data, code, detail, out)) {
        return false;
    }
    const bool call = exchange()->isCall(detail);
    const int flags = segmentedFlags();
    const QString style = traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION ? QStringLiteral("欧式")
                                                                               : QStringLiteral("美式");
    const char* riseKey = getStockColorKey(data->changeAmount, 0);
    CWriter write(out);

    write.text(13, strikeText(*detail, flags));
    write.number(call ? 0 : 25, calcForecastMargin(detail), 4, flags);
    write.text(call ? 6 : 19, changeText(data->changeRatio));
    write.colour(call ? 6 : 19, riseKey);
    write.number(call ? 1 : 24, detail->getDoubleField(nqservice::IF_EXERCISE_PRICE), 4, flags);
    write.number(call ? 2 : 23, detail->getDoubleField(nqservice::IF_CONTRACT_UNIT), 0, flags);
    write.text(call ? 3 : 22, style);
    write.text(call ? 4 : 21, QString::number(detail->getCodeField(nqservice::IF_LAST_EXERCISE_DATE), 10));
    write.text(call ? 5 : 20, QString::number(detail->expireDate));
    write.number(call ? 7 : 18, data->lastPrice, 4, flags);
    write.colour(call ? 7 : 18, riseKey);
    write.text(call ? 8 : 17, code);
    const int base = row * 100;
    if (call) {
        write.buttons(10, base + 2, BC_SELL);
        write.buttons(11, base + 4, BC_BUY);
        write.buttons(9, base, BC_COVERED);
    } else {
        write.buttons(16, base + 8, BC_SELL);
        write.buttons(15, base + 6, BC_BUY);
    }
    write.net(call ? 12 : 14, code);
    return true;
}

bool CPriceTRowBuilder::buildPrice(int, const boost::shared_ptr<CPriceData>& data, int, TPriceTCellWrites& out)
{
    QString code;
    std::shared_ptr<nqservice::CInstrumentDetail> detail;
    if (!prepare(data, code, detail, out)) {
        return false;
    }
    CExchangeClient* client = exchange();
    const bool call = client->isCall(detail);
    const int flags = segmentedFlags();
    CWriter write(out);

    write.text(4, strikeText(*detail, flags));
    if (client->getRemainDays(QString::number(detail->expireDate)) < 0) {
        return true;
    }
    write.number(call ? 0 : 8, data->bidPrice1, 4, flags);
    write.colour(call ? 0 : 8, getStockColorKey(data->bidPrice1, data->preClose));
    write.number(call ? 1 : 7, data->askPrice1, 4, flags);
    write.colour(call ? 1 : 7, getStockColorKey(data->askPrice1, data->preClose));
    write.number(call ? 2 : 6, data->lastPrice, 4, flags);
    write.colour(call ? 2 : 6, getStockColorKey(data->changeAmount, 0));
    write.text(call ? 3 : 5, code);
    return true;
}

bool CPriceTRowBuilder::buildRisk(int row, const boost::shared_ptr<CPriceData>& data, int, TPriceTCellWrites& out)
{
    QString code;
    std::shared_ptr<nqservice::CInstrumentDetail> detail;
    if (!prepare(data, code, detail, out)) {
        return false;
    }
    const bool call = exchange()->isCall(detail);
    const int flags = segmentedFlags();
    const char* riseKey = getStockColorKey(data->changeAmount, 0);
    CWriter write(out);

    write.text(19, strikeText(*detail, flags));

    // Without an answer the Greeks on screen stay: a momentary gap in the
    // prices should not blank them.
    nqservice::CGreeksValue value;
    const boost::shared_ptr<nqservice::GreekAndOptionsCalculator> calculator =
        nqservice::GreekAndOptionsCalculator::instance();
    if (calculator && calculator->calcGreeks(detail->key(), value, false, true)) {
        write.number(call ? 1 : 36, value.rho, 4, flags);
        write.number(call ? 2 : 35, value.vega, 4, flags);
        write.number(call ? 4 : 33, value.theta, 4, flags);
        write.number(call ? 6 : 31, value.gamma, 4, flags);
        write.number(call ? 8 : 29, value.delta, 4, flags);
    }

    CUserConfig* config = getUserConfig();
    const boost::shared_ptr<nqservice::COptionExGreeksVolatility> ex =
        config != nullptr ? config->getOptionExGreeks(code) : boost::shared_ptr<nqservice::COptionExGreeksVolatility>();

    write.text(call ? 0 : 37, statusText(data->optionStatus, detail->market, detail->code));
    write.text(call ? 12 : 25, changeText(data->changeRatio));
    write.colour(call ? 12 : 25, riseKey);
    write.number(call ? 13 : 24, data->lastPrice, 4, flags);
    write.colour(call ? 13 : 24, riseKey);
    write.text(call ? 14 : 23, code);
    const int base = row * 100;
    if (call) {
        write.buttons(16, base + 2, BC_SELL);
        write.buttons(17, base + 4, BC_BUY);
        write.buttons(15, base, BC_COVERED);
    } else {
        write.buttons(22, base + 8, BC_SELL);
        write.buttons(21, base + 6, BC_BUY);
    }

    // A removed import clears its cells at once.
    const int exColumns[6] = {call ? 3 : 34, call ? 5 : 32, call ? 7 : 30, call ? 9 : 28, call ? 10 : 27,
                              call ? 11 : 26};
    if (!ex) {
        for (int column : exColumns) {
            write.text(column, QString());
        }
    } else {
        const double exValues[6] = {ex->exVega,  ex->exTheta, ex->exGamma, ex->exDelta, ex->exBuyImpliedVolatility,
                                    ex->exSellImpliedVolatility};
        for (int i = 0; i < 6; ++i) {
            write.number(exColumns[i], exValues[i], 4, flags);
        }
    }
    write.net(call ? 18 : 20, code);
    return true;
}

bool CPriceTRowBuilder::buildTarget(int row, const boost::shared_ptr<CPriceData>& data, int, TPriceTCellWrites& out)
{
    QString code;
    std::shared_ptr<nqservice::CInstrumentDetail> detail;
    if (!prepare(data, code, detail, out)) {
        return false;
    }
    CExchangeClient* client = exchange();
    const bool call = client->isCall(detail);
    const int flags = segmentedFlags();
    const char* riseKey = getStockColorKey(data->changeAmount, 0);
    CWriter write(out);

    write.text(15, strikeText(*detail, flags));

    const double strike = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    const double rate = detail->getDoubleField(nqservice::IF_RISK_FREE_RATE);
    const double historical = detail->getDoubleField(nqservice::IF_HISTORY_VOLATILITY);
    const int premiumBase = detail->getIntField(nqservice::IF_PREMIUM_BASE);
    const QString expiry = QString::number(detail->expireDate);
    const QString undlKey = undlKeyOf(*detail);
    CUserConfig* config = getUserConfig();
    const bool clientMode = config != nullptr && config->isKelvanClientMode();
    const boost::shared_ptr<nqservice::GreekAndOptionsCalculator> calculator =
        nqservice::GreekAndOptionsCalculator::instance();

    // Every result starts at zero, and a failed guard leaves it so: an
    // incomplete or expired row shows zeros rather than stale figures.
    double realLeverage = 0.0;
    double leverage = 0.0;
    double premium = 0.0;
    double impliedVol = 0.0;
    double timeValue = 0.0;
    double intrinsic = 0.0;

    // One pass that any failed condition leaves early.
    do {
        if (!calculator || !valid(data->lastPrice) || !valid(strike) || utils::isAbsent(premiumBase)) {
            break;
        }
        const int days = client->getRemainDays(expiry);
        if (days < 0 || utils::isAbsent(days)) {
            break;
        }
        const int seconds = days == 0 ? client->getRemainSecond() : 0;
        CQuoteClient* quoteClient = quotes();
        const boost::shared_ptr<CPriceData> undl =
            quoteClient != nullptr ? quoteClient->getStockPrice(undlKey) : boost::shared_ptr<CPriceData>();
        if (!undl || !valid(undl->lastPrice) || utils::isAbsent(seconds) || !valid(rate)) {
            break;
        }
        if (!valid(historical) && !clientMode) {
            break;
        }
        const double S = undl->lastPrice;
        const double K = strike;
        const double P = data->lastPrice;
        leverage = calculator->calcLeverageRatio(P, S, 1.0);
        if (!valid(leverage)) {
            break;
        }
        auto impliedOf = [&]() {
            return call ? calculator->calcCallImpliedVolatility(S, K, days, seconds, rate, P, 1.5)
                        : calculator->calcPutImpliedVolatility(S, K, days, seconds, rate, P, 1.5);
        };
        double sigma = clientMode ? impliedOf() : historical;
        if (config != nullptr) {
            config->getHistoryRate(sigma, expiry, undlKey);
        }
        const nqservice::EOptionGreekBenchmark benchmark =
            config != nullptr ? static_cast<nqservice::EOptionGreekBenchmark>(config->getUserDataInt(UM_GREEK_BENCHMARK))
                              : nqservice::OGB_UNIT;
        std::map<std::string, double> greeks;
        if (call) {
            calculator->calcCallGreeks(greeks, S, K, days, seconds, rate, sigma, benchmark, "", false, false);
        } else {
            calculator->calcPutGreeks(greeks, S, K, days, seconds, rate, sigma, benchmark, "", false, false);
        }
        impliedVol = impliedOf();
        premium = call ? calculator->calcCallPremiumRate(K, P, premiumBase, S)
                       : calculator->calcPutPremiumRate(K, P, premiumBase, S);
        intrinsic = call ? calculator->calcCallIntrinsicValue(S, K) : calculator->calcPutIntrinsicValue(S, K);
        // A missing key reads as 0.0 and counts as an answer.
        const double delta = greeks[call ? "C_Delta" : "P_Delta"];
        if (valid(delta)) {
            realLeverage = calculator->calcRealLeverageRatio(delta, leverage);
        }
        if (valid(intrinsic)) {
            timeValue = calculator->calcTimeValue(P, intrinsic);
        }
    } while (false);

    const QString premiumText =
        valid(premium) ? WG::formatDoubleNumber(premium * 100.0, 2, 0, false, QString::fromUtf8(kInvalidText)) +
                             QStringLiteral("%")
                       : QString();
    // Nothing left to show as a dash, except in the call's time value, where
    // a negative figure tells of a price below the intrinsic value.
    auto numberOrDash = [&](int column, double number) {
        if (number <= utils::kPriceTolerance) {
            write.text(column, QStringLiteral("-"));
        } else {
            write.number(column, number, 4, flags);
        }
    };

    write.text(call ? 0 : 29, statusText(data->optionStatus, detail->market, detail->code));
    write.text(call ? 8 : 21, changeText(data->changeRatio));
    write.colour(call ? 8 : 21, riseKey);
    write.number(call ? 1 : 28, realLeverage, 4, flags);
    write.number(call ? 2 : 27, leverage, 4, flags);
    write.text(call ? 3 : 26, premiumText);
    write.number(call ? 4 : 25, impliedVol, 4, flags);
    write.number(call ? 5 : 24, historical, 4, flags);
    if (call) {
        write.number(6, timeValue, 4, flags);
        numberOrDash(7, intrinsic);
    } else {
        numberOrDash(23, timeValue);
        numberOrDash(22, intrinsic);
    }
    write.number(call ? 9 : 20, data->lastPrice, 4, flags);
    write.colour(call ? 9 : 20, riseKey);
    write.text(call ? 10 : 19, code);
    const int base = row * 100;
    if (call) {
        write.buttons(12, base + 2, BC_SELL);
        write.buttons(13, base + 4, BC_BUY);
        write.buttons(11, base, BC_COVERED);
    } else {
        write.buttons(18, base + 8, BC_SELL);
        write.buttons(17, base + 6, BC_BUY);
    }
    write.net(call ? 14 : 16, code);
    return true;
}

}  // namespace TC
