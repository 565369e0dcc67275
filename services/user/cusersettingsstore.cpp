#include "services/user/cusersettingsstore.h"

#include "seam/logger.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QMetaObject>
#include <QSaveFile>
#include <QThread>

#include <fmt/format.h>

namespace TC {

namespace {

constexpr int kFormatVersion = 1;

// Roles that may trade from every panel.
constexpr int kDefaultRole = 90;

QJsonObject accountToJson(const CAccount& account)
{
    QJsonObject object;
    object.insert("accountId", account.accountId);
    object.insert("displayName", account.displayName);
    object.insert("accountType", account.accountType);
    object.insert("brokerId", account.brokerId);
    object.insert("brokerName", account.brokerName);
    object.insert("userName", account.userName);
    return object;
}

boost::shared_ptr<CAccount> accountFromJson(const QJsonObject& object)
{
    auto account = boost::make_shared<CAccount>();
    account->accountId = object.value("accountId").toString();
    account->displayName = object.value("displayName").toString();
    account->accountType = object.value("accountType").toInt();
    account->brokerId = object.value("brokerId").toInt();
    account->brokerName = object.value("brokerName").toString();
    account->userName = object.value("userName").toString();
    return account;
}

QJsonObject legToJson(const CStrategyStockData& leg)
{
    QJsonObject object;
    object.insert("code", leg.code);
    object.insert("name", leg.name);
    object.insert("market", leg.market);
    object.insert("weight", leg.weight);
    // As text: a double would lose the low bits of a 64-bit quantity.
    object.insert("quantity", QString::number(leg.quantity));
    object.insert("operation", static_cast<int>(leg.operation));
    object.insert("checked", leg.checked);
    return object;
}

CStrategyStockData legFromJson(const QJsonObject& object)
{
    CStrategyStockData leg;
    leg.code = object.value("code").toString();
    leg.name = object.value("name").toString();
    leg.market = object.value("market").toString();
    leg.weight = object.value("weight").toDouble(leg.weight);
    bool ok = false;
    const long long quantity = object.value("quantity").toString().toLongLong(&ok);
    if (ok) {
        leg.quantity = quantity;
    }
    leg.operation = static_cast<nqservice::EOperationType>(object.value("operation").toInt(leg.operation));
    leg.checked = object.value("checked").toBool(leg.checked);
    return leg;
}

}  // namespace

CUserSettingsStore::CUserSettingsStore(const QString& configDir, QObject* parent)
    : CUserConfig(parent), m_configDir(QDir::cleanPath(configDir))
{
    resetToDefaults();
    QDir().mkpath(m_configDir);
    const QString path = settingsPath();
    const QString backup = QDir(m_configDir).filePath(backupFileName());
    if (!QFile::exists(path) && !QFile::exists(backup)) {
        m_startedFresh = true;
        save();
        return;
    }
    if (reload()) {
        return;
    }
    // The main file was damaged and set aside: the backup holds the last good state.
    QFile file(backup);
    if (file.open(QIODevice::ReadOnly)) {
        QString why;
        const QByteArray text = file.readAll();
        file.close();
        if (fromJson(text, why)) {
            NQ_LOG_INFO(fmt::format(FMT_STRING("user settings restored from {0}"), backup.toStdString()));
            save();
            return;
        }
        setAside(backup, why);
    }
    // Nothing good on disk: the defaults become the settings.
    save();
}

CUserSettingsStore::~CUserSettingsStore()
{
    if (m_modified) {
        save();
    }
}

QString CUserSettingsStore::settingsPath() const { return QDir(m_configDir).filePath(settingsFileName()); }

void CUserSettingsStore::resetToDefaults()
{
    m_userName = QStringLiteral("paper");
    m_displayName = QStringLiteral("模拟用户");
    m_ints.clear();
    m_ints.insert(UM_USER_ROLE, kDefaultRole);
    m_ints.insert(UM_SEGMENTED_FORMAT, 1);
    m_ints.insert(UM_GREEK_BENCHMARK, 0);
    m_ints.insert(UM_KELVAN_CLIENT_MODE, 0);
    m_ints.insert(UM_KELVAN_QUOTE_MODE, 0);
    m_ints.insert(UM_UP_STOP_PRICE, 1);
    m_strings.clear();

    m_accounts.clear();
    auto addAccount = [this](const char* id, const char* name, int type, int broker, const char* brokerName) {
        auto account = boost::make_shared<CAccount>();
        account->accountId = QString::fromUtf8(id);
        account->displayName = QString::fromUtf8(name);
        account->accountType = type;
        account->brokerId = broker;
        account->brokerName = QString::fromUtf8(brokerName);
        account->userName = m_userName;
        m_accounts.append(account);
    };
    addAccount("SO001", "股票期权一号", nqservice::VQ_BROKER_TYPE_STOCK_OPTION, 1, "模拟券商");
    addAccount("SO002", "股票期权二号", nqservice::VQ_BROKER_TYPE_STOCK_OPTION, 1, "模拟券商");
    addAccount("FO001", "期货期权一号", nqservice::VQ_BROKER_TYPE_FUTURE_OPTION, 2, "模拟期货");

    m_groups.clear();
    CAccountGroup group;
    group.name = QStringLiteral("默认组");
    group.brokerType = nqservice::VQ_BROKER_TYPE_STOCK_OPTION;
    group.weights.insert(QStringLiteral("SO001"), 1);
    group.weights.insert(QStringLiteral("SO002"), 2);
    m_groups.append(group);
    m_accountFilter.clear();

    m_permission = boost::make_shared<nqservice::CGlobalFeaturePermissionInfo>();
    m_permission->userName = m_userName.toStdString();
    // As the SSE allows: 50 contracts per limit order, 10 per market order, larger ones split.
    m_permission->intMap[nqservice::kPermStkOptMarketPriceSplitAllowance] = 1;
    m_permission->intMap[nqservice::kPermStkOptMarketPriceMaxOrderLimit] = 10;
    m_permission->intMap[nqservice::kPermStkOptFixPriceSplitAllowance] = 1;
    m_permission->intMap[nqservice::kPermStkOptFixPriceMaxOrderLimit] = 50;

    m_baskets.clear();
    m_tradeSetting = CTradeSetting();
    m_tradeSetting.autoImportExGreeksDir = QDir(m_configDir).filePath(QStringLiteral("exgreeks"));
    publishTradeSetting();
    m_winnerSettings.clear();
    m_historyRates.clear();
    m_unitTexts.clear();
}

namespace {

// An imported record as the settings file keeps it; an absent Greek is null.
QJsonObject exGreeksToJson(const nqservice::COptionExGreeksVolatility& record)
{
    auto number = [](double value) { return utils::isAbsent(value) ? QJsonValue() : QJsonValue(value); };
    QJsonObject object;
    object.insert("code", QString::fromStdString(record.code));
    object.insert("exSellImpliedVolatility", number(record.exSellImpliedVolatility));
    object.insert("exBuyImpliedVolatility", number(record.exBuyImpliedVolatility));
    object.insert("exDelta", number(record.exDelta));
    object.insert("exGamma", number(record.exGamma));
    object.insert("exVega", number(record.exVega));
    object.insert("exTheta", number(record.exTheta));
    return object;
}

boost::shared_ptr<nqservice::COptionExGreeksVolatility> exGreeksFromJson(const QJsonObject& object)
{
    auto record = boost::make_shared<nqservice::COptionExGreeksVolatility>();
    auto number = [&object](const char* name) {
        const QJsonValue value = object.value(QLatin1String(name));
        return value.isDouble() ? value.toDouble() : utils::kAbsentDouble;
    };
    record->code = object.value("code").toString().toStdString();
    record->exSellImpliedVolatility = number("exSellImpliedVolatility");
    record->exBuyImpliedVolatility = number("exBuyImpliedVolatility");
    record->exDelta = number("exDelta");
    record->exGamma = number("exGamma");
    record->exVega = number("exVega");
    record->exTheta = number("exTheta");
    return record;
}

}  // namespace

QByteArray CUserSettingsStore::toJson() const
{
    QJsonObject root;
    root.insert("version", kFormatVersion);
    root.insert("userName", m_userName);
    root.insert("displayName", m_displayName);

    QJsonObject ints;
    for (auto it = m_ints.constBegin(); it != m_ints.constEnd(); ++it) {
        ints.insert(QString::number(it.key()), it.value());
    }
    root.insert("ints", ints);
    QJsonObject strings;
    for (auto it = m_strings.constBegin(); it != m_strings.constEnd(); ++it) {
        strings.insert(QString::number(it.key()), it.value());
    }
    root.insert("strings", strings);

    QJsonArray accounts;
    for (const auto& account : m_accounts) {
        if (account) {
            accounts.append(accountToJson(*account));
        }
    }
    root.insert("accounts", accounts);

    QJsonArray groups;
    for (const CAccountGroup& group : m_groups) {
        QJsonObject object;
        object.insert("name", group.name);
        object.insert("brokerType", group.brokerType);
        QJsonObject weights;
        for (auto it = group.weights.constBegin(); it != group.weights.constEnd(); ++it) {
            weights.insert(it.key(), it.value());
        }
        object.insert("weights", weights);
        groups.append(object);
    }
    root.insert("groups", groups);
    root.insert("accountFilter", QJsonArray::fromStringList(m_accountFilter));

    QJsonObject permissions;
    if (m_permission) {
        for (const auto& entry : m_permission->intMap) {
            permissions.insert(QString::fromStdString(entry.first), entry.second);
        }
    }
    root.insert("permissions", permissions);

    QJsonArray baskets;
    for (auto it = m_baskets.constBegin(); it != m_baskets.constEnd(); ++it) {
        QJsonObject basket;
        basket.insert("name", it.key());
        QJsonArray legs;
        for (const CStrategyStockData* leg : it.value().legs) {
            if (leg != nullptr) {
                legs.append(legToJson(*leg));
            }
        }
        basket.insert("legs", legs);
        baskets.append(basket);
    }
    root.insert("baskets", baskets);

    QJsonObject trade;
    trade.insert("autoImportExGreeks", m_tradeSetting.autoImportExGreeks);
    trade.insert("autoImportExGreeksDir", m_tradeSetting.autoImportExGreeksDir);
    trade.insert("modeSetting", m_tradeSetting.modeSetting);
    trade.insert("defaultVolume", m_tradeSetting.defaultVolume);
    trade.insert("confirmOrder", m_tradeSetting.confirmOrder);
    root.insert("tradeSetting", trade);

    QJsonObject winners;
    for (auto it = m_winnerSettings.constBegin(); it != m_winnerSettings.constEnd(); ++it) {
        QJsonObject object;
        object.insert("levelOne", it.value().levelOne);
        object.insert("levelTwo", it.value().levelTwo);
        object.insert("startTime", static_cast<double>(it.value().startTime));
        object.insert("endTime", static_cast<double>(it.value().endTime));
        winners.insert(it.key(), object);
    }
    root.insert("winnerSettings", winners);

    QJsonObject rates;
    for (auto it = m_historyRates.constBegin(); it != m_historyRates.constEnd(); ++it) {
        rates.insert(it.key(), it.value());
    }
    root.insert("historyRates", rates);

    QJsonObject units;
    for (auto it = m_unitTexts.constBegin(); it != m_unitTexts.constEnd(); ++it) {
        units.insert(it.key(), it.value());
    }
    root.insert("unitTexts", units);

    // The last good import, so that imported Greeks survive a restart.
    QJsonArray exGreeks;
    {
        std::lock_guard<std::mutex> lock(m_greeksMutex);
        for (auto it = m_exGreeks.constBegin(); it != m_exGreeks.constEnd(); ++it) {
            if (it.value()) {
                exGreeks.append(exGreeksToJson(*it.value()));
            }
        }
    }
    root.insert("exGreeks", exGreeks);
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

bool CUserSettingsStore::fromJson(const QByteArray& text, QString& why)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        why = QStringLiteral("%1 at offset %2").arg(error.errorString()).arg(error.offset);
        return false;
    }
    if (!document.isObject()) {
        why = QStringLiteral("the top level is not an object");
        return false;
    }
    const QJsonObject root = document.object();
    if (root.value("version").toInt(-1) != kFormatVersion) {
        why = QStringLiteral("unknown format version");
        return false;
    }
    const QJsonValue accountsValue = root.value("accounts");
    if (!accountsValue.isUndefined() && !accountsValue.isArray()) {
        why = QStringLiteral("accounts are not a list");
        return false;
    }

