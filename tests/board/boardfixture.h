// The services a board test runs on: a fixed instrument universe of 50ETF
// options in the simulated exchange client, the simulated quote client in test
// mode (quotes are what the test publishes), the desk calculator, a user
// settings store in a temporary directory, and a clock standing at 10:00 on
// 2026-11-20. Each test installs its own and removes them afterwards.
#pragma once

#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/ctimeservice.h"
#include "seam/user.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimquoteclient.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/user/cusersettingsstore.h"

#include <gtest/gtest.h>

#include <QDate>
#include <QDateTime>
#include <QTemporaryDir>
#include <QTimeZone>

#include <boost/make_shared.hpp>

#include <memory>
#include <string>

namespace boardtest {

class CFixedClock : public TC::CTimeService {
public:
    explicit CFixedClock(long long ms) : m_ms(ms) {}
    long long currentTime() const override { return m_ms; }
    void set(long long ms) { m_ms = ms; }

private:
    long long m_ms;
};

inline long long exchangeMs(int y, int m, int d, int h, int min)
{
    return QDateTime(QDate(y, m, d), QTime(h, min), QTimeZone(8 * 3600)).toMSecsSinceEpoch();
}

inline std::shared_ptr<nqservice::CInstrumentDetail> underlying(const std::string& code, const std::string& market,
                                                                const std::string& name, double preClose)
{
    auto detail = std::make_shared<nqservice::CInstrumentDetail>();
    detail->market = market;
    detail->code = code;
    detail->name = name;
    detail->kind = nqservice::IK_FUND;
    detail->preClosePrice = preClose;
    detail->priceTick = 0.001;
    return detail;
}

struct OptionSpec {
    std::string code;
    bool call = true;
    double strike = 3.0;
    int expire = 20261125;
    bool adjusted = false;
    double preSettlement = 0.05;
    double unit = 10000.0;
    std::string undlCode = "510050";
    std::string undlMarket = "SH";
};

inline std::shared_ptr<nqservice::CInstrumentDetail> option(const OptionSpec& def)
{
    auto detail = std::make_shared<nqservice::CInstrumentDetail>();
    detail->market = def.undlMarket;
    detail->code = def.code;
    const QString month = QString::number(def.expire / 100 % 100);
    const QString strike = QString::number(qRound(def.strike * 1000));
    detail->name = QStringLiteral("50ETF%1%2月%3%4")
                       .arg(def.call ? QStringLiteral("购") : QStringLiteral("沽"), month, strike,
                            def.adjusted ? QStringLiteral("A") : QString())
                       .toStdString();
    detail->kind = nqservice::IK_STOCK_OPTION;
    detail->exerciseStyle = nqservice::ES_EUROPEAN;
    detail->call = def.call;
    detail->priceTick = 0.0001;
    detail->expireDate = def.expire;
    detail->underlyingCode = def.undlCode;
    detail->underlyingMarket = def.undlMarket;
    detail->preSettlementPrice = def.preSettlement;
    detail->contractUnit = def.unit;
    detail->marginParameter = 0.12;
    detail->exercisePrice = def.strike;
    detail->riskFreeRate = 0.02;
    detail->historyVolatility = 0.2;
    detail->lastExerciseDate = def.expire;
    detail->adjusted = def.adjusted;
    return detail;
}

// 50ETF at a previous close of 3.0: the November expiry 20261125 with strikes
// 2.9 to 3.2 (calls 1000001x, puts 1000002x), a second November date
// 20261127 with one pair at 3.0, and December 20261223 with one pair at 3.0.
inline market::TInstrumentList defaultUniverse()
{
    market::TInstrumentList list;
    list.push_back(underlying("510050", "SH", "50ETF", 3.0));
    const double strikes[] = {2.9, 3.0, 3.1, 3.2};
    for (int i = 0; i < 4; ++i) {
        OptionSpec call;
        call.code = "1000001" + std::to_string(i);
        call.strike = strikes[i];
        list.push_back(option(call));
        OptionSpec put = call;
        put.code = "1000002" + std::to_string(i);
        put.call = false;
        list.push_back(option(put));
    }
    OptionSpec lateCall;
    lateCall.code = "10000031";
    lateCall.expire = 20261127;
    list.push_back(option(lateCall));
    OptionSpec latePut = lateCall;
    latePut.code = "10000032";
    latePut.call = false;
    list.push_back(option(latePut));
    OptionSpec decCall;
    decCall.code = "10000041";
    decCall.expire = 20261223;
    list.push_back(option(decCall));
    OptionSpec decPut = decCall;
    decPut.code = "10000042";
    decPut.call = false;
    list.push_back(option(decPut));
    return list;
}

class BoardTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(configDir.isValid());
        clock = new CFixedClock(exchangeMs(2026, 11, 20, 10, 0));
        utils::CManualSingletonT<TC::CTimeService>::install(clock);
        installUniverse(defaultUniverse());
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(clock, false);
        nqservice::GreekAndOptionsCalculator::setInstance(boost::make_shared<pricing::CGreekAndOptionsCalculator>());
        store = new TC::CUserSettingsStore(configDir.path());
        store->setUserDataInt(TC::UM_SEGMENTED_FORMAT, 0);
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(store);
    }

    void TearDown() override
    {
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr);
        nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        utils::CManualSingletonT<TC::CExchangeClient>::destroy();
        utils::CManualSingletonT<TC::CTimeService>::destroy();
    }

    void installUniverse(market::TInstrumentList list, const QDate& date = QDate(2026, 11, 20))
    {
        exchange = utils::CManualSingletonT<TC::CExchangeClient>::create<market::CSimExchangeClient>(
            std::move(list), date, clock);
    }

    // A quote of an SSE instrument; the caller fills what it needs.
    static boost::shared_ptr<TC::CPriceData> quote(const std::string& code, double last, double preClose)
    {
        auto data = boost::make_shared<TC::CPriceData>();
        data->market = "SH";
        data->code = code;
        data->lastPrice = last;
        data->preClose = preClose;
        if (!utils::isAbsent(last) && !utils::isAbsent(preClose)) {
            data->changeAmount = last - preClose;
            data->changeRatio = (last - preClose) / preClose;
        }
        data->bidPrice1 = last;
        data->askPrice1 = last;
        return data;
    }

    void publish(const boost::shared_ptr<TC::CPriceData>& data) { quotes->publish(data); }

    QTemporaryDir configDir;
    CFixedClock* clock = nullptr;
    market::CSimExchangeClient* exchange = nullptr;
    market::CSimQuoteClient* quotes = nullptr;
    TC::CUserSettingsStore* store = nullptr;
};

}  // namespace boardtest
