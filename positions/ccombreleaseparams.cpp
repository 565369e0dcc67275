#include "positions/ccombreleaseparams.h"

#include "seam/tradinghelpers.h"
#include "seam/user.h"

#include <boost/make_shared.hpp>

#include <new>

namespace TC {

nqservice::CStockInfo CCombReleaseParams::stockInfo(const nqservice::CStkOptCombPositionDetail& detail)
{
    nqservice::CStockInfo stock;
    stock.market = detail.market;
    stock.code = detail.legTwoCode.empty() ? detail.legOneCode : detail.legOneCode + "/" + detail.legTwoCode;
    stock.name = detail.name;
    return stock;
}

boost::shared_ptr<nqservice::COrderComandParam> CCombReleaseParams::command(
    const std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params, const QString& warning)
{
    auto command = boost::make_shared<nqservice::COrderComandParam>();
    command->traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    command->stopLossType = 0;
    command->params = params;
    command->orderFlag = 1;
    const CUserConfig* config = getUserConfig();
    const auto* setting = config != nullptr
                              ? static_cast<const CTradeSetting*>(config->getUserDataAddress(UM_TRADE_SETTING))
                              : nullptr;
    command->modeSetting = setting != nullptr ? setting->modeSetting : 0;
    command->warningText = warning.toUtf8().toStdString();
    command->confirmFlag = 1;
    command->extra = 0;
    return command;
}

bool CCombReleaseParams::fill(const QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details,
                              std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& out,
                              nqservice::EOperationType operation, QString& message, QString& warning)
{
    out.clear();
    CUserConfig* config = getUserConfig();
    const std::string userName =
        config != nullptr ? config->getUserDataString(UM_USER_NAME).toUtf8().toStdString() : std::string();
    for (const boost::shared_ptr<nqservice::CStkOptCombPositionDetail>& detail : details) {
        if (!detail) {
            message = QStringLiteral("存在为空的组合持仓信息");
            return false;
        }
        const nqservice::CStockInfo stock = stockInfo(*detail);
        const std::vector<boost::shared_ptr<nqservice::CAccountInfo>> accounts = {detail->account};
        const std::vector<long long> volumes = {detail->releaseVolume};
        bool split = false;
        warning = QString::fromStdString(getFixOrderNumWarnMsg(stock, volumes, detail->releaseVolume, split, operation));

        nqservice::CCodeOrderParam base;
        base.operationType = operation;
        base.userName = userName;
        base.hedgeFlag = nqservice::HF_SPECULATION;
        base.stockInfo = stock;
        for (std::size_t i = 0; i < volumes.size() && i < accounts.size(); ++i) {
            if (volumes[i] == 0 || !accounts[i]) {
                continue;
            }
            boost::shared_ptr<nqservice::CCodeOrderParam> order;
            boost::shared_ptr<nqservice::COptionCombStrategyParam> legs;
            try {
                order = boost::make_shared<nqservice::CCodeOrderParam>(base);
                legs = boost::make_shared<nqservice::COptionCombStrategyParam>();
            } catch (const std::bad_alloc&) {
                message = QStringLiteral("组合策略参数填充失败");
                return false;
            }
            order->account = accounts[i];
            order->volume = volumes[i];
            order->priceType = nqservice::DataHelper::getOptionCombStrategyPriceType(detail->strategyCode);
            order->price = 0.0;
            legs->marketName = detail->market;
            legs->legOneCode = detail->legOneCode;
            legs->legOneType = detail->legOneType;
            legs->legOneExtra = detail->legOneExtra;
            legs->legTwoCode = detail->legTwoCode;
            legs->legTwoType = detail->legTwoType;
            legs->legTwoExtra = detail->legTwoExtra;
            order->extraFlags |= nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY;
            if (!nqservice::DataHelper::fillExtraParam(order->extraParams, nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY,
                                                       legs)) {
                message = QStringLiteral("组合策略参数填充失败");
                return false;
            }
            order->combPositionKey = detail->combId;
            if (order->combPositionKey.empty()) {
                message = QStringLiteral("未找到对应的组合策略持仓！");
                return false;
            }
            out.push_back(order);
        }
    }
    return true;
}

}  // namespace TC