    // Built aside and swapped in at the end, so a failure leaves the state alone.
    CUserSettingsStore* self = this;
    QString userName = root.value("userName").toString(QStringLiteral("paper"));
    QString displayName = root.value("displayName").toString();
    QMap<int, int> ints;
    const QJsonObject intsObject = root.value("ints").toObject();
    for (auto it = intsObject.constBegin(); it != intsObject.constEnd(); ++it) {
        bool ok = false;
        const int member = it.key().toInt(&ok);
        if (ok) {
            ints.insert(member, it.value().toInt());
        }
    }
    QMap<int, QString> strings;
    const QJsonObject stringsObject = root.value("strings").toObject();
    for (auto it = stringsObject.constBegin(); it != stringsObject.constEnd(); ++it) {
        bool ok = false;
        const int member = it.key().toInt(&ok);
        if (ok) {
            strings.insert(member, it.value().toString());
        }
    }
    QVector<boost::shared_ptr<CAccount>> accounts;
    for (const QJsonValue& value : accountsValue.toArray()) {
        auto account = accountFromJson(value.toObject());
        if (!account->accountId.isEmpty()) {
            accounts.append(account);
        }
    }
    QVector<CAccountGroup> groups;
    for (const QJsonValue& value : root.value("groups").toArray()) {
        const QJsonObject object = value.toObject();
        CAccountGroup group;
        group.name = object.value("name").toString();
        group.brokerType = object.value("brokerType").toInt(nqservice::VQ_BROKER_TYPE_STOCK_OPTION);
        const QJsonObject weights = object.value("weights").toObject();
        for (auto it = weights.constBegin(); it != weights.constEnd(); ++it) {
            group.weights.insert(it.key(), it.value().toInt());
        }
        groups.append(group);
    }
    QStringList filter;
    for (const QJsonValue& value : root.value("accountFilter").toArray()) {
        filter.append(value.toString());
    }
    auto permission = boost::make_shared<nqservice::CGlobalFeaturePermissionInfo>();
    permission->userName = userName.toStdString();
    const QJsonObject permissions = root.value("permissions").toObject();
    for (auto it = permissions.constBegin(); it != permissions.constEnd(); ++it) {
        permission->intMap[it.key().toStdString()] = it.value().toInt();
    }
    QMap<QString, CStrategySetting> baskets;
    for (const QJsonValue& value : root.value("baskets").toArray()) {
        const QJsonObject object = value.toObject();
        CStrategySetting basket;
        basket.name = object.value("name").toString();
        for (const QJsonValue& leg : object.value("legs").toArray()) {
            basket.addLeg(legFromJson(leg.toObject()));
        }
        baskets.insert(basket.name, basket);
    }
    CTradeSetting trade;
    const QJsonObject tradeObject = root.value("tradeSetting").toObject();
    trade.autoImportExGreeks = tradeObject.value("autoImportExGreeks").toBool(trade.autoImportExGreeks);
    trade.autoImportExGreeksDir = tradeObject.value("autoImportExGreeksDir").toString();
    trade.modeSetting = tradeObject.value("modeSetting").toInt(trade.modeSetting);
    trade.defaultVolume = tradeObject.value("defaultVolume").toInt(trade.defaultVolume);
    trade.confirmOrder = tradeObject.value("confirmOrder").toBool(trade.confirmOrder);
    QMap<QString, CWinnerSetting> winners;
    const QJsonObject winnersObject = root.value("winnerSettings").toObject();
    for (auto it = winnersObject.constBegin(); it != winnersObject.constEnd(); ++it) {
        const QJsonObject object = it.value().toObject();
        CWinnerSetting setting;
        setting.levelOne = object.value("levelOne").toDouble();
        setting.levelTwo = object.value("levelTwo").toDouble();
        setting.startTime = static_cast<unsigned>(object.value("startTime").toDouble());
        setting.endTime = static_cast<unsigned>(object.value("endTime").toDouble());
        winners.insert(it.key(), setting);
    }
    QMap<QString, double> rates;
    const QJsonObject ratesObject = root.value("historyRates").toObject();
    for (auto it = ratesObject.constBegin(); it != ratesObject.constEnd(); ++it) {
        rates.insert(it.key(), it.value().toDouble());
    }
    QMap<QString, QString> units;
    const QJsonObject unitsObject = root.value("unitTexts").toObject();
    for (auto it = unitsObject.constBegin(); it != unitsObject.constEnd(); ++it) {
        units.insert(it.key(), it.value().toString());
    }
    OptionExGreeksMap exGreeks;
    for (const QJsonValue& value : root.value("exGreeks").toArray()) {
        auto record = exGreeksFromJson(value.toObject());
        if (!record->code.empty()) {
            exGreeks.insert(QString::fromStdString(record->code), record);
        }
    }

