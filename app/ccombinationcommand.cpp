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

// An order whose legs ride in the combination parameter; false when it cannot be filled in.
bool fillLegs(nqservice::CCodeOrderParam& param, const boost::shared_ptr<nqservice::COptionCombStrategyParam>& legs)
{
    param.extraFlags |= nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY;
    return nqservice::DataHelper::fillExtraParam(param.extraParams, nqservice::VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY,
                                                 legs);
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
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = one.account;
    param->operationType = nqservice::OT_COMB_STRATEGY_BUILD;
    param->userName = userName;
    param->hedgeFlag = nqservice::HF_SPECULATION;
    param->stockInfo.market = one.market;
    param->stockInfo.code = one.code + "/" + two.code;
    param->stockInfo.textField2 = strategy.toStdString();
    param->stockInfo.name = strategyName(strategy).toStdString();
    param->volume = volume;
    param->priceType = nqservice::DataHelper::getOptionCombStrategyPriceType(strategy.toStdString());
    param->price = 0.0;
    auto legs = boost::make_shared<nqservice::COptionCombStrategyParam>();
    legs->marketName = one.market;
    legs->legOneCode = one.code;
    legs->legOneType = one.direction;
    legs->legOneExtra = static_cast<int>(volume);
    legs->legTwoCode = two.code;
    legs->legTwoType = two.direction;
    legs->legTwoExtra = static_cast<int>(volume);
    if (!fillLegs(*param, legs)) {
        say(why, QStringLiteral("组合策略参数填充失败"));
        return nullptr;
    }
    return commandOf(param);
}

boost::shared_ptr<nqservice::COrderComandParam> CCombinationCommand::release(
    const nqservice::CStkOptCombPositionDetail& detail, long long volume, const std::string& userName, QString* why)
{
    if (detail.combId.empty()) {
        say(why, QStringLiteral("未找到对应的组合策略持仓！"));
        return nullptr;
    }
    if (volume <= 0 || volume > detail.releaseVolume) {
        say(why, QStringLiteral("可解除数量不足"));
        return nullptr;
    }
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = detail.account;
    param->operationType = nqservice::OT_COMB_STRATEGY_RELEASE;
    param->userName = userName;
    param->hedgeFlag = nqservice::HF_SPECULATION;
    param->stockInfo.market = detail.market;
    param->stockInfo.code = detail.legTwoCode.empty() ? detail.legOneCode : detail.legOneCode + "/" + detail.legTwoCode;
    param->stockInfo.name = detail.name;
    param->volume = volume;
    param->priceType = nqservice::DataHelper::getOptionCombStrategyPriceType(detail.strategyCode);
    param->price = 0.0;
    auto legs = boost::make_shared<nqservice::COptionCombStrategyParam>();
    legs->marketName = detail.market;
    legs->legOneCode = detail.legOneCode;
    legs->legOneType = detail.legOneType;
    legs->legOneExtra = detail.legOneExtra;
    legs->legTwoCode = detail.legTwoCode;
    legs->legTwoType = detail.legTwoType;
    legs->legTwoExtra = detail.legTwoExtra;
    if (!fillLegs(*param, legs)) {
        say(why, QStringLiteral("组合策略参数填充失败"));
        return nullptr;
    }
    param->combPositionKey = detail.combId;
    return commandOf(param);
}

}  // namespace desk
