// The desk's trade client: it relays the instrument-ready and setting-change
// signals, splits volumes over accounts by weight, and passes cancels and
// volume requests to the paper broker. Without a broker, cancels answer that
// nothing is connected.
#pragma once

#include "seam/trading.h"

namespace trading {

class CPaperBroker;

class CDeskTradeClient : public TC::CTradeClient {
    Q_OBJECT
public:
    explicit CDeskTradeClient(QObject* parent = nullptr);

    // The broker that takes cancels and answers volume requests; it outlives this client.
    void setBroker(CPaperBroker* broker) { m_broker = broker; }
    // Tells the panels that an account's login state changed.
    void reportLogin(const nqservice::CAccountInfoPtr& account, nqservice::EBROKER_LOGIN_STATUS status);

    // Largest-remainder split of volume by weights, in whole trade units of the
    // instrument; accounts of zero weight get 0. Empty with error set when the
    // volume, the accounts or the weights cannot be split.
    std::vector<long long> splitEntrusts(long long volume, double price, nqservice::EPriceType priceType,
                                         const std::vector<boost::shared_ptr<nqservice::CAccountInfo>>& accounts,
                                         const std::vector<double>& weights, nqservice::EPositionType positionType,
                                         std::string market, std::string code, nqservice::EOperationType operation,
                                         nqservice::EHedge_Flag_Type hedgeFlag, boost::shared_ptr<utils::NQError> error,
                                         bool byAvailable, bool roundToUnit,
                                         const std::map<std::string, long long>& fixedVolumes,
                                         const std::vector<long long>& lots) override;
    void cancelOrder(const boost::shared_ptr<nqservice::COrderDetail>& order, QString& message, int flags,
                     QString remark, const boost::shared_ptr<TC::COrderAuxInfo>& aux) override;
    void checkStkOptCombPosition_async(const boost::shared_ptr<nqservice::CAccountInfo>& account) override;
    bool requestStockVolume(const TC::CStockRequestParam& param, boost::shared_ptr<TC::StockSubTable>& table) override;

    // The text a cancel answers with while no trading backend is connected.
    static QString notConnectedText();

private:
    CPaperBroker* m_broker = nullptr;
};

}  // namespace trading
