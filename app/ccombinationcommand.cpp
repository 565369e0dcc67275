#include "app/ccombinationcommand.h"

#include "seam/tradinghelpers.h"

#include <boost/make_shared.hpp>

namespace desk {

namespace {

void say(QString* why, const QString& text)
{
    if (why != nullptr) {
        *why = text;
    }
}

boost::shared_ptr<nqservice::COrderComandParam> commandOf(const boost::shared_ptr<nqservice::CCodeOrderParam>& param)
{
    auto command = boost::make_shared<nqservice::COrderComandParam>();
    command->traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    command->stopLossType = 0;
    command->params = {param};
    command->orderFlag = 1;
    command->confirmFlag = 1;
    command->extra = 0;
    return command;
}

// A combination order: code "A/B", the strategy's price type, price 0, the legs
// riding in the combination parameter; null when that cannot be filled in.
boost::shared_ptr<nqservice::CCodeOrderParam> combinationOrder(
    nqservice::EOperationType operation, const boost::shared_ptr<nqservice::CAccountInfo>& account,
    const std::string& strategy, long long volume, const std::string& userName,
    const boost::shared_ptr<nqservice::COptionCombStrategyParam>& legs)
{
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = account;
    param->operationType = operation;
    param->userName = userName;
    param->hedgeFlag = nqservice::HF_SPECULATION;
    param->stockInfo.market = legs->marketName;
    param->stockInfo.code = legs->legTwoCode.empty() ? legs->legOneCode : legs->legOneCode + "/" + legs->legTwoCode;
    param->volume = volume;
    param->priceType = nqservice::DataHelper::getOptionCombStrategyPriceType(strategy);
    param->price = 0.0;
    param->extraFlags |= nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY;
    if (!nqservice::DataHelper::fillExtraParam(param->extraParams, nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY,
                                               legs)) {
        return nullptr;
    }
    return param;
}

}  // namespace

const QStringList& CCombinationCommand::strategyCodes()
{
    static const QStringList s_codes = {QStringLiteral("CNSJC"), QStringLiteral("CXSJC"), QStringLiteral("PNSJC"),
                                        QStringLiteral("PXSJC"), QStringLiteral("KS"),    QStringLiteral("KKS")};
    return s_codes;
}

QString CCombinationCommand::strategyName(const QString& code)
{
    static const QStringList s_names = {QStringLiteral("认购牛市价差"), QStringLiteral("认购熊市价差"),
                                        QStringLiteral("认沽牛市价差"), QStringLiteral("认沽熊市价差"),
                                        QStringLiteral("跨式空头"),     QStringLiteral("宽跨式空头")};
    const int index = strategyCodes().indexOf(code);
    return index < 0 ? QString() : s_names.at(index);
}

std::vector<CCombinationCommand::Leg> CCombinationCommand::legsOf(const std::vector<nqservice::IDataPtr>& positions,
                                                                  const std::string& accountKey)
{
    std::vector<Leg> legs;
    for (const nqservice::IDataPtr& record : positions) {
        const auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(record);
        if (!pos || !pos->account || pos->account->getKey() != accountKey ||
            pos->account->accountType != nqservice::VQ_BROKER_TYPE_STOCK_OPTION || pos->available <= 0 ||
            pos->direction == '2') {
            continue;
        }
        // ETF holdings are no legs: an option code of the exchanges has eight digits.
        if (pos->code.size() != 8) {
            continue;
        }
        Leg leg;
        leg.account = pos->account;
        leg.market = pos->market;
        leg.code = pos->code;
        leg.name = pos->name;
        leg.direction = pos->direction;
        leg.available = pos->available;
        legs.push_back(leg);
    }
    return legs;
}

boost::shared_ptr<nqservice::COrderComandParam> CCombinationCommand::build(const QString& strategy, const Leg& one,
                                                                          const Leg& two, long long volume,
                                                                          const std::string& userName, QString* why)
{
    if (!strategyCodes().contains(strategy)) {
        say(why, QStringLiteral("请选择组合策略"));
        return nullptr;
    }
    if (!one.account || !two.account || one.code.empty() || two.code.empty()) {
        say(why, QStringLiteral("请选择两个持仓合约"));
        return nullptr;
    }
    if (one.account->getKey() != two.account->getKey()) {
        say(why, QStringLiteral("两个合约须属于同一资金账号"));
        return nullptr;
    }
    if (one.market == two.market && one.code == two.code) {
        say(why, QStringLiteral("组合策略的两个合约不能相同"));
        return nullptr;
    }
    if (volume <= 0) {
        say(why, QStringLiteral("组合数量必须大于0"));
        return nullptr;
    }
    auto legs = boost::make_shared<nqservice::COptionCombStrategyParam>();
    legs->marketName = one.market;
    legs->legOneCode = one.code;
    legs->legOneType = one.direction;
    legs->legOneExtra = static_cast<int>(volume);
    legs->legTwoCode = two.code;
    legs->legTwoType = two.direction;
    legs->legTwoExtra = static_cast<int>(volume);
    auto param = combinationOrder(nqservice::OT_COMB_STRATEGY_BUILD, one.account, strategy.toStdString(), volume,
                                  userName, legs);
    if (!param) {
        say(why, QStringLiteral("组合策略参数填充失败"));
        return nullptr;
    }
    param->stockInfo.textField2 = strategy.toStdString();
    param->stockInfo.name = strategyName(strategy).toStdString();
    return commandOf(param);
}

}  // namespace desk
