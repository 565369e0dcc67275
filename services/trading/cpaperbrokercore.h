// The paper broker's books: accounts, funds, orders, deals and positions, and
// the matching of orders against the newest quotes. It has no thread, no clock
// and no file of its own: it changes only through its inputs (a command, a
// cancel, a quote, a clock step), and each input answers with the records it
// changed, in order, for the caller to commit and publish. Same inputs, same state.
#pragma once

#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "seam/tradingrecords.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <map>
#include <set>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace trading {

// An account as the broker opens it on first use.
struct PaperAccountTerms {
    boost::shared_ptr<nqservice::CAccountInfo> info;
    double cash = 0.0;
    // ETF shares held at the opening, by stock key; they cover covered calls.
    std::vector<std::pair<std::string, long long>> holdings;
};

// One changed record: a copy, safe to hand to another thread.
struct PaperChange {
    int dataType = 0;  // 542 orders, 547 positions, 570 deals, 544 funds, 1030 combinations
    std::string accountKey;
    boost::shared_ptr<nqservice::IData> record;
    // What the broker keeps beside the record to restore itself (frozen amounts).
    bson::BSONObj extra;
    bool removed = false;  // the record left its table (a position closed out)
};

// How a trading day ends: its settlement prices by stock key (options and
// futures; the funds' closing prices).
struct PaperSettlement {
    int tradingDay = 0;  // yyyymmdd
    std::map<std::string, double> prices;
};

struct PaperResult {
    std::vector<PaperChange> changes;
    std::string refusal;  // UTF-8 reason of a refused command or cancel; empty otherwise
    std::string commandId;
    bool accepted() const { return refusal.empty(); }
};

class CPaperBrokerCore {
public:
    using InstrumentLookup = std::function<std::shared_ptr<nqservice::CInstrumentDetail>(const std::string& key)>;
    // The settlement prices of a past trading day (yyyymmdd), by instrument key.
    using SettlementSource = std::function<std::map<std::string, double>(int tradingDay)>;

    explicit CPaperBrokerCore(InstrumentLookup instruments);
    ~CPaperBrokerCore();
    CPaperBrokerCore(const CPaperBrokerCore&) = delete;
    CPaperBrokerCore& operator=(const CPaperBrokerCore&) = delete;

    // --- inputs -------------------------------------------------------------
    // Opens an account unless the ledger already restored it; the opening
    // records (funds, ETF holdings) go into out.
    void openAccount(const PaperAccountTerms& terms, PaperResult& out);
    void setLoggedIn(const std::string& accountKey, bool loggedIn);
    // The kill switch: while halted every new command is refused.
    void setHalted(bool halted) { m_halted = halted; }
    bool halted() const { return m_halted; }
    // Where the closes the desk did not see get their prices; without it they
    // settle at the books' last prices.
    void setSettlementSource(SettlementSource source) { m_settlementSource = std::move(source); }

    // Checks the whole command, then accepts every order of it or none. A
    // command of combination orders (1090 forms, 1091 releases) is checked by
    // the leg rules and the held positions instead: its order names the legs
    // in a COptionCombStrategyParam (extraFlags bit 64), a build names the
    // strategy code in stockInfo.textField2, a release the combination number
    // in combPositionKey.
    PaperResult submit(const nqservice::COrderComandParam& command);
    PaperResult cancel(const std::string& accountKey, const std::string& orderId);
    // Stops a running task of the user and cancels what it has working. By the
    // task's (account number, task number), or by its server key.
    PaperResult terminateTask(int accountId, int taskId, const std::string& userName);
    PaperResult terminateTask(const std::string& serverKey, const std::string& userName);
    // The account's combinations as they stand, sent again (a refresh of table 1030).
    PaperResult refreshCombinations(const std::string& accountKey);
    // The newest snapshot of an instrument: the book that orders fill against.
    PaperResult onQuote(const boost::shared_ptr<const TC::CPriceData>& quote);
    // Moves the broker's time: auctions end, the close cancels what still works,
    // a new trading day starts; positions and funds are valued again.
    PaperResult onClock(long long epochMs);

