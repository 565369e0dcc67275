#include "services/trading/cpaperbroker.h"

#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/cquoterequest.h"
#include "seam/ctimeservice.h"
#include "seam/logger.h"
#include "seam/marketenums.h"
#include "services/trading/cpaperledger.h"
#include "services/trading/cpapersettlementrecord.h"

#include <fmt/format.h>

#include <chrono>

namespace trading {

namespace {
bool matchesFilter(const std::string& filter, const nqservice::IData& record)
{
    if (filter.empty()) {
        return true;
    }
    std::string market;
    std::string code;
    if (const auto* order = dynamic_cast<const nqservice::COrderDetail*>(&record)) {
        market = order->market;
        code = order->code;
    } else if (const auto* deal = dynamic_cast<const nqservice::CDealDetail*>(&record)) {
        market = deal->market;
        code = deal->code;
    } else if (const auto* pos = dynamic_cast<const nqservice::CPositionStatics*>(&record)) {
        market = pos->market;
        code = pos->code;
    } else {
        return true;
    }
    return filter == code || filter == utils::vqStockKey(market, code);
}
}  // namespace

CPaperBroker::CPaperBroker(PaperBrokerConfig config) : m_config(std::move(config)) {}

CPaperBroker::~CPaperBroker() { stop(); }

std::shared_ptr<nqservice::CInstrumentDetail> CPaperBroker::instrument(const std::string& stockKey) const
{
    // The exchange client's tables are complete before the broker starts and
    // are read-only afterwards.
    if (m_config.instruments) {
        return m_config.instruments(stockKey);
    }
    return m_config.exchange != nullptr ? m_config.exchange->getCodeInfo(QString::fromStdString(stockKey))
                                        : std::shared_ptr<nqservice::CInstrumentDetail>();
}

long long CPaperBroker::clockNow() const
{
    return m_config.clock != nullptr ? m_config.clock->currentTime() : 0;
}

bool CPaperBroker::start(QString* report)
{
    m_core = std::make_unique<CPaperBrokerCore>(
        [this](const std::string& key) { return instrument(key); });
    m_core->setSettlementSource(m_config.settlements);
    m_ledger = std::make_unique<CPaperLedger>(m_config.ledgerPath);
    if (!m_ledger->open(report)) {
        NQ_LOG_ERROR("paper ledger: " + (report != nullptr ? report->toStdString() : std::string()));
        return false;
    }
    if (report != nullptr && !report->isEmpty()) {
        NQ_LOG_ERROR("paper ledger: " + report->toStdString());
    }
    std::map<std::string, long long> meta;
    std::string error;
    PaperResult opening;
    {
        std::lock_guard<std::mutex> lock(m_coreMutex);
        m_ledger->load(
            [this](int type, const std::string& account, const bson::BSONObj& record, const bson::BSONObj& extra) {
                m_core->restore(type, account, record, extra);
            },
            meta, &error);
        m_core->setMeta(meta);
        m_core->finishRestore();
        for (const PaperAccountTerms& terms : m_config.accounts) {
            m_core->openAccount(terms, opening);
        }
        if (m_config.clock != nullptr) {
            PaperResult clock = m_core->onClock(clockNow());
            opening.changes.insert(opening.changes.end(), clock.changes.begin(), clock.changes.end());
        }
        // The mirror starts as the books stand.
        std::lock_guard<std::mutex> mirror(m_mirrorMutex);
        for (const std::string& key : m_core->accountKeys()) {
            for (int type : std::initializer_list<int>{nqservice::VQ_DATA_TYPE_ORDER, nqservice::VQ_DATA_TYPE_QUICK_ORDER,
                             nqservice::VQ_DATA_TYPE_POSITION_STATICS, nqservice::VQ_DATA_TYPE_TASK,
                             nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION, kPaperSettlementDataType}) {
                auto& table = m_mirror[{key, type}];
                for (const auto& record : m_core->table(key, type)) {
                    table[record->getKey()] = record;
                }
            }
            m_funds[key] = m_core->funds(key);
        }
    }
    apply(opening, CommandDone());
    m_thread = std::thread([this] { run(); });
    subscribeQuotes();
    NQ_LOG_INFO(fmt::format("paper broker: {0} accounts, {1} working orders, ledger {2}",
                            accountKeys().size(), workingOrderCount(), m_config.ledgerPath.toStdString()));
    return true;
}

void CPaperBroker::subscribeQuotes()
{
    if (m_config.quotes == nullptr || m_config.exchange == nullptr) {
        return;
    }
    // The book of every instrument: options to match against, underlyings to
    // value the ETF holdings. The snapshot cached by the client comes at once.
    for (const QString& key : m_config.exchange->getAllCodes()) {
        if (!m_subscribedKeys.insert(key).second) {
            continue;
        }
        auto request = TC::CQuoteRequest::makeHandicapRequest(
            key, [this](boost::shared_ptr<TC::CPriceData>& data) { feedQuote(data); }, TC::ST_DEFAULT);
        if (request) {
            m_quoteRequests.push_back(request);
        }
    }
}

void CPaperBroker::stop()
{
    // Quote callbacks end before the thread they feed.
    m_quoteRequests.clear();
    m_subscribedKeys.clear();
    {
        std::lock_guard<std::mutex> lock(m_queueMutex);
        if (m_stopping && !m_thread.joinable()) {
            return;
        }
        m_stopping = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
    std::lock_guard<std::mutex> lock(m_subscriberMutex);
    m_subscribers.clear();
}

void CPaperBroker::post(Task task, CommandDone done)
{
    {
        std::lock_guard<std::mutex> lock(m_queueMutex);
        m_tasks.emplace_back(std::move(task), std::move(done));
    }
    m_wake.notify_one();
}

void CPaperBroker::submit(const nqservice::COrderComandParam& command, CommandDone done)
{
    // The command is copied: the caller may change its records after we return.
    auto copy = boost::make_shared<nqservice::COrderComandParam>(command);
    for (auto& param : copy->params) {
        if (param) {
            param = boost::make_shared<nqservice::CCodeOrderParam>(*param);
        }
    }
    post(
        [copy](CPaperBrokerCore& core) {
            PaperResult result = core.submit(*copy);
            if (!result.accepted()) {
                result.refusal = "委托被拒绝: " + result.refusal;
            }
            return result;
        },
        std::move(done));
}

void CPaperBroker::cancel(const std::string& accountKey, const std::string& orderId, CommandDone done)
{
    post(
        [accountKey, orderId](CPaperBrokerCore& core) {
            PaperResult result = core.cancel(accountKey, orderId);
            if (!result.accepted()) {
                result.refusal = "撤单失败: " + result.refusal;
            }
            return result;
        },
        std::move(done));
}

void CPaperBroker::postTermination(std::function<PaperResult(CPaperBrokerCore&)> stop, CommandDone done)
{
    post(
        [stop](CPaperBrokerCore& core) {
            PaperResult result = stop(core);
            if (!result.accepted()) {
                result.refusal = "终止任务失败: " + result.refusal;
            }
            return result;
        },
        std::move(done));
}

void CPaperBroker::terminateTask(int accountId, int taskId, const std::string& userName, CommandDone done)
{
    postTermination([=](CPaperBrokerCore& core) { return core.terminateTask(accountId, taskId, userName); },
                    std::move(done));
}

void CPaperBroker::terminateTask(const std::string& serverKey, const std::string& userName, CommandDone done)
{
    postTermination([=](CPaperBrokerCore& core) { return core.terminateTask(serverKey, userName); }, std::move(done));
}

void CPaperBroker::feedQuote(const boost::shared_ptr<TC::CPriceData>& quote)
{
    if (!quote) {
        return;
    }
    const std::string key = utils::vqStockKey(quote->market, quote->code);
    bool wake = false;
    {
        std::lock_guard<std::mutex> lock(m_queueMutex);
        auto it = m_pendingQuotes.find(key);
        if (it == m_pendingQuotes.end()) {
            m_pendingQuotes.emplace(key, quote);
            m_pendingOrder.push_back(key);
            wake = m_pendingOrder.size() == 1;
        } else {
            it->second = quote;  // newest per key
        }
    }
    if (wake) {
        m_wake.notify_one();
    }
}

void CPaperBroker::step(long long epochMs)
{
    post([epochMs](CPaperBrokerCore& core) { return core.onClock(epochMs); }, CommandDone());
}

void CPaperBroker::setLoggedIn(const std::string& accountKey, bool loggedIn)
{
    {
        std::lock_guard<std::mutex> lock(m_loginMutex);
        m_loggedIn[accountKey] = loggedIn;
    }
    post(
        [accountKey, loggedIn](CPaperBrokerCore& core) {
            core.setLoggedIn(accountKey, loggedIn);
            return PaperResult();
        },
        CommandDone());
}

bool CPaperBroker::isLoggedIn(const std::string& accountKey) const
{
    std::lock_guard<std::mutex> lock(m_loginMutex);
    auto it = m_loggedIn.find(accountKey);
    return it != m_loggedIn.end() && it->second;
}

void CPaperBroker::setHalted(bool halted)
{
    m_halted = halted;
    post(
        [halted](CPaperBrokerCore& core) {
            core.setHalted(halted);
            return PaperResult();
        },
        CommandDone());
    NQ_LOG_INFO(halted ? "paper broker: trading halted" : "paper broker: trading resumed");
}

void CPaperBroker::setRefusalHandler(RefusalHandler handler)
{
    std::lock_guard<std::mutex> lock(m_handlerMutex);
    m_refusalHandler = std::move(handler);
}

void CPaperBroker::queryVolume(const std::string& accountKey, const std::string& market, const std::string& code,
                               int operation, int priceType, double price, std::function<void(long long)> answer)
{
    auto volume = std::make_shared<long long>(0);
    post(
        [=](CPaperBrokerCore& core) {
            *volume = core.availableVolume(accountKey, market, code, operation, priceType, price);
            return PaperResult();
        },
        [volume, answer](const std::string&, const std::string&) {
            if (answer) {
                answer(*volume);
            }
        });
}

void CPaperBroker::settle(const PaperSettlement& day, CommandDone done)
{
    post([day](CPaperBrokerCore& core) { return core.settle(day); }, std::move(done));
}

void CPaperBroker::refreshCombinations(const std::string& accountKey, CommandDone done)
{
    post([accountKey](CPaperBrokerCore& core) { return core.refreshCombinations(accountKey); }, std::move(done));
}

void CPaperBroker::flush()
{
    std::unique_lock<std::mutex> lock(m_queueMutex);
    if (!m_thread.joinable()) {
        return;
    }
    m_idle.wait(lock, [this] { return m_stopping || (m_tasks.empty() && m_pendingOrder.empty() && !m_busy); });
}

void CPaperBroker::run()
{
    const auto stepEvery = std::chrono::milliseconds(std::max(10, m_config.clockStepMs));
    auto nextStep = std::chrono::steady_clock::now() + stepEvery;
    for (;;) {
        std::deque<std::pair<Task, CommandDone>> tasks;
        std::vector<boost::shared_ptr<TC::CPriceData>> quotes;
        bool clockDue = false;
        {
            std::unique_lock<std::mutex> lock(m_queueMutex);
            m_busy = false;
            m_idle.notify_all();
            m_wake.wait_until(lock, nextStep,
                              [this] { return m_stopping || !m_tasks.empty() || !m_pendingOrder.empty(); });
            if (m_stopping) {
                m_idle.notify_all();
                return;
            }
            // At most a bounded batch a turn: a burst of thousands of inputs
            // must not hold all their results (and the thread) at once.
            constexpr std::size_t kMaxBatch = 512;
            if (m_tasks.size() <= kMaxBatch) {
                tasks.swap(m_tasks);
            } else {
                for (std::size_t i = 0; i < kMaxBatch; ++i) {
                    tasks.push_back(std::move(m_tasks.front()));
                    m_tasks.pop_front();
                }
            }
            quotes.reserve(m_pendingOrder.size());
            for (const std::string& key : m_pendingOrder) {
                quotes.push_back(m_pendingQuotes[key]);
            }
            m_pendingOrder.clear();
            m_pendingQuotes.clear();
            clockDue = m_config.clock != nullptr && std::chrono::steady_clock::now() >= nextStep;
            m_busy = true;
        }
        if (clockDue) {
            nextStep = std::chrono::steady_clock::now() + stepEvery;
            PaperResult result;
            {
                std::lock_guard<std::mutex> lock(m_coreMutex);
                result = m_core->onClock(clockNow());
            }
            apply(result, CommandDone());
        }
        // A burst of commands shares one transaction: the commit, not the
        // matching, is what an order costs.
        std::vector<std::pair<PaperResult, CommandDone>> batch;
        batch.reserve(tasks.size());
        for (auto& task : tasks) {
            PaperResult result;
            {
                std::lock_guard<std::mutex> lock(m_coreMutex);
                result = task.first(*m_core);
            }
            batch.emplace_back(std::move(result), std::move(task.second));
        }
        applyBatch(batch);
        if (!quotes.empty()) {
            // One transaction for a round of quotes: most change nothing.
            PaperResult round;
            {
                std::lock_guard<std::mutex> lock(m_coreMutex);
                for (const auto& quote : quotes) {
                    PaperResult one = m_core->onQuote(quote);
                    for (auto& change : one.changes) {
                        round.changes.push_back(std::move(change));
                    }
                }
            }
            apply(round, CommandDone());
        }
    }
}

void CPaperBroker::applyBatch(std::vector<std::pair<PaperResult, CommandDone>>& batch)
{
    m_processed += static_cast<long long>(batch.size());
    // One input commits its own changes; a burst shares one transaction.
    std::vector<PaperChange> joined;
    if (batch.size() > 1) {
        for (const auto& entry : batch) {
            joined.insert(joined.end(), entry.first.changes.begin(), entry.first.changes.end());
        }
    }
    const std::vector<PaperChange>& changes = batch.size() == 1 ? batch.front().first.changes : joined;
    if (!changes.empty()) {
        std::map<std::string, long long> meta;
        {
            std::lock_guard<std::mutex> lock(m_coreMutex);
            meta = m_core->meta();
        }
        std::string error;
        if (!m_ledger->commit(changes, meta, &error)) {
            // Nothing unrecorded is published: subscribers never see a state the ledger lacks.
            ++m_failedCommits;
            NQ_LOG_ERROR("paper ledger commit failed: " + error);
            std::lock_guard<std::mutex> lock(m_handlerMutex);
            if (m_refusalHandler) {
                m_refusalHandler(std::string(), "模拟交易账本写入失败: " + error);
            }
            return;
        }
    }
    for (const auto& entry : batch) {
        for (const PaperChange& change : entry.first.changes) {
            publish(change);
        }
        finishInput(entry.first, entry.second);
    }
}

void CPaperBroker::finishInput(const PaperResult& result, const CommandDone& done)
{
    if (!result.accepted()) {
        NQ_LOG_ERROR("paper broker refused: " + result.refusal);
        std::lock_guard<std::mutex> lock(m_handlerMutex);
        if (m_refusalHandler) {
            m_refusalHandler(std::string(), result.refusal);
        }
    }
    if (done) {
        done(result.commandId, result.refusal);
    }
}

void CPaperBroker::apply(PaperResult& result, const CommandDone& done)
{
    std::vector<std::pair<PaperResult, CommandDone>> batch;
    batch.emplace_back(std::move(result), done);
    applyBatch(batch);
}

void CPaperBroker::publish(const PaperChange& change)
{
    {
        std::lock_guard<std::mutex> lock(m_mirrorMutex);
        if (change.dataType == nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL) {
            m_funds[change.accountKey] = boost::static_pointer_cast<nqservice::CAccountDetail>(change.record);
        } else {
            auto& table = m_mirror[{change.accountKey, change.dataType}];
            if (change.removed) {
                table.erase(change.record->getKey());
            } else {
                table[change.record->getKey()] = change.record;
            }
        }
    }
    if (change.removed && change.dataType != nqservice::VQ_DATA_TYPE_POSITION_STATICS &&
        change.dataType != nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION) {
        return;  // a position closed out, a combination released are published at volume 0 so that views drop them
    }
    std::vector<Subscriber> subscribers;
    {
        std::lock_guard<std::mutex> lock(m_subscriberMutex);
        auto it = m_subscribers.find({change.accountKey, change.dataType});
        if (it == m_subscribers.end()) {
            return;
        }
        auto& list = it->second;
        list.erase(std::remove_if(list.begin(), list.end(), [](const Subscriber& s) { return !s.gate->isOpen(); }),
                   list.end());
        subscribers = list;
    }
    for (const Subscriber& subscriber : subscribers) {
        if (!matchesFilter(subscriber.filter, *change.record)) {
            continue;
        }
        const boost::shared_ptr<nqservice::IData> copy = change.record->copy();
        subscriber.gate->invoke([&] { subscriber.callback(copy); });
    }
}

std::vector<std::string> CPaperBroker::accountKeys() const
{
    std::lock_guard<std::mutex> lock(m_coreMutex);
    return m_core ? m_core->accountKeys() : std::vector<std::string>();
}

boost::shared_ptr<nqservice::CAccountInfo> CPaperBroker::accountInfo(const std::string& accountKey) const
{
    std::lock_guard<std::mutex> lock(m_coreMutex);
    return m_core ? m_core->accountInfo(accountKey) : boost::shared_ptr<nqservice::CAccountInfo>();
}

void CPaperBroker::getVector(const std::string& accountKey, int dataType,
                             std::vector<boost::shared_ptr<nqservice::IData>>& out)
{
    out.clear();
    std::lock_guard<std::mutex> lock(m_mirrorMutex);
    if (dataType == nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL) {
        auto it = m_funds.find(accountKey);
        if (it != m_funds.end() && it->second) {
            out.push_back(it->second->copy());
        }
        return;
    }
    auto it = m_mirror.find({accountKey, dataType});
    if (it == m_mirror.end()) {
        return;
    }
    for (const auto& entry : it->second) {
        out.push_back(entry.second->copy());
    }
}

void CPaperBroker::getTasks(std::vector<boost::shared_ptr<nqservice::IData>>& out)
{
    out.clear();
    std::lock_guard<std::mutex> lock(m_mirrorMutex);
    for (const auto& table : m_mirror) {
        if (table.first.second == nqservice::VQ_DATA_TYPE_TASK) {
            for (const auto& entry : table.second) {
                out.push_back(entry.second->copy());
            }
        }
    }
}

bool CPaperBroker::hasTask(int accountId, int taskId)
{
    std::vector<boost::shared_ptr<nqservice::IData>> tasks;
    getTasks(tasks);
    for (const auto& record : tasks) {
        const auto task = boost::dynamic_pointer_cast<nqservice::CTaskDetail>(record);
        if (task && task->accountId == accountId && task->taskId == taskId) {
            return true;
        }
    }
    return false;
}

boost::shared_ptr<nqservice::SubRequest> CPaperBroker::subscribe(const std::string& accountKey, int dataType,
                                                                 const std::string& filter,
                                                                 const nqservice::DataCallback& callback)
{
    if (callback.empty()) {
        return boost::shared_ptr<nqservice::SubRequest>();
    }
    auto gate = std::make_shared<nqservice::CSubscriptionGate>();
    {
        std::lock_guard<std::mutex> lock(m_subscriberMutex);
        m_subscribers[{accountKey, dataType}].push_back(Subscriber{gate, filter, callback});
    }
    return boost::make_shared<nqservice::SubRequest>(gate);
}

boost::shared_ptr<nqservice::CAccountDetail> CPaperBroker::accountDetail(const std::string& accountKey) const
{
    std::lock_guard<std::mutex> lock(m_mirrorMutex);
    auto it = m_funds.find(accountKey);
    if (it == m_funds.end() || !it->second) {
        return boost::shared_ptr<nqservice::CAccountDetail>();
    }
    return boost::static_pointer_cast<nqservice::CAccountDetail>(it->second->copy());
}

long long CPaperBroker::availableVolume(const std::string& accountKey, const std::string& market,
                                        const std::string& code, int operation, int priceType, double price) const
{
    std::lock_guard<std::mutex> lock(m_coreMutex);
    return m_core ? m_core->availableVolume(accountKey, market, code, operation, priceType, price) : 0;
}

int CPaperBroker::workingOrderCount() const
{
    std::lock_guard<std::mutex> lock(m_coreMutex);
    return m_core ? m_core->workingOrderCount() : 0;
}

}  // namespace trading
