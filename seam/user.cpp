#include "seam/user.h"

#include <QDir>

namespace TC {

boost::shared_ptr<nqservice::CAccountInfo> CAccount::toInfo() const
{
    auto info = boost::make_shared<nqservice::CAccountInfo>();
    info->accountType = accountType;
    info->brokerId = brokerId;
    info->accountId = accountId.toStdString();
    info->displayName = displayName.toStdString();
    info->userName = userName.toStdString();
    info->brokerName = brokerName.toStdString();
    return info;
}

bool CAccountGroup::getWeight(const QString& accountKey, int& weight) const
{
    auto it = weights.constFind(accountKey);
    if (it == weights.constEnd()) {
        return false;
    }
    weight = it.value();
    return true;
}

CStrategySetting::CStrategySetting(const CStrategySetting& other) : name(other.name)
{
    for (const CStrategyStockData* leg : other.legs) {
        legs.append(new CStrategyStockData(*leg));
    }
}

CStrategySetting& CStrategySetting::operator=(const CStrategySetting& other)
{
    if (this != &other) {
        // Copy first: other may be reached through one of our own legs.
        QList<CStrategyStockData*> copies;
        for (const CStrategyStockData* leg : other.legs) {
            copies.append(new CStrategyStockData(*leg));
        }
        clearLegs();
        name = other.name;
        legs = copies;
    }
    return *this;
}

CStrategySetting::~CStrategySetting() { clearLegs(); }

void CStrategySetting::addLeg(const CStrategyStockData& leg) { legs.append(new CStrategyStockData(leg)); }

void CStrategySetting::clearLegs()
{
    qDeleteAll(legs);
    legs.clear();
}

bool CStrategySetting::operator==(const CStrategySetting& other) const
{
    if (name != other.name || legs.size() != other.legs.size()) {
        return false;
    }
    for (int i = 0; i < legs.size(); ++i) {
        const CStrategyStockData& a = *legs[i];
        const CStrategyStockData& b = *other.legs[i];
        if (a.code != b.code || a.name != b.name || a.market != b.market || a.weight != b.weight ||
            a.quantity != b.quantity || a.operation != b.operation || a.checked != b.checked) {
            return false;
        }
    }
    return true;
}

CUserManager::~CUserManager() { setUserConfig(nullptr); }

void CUserManager::setUserConfig(CUserConfig* config)
{
    CUserConfig* old = m_config.exchange(config, std::memory_order_acq_rel);
    delete old;
}

QString CConfig::configDir() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_configDir.isEmpty()) {
        return QDir::homePath() + QStringLiteral("/.optdesk");
    }
    return m_configDir;
}

void CConfig::setConfigDir(const QString& dir)
{
    QString cleaned = QDir::cleanPath(dir);
    while (cleaned.size() > 1 && cleaned.endsWith(QLatin1Char('/'))) {
        cleaned.chop(1);
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_configDir = cleaned;
}

CUserConfig* getUserConfig() { return utils::CSingletonT<CUserManager>::instance()->getUserConfig(); }

CConfig* getConfig() { return utils::CSingletonT<CConfig>::instance(); }

QString getConfigDir() { return getConfig()->configDir(); }

}  // namespace TC
