// The exchange's instrument tables: every instrument by key, the option chains
// by underlying and month, and the calendar of the trading day. Process-wide,
// reached by utils::CManualSingletonT<TC::CExchangeClient>::instance().
// Queries are called on the GUI thread, per row and per tick: they must be cheap.
#pragma once

#include "seam/cinstrumentdetail.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace TC {

class CExchangeClient : public QObject {
    Q_OBJECT
public:
    explicit CExchangeClient(QObject* parent = nullptr);
    ~CExchangeClient() override;

    // The instrument of a key made by utils::vqStockKey; null when unknown.
    virtual std::shared_ptr<nqservice::CInstrumentDetail> getCodeInfo(const QString& key) const = 0;
    // True for a call, false for a put (and for anything that is not an option).
    virtual bool isCall(const std::shared_ptr<nqservice::CInstrumentDetail>& detail) = 0;
    // The strike as display text; the same text for every option of one strike,
    // so that panels can key their rows by it. Empty for a null or non-option.
    virtual QString getExercisePrice(const std::shared_ptr<nqservice::CInstrumentDetail>& detail) = 0;
    // Underlying key -> month text (the expiry date, yyyymmdd) -> option keys, for stock options.
    virtual void getStockOptionMap(QMap<QString, QMap<QString, QStringList>>& out) const = 0;
    // The same for future options.
    virtual void getFutureOptionMap(QMap<QString, QMap<QString, QStringList>>& out) const = 0;
    // Calendar days from the trading date to the date yyyymmdd: 0 on the day,
    // negative afterwards, the absent marker for a text that is no date.
    virtual int getRemainDays(QString yyyymmdd) = 0;
    // Seconds of trading left in today's sessions; 0 once trading is over.
    virtual int getRemainSecond() = 0;

    // Every instrument key, in no particular order.
    virtual QStringList getAllCodes() const = 0;
    // The current trading date, yyyymmdd.
    virtual std::string getTradingDate() const = 0;

signals:
    // The instrument tables are complete (again).
    void sigInitDataFinish();
    // The trading day rolled over to the date yyyymmdd.
    void sigNewTradingDate(const std::string& date);
};

}  // namespace TC
