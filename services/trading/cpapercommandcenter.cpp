#include "services/trading/cpapercommandcenter.h"

#include "seam/logger.h"
#include "services/trading/cpaperbroker.h"

#include <fmt/format.h>

namespace trading {

CPaperCommandCenter::CPaperCommandCenter(CPaperBroker* broker) : m_broker(broker) {}

bool CPaperCommandCenter::createCommand(const boost::shared_ptr<nqservice::COrderComandParam>& command,
                                        const CommandCallback& callback, bool, int)
{
    if (!command || command->params.empty()) {
        return false;
    }
    NQ_LOG_INFO(fmt::format("command of {0} orders, trader type {1}", command->params.size(),
                            static_cast<int>(command->traderType)));
    CPaperBroker::CommandDone done;
    if (!callback.empty()) {
        done = [callback](const std::string&, const std::string& refusal) {
            callback(refusal.empty() ? utils::NQError() : utils::NQError(1, refusal), refusal.empty() ? 0 : 1);
        };
    }
    m_broker->submit(*command, done);
    return true;
}

bool CPaperCommandCenter::createCommand(nqservice::EVqTraderType traderType, nqservice::EVqHedgeType,
                                        std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                                        const std::map<std::string, double>&, nqservice::EVqStopLossType,
                                        bool, bool confirmed, CommandCallback callback, bson::BSONObj,
                                        const std::string&, nqservice::ETradePlatform, bson::BSONObj,
                                        nqservice::EVqLimitedPriceType, bson::BSONObj, QString, bool,
                                        bson::BSONObj, int, nqservice::EtfHedgeStatus, bson::BSONObj,
                                        bson::BSONObj)
{
    // Every order already names its account: the weights chose the volumes.
    auto command = boost::make_shared<nqservice::COrderComandParam>();
    command->traderType = traderType;
    command->params = params;
    return createCommand(command, callback, confirmed, 0);
}

void CPaperCommandCenter::operateServerTask(const std::string& taskKey, const boost::shared_ptr<nqservice::CTaskOpRecord>&,
                                            const boost::shared_ptr<nqservice::CAccountInfo>&,
                                            const boost::function<void(const utils::NQError&, bson::BSONObj)>& callback)
{
    NQ_LOG_INFO("server task operation for " + taskKey + ": the paper broker runs no server tasks");
    if (!callback.empty()) {
        callback(utils::NQError(1, "模拟交易没有服务端任务"), bson::BSONObj());
    }
}

}  // namespace trading