    self->m_userName = userName;
    self->m_displayName = displayName;
    self->m_ints = ints;
    self->m_strings = strings;
    self->m_accounts = accounts;
    self->m_groups = groups;
    self->m_accountFilter = filter;
    self->m_permission = permission;
    self->m_baskets = baskets;
    self->m_tradeSetting = trade;
    self->m_winnerSettings = winners;
    self->m_historyRates = rates;
    self->m_unitTexts = units;
    {
        std::lock_guard<std::mutex> lock(m_greeksMutex);
        self->m_exGreeks.swap(exGreeks);
        self->m_publishedTradeSetting = trade;
    }
    return true;
}

bool CUserSettingsStore::writeFile(const QString& path, const QByteArray& text)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    if (file.write(text) != text.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool CUserSettingsStore::save()
{
    QDir().mkpath(m_configDir);
    const QByteArray text = toJson();
    if (!writeFile(settingsPath(), text)) {
        NQ_LOG_ERROR(fmt::format(FMT_STRING("cannot write user settings to {0}"), settingsPath().toStdString()));
        return false;
    }
    // A second copy of the good state: the main file can still be damaged from
    // outside (a disk error, another program), and the backup then restores it.
    if (!writeFile(QDir(m_configDir).filePath(backupFileName()), text)) {
        NQ_LOG_ERROR(fmt::format(FMT_STRING("cannot write the backup of the user settings in {0}"),
                                 m_configDir.toStdString()));
    }
    m_modified = false;
    return true;
}

void CUserSettingsStore::setAside(const QString& path, const QString& why)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddhhmmsszzz"));
    QString target = path + QStringLiteral(".damaged-") + stamp;
    for (int n = 1; QFile::exists(target); ++n) {
        target = path + QStringLiteral(".damaged-") + stamp + QLatin1Char('-') + QString::number(n);
    }
    if (!QFile::rename(path, target)) {
        target.clear();
    }
    m_lastSetAside = target;
    NQ_LOG_ERROR(fmt::format(FMT_STRING("user settings file {0} is damaged ({1}); set aside as {2}"),
                             path.toStdString(), why.toStdString(),
                             target.isEmpty() ? std::string("(rename failed)") : target.toStdString()));
}