    // The close of a trading day, in one input: working orders expire, the
    // combinations the exchange releases that day are released, expiring options
    // are exercised, assigned or lapse (cash and ETF delivered the next trading
    // day, the ETF sellable the day after), positions are marked at the
    // settlement price with their floating profit realised into the day's result,
    // and the margin of shorts and of KS/KKS combinations is recomputed from the
    // settlement. Each step is a record of kPaperSettlementDataType.
    // A day already settled is refused; a new trading day settles a day missed
    // with the books' last prices.
    PaperResult settle(const PaperSettlement& day);
    // Automatic exercise of long stock options in the money by more than the
    // fees; on by default, as brokers offer it.
    void setAutoExercise(bool on) { m_autoExercise = on; }
    int settledDay() const { return m_settledDay; }

    // --- reads --------------------------------------------------------------
    long long now() const { return m_now; }
    bool hasAccount(const std::string& accountKey) const;
    std::vector<std::string> accountKeys() const;
    boost::shared_ptr<nqservice::CAccountInfo> accountInfo(const std::string& accountKey) const;
    // Copies of a table of an account: 542, 547, 570, 544, 1030 or kPaperSettlementDataType.
    std::vector<boost::shared_ptr<nqservice::IData>> table(const std::string& accountKey, int dataType) const;
    boost::shared_ptr<nqservice::CAccountDetail> funds(const std::string& accountKey) const;
    // The most contracts one order of this operation could have now: funds,
    // margin, closable and covered volume, position limits. 0 when none.
    long long availableVolume(const std::string& accountKey, const std::string& market, const std::string& code,
                              int operation, int priceType, double price) const;
    // The margin of one short contract with the broker's markup, at the previous settlement.
    double marginPerContract(const nqservice::CInstrumentDetail& option) const;
    int workingOrderCount() const { return static_cast<int>(m_working.size()); }
    // Copies of the tasks of all accounts (table 541).
    std::vector<boost::shared_ptr<nqservice::IData>> tasks() const;
    boost::shared_ptr<const TC::CPriceData> book(const std::string& stockKey) const;
    // Contracts of a position held in combinations: not closable until released.
    long long lockedVolume(const std::string& accountKey, const std::string& stockKey, int direction) const;
    // The margin one combination of the strategy takes, with the broker's markup;
    // absent when the legs do not make that strategy.
    double combinationMargin(const std::string& strategyCode, const nqservice::CInstrumentDetail& legOne,
                             const nqservice::CInstrumentDetail& legTwo) const;
    // The same at given settlement prices of the legs and of their underlying, as the close uses.
    double combinationMarginAt(const std::string& strategyCode, const nqservice::CInstrumentDetail& legOne,
                               double settleOne, const nqservice::CInstrumentDetail& legTwo, double settleTwo,
                               double underlying) const;
    // What a held combination takes now, its whole volume; absent when the account holds no such number.
    double heldCombinationMargin(const std::string& accountKey, const std::string& combId) const;

    // --- restoring from the ledger --------------------------------------------
    // Feeds one stored record back (in the order they were committed); call
    // finishRestore() after the last one.
    void restore(int dataType, const std::string& accountKey, const bson::BSONObj& record, const bson::BSONObj& extra);
    void finishRestore();
    // Sequence numbers and the trading day, kept by the ledger as meta values.
    std::map<std::string, long long> meta() const;
    void setMeta(const std::map<std::string, long long>& values);

private:
    struct Account;
    struct Working;
    struct Need;
    struct Task;
    struct Combination;
    struct CombinationLegs;
    struct Delivery;

