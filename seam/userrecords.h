// Records of the user's settings: accounts and groups, trade defaults,
// strategy baskets and winner settings. Plain values, copied freely.
#pragma once

#include "seam/tradingenums.h"
#include "seam/tradingrecords.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

namespace TC {

// Members of the user configuration, by number.
enum EUserMember {
    UM_USER_NAME = 1,            // text
    UM_DISPLAY_NAME = 2,         // text
    UM_USER_ROLE = 43,           // int
    UM_SEGMENTED_FORMAT = 50,    // int: 1 groups digits by thousands
    UM_GREEK_BENCHMARK = 77,     // int: nqservice::EOptionGreekBenchmark
    UM_ACCOUNT_LIST = 91,        // QVector<boost::shared_ptr<TC::CAccount>>
    UM_ACCOUNT_GROUPS = 92,      // QVector<TC::CAccountGroup>
    UM_ACCOUNT_FILTER = 93,      // QStringList: account keys hidden from the panels
    UM_PERMISSION = 110,         // nqservice::CGlobalFeaturePermissionInfo
    UM_KELVAN_CLIENT_MODE = 111, // int
    UM_KELVAN_QUOTE_MODE = 112,  // int
    UM_UP_STOP_PRICE = 113,      // int: 1 when price limits are known
    UM_STRATEGY_SETTINGS = 122,  // QMap<QString, TC::CStrategySetting>
    UM_OPTION_EX_GREEKS = 153,   // QMap<QString, boost::shared_ptr<nqservice::COptionExGreeksVolatility>>
    UM_TRADE_SETTING = 160,      // TC::CTradeSetting
    UM_WINNER_SETTINGS = 161,    // QMap<QString, TC::CWinnerSetting>, key "undl|direction"
    UM_HISTORY_RATES = 162,      // QMap<QString, double>, key "undl|yyyymmdd"
};

// What an account combo has chosen.
enum ESelectedAccountType {
    SAT_GROUP = 0,
    SAT_ACCOUNT = 1,
};

// An account of the user.
class CAccount {
public:
    QString accountId;  // the key
    QString displayName;
    int accountType = nqservice::VQ_BROKER_TYPE_NONE;  // EVQBrokerType
    int brokerId = 0;
    QString brokerName;
    QString userName;

    QString key() const { return accountId; }
    // The account as the trading services know it.
    boost::shared_ptr<nqservice::CAccountInfo> toInfo() const;
};

// A named set of accounts of one broker type with integer weights.
class CAccountGroup {
public:
    QString name;
    int brokerType = nqservice::VQ_BROKER_TYPE_STOCK_OPTION;
    QMap<QString, int> weights;  // account key -> weight

    bool contains(const QString& accountKey) const { return weights.contains(accountKey); }
    QStringList accountKeys() const { return weights.keys(); }
    // False when the group has no weight for the key.
    bool getWeight(const QString& accountKey, int& weight) const;
};

// The user's trade defaults.
class CTradeSetting {
public:
    bool autoImportExGreeks = false;  // the import of outside Greeks is on
    QString autoImportExGreeksDir;    // the directory it watches
    int modeSetting = 0;              // order confirmation mode of commands
    int defaultVolume = 1;
    bool confirmOrder = true;
};

// One leg of a basket.
class CStrategyStockData {
public:
    QString code;
    QString name;
    QString market;
    double weight = 1.0;
    long long quantity = 1;
    nqservice::EOperationType operation = nqservice::OT_BUY;
    bool checked = true;
};

// A basket: a named list of legs, which it owns.
class CStrategySetting {
public:
    QString name;
    QList<CStrategyStockData*> legs;

    CStrategySetting() = default;
    CStrategySetting(const CStrategySetting& other);
    CStrategySetting& operator=(const CStrategySetting& other);
    ~CStrategySetting();

    // Appends a copy of the leg.
    void addLeg(const CStrategyStockData& leg);
    void clearLegs();
    bool operator==(const CStrategySetting& other) const;
};

// Forecasts of the option winner.
enum EWinnerPredictDirection {
    WPD_RISE = 0,   // "看涨"
    WPD_FALL = 1,   // "看跌"
    WPD_BREAK = 2,  // "突破"
    WPD_RANGE = 3,  // "盘整"
};

// Levels and expiry window of the winner for one underlying and forecast.
class CWinnerSetting {
public:
    double levelOne = 0.0;
    double levelTwo = 0.0;
    unsigned startTime = 0;  // seconds since 1970
    unsigned endTime = 0;

    bool operator==(const CWinnerSetting& other) const
    {
        return levelOne == other.levelOne && levelTwo == other.levelTwo && startTime == other.startTime &&
               endTime == other.endTime;
    }
};

}  // namespace TC
