#include "services/market/csimexchangeclient.h"

#include "seam/logger.h"
#include "services/market/csessionclock.h"

#include <fmt/format.h>

#include <cmath>

namespace market {

CSimExchangeClient::CSimExchangeClient(unsigned seed, const QDate& tradingDate, TC::CTimeService* clock,
                                       QObject* parent)
    : TC::CExchangeClient(parent), m_generated(true), m_seed(seed), m_clock(clock), m_date(tradingDate)
{
    CMarketDay day = CMarketHistory(seed).day(tradingDate);
    install(std::move(day.instruments), std::move(day.closes), std::move(day.settlements));
}

CSimExchangeClient::CSimExchangeClient(TInstrumentList instruments, const QDate& tradingDate,
                                       TC::CTimeService* clock, QObject* parent)
    : TC::CExchangeClient(parent), m_generated(false), m_seed(0), m_clock(clock), m_date(tradingDate)
{
    install(std::move(instruments));
}

void CSimExchangeClient::install(TInstrumentList instruments, QHash<QString, double> closes,
                                 QHash<QString, double> settlements)
{
    auto tables = std::make_shared<Tables>();
    tables->list = std::move(instruments);
    tables->closes = std::move(closes);
    tables->settlements = std::move(settlements);
    tables->keys.reserve(static_cast<int>(tables->list.size()));
    for (const auto& detail : tables->list) {
        const QString key = QString::fromStdString(detail->key());
        tables->byKey.insert(key, detail);
        tables->keys.append(key);
        if (!detail->isOption()) {
            continue;
        }
        auto& chains = detail->kind == nqservice::IK_STOCK_OPTION ? tables->stockOptions : tables->futureOptions;
        chains[QString::fromStdString(detail->underlyingKey())][QString::number(detail->expireDate)].append(key);
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_tables = std::move(tables);
}

TC::CTimeService* CSimExchangeClient::clock() const
{
    return m_clock != nullptr ? m_clock : TC::getTimeService();
}

std::shared_ptr<nqservice::CInstrumentDetail> CSimExchangeClient::getCodeInfo(const QString& key) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_tables->byKey.value(key);
}

bool CSimExchangeClient::isCall(const std::shared_ptr<nqservice::CInstrumentDetail>& detail)
{
    return detail != nullptr && detail->isOption() && detail->call;
}

QString CSimExchangeClient::getExercisePrice(const std::shared_ptr<nqservice::CInstrumentDetail>& detail)
{
    if (detail == nullptr || !detail->isOption() || !utils::isUsable(detail->exercisePrice)) {
        return QString();
    }
    // ETF strikes have up to three decimals; commodity strikes are whole numbers.
    const int decimals = detail->kind == nqservice::IK_STOCK_OPTION ? 4 : 0;
    return QString::number(detail->exercisePrice, 'f', decimals);
}

void CSimExchangeClient::getStockOptionMap(QMap<QString, QMap<QString, QStringList>>& out) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    out = m_tables->stockOptions;
}

void CSimExchangeClient::getFutureOptionMap(QMap<QString, QMap<QString, QStringList>>& out) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    out = m_tables->futureOptions;
}

int CSimExchangeClient::getRemainDays(QString yyyymmdd)
{
    // Read by hand: the boards and the calculator ask once per quote, and Qt's
    // format parser consults the time zone files on every call.
    if (yyyymmdd.size() != 8) {
        return utils::kAbsentInt;
    }
    int digits[8];
    for (int i = 0; i < 8; ++i) {
        const QChar c = yyyymmdd.at(i);
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) {
            return utils::kAbsentInt;
        }
        digits[i] = c.unicode() - '0';
    }
    const QDate date(digits[0] * 1000 + digits[1] * 100 + digits[2] * 10 + digits[3], digits[4] * 10 + digits[5],
                     digits[6] * 10 + digits[7]);
    if (!date.isValid()) {
        return utils::kAbsentInt;
    }
    return static_cast<int>(tradingDate().daysTo(date));
}

int CSimExchangeClient::getRemainSecond()
{
    const QDateTime now = clock()->currentDateTime();
    const QDate date = tradingDate();
    if (now.date() < date) {
        return CSessionClock::sessionSeconds(nqservice::kMarketSSE);
    }
    if (now.date() > date) {
        return 0;
    }
    return CSessionClock::remainingSeconds(nqservice::kMarketSSE, now);
}

QStringList CSimExchangeClient::getAllCodes() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_tables->keys;
}

std::string CSimExchangeClient::getTradingDate() const
{
    return tradingDate().toString(QStringLiteral("yyyyMMdd")).toStdString();
}

TInstrumentList CSimExchangeClient::instruments() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_tables->list;
}

QHash<QString, double> CSimExchangeClient::closePrices() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_tables->closes;
}

QHash<QString, double> CSimExchangeClient::settlementPrices() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_tables->settlements;
}

QDate CSimExchangeClient::tradingDate() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_date;
}

void CSimExchangeClient::setTradingDate(const QDate& date)
{
    if (!date.isValid()) {
        return;
    }
    if (m_generated) {
        CMarketDay day = CMarketHistory(m_seed).day(date);
        install(std::move(day.instruments), std::move(day.closes), std::move(day.settlements));
    }
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_date = date;
    }
    const std::string text = getTradingDate();
    NQ_LOG_INFO(fmt::format(FMT_STRING("new trading date {0}"), text));
    emit sigNewTradingDate(text);
    emit sigInitDataFinish();
}

bool CSimExchangeClient::checkTradingDate()
{
    const QDate today = clock()->currentDateTime().date();
    if (today <= tradingDate() || !CSessionClock::isTradingDay(today)) {
        return false;
    }
    setTradingDate(today);
    return true;
}

}  // namespace market
