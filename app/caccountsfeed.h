// Subscribes the trading tables (orders, deals, positions, funds) of every
// account of the user whose login is ready, and hands their records to the GUI
// thread. Callbacks arrive on service threads and only copy the record into an
// inbox (the newest per key wins) and post one drain; the sink runs on the GUI
// thread. An account is subscribed afresh when the trade client reports a change
// of its login. Dropping the feed ends every subscription.
#pragma once

#include "seam/idata.h"
#include "seam/subrequest.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace nqservice {
class CAccountData;
}

namespace desk {

class CAccountsFeed : public QObject {
    Q_OBJECT
public:
    // Records of one table (542, 570, 547, 544 or 1030), oldest first.
    using RecordSink = std::function<void(int dataType, const std::vector<nqservice::IDataPtr>& records)>;
    // An account whose records are no longer followed.
    using AccountSink = std::function<void(const std::string& accountKey)>;

    // Follows nothing until refresh(), so the sinks can be set first.
    explicit CAccountsFeed(QObject* parent = nullptr);
    ~CAccountsFeed() override;

    // The tables followed, in the order a drain hands them over.
    static const std::vector<int>& dataTypes();

    void setRecordSink(RecordSink sink) { m_recordSink = std::move(sink); }
    void setAccountSink(AccountSink sink) { m_accountSink = std::move(sink); }

    // Follows every ready account not followed yet and lets go of those no longer
    // ready; reads each new account's tables at once.
    void refresh();
    // Lets go of an account and, when it is ready, follows it afresh.
    void resubscribe(const std::string& accountKey);
    // Hands what the inbox holds to the sink now.
    void drain();

    std::vector<std::string> followedAccounts() const;
    // Display names of the user's accounts by key, as the tables show them.
    QHash<QString, QString> accountNames() const { return m_names; }

signals:
    // After the followed accounts or their names changed.
    void sigAccountsChanged();

private:
    struct Inbox;
    struct Followed {
        boost::shared_ptr<nqservice::CAccountData> data;
        std::vector<nqservice::SubRequestPtr> handles;
    };
    // Ready accounts of the user by key; empty without user settings or login service.
    std::vector<std::string> readyAccounts();
    void follow(const std::string& accountKey);
    void letGo(const std::string& accountKey);
    void postDrain();

    std::shared_ptr<Inbox> m_inbox;
    std::map<std::string, Followed> m_followed;
    QHash<QString, QString> m_names;
    RecordSink m_recordSink;
    AccountSink m_accountSink;
};

}  // namespace desk
