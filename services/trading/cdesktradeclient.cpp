#include "services/trading/cdesktradeclient.h"

#include "seam/subrequest.h"
#include "seam/tradinghelpers.h"
#include "services/trading/cpaperbroker.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace trading {

namespace {
void fail(const boost::shared_ptr<utils::NQError>& error, const std::string& why)
{
    if (error) {
        error->setError(1, why);
    }
}
}  // namespace

CDeskTradeClient::CDeskTradeClient(QObject* parent) : TC::CTradeClient(parent) {}

QString CDeskTradeClient::notConnectedText() { return QStringLiteral("未连接交易通道, 无法撤单"); }

std::vector<long long> CDeskTradeClient::splitEntrusts(
    long long volume, double, nqservice::EPriceType, const std::vector<boost::shared_ptr<nqservice::CAccountInfo>>& accounts,
    const std::vector<double>& weights, nqservice::EPositionType, std::string market, std::string code,
    nqservice::EOperationType, nqservice::EHedge_Flag_Type, boost::shared_ptr<utils::NQError> error, bool, bool roundToUnit,
    const std::map<std::string, long long>&, const std::vector<long long>&)
{
    if (volume <= 0) {
        fail(error, "volume must be positive");
        return {};
    }
    if (accounts.empty() || accounts.size() != weights.size()) {
        fail(error, "every account needs one weight");
        return {};
    }
    double total = 0.0;
    for (double weight : weights) {
        if (!std::isfinite(weight) || weight < 0.0) {
            fail(error, "weights must be finite and not negative");
            return {};
        }
        total += weight;
    }
    if (total <= 0.0) {
        fail(error, "the weights add up to nothing");
        return {};
    }
    const long long unit = roundToUnit ? std::max(1, nqservice::getTradeMinUnit(market, code)) : 1;
    const long long units = volume / unit;
    if (units == 0) {
        fail(error, "volume is below one trade unit");
        return {};
    }
    // Whole units by share, then the remainder to the largest fractions (ties to the earlier account).
    std::vector<long long> share(accounts.size(), 0);
    std::vector<double> fraction(accounts.size(), 0.0);
    long long given = 0;
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        const double exact = static_cast<double>(units) * weights[i] / total;
        share[i] = static_cast<long long>(std::floor(exact));
        fraction[i] = exact - static_cast<double>(share[i]);
        given += share[i];
    }
    std::vector<std::size_t> order(accounts.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return fraction[a] > fraction[b]; });
    for (std::size_t k = 0; given < units && k < order.size(); ++k) {
        if (weights[order[k]] > 0.0) {
            ++share[order[k]];
            ++given;
        }
    }
    for (long long& s : share) {
        s *= unit;
    }
    if (error) {
        error->clear();
    }
    return share;
}

void CDeskTradeClient::reportLogin(const nqservice::CAccountInfoPtr& account, nqservice::EBROKER_LOGIN_STATUS status)
{
    emit sigLoginStatus(account, status, std::string());
}

void CDeskTradeClient::cancelOrder(const boost::shared_ptr<nqservice::COrderDetail>& order, QString& message, int,
                                   QString, const boost::shared_ptr<TC::COrderAuxInfo>&)
{
    if (m_broker == nullptr) {
        message = notConnectedText();
        return;
    }
    if (!order || !order->account) {
        message = QStringLiteral("委托无效, 无法撤单");
        return;
    }
    if (!TC::canCancelOrder(order)) {
        message = QStringLiteral("委托已完成, 无法撤单");
        return;
    }
    // Accepted for sending; a refusal comes back through the message area.
    message.clear();
    m_broker->cancel(order->account->getKey(), order->orderId);
}

void CDeskTradeClient::checkStkOptCombPosition_async(const boost::shared_ptr<nqservice::CAccountInfo>& account)
{
    // The broker sends the account's combinations again; without one there are none to refresh.
    if (m_broker != nullptr && account) {
        m_broker->refreshCombinations(account->getKey());
    }
}

bool CDeskTradeClient::requestStockVolume(const TC::CStockRequestParam& param, boost::shared_ptr<TC::StockSubTable>& table)
{
    if (m_broker == nullptr || !param.isValid()) {
        return false;
    }
    if (!table) {
        table = boost::make_shared<TC::StockSubTable>();
    }
    table->setStockKey(utils::vqStockKey(param.market, param.code));
    // The answers come on the broker's thread; dropping the table ends them.
    auto gate = std::make_shared<nqservice::CSubscriptionGate>();
    table->setRequest(boost::make_shared<nqservice::SubRequest>(gate));
    const auto callback = param.callback;
    for (const std::string& account : param.accounts) {
        m_broker->queryVolume(account, param.market, param.code, param.operationType, param.priceType, param.price,
                              [gate, callback, account](long long volume) {
                                  gate->invoke([&] { callback(account, volume); });
                              });
    }
    return true;
}

}  // namespace trading
