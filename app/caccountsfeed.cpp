#include "app/caccountsfeed.h"

#include "seam/common.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/user.h"
#include "seam/userrecords.h"

#include <QMetaObject>
#include <QVector>

#include <algorithm>

namespace desk {

// What the callbacks leave for the GUI thread: per table, records in arrival
// order, a later record of a key replacing the earlier one in its place.
struct CAccountsFeed::Inbox {
    struct Entry {
        std::string account;
        nqservice::IDataPtr record;
    };
    struct Table {
        std::vector<Entry> entries;
        std::unordered_map<std::string, std::size_t> positions;
    };

    std::mutex mutex;
    std::map<int, Table> tables;
    bool drainPosted = false;

    // Under the lock.
    void put(int dataType, const std::string& account, const nqservice::IDataPtr& record)
    {
        Table& table = tables[dataType];
        const std::string key = record->getKey();
        auto it = table.positions.find(key);
        if (it != table.positions.end()) {
            table.entries[it->second] = Entry{account, record};
        } else {
            table.positions.emplace(key, table.entries.size());
            table.entries.push_back(Entry{account, record});
        }
    }

    // Under the lock.
    void dropAccount(const std::string& account)
    {
        for (auto& entry : tables) {
            Table kept;
            for (Entry& item : entry.second.entries) {
                if (item.account != account) {
                    kept.positions.emplace(item.record->getKey(), kept.entries.size());
                    kept.entries.push_back(std::move(item));
                }
            }
            entry.second = std::move(kept);
        }
    }
};

CAccountsFeed::CAccountsFeed(QObject* parent) : QObject(parent), m_inbox(std::make_shared<Inbox>())
{
    if (TC::CTradeClient* client = utils::CManualSingletonT<TC::CTradeClient>::instance()) {
        // The signal may come from a service thread: the context object makes it queued then.
        connect(client, &TC::CTradeClient::sigLoginStatus, this,
                [this](const nqservice::CAccountInfoPtr& account, nqservice::EBROKER_LOGIN_STATUS, std::string) {
                    if (account) {
                        resubscribe(account->getKey());
                    } else {
                        refresh();
                    }
                });
    }
}

CAccountsFeed::~CAccountsFeed()
{
    // Dropping a handle waits for its callback in flight; after this none runs.
    m_followed.clear();
}

const std::vector<int>& CAccountsFeed::dataTypes()
{
    static const std::vector<int> s_types = {nqservice::VQ_DATA_TYPE_ORDER, nqservice::VQ_DATA_TYPE_QUICK_ORDER,
                                             nqservice::VQ_DATA_TYPE_POSITION_STATICS,
                                             nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL,
                                             nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION};
    return s_types;
}

std::vector<std::string> CAccountsFeed::readyAccounts()
{
    std::vector<std::string> ready;
    QHash<QString, QString> names;
    TC::CUserConfig* user = TC::getUserConfig();
    nqservice::TradeLogicInterface* logic =
        utils::CSingletonT<TC::SingletonManager>::instance()->getTradeLogicInterface();
    const auto* accounts =
        user != nullptr
            ? static_cast<const QVector<boost::shared_ptr<TC::CAccount>>*>(user->getUserDataAddress(TC::UM_ACCOUNT_LIST))
            : nullptr;
    if (accounts != nullptr) {
        for (const auto& account : *accounts) {
            if (!account) {
                continue;
            }
            names.insert(account->key(), account->displayName.isEmpty() ? account->key() : account->displayName);
            const std::string key = account->key().toStdString();
            if (logic != nullptr && nqservice::isLoginStatusReady(logic->getLoginStatus(key))) {
                ready.push_back(key);
            }
        }
    }
    if (names != m_names) {
        m_names = names;
        emit sigAccountsChanged();
    }
    return ready;
}

void CAccountsFeed::refresh()
{
    const std::vector<std::string> ready = readyAccounts();
    std::vector<std::string> gone;
    for (const auto& entry : m_followed) {
        if (std::find(ready.begin(), ready.end(), entry.first) == ready.end()) {
            gone.push_back(entry.first);
        }
    }
    for (const std::string& key : gone) {
        letGo(key);
    }
    for (const std::string& key : ready) {
        if (m_followed.count(key) == 0) {
            follow(key);
        }
    }
    drain();
}

void CAccountsFeed::resubscribe(const std::string& accountKey)
{
    letGo(accountKey);
    const std::vector<std::string> ready = readyAccounts();
    if (std::find(ready.begin(), ready.end(), accountKey) != ready.end()) {
        follow(accountKey);
    }
    drain();
}

void CAccountsFeed::follow(const std::string& accountKey)
{
    const boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    boost::shared_ptr<nqservice::IDataCenter> dataCenter;
    if (center) {
        dataCenter = center->getDataCenter();
    }
    boost::shared_ptr<nqservice::CAccountData> data;
    if (dataCenter) {
        data = dataCenter->getAccountData(utils::hash(accountKey));
    }
    if (!data) {
        NQ_LOG_INFO("accounts dock: no tables for account " + accountKey);
        return;
    }
    Followed followed;
    followed.data = data;
    // Subscribed before the tables are read, so nothing falls between the two.
    for (int type : dataTypes()) {
        std::weak_ptr<Inbox> weakInbox = m_inbox;
        auto callback = [weakInbox, this, type, accountKey](const nqservice::IDataPtr& record) {
            const std::shared_ptr<Inbox> inbox = weakInbox.lock();
            if (!inbox || !record) {
                return;
            }
            const nqservice::IDataPtr copy = record->copy();
            bool post = false;
            {
                std::lock_guard<std::mutex> lock(inbox->mutex);
                inbox->put(type, accountKey, copy);
                // One drain in the GUI thread's queue is enough for any number of records.
                post = !inbox->drainPosted;
                inbox->drainPosted = true;
            }
            if (post) {
                postDrain();
            }
        };
        if (nqservice::SubRequestPtr handle = data->subscribe(type, std::string(), callback)) {
            followed.handles.push_back(handle);
        }
    }
    // The snapshot goes through the inbox like any record: what a callback brings
    // after it replaces it. The caller drains.
    {
        std::lock_guard<std::mutex> lock(m_inbox->mutex);
        for (int type : dataTypes()) {
            std::vector<nqservice::IDataPtr> records;
            data->getVector(type, records);
            for (const nqservice::IDataPtr& record : records) {
                if (record) {
                    m_inbox->put(type, accountKey, record->copy());
                }
            }
        }
        if (const boost::shared_ptr<nqservice::CAccountDetail> funds = data->getAccountDetail()) {
            m_inbox->put(nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL, accountKey, funds->copy());
        }
    }
    m_followed[accountKey] = std::move(followed);
    emit sigAccountsChanged();
}

void CAccountsFeed::letGo(const std::string& accountKey)
{
    auto it = m_followed.find(accountKey);
    if (it == m_followed.end()) {
        return;
    }
    // The handles go first: once dropped, no callback of them puts anything more.
    m_followed.erase(it);
    {
        std::lock_guard<std::mutex> lock(m_inbox->mutex);
        m_inbox->dropAccount(accountKey);
    }
    if (m_accountSink) {
        m_accountSink(accountKey);
    }
    emit sigAccountsChanged();
}

void CAccountsFeed::postDrain()
{
    QMetaObject::invokeMethod(this, [this] { drain(); }, Qt::QueuedConnection);
}

void CAccountsFeed::drain()
{
    std::map<int, Inbox::Table> tables;
    {
        std::lock_guard<std::mutex> lock(m_inbox->mutex);
        tables.swap(m_inbox->tables);
        m_inbox->drainPosted = false;
    }
    if (!m_recordSink) {
        return;
    }
    for (int type : dataTypes()) {
        auto it = tables.find(type);
        if (it == tables.end() || it->second.entries.empty()) {
            continue;
        }
        std::vector<nqservice::IDataPtr> records;
        records.reserve(it->second.entries.size());
        for (const Inbox::Entry& entry : it->second.entries) {
            records.push_back(entry.record);
        }
        m_recordSink(type, records);
    }
}

std::vector<std::string> CAccountsFeed::followedAccounts() const
{
    std::vector<std::string> keys;
    for (const auto& entry : m_followed) {
        keys.push_back(entry.first);
    }
    return keys;
}

}  // namespace desk
