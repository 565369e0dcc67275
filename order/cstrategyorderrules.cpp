#include "order/cstrategyorderrules.h"

#include "seam/common.h"
#include "seam/formatters.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>

namespace TC {

nqservice::EOperationType CStrategyOrderRules::legOperationType(int operation)
{
    if (operation == nqservice::OT_BUY) {
        return nqservice::OT_BUY_OPEN;
    }
    if (operation == nqservice::OT_SELL) {
        return nqservice::OT_SELL_OPEN;
    }
    return static_cast<nqservice::EOperationType>(operation);
}

int CStrategyOrderRules::legQuantity(long long quantity)
{
    return static_cast<int>(static_cast<std::int32_t>(static_cast<std::uint32_t>(quantity & 0xffffffffLL)));
}

double CStrategyOrderRules::legNeed(const CLegMoney& leg)
{
    double need = 0.0;
    if (leg.buy) {
        const double price = utils::isUsable(leg.price) ? leg.price : 0.0;
        const double multiplier = utils::isUsable(leg.multiplier) ? leg.multiplier : 0.0;
        need = leg.openBuyFee + price * static_cast<int>(multiplier);
    } else {
        const double margin = utils::isUsable(leg.marginPrice) ? leg.marginPrice : 0.0;
        need = leg.openSellFee + margin * (leg.marginRatio + 1.0);
    }
    return need * leg.quantity;
}

long long CStrategyOrderRules::availableCopies(const QMap<QString, double>& needByAccount,
                                               const QMap<QString, double>& fundsByAccount)
{
    long long copies = LLONG_MAX;
    for (auto it = needByAccount.constBegin(); it != needByAccount.constEnd(); ++it) {
        const auto funds = fundsByAccount.constFind(it.key());
        if (funds == fundsByAccount.constEnd() || !(std::fabs(it.value()) > utils::kPriceTolerance)) {
            continue;
        }
        const double ratio = funds.value() / it.value();
        // A ratio beyond what 64 bits hold counts as unbounded rather than wrapping.
        const long long account = ratio >= 9.2e18 ? LLONG_MAX : static_cast<long long>(ratio);
        copies = std::min(copies, account);
    }
    return copies;
}

int CStrategyOrderRules::volumeRangeTop(long long available)
{
    return available < 2147483648LL ? static_cast<int>(std::max(0LL, available)) : 0x7fffffff;
}

QString CStrategyOrderRules::availableText(long long available)
{
    // The formatter leaves the absent marker empty; here it means "unbounded" and shows.
    return available == LLONG_MAX ? QString::number(available) : WG::formatLongLongNumber(available, 0);
}

long long CStrategyOrderRules::legVolume(int copies, int quantity)
{
    const std::uint32_t product = static_cast<std::uint32_t>(copies) * static_cast<std::uint32_t>(quantity);
    return static_cast<long long>(static_cast<std::int32_t>(product));
}

boost::shared_ptr<nqservice::CCodeOrderParam> CStrategyOrderRules::makeParam(const CLegOrder& leg)
{
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->operationType = leg.operationType;
    param->userName = leg.userName;
    param->hedgeFlag = static_cast<nqservice::EHedge_Flag_Type>(49);
    param->orderKind = 5;
    param->stockInfo = leg.stock;
    param->account = leg.account;
    param->price = leg.price;
    param->priceType = leg.priceType;
    param->volume = leg.volume;
    if (leg.superPricePercent >= 0.0 && utils::isUsable(leg.price)) {
        param->superPrice = leg.superPricePercent / 100.0 * leg.price;
    }
    return param;
}

bool CStrategyOrderRules::roleSends(int role)
{
    static const int kSendingRoles[] = {90, 91, 101, 100, 400, 80};
    return std::find(std::begin(kSendingRoles), std::end(kSendingRoles), role) != std::end(kSendingRoles);
}

QString CStrategyOrderRules::priceErrorText(double price)
{
    return QStringLiteral("委托价 ") + QString::number(price, 'g', 6) + QStringLiteral(" 错误, 无法下单");
}

QString CStrategyOrderRules::codeErrorText(const QString& code)
{
    return QStringLiteral("合约 ") + code + QStringLiteral(" 错误, 无法下单");
}

}  // namespace TC