    Account* findAccount(const std::string& key);
    const Account* findAccount(const std::string& key) const;
    std::string check(const nqservice::CCodeOrderParam& param, const nqservice::EVqTraderType traderType,
                      std::map<std::string, Need>& needs, std::vector<Working>& orders);
    double resolvePrice(const nqservice::CCodeOrderParam& param, const nqservice::CInstrumentDetail& detail,
                        const TC::CPriceData* quote, std::string& why) const;
    void accept(Working& work, PaperResult& out);
    void matchBook(const std::string& stockKey, PaperResult& out);
    void auctionMatch(bool stockMarket, PaperResult& out);
    bool tryFill(Working& work, PaperResult& out);
    void fill(Working& work, double price, long long volume, PaperResult& out);
    void finish(Working& work, nqservice::EOrderStatus status, const std::string& message, PaperResult& out);
    void removeWorking(const std::string& orderKey);
    // Puts a working order into its instrument's index, or takes it out; the
    // limit is indexed only while the order is on the book (a released slice).
    void index(Working& work);
    void unindex(Working& work);
    boost::shared_ptr<nqservice::CPositionStatics>& position(Account& account, const nqservice::CInstrumentDetail& detail,
                                                            int direction);
    void emitOrder(const Working& work, PaperResult& out) const;
    void emitPosition(Account& account, const boost::shared_ptr<nqservice::CPositionStatics>& pos, PaperResult& out);
    void emitFunds(Account& account, PaperResult& out);
    void revalue(Account& account, PaperResult& out, bool force);
    void endOfDay(PaperResult& out);
    void emitTask(const Task& task, PaperResult& out) const;
    void releaseSlices(PaperResult& out);
    void settleTasks(PaperResult& out);
    PaperResult stopTask(Task& task, const std::string& userName);
    PaperResult submitCombinations(const nqservice::COrderComandParam& command);
    std::string checkLegs(const std::string& strategyCode, const nqservice::COptionCombStrategyParam& param,
                          CombinationLegs& legs) const;
    std::string formCombination(Account& account, const nqservice::CCodeOrderParam& param, PaperResult& out);
    std::string releaseCombination(Account& account, const nqservice::CCodeOrderParam& param, PaperResult& out);
    // Releases a volume of a combination: its margin goes, the short legs take theirs again.
    void release(Account& account, Combination& comb, long long volume, PaperResult& out);
    void emitCombination(const Account& account, const Combination& comb, PaperResult& out) const;
    long long locked(const Account& account, const std::string& positionKey) const;
    void settleDay(const PaperSettlement& day, PaperResult& out);
    // The margin of the combinations held through the close, from the day's settlement prices.
    void remarginCombinations(Account& account, const PaperSettlement& day, PaperResult& out);
    void expire(Account& account, const std::string& positionKey, const PaperSettlement& day, PaperResult& out);
    // A record of the close; pending deliveries carry what restores them.
    void record(Account& account, int tradingDay, const std::string& kind, const nqservice::CInstrumentDetail* detail,
                long long volume, double price, double amount, int valueDay, const std::string& note,
                PaperResult& out, const Delivery* pending = nullptr);
    void deliver(int tradingDay, PaperResult& out);
    double settlementOf(const PaperSettlement& day, const std::string& stockKey, double fallback) const;
    void setAvailable(const Account& account, nqservice::CPositionStatics& pos) const;
    int accountNumber(const std::string& accountKey) const;
    void beginDay(int tradingDay, PaperResult& out);
    int phaseOf(const std::string& market) const;
    double lastPriceOf(const std::string& stockKey, double fallback) const;
    double underlyingPrice(const nqservice::CInstrumentDetail& option) const;

    InstrumentLookup m_instruments;
    std::map<std::string, std::unique_ptr<Account>> m_accounts;
    std::unordered_map<std::string, boost::shared_ptr<const TC::CPriceData>> m_books;
    // What fills took from a book's levels since its snapshot: (side, level) -> volume.
    std::unordered_map<std::string, std::map<std::pair<int, int>, long long>> m_taken;
    // Working orders by "account|orderId", and their keys by instrument in time order.
    std::map<std::string, std::unique_ptr<Working>> m_working;
    struct InstrumentWork {
        std::map<long long, std::string> orders;  // by arrival: time priority
        std::multiset<double> buys;               // limits of the buys on the book
        std::multiset<double> sells;
    };
    std::unordered_map<std::string, InstrumentWork> m_byInstrument;
    long long m_now = 0;
    long long m_lastRevalue = 0;
    int m_stockPhase = 0;
    int m_futurePhase = 0;
    int m_tradingDay = 0;  // yyyymmdd of the stock market's day
    long long m_orderSeq = 0;
    long long m_dealSeq = 0;
    long long m_commandSeq = 0;
    long long m_taskSeq = 0;
    long long m_lastRelease = 0;
    long long m_combSeq = 0;
    long long m_recordSeq = 0;
    int m_settledDay = 0;
    SettlementSource m_settlementSource;
    bool m_autoExercise = true;
    std::vector<std::unique_ptr<Delivery>> m_deliveries;  // cash and shares still to arrive or to free
    std::map<int, std::unique_ptr<Task>> m_tasks;  // by task number
    bool m_halted = false;
};

}  // namespace trading
