// The paper broker as a gateway: its books run on a thread of their own behind
// a queue, every change is committed to the ledger before subscribers of the
// account's tables receive it (on that thread, as copies), and quotes reach the
// books newest per key. Commands and cancels return at once; their outcome
// shows in the tables, and a refusal through the refusal handler.
#pragma once

#include "seam/subrequest.h"
#include "seam/trading.h"
#include "services/trading/cpaperbrokercore.h"

#include <QString>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace TC {
class CExchangeClient;
class CQuoteClient;
class CQuoteRequest;
class CTimeService;
}  // namespace TC

namespace trading {

class CPaperLedger;

struct PaperBrokerConfig {
    QString ledgerPath;  // the SQLite file
    std::vector<PaperAccountTerms> accounts;
    TC::CExchangeClient* exchange = nullptr;  // instruments
    CPaperBrokerCore::InstrumentLookup instruments;  // instead of the exchange client (tests)
    TC::CQuoteClient* quotes = nullptr;       // the book; null: quotes come through feedQuote()
    TC::CTimeService* clock = nullptr;        // the broker's time; null: only step(ms) moves it
    int clockStepMs = 200;
    // The settlements of closes the broker did not see; null: the books' last prices.
    CPaperBrokerCore::SettlementSource settlements;
};

class CPaperBroker {
public:
    // Reason text (UTF-8) of a refused command or cancel, with its account.
    using RefusalHandler = std::function<void(const std::string& accountKey, const std::string& text)>;
    using CommandDone = std::function<void(const std::string& commandId, const std::string& refusal)>;

    explicit CPaperBroker(PaperBrokerConfig config);
    // Stops the thread; nothing is called back after it returns.
    ~CPaperBroker();
    CPaperBroker(const CPaperBroker&) = delete;
    CPaperBroker& operator=(const CPaperBroker&) = delete;

    // Opens the ledger and restores the books, opens new accounts, subscribes
    // the quotes and starts the thread. report tells of a damaged ledger set aside.
    bool start(QString* report);
    void stop();
    // Subscribes the book of every instrument the exchange lists and the broker
    // does not follow yet (a new trading day lists new contracts).
    void subscribeQuotes();

    // --- inputs, from any thread; they return at once -------------------------
    void submit(const nqservice::COrderComandParam& command, CommandDone done = CommandDone());
    void cancel(const std::string& accountKey, const std::string& orderId, CommandDone done = CommandDone());
    void feedQuote(const boost::shared_ptr<TC::CPriceData>& quote);
    // Stops a running task by (account number, task number) or by its server key.
    void terminateTask(int accountId, int taskId, const std::string& userName, CommandDone done = CommandDone());
    void terminateTask(const std::string& serverKey, const std::string& userName, CommandDone done = CommandDone());
    // The close of a trading day: settled in one input, committed in one transaction.
    void settle(const PaperSettlement& day, CommandDone done = CommandDone());
    // Sends the account's combination positions (table 1030) to its subscribers again.
    void refreshCombinations(const std::string& accountKey, CommandDone done = CommandDone());
    // Moves the broker's time (tests without a clock).
    void step(long long epochMs);
    void setLoggedIn(const std::string& accountKey, bool loggedIn);
    void setHalted(bool halted);
    bool halted() const { return m_halted.load(); }
    void setRefusalHandler(RefusalHandler handler);
    // Reckons the available volume on the broker's thread and answers there,
    // as a gateway answers a volume request.
    void queryVolume(const std::string& accountKey, const std::string& market, const std::string& code,
                     int operation, int priceType, double price, std::function<void(long long)> answer);
    // Runs everything queued so far; returns once it is committed and published.
    void flush();

    // --- reads, from any thread ---------------------------------------------------
    bool isLoggedIn(const std::string& accountKey) const;
    std::vector<std::string> accountKeys() const;
    boost::shared_ptr<nqservice::CAccountInfo> accountInfo(const std::string& accountKey) const;
    void getVector(const std::string& accountKey, int dataType, std::vector<boost::shared_ptr<nqservice::IData>>& out);
    // The tasks of all accounts.
    void getTasks(std::vector<boost::shared_ptr<nqservice::IData>>& out);
    // Whether a task of that (account number, task number) is known.
    bool hasTask(int accountId, int taskId);
    // Calls back for each new or changed record of the table, on the broker's
    // thread. filter "" takes all, else a stock key or a code. Dropping the handle ends it.
    boost::shared_ptr<nqservice::SubRequest> subscribe(const std::string& accountKey, int dataType,
                                                       const std::string& filter,
                                                       const nqservice::DataCallback& callback);
    boost::shared_ptr<nqservice::CAccountDetail> accountDetail(const std::string& accountKey) const;
    long long availableVolume(const std::string& accountKey, const std::string& market, const std::string& code,
                              int operation, int priceType, double price) const;
    std::shared_ptr<nqservice::CInstrumentDetail> instrument(const std::string& stockKey) const;
    int workingOrderCount() const;
    // Inputs processed; commits that failed (each also logged and reported).
    long long processed() const { return m_processed.load(); }
    long long failedCommits() const { return m_failedCommits.load(); }

private:
    struct Subscriber {
        std::shared_ptr<nqservice::CSubscriptionGate> gate;
        std::string filter;
        nqservice::DataCallback callback;
    };
    using Task = std::function<PaperResult(CPaperBrokerCore&)>;

    void post(Task task, CommandDone done);
    void postTermination(std::function<PaperResult(CPaperBrokerCore&)> stop, CommandDone done);
    void run();
    void apply(PaperResult& result, const CommandDone& done);
    // Commits the changes of several inputs in one transaction, then publishes
    // them in order and answers each input.
    void applyBatch(std::vector<std::pair<PaperResult, CommandDone>>& batch);
    void finishInput(const PaperResult& result, const CommandDone& done);
    void publish(const PaperChange& change);
    long long clockNow() const;

    PaperBrokerConfig m_config;
    std::unique_ptr<CPaperLedger> m_ledger;
    mutable std::mutex m_coreMutex;  // the books: the thread's inputs and the reads of available volume
    std::unique_ptr<CPaperBrokerCore> m_core;

    std::mutex m_queueMutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::deque<std::pair<Task, CommandDone>> m_tasks;
    std::unordered_map<std::string, boost::shared_ptr<TC::CPriceData>> m_pendingQuotes;
    std::vector<std::string> m_pendingOrder;
    bool m_busy = false;
    bool m_stopping = false;
    std::thread m_thread;

    // What subscribers have been given: a mirror of the tables by account, type and key.
    mutable std::mutex m_mirrorMutex;
    std::map<std::pair<std::string, int>, std::map<std::string, boost::shared_ptr<nqservice::IData>>> m_mirror;
    std::map<std::string, boost::shared_ptr<nqservice::CAccountDetail>> m_funds;

    mutable std::mutex m_subscriberMutex;
    std::map<std::pair<std::string, int>, std::vector<Subscriber>> m_subscribers;

    mutable std::mutex m_loginMutex;
    std::map<std::string, bool> m_loggedIn;
    std::atomic<bool> m_halted{false};
    std::mutex m_handlerMutex;
    RefusalHandler m_refusalHandler;
    std::vector<boost::shared_ptr<TC::CQuoteRequest>> m_quoteRequests;
    std::set<QString> m_subscribedKeys;
    std::atomic<long long> m_processed{0};
    std::atomic<long long> m_failedCommits{0};
};

}  // namespace trading
