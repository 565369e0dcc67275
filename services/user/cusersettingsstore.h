// The user's settings kept in the configuration directory: accounts and
// groups, role and display choices, members by number, baskets, winner and
// trade settings. Written as one JSON file with atomic replacement; a damaged
// file is set aside and the last good state is kept. Not a widget, no network.
//
// Threads: everything but the imported Greeks belongs to the thread that owns
// the store (the GUI thread). The imported Greeks (member 153) are replaced by
// the import thread through replaceOptionExGreeks and read anywhere through
// getOptionExGreeks; both take the store's Greeks lock and hand out copies.
#pragma once

#include "seam/user.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <mutex>

namespace TC {

class CUserSettingsStore : public CUserConfig {
    Q_OBJECT
public:
    // Loads the settings of configDir, or starts with the default paper user
    // when there are none; a damaged file is set aside.
    explicit CUserSettingsStore(const QString& configDir, QObject* parent = nullptr);
    ~CUserSettingsStore() override;

    static QString settingsFileName() { return QStringLiteral("usersettings.json"); }
    static QString backupFileName() { return QStringLiteral("usersettings.json.bak"); }
    QString settingsPath() const;
    QString configDir() const { return m_configDir; }

    // Writes the settings now; false when the file could not be replaced (the
    // old file then stays as it was).
    Q_INVOKABLE bool save();
    // Reads the file again. A damaged file is set aside and the state in memory
    // stays; false then.
    bool reload();
    bool isModified() const { return m_modified; }
    // True when the directory held no settings at all: a new user, whom the desk may give examples.
    bool startedFresh() const { return m_startedFresh; }
    // Path of the last file that was set aside, "" if none.
    QString lastSetAsidePath() const { return m_lastSetAside; }

    // Setters of our own for the desk and the tests; each saves.
    void setUserDataInt(EUserMember member, int value);
    void setUserDataString(EUserMember member, const QString& value);
    void setAccounts(const QVector<boost::shared_ptr<CAccount>>& accounts);
    void setAccountGroups(const QVector<CAccountGroup>& groups);
    QVector<CAccountGroup> accountGroups() const { return m_groups; }
    void setAccountFilter(const QString& key, bool filtered);
    void setPermission(const QString& key, int value);
    void setHistoryRate(const QString& expiry, const QString& underlying, double rate);
    void setTradeSetting(const CTradeSetting& setting);
    CTradeSetting tradeSetting() const { return m_tradeSetting; }
    void setStrategySettings(const QMap<QString, CStrategySetting>& baskets);
    QMap<QString, CStrategySetting> strategySettings() const { return m_baskets; }
    void setStockUnitText(const QString& unit, const QString& text);

    // CUserConfig
    int getUserDataInt(EUserMember member) const override;
    QString getUserDataString(EUserMember member) override;
    void* getUserDataAddress(EUserMember member) override;
    const void* getUserDataAddress(EUserMember member) const override;
    void setModifyFlag() override;
    CTradeSetting publishedTradeSetting() const override;
    utils::EFormatNumberFlag getSegmentedFormatFlag() override;
    boost::shared_ptr<CAccount> getAccountData(const QString& key) override;
    bool isAccountFilter(const QString& key) override;
    const CAccountGroup* getAccountGroupConst(nqservice::EVQBrokerType brokerType, QString name) const override;
    QVector<boost::shared_ptr<CAccount>> getGroupAccounts(nqservice::EVQBrokerType brokerType, QString name) override;
    QString getStockUnitText(QString unit) override;
    boost::shared_ptr<nqservice::CGlobalFeaturePermissionInfo> getPermissionInfoPtr() override;
    bool isKelvanClientMode() const override;
    bool isKelvanQuoteMode() override;
    bool hasUpStopPrice() override;
    void getHistoryRate(double& rate, QString expiry, QString underlying) override;
    boost::shared_ptr<nqservice::COptionExGreeksVolatility> getOptionExGreeks(QString code) override;
    void replaceOptionExGreeks(const OptionExGreeksMap& greeks) override;
    void getWinnerSetting(const QString& underlying, EWinnerPredictDirection direction,
                          CWinnerSetting& setting) override;
    void setWinnerSetting(const QString& underlying, EWinnerPredictDirection direction,
                          const CWinnerSetting& setting) override;

private:
    void resetToDefaults();
    QByteArray toJson() const;
    // Reads a whole state from the text; false (state untouched) when damaged.
    bool fromJson(const QByteArray& text, QString& why);
    // Renames a damaged file with a suffix and logs it.
    void setAside(const QString& path, const QString& why);
    bool writeFile(const QString& path, const QByteArray& text);
    static QString winnerKey(const QString& underlying, int direction);
    static QString rateKey(const QString& expiry, const QString& underlying);

    QString m_configDir;
    bool m_modified = false;
    bool m_startedFresh = false;
    QString m_lastSetAside;

    QString m_userName;
    QString m_displayName;
    QMap<int, int> m_ints;        // integer members: role, grouping, benchmark, modes ...
    QMap<int, QString> m_strings;  // text members other than the names
    QVector<boost::shared_ptr<CAccount>> m_accounts;         // 91
    QVector<CAccountGroup> m_groups;                          // 92
    QStringList m_accountFilter;                              // 93
    boost::shared_ptr<nqservice::CGlobalFeaturePermissionInfo> m_permission;  // 110
    QMap<QString, CStrategySetting> m_baskets;                // 122
    CTradeSetting m_tradeSetting;                             // 160
    QMap<QString, CWinnerSetting> m_winnerSettings;           // 161
    QMap<QString, double> m_historyRates;                     // 162
    QMap<QString, QString> m_unitTexts;

    mutable std::mutex m_greeksMutex;
    OptionExGreeksMap m_exGreeks;  // 153, guarded by m_greeksMutex
    // The trade setting for other threads, copied on the store's thread; guarded by m_greeksMutex.
    CTradeSetting m_publishedTradeSetting;
    void publishTradeSetting();
};

}  // namespace TC