bool CUserSettingsStore::reload()
{
    const QString path = settingsPath();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray text = file.readAll();
    file.close();
    QString why;
    if (fromJson(text, why)) {
        m_modified = false;
        return true;
    }
    setAside(path, why);
    return false;
}

void CUserSettingsStore::publishTradeSetting()
{
    std::lock_guard<std::mutex> lock(m_greeksMutex);
    m_publishedTradeSetting = m_tradeSetting;
}

CTradeSetting CUserSettingsStore::publishedTradeSetting() const
{
    std::lock_guard<std::mutex> lock(m_greeksMutex);
    return m_publishedTradeSetting;
}

void CUserSettingsStore::setModifyFlag()
{
    m_modified = true;
    if (QThread::currentThread() == thread()) {
        // Writers on this thread change the members in place before they call here.
        publishTradeSetting();
        save();
    } else {
        // A writer on another thread: the save runs on the store's own thread.
        QMetaObject::invokeMethod(this, "save", Qt::QueuedConnection);
    }
}

void CUserSettingsStore::setUserDataInt(EUserMember member, int value)
{
    m_ints.insert(member, value);
    setModifyFlag();
}

void CUserSettingsStore::setUserDataString(EUserMember member, const QString& value)
{
    if (member == UM_USER_NAME) {
        m_userName = value;
    } else if (member == UM_DISPLAY_NAME) {
        m_displayName = value;
    } else {
        m_strings.insert(member, value);
    }
    setModifyFlag();
}

