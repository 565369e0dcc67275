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

}  // namespace TC
