// What the panel benchmarks share: the desk's services on the generated
// universe of a fixed seed and morning, a clock the benchmark steps, and two
// rounds of snapshots of chosen contracts made by the feed.
#pragma once

#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/ctimeservice.h"
#include "seam/user.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/user/cusersettingsstore.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QTimeZone>

#include <boost/make_shared.hpp>

#include <memory>
#include <vector>

namespace benchrig {

class CSteppedClock : public TC::CTimeService {
public:
    explicit CSteppedClock(long long ms) : m_ms(ms) {}
    long long currentTime() const override { return m_ms; }
    void advance(long long ms) { m_ms += ms; }

private:
    long long m_ms;
};

class CMarketRig {
public:
    CMarketRig()
    {
        const QDate date(2026, 11, 20);
        clock = new CSteppedClock(QDateTime(date, QTime(10, 30), QTimeZone(8 * 3600)).toMSecsSinceEpoch());
        utils::CManualSingletonT<TC::CTimeService>::install(clock);
        exchange = utils::CManualSingletonT<TC::CExchangeClient>::create<market::CSimExchangeClient>(7u, date, clock);
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(clock, false);
        market::CSimMarketConfig config;
        config.seed = 7;
        config.clock = clock;
        quotes->attachFeed(std::make_unique<market::CSimMarket>(exchange->instruments(), quotes, config));
        nqservice::GreekAndOptionsCalculator::setInstance(boost::make_shared<pricing::CGreekAndOptionsCalculator>());
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(new TC::CUserSettingsStore(configDir.path()));
        quotes->feed()->publishRound();
    }
    // A derived rig drops its panel first: its destructor runs before this one.
    virtual ~CMarketRig()
    {
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr);
        nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        utils::CManualSingletonT<TC::CExchangeClient>::destroy();
        utils::CManualSingletonT<TC::CTimeService>::destroy();
    }
    CMarketRig(const CMarketRig&) = delete;
    CMarketRig& operator=(const CMarketRig&) = delete;

    // The options of 50ETF over all months, or its calls only.
    QStringList optionsOf50Etf(bool callsOnly) const
    {
        QStringList keys;
        QMap<QString, QMap<QString, QStringList>> map;
        exchange->getStockOptionMap(map);
        const QMap<QString, QStringList> months = map.value(QStringLiteral("510050.SH"));
        for (auto it = months.constBegin(); it != months.constEnd(); ++it) {
            for (const QString& code : it.value()) {
                if (!callsOnly || exchange->isCall(exchange->getCodeInfo(code))) {
                    keys << code;
                }
            }
        }
        return keys;
    }
    // Two rounds of snapshots of the codes, three seconds apart.
    void makeRounds()
    {
        for (int round = 0; round < 2; ++round) {
            clock->advance(3000);
            std::vector<boost::shared_ptr<TC::CPriceData>>& set = round == 0 ? setA : setB;
            for (const QString& code : codes) {
                set.push_back(quotes->feed()->makeSnapshot(code));
            }
        }
    }

    QTemporaryDir configDir;
    CSteppedClock* clock = nullptr;
    market::CSimExchangeClient* exchange = nullptr;
    market::CSimQuoteClient* quotes = nullptr;
    QStringList codes;
    std::vector<boost::shared_ptr<TC::CPriceData>> setA;
    std::vector<boost::shared_ptr<TC::CPriceData>> setB;
};

}  // namespace benchrig