void CUserSettingsStore::setAccounts(const QVector<boost::shared_ptr<CAccount>>& accounts)
{
    m_accounts = accounts;
    setModifyFlag();
}

void CUserSettingsStore::setAccountGroups(const QVector<CAccountGroup>& groups)
{
    m_groups = groups;
    setModifyFlag();
}

void CUserSettingsStore::setAccountFilter(const QString& key, bool filtered)
{
    m_accountFilter.removeAll(key);
    if (filtered) {
        m_accountFilter.append(key);
    }
    setModifyFlag();
}

void CUserSettingsStore::setPermission(const QString& key, int value)
{
    auto permission = boost::make_shared<nqservice::CGlobalFeaturePermissionInfo>(*m_permission);
    permission->intMap[key.toStdString()] = value;
    // Replaced, not changed in place: callers may hold the previous record.
    m_permission = permission;
    setModifyFlag();
}

void CUserSettingsStore::setHistoryRate(const QString& expiry, const QString& underlying, double rate)
{
    m_historyRates.insert(rateKey(expiry, underlying), rate);
    setModifyFlag();
}

void CUserSettingsStore::setTradeSetting(const CTradeSetting& setting)
{
    m_tradeSetting = setting;
    setModifyFlag();
}

void CUserSettingsStore::setStrategySettings(const QMap<QString, CStrategySetting>& baskets)
{
    m_baskets = baskets;
    setModifyFlag();
}

