// The exchange client of the simulated market: the instrument tables of one
// trading day, the seed's market history on that day or a fixed list (tests), the
// option chains by underlying and month, and the calendar. Lookups are
// read-mostly and guarded by a short lock, so a day roll-over may happen on
// any thread.
#pragma once

#include "seam/cexchangeclient.h"
#include "seam/ctimeservice.h"
#include "services/market/cuniversebuilder.h"

#include <QDate>
#include <QHash>

#include <memory>
#include <mutex>

namespace market {

class CSimExchangeClient : public TC::CExchangeClient {
    Q_OBJECT
public:
    // A universe generated from the seed for the trading date. The clock answers
    // getRemainSecond; null means TC::getTimeService().
    CSimExchangeClient(unsigned seed, const QDate& tradingDate, TC::CTimeService* clock = nullptr,
                       QObject* parent = nullptr);
    // A fixed universe, for tests.
    CSimExchangeClient(TInstrumentList instruments, const QDate& tradingDate, TC::CTimeService* clock = nullptr,
                       QObject* parent = nullptr);

    std::shared_ptr<nqservice::CInstrumentDetail> getCodeInfo(const QString& key) const override;
    bool isCall(const std::shared_ptr<nqservice::CInstrumentDetail>& detail) override;
    QString getExercisePrice(const std::shared_ptr<nqservice::CInstrumentDetail>& detail) override;
    void getStockOptionMap(QMap<QString, QMap<QString, QStringList>>& out) const override;
    void getFutureOptionMap(QMap<QString, QMap<QString, QStringList>>& out) const override;
    int getRemainDays(QString yyyymmdd) override;
    int getRemainSecond() override;
    QStringList getAllCodes() const override;
    std::string getTradingDate() const override;

    // Every instrument, in the order of generation (underlyings before their options).
    TInstrumentList instruments() const;
    // How the trading day ends, by instrument key (empty for a fixed universe):
    // the closing and settlement prices of the market history.
    QHash<QString, double> closePrices() const;
    QHash<QString, double> settlementPrices() const;
    QDate tradingDate() const;
    // Moves to another trading day: a generated universe becomes that day's of the
    // seed's history (contracts keep their codes; expired ones leave, new months
    // and strikes come), a fixed one is kept. Emits sigNewTradingDate and
    // sigInitDataFinish.
    void setTradingDate(const QDate& date);
    // Rolls over when the clock has reached a later trading day; true if it did.
    bool checkTradingDate();

private:
    void install(TInstrumentList instruments, QHash<QString, double> closes = {},
                 QHash<QString, double> settlements = {});
    TC::CTimeService* clock() const;

    struct Tables {
        TInstrumentList list;
        QHash<QString, std::shared_ptr<nqservice::CInstrumentDetail>> byKey;
        QMap<QString, QMap<QString, QStringList>> stockOptions;
        QMap<QString, QMap<QString, QStringList>> futureOptions;
        QStringList keys;
        QHash<QString, double> closes;
        QHash<QString, double> settlements;
    };

    const bool m_generated;
    const unsigned m_seed;
    TC::CTimeService* const m_clock;
    mutable std::mutex m_mutex;
    std::shared_ptr<const Tables> m_tables;
    QDate m_date;
};

}  // namespace market
