#include "seam/trading.h"

#include <QMetaType>

namespace nqservice {

namespace {
std::mutex& centerMutex()
{
    static std::mutex s_mutex;
    return s_mutex;
}
boost::shared_ptr<TraderCenter>& centerSlot()
{
    static boost::shared_ptr<TraderCenter> s_center;
    return s_center;
}
}  // namespace

boost::shared_ptr<TraderCenter> TraderCenter::instance()
{
    std::lock_guard<std::mutex> lock(centerMutex());
    return centerSlot();
}

void TraderCenter::install(const boost::shared_ptr<TraderCenter>& center)
{
    boost::shared_ptr<TraderCenter> old;
    {
        std::lock_guard<std::mutex> lock(centerMutex());
        old = centerSlot();
        centerSlot() = center;
    }
    // The old centre ends outside the lock: its destructor may stop threads
    // whose callbacks ask for the instance.
    old.reset();
}

}  // namespace nqservice

namespace TC {

nqservice::TradeLogicInterface* SingletonManager::getTradeLogicInterface() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_tradeLogic.get();
}

void SingletonManager::setTradeLogicInterface(nqservice::TradeLogicInterface* logic)
{
    std::unique_ptr<nqservice::TradeLogicInterface> old;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        old = std::move(m_tradeLogic);
        m_tradeLogic.reset(logic);
    }
}

std::string StockSubTable::stockKey() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_stockKey;
}

void StockSubTable::setStockKey(const std::string& key)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_stockKey = key;
}

void StockSubTable::clearVolumes()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_volumes.clear();
}

void StockSubTable::setVolume(const std::string& key, long long volume)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_volumes[key] = volume;
}

bool StockSubTable::getVolume(const std::string& key, long long& volume) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_volumes.find(key);
    if (it == m_volumes.end()) {
        return false;
    }
    volume = it->second;
    return true;
}

void StockSubTable::setRequest(const boost::shared_ptr<nqservice::SubRequest>& request)
{
    boost::shared_ptr<nqservice::SubRequest> old;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        old = m_request;
        m_request = request;
    }
    // Dropped outside the lock: its callbacks write into this table.
    old.reset();
}

CTradeClient::CTradeClient(QObject* parent) : QObject(parent) { registerTradingMetaTypes(); }

CTradeClient::~CTradeClient() = default;

bool makeStockRequest(const CStockRequestParam& param, boost::shared_ptr<StockSubTable>& table)
{
    if (!param.isValid()) {
        return false;
    }
    CTradeClient* client = utils::CManualSingletonT<CTradeClient>::instance();
    if (client == nullptr) {
        return false;
    }
    return client->requestStockVolume(param, table);
}

void registerTradingMetaTypes()
{
    qRegisterMetaType<nqservice::CAccountInfoPtr>("nqservice::CAccountInfoPtr");
    qRegisterMetaType<nqservice::EBROKER_LOGIN_STATUS>("nqservice::EBROKER_LOGIN_STATUS");
    qRegisterMetaType<std::string>("std::string");
}

}  // namespace TC