void CUserSettingsStore::setStockUnitText(const QString& unit, const QString& text)
{
    m_unitTexts.insert(unit, text);
    setModifyFlag();
}

int CUserSettingsStore::getUserDataInt(EUserMember member) const { return m_ints.value(member, 0); }

QString CUserSettingsStore::getUserDataString(EUserMember member)
{
    if (member == UM_USER_NAME) {
        return m_userName;
    }
    if (member == UM_DISPLAY_NAME) {
        return m_displayName;
    }
    return m_strings.value(member);
}

void* CUserSettingsStore::getUserDataAddress(EUserMember member)
{
    return const_cast<void*>(static_cast<const CUserSettingsStore*>(this)->getUserDataAddress(member));
}

const void* CUserSettingsStore::getUserDataAddress(EUserMember member) const
{
    switch (member) {
    case UM_ACCOUNT_LIST:
        return &m_accounts;
    case UM_ACCOUNT_GROUPS:
        return &m_groups;
    case UM_ACCOUNT_FILTER:
        return &m_accountFilter;
    case UM_PERMISSION:
        return m_permission.get();
    case UM_STRATEGY_SETTINGS:
        return &m_baskets;
    case UM_OPTION_EX_GREEKS:
        return &m_exGreeks;
    case UM_TRADE_SETTING:
        return &m_tradeSetting;
    case UM_WINNER_SETTINGS:
        return &m_winnerSettings;
    case UM_HISTORY_RATES:
        return &m_historyRates;
    default:
        return nullptr;
    }
}

utils::EFormatNumberFlag CUserSettingsStore::getSegmentedFormatFlag()
{
    return getUserDataInt(UM_SEGMENTED_FORMAT) != 0 ? utils::FNF_SEGMENTED : utils::FNF_NONE;
}

