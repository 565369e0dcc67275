// The command centre of the paper broker: commands go to its queue and the
// call returns at once; the outcome shows in the account tables, a refusal in
// the callback (when one is given) and the message area.
#pragma once

#include "seam/trading.h"

namespace trading {

class CPaperBroker;

class CPaperCommandCenter : public TC::COvCommandCenter {
public:
    explicit CPaperCommandCenter(CPaperBroker* broker);

    bool createCommand(const boost::shared_ptr<nqservice::COrderComandParam>& command, const CommandCallback& callback,
                       bool confirmed, int flags) override;
    bool createCommand(nqservice::EVqTraderType traderType, nqservice::EVqHedgeType hedgeType,
                       std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                       const std::map<std::string, double>& weights, nqservice::EVqStopLossType stopLossType,
                       bool autoHedge, bool confirmed, CommandCallback callback, bson::BSONObj hedgeParams,
                       const std::string& strategyName, nqservice::ETradePlatform platform,
                       bson::BSONObj platformParams, nqservice::EVqLimitedPriceType limitedPriceType,
                       bson::BSONObj limitedPriceParams, QString remark, bool algorithmic,
                       bson::BSONObj algorithmParams, int extra, nqservice::EtfHedgeStatus etfHedge,
                       bson::BSONObj etfHedgeParams, bson::BSONObj reserved) override;
    void operateServerTask(const std::string& taskKey, const boost::shared_ptr<nqservice::CTaskOpRecord>& op,
                           const boost::shared_ptr<nqservice::CAccountInfo>& account,
                           const boost::function<void(const utils::NQError&, bson::BSONObj)>& callback) override;

private:
    CPaperBroker* const m_broker;
};

}  // namespace trading
