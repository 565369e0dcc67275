// The user side of the seam: settings by member number, accounts and groups,
// permissions, imported Greeks, winner settings; the client's configuration
// directory. CUserConfig is abstract; a host installs a store.
#pragma once

#include "seam/common.h"
#include "seam/tradingrecords.h"
#include "seam/userrecords.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <mutex>

namespace TC {

typedef QMap<QString, boost::shared_ptr<nqservice::COptionExGreeksVolatility>> OptionExGreeksMap;

class CUserConfig : public QObject {
    Q_OBJECT
public:
    explicit CUserConfig(QObject* parent = nullptr) : QObject(parent) {}
    ~CUserConfig() override = default;

    virtual int getUserDataInt(EUserMember member) const = 0;
    virtual QString getUserDataString(EUserMember member) = 0;
    // Address of a member's value (its type is told at EUserMember); null when
    // the member has none. A writer assigns through it, then calls setModifyFlag().
    // Member 153 is written by the Greeks import thread: use replaceOptionExGreeks
    // for it, which takes the store's lock.
    virtual void* getUserDataAddress(EUserMember member) = 0;
    virtual const void* getUserDataAddress(EUserMember member) const = 0;
    // Marks the settings dirty: the store saves them.
    virtual void setModifyFlag() = 0;
    // A copy of the trade setting (member 160) as of the last setModifyFlag()
    // on the store's thread; safe from any thread, so a worker can read it
    // afresh at every turn. This default reads the member directly.
    virtual CTradeSetting publishedTradeSetting() const
    {
        const void* address = getUserDataAddress(UM_TRADE_SETTING);
        return address != nullptr ? *static_cast<const CTradeSetting*>(address) : CTradeSetting();
    }
    virtual utils::EFormatNumberFlag getSegmentedFormatFlag() = 0;

    virtual boost::shared_ptr<CAccount> getAccountData(const QString& key) = 0;
    // True when the user has hidden this account from the panels.
    virtual bool isAccountFilter(const QString& key) = 0;
    virtual const CAccountGroup* getAccountGroupConst(nqservice::EVQBrokerType brokerType,
                                                      QString name) const = 0;
    virtual QVector<boost::shared_ptr<CAccount>> getGroupAccounts(nqservice::EVQBrokerType brokerType,
                                                                  QString name) = 0;

    // The user's display text of a volume unit ("张", "%"); the unit itself when
    // the user has chosen none.
    virtual QString getStockUnitText(QString unit) = 0;
    virtual boost::shared_ptr<nqservice::CGlobalFeaturePermissionInfo> getPermissionInfoPtr() = 0;
    virtual bool isKelvanClientMode() const = 0;
    virtual bool isKelvanQuoteMode() = 0;
    virtual bool hasUpStopPrice() = 0;
    // Replaces rate by the user's own volatility for this expiry and underlying, if one is set.
    virtual void getHistoryRate(double& rate, QString expiry, QString underlying) = 0;

    // Imported Greeks of a code, a copy; null when none. Safe from any thread.
    virtual boost::shared_ptr<nqservice::COptionExGreeksVolatility> getOptionExGreeks(QString code) = 0;
    // Replaces all imported Greeks at once. Safe from any thread.
    virtual void replaceOptionExGreeks(const OptionExGreeksMap& greeks) = 0;

    // The setting of an underlying and forecast; a default one when none is stored.
    virtual void getWinnerSetting(const QString& underlying, EWinnerPredictDirection direction,
                                  CWinnerSetting& setting) = 0;
    virtual void setWinnerSetting(const QString& underlying, EWinnerPredictDirection direction,
                                  const CWinnerSetting& setting) = 0;

signals:
    // A winner setting changed: underlying and forecast.
    void sigWinnerSettingChanged(const QString& underlying, int direction);
};

// Holds the user configuration the host installed.
// utils::CSingletonT<TC::CUserManager>::instance()->getUserConfig().
class CUserManager {
public:
    CUserManager() = default;
    CUserManager(const CUserManager&) = delete;
    CUserManager& operator=(const CUserManager&) = delete;
    ~CUserManager();

    // Null until a host installs one.
    CUserConfig* getUserConfig() const { return m_config.load(std::memory_order_acquire); }
    // Takes ownership; the previous configuration is deleted.
    void setUserConfig(CUserConfig* config);

private:
    std::atomic<CUserConfig*> m_config{nullptr};
};

// The client's configuration. utils::CSingletonT<TC::CConfig>::instance().
class CConfig {
public:
    bool useWebView() const { return m_useWebView.load(); }
    void setUseWebView(bool use) { m_useWebView.store(use); }
    // Directory of the client's configuration, without trailing separator.
    QString configDir() const;
    void setConfigDir(const QString& dir);

private:
    std::atomic<bool> m_useWebView{true};
    mutable std::mutex m_mutex;
    QString m_configDir;
};

// The installed user configuration; null when none.
CUserConfig* getUserConfig();
CConfig* getConfig();
QString getConfigDir();

}  // namespace TC