boost::shared_ptr<CAccount> CUserSettingsStore::getAccountData(const QString& key)
{
    for (const auto& account : m_accounts) {
        if (account && account->key() == key) {
            return account;
        }
    }
    return boost::shared_ptr<CAccount>();
}

bool CUserSettingsStore::isAccountFilter(const QString& key) { return m_accountFilter.contains(key); }

const CAccountGroup* CUserSettingsStore::getAccountGroupConst(nqservice::EVQBrokerType brokerType, QString name) const
{
    for (const CAccountGroup& group : m_groups) {
        if (group.brokerType == brokerType && group.name == name) {
            return &group;
        }
    }
    return nullptr;
}

QVector<boost::shared_ptr<CAccount>> CUserSettingsStore::getGroupAccounts(nqservice::EVQBrokerType brokerType,
                                                                          QString name)
{
    QVector<boost::shared_ptr<CAccount>> accounts;
    const CAccountGroup* group = getAccountGroupConst(brokerType, name);
    if (group == nullptr) {
        return accounts;
    }
    for (const QString& key : group->accountKeys()) {
        if (auto account = getAccountData(key)) {
            accounts.append(account);
        }
    }
    return accounts;
}

QString CUserSettingsStore::getStockUnitText(QString unit) { return m_unitTexts.value(unit, unit); }

boost::shared_ptr<nqservice::CGlobalFeaturePermissionInfo> CUserSettingsStore::getPermissionInfoPtr()
{
    return m_permission;
}

bool CUserSettingsStore::isKelvanClientMode() const { return getUserDataInt(UM_KELVAN_CLIENT_MODE) != 0; }

bool CUserSettingsStore::isKelvanQuoteMode() { return getUserDataInt(UM_KELVAN_QUOTE_MODE) != 0; }

bool CUserSettingsStore::hasUpStopPrice() { return getUserDataInt(UM_UP_STOP_PRICE) != 0; }

void CUserSettingsStore::getHistoryRate(double& rate, QString expiry, QString underlying)
{
    auto it = m_historyRates.constFind(rateKey(expiry, underlying));
    if (it != m_historyRates.constEnd()) {
        rate = it.value();
    }
}

boost::shared_ptr<nqservice::COptionExGreeksVolatility> CUserSettingsStore::getOptionExGreeks(QString code)
{
    std::lock_guard<std::mutex> lock(m_greeksMutex);
    auto it = m_exGreeks.constFind(code);
    if (it == m_exGreeks.constEnd() || !it.value()) {
        return boost::shared_ptr<nqservice::COptionExGreeksVolatility>();
    }
    return boost::make_shared<nqservice::COptionExGreeksVolatility>(*it.value());
}

void CUserSettingsStore::replaceOptionExGreeks(const OptionExGreeksMap& greeks)
{
    // Copies made outside the lock: the caller keeps its records to itself.
    OptionExGreeksMap copies;
    for (auto it = greeks.constBegin(); it != greeks.constEnd(); ++it) {
        if (it.value()) {
            copies.insert(it.key(), boost::make_shared<nqservice::COptionExGreeksVolatility>(*it.value()));
        }
    }
    std::lock_guard<std::mutex> lock(m_greeksMutex);
    m_exGreeks.swap(copies);
}

void CUserSettingsStore::getWinnerSetting(const QString& underlying, EWinnerPredictDirection direction,
                                          CWinnerSetting& setting)
{
    setting = m_winnerSettings.value(winnerKey(underlying, direction), CWinnerSetting());
}

void CUserSettingsStore::setWinnerSetting(const QString& underlying, EWinnerPredictDirection direction,
                                          const CWinnerSetting& setting)
{
    m_winnerSettings.insert(winnerKey(underlying, direction), setting);
    setModifyFlag();
    emit sigWinnerSettingChanged(underlying, static_cast<int>(direction));
}

QString CUserSettingsStore::winnerKey(const QString& underlying, int direction)
{
    return underlying + QLatin1Char('|') + QString::number(direction);
}

QString CUserSettingsStore::rateKey(const QString& expiry, const QString& underlying)
{
    return underlying + QLatin1Char('|') + expiry;
}

}  // namespace TC
