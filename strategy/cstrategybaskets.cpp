#include "strategy/cstrategybaskets.h"

#include "seam/common.h"
#include "seam/user.h"

namespace TC {

TStrategyMap CStrategyBaskets::copy()
{
    CUserConfig* config = getUserConfig();
    const void* address = config != nullptr ? static_cast<const CUserConfig*>(config)->getUserDataAddress(UM_STRATEGY_SETTINGS)
                                            : nullptr;
    return address != nullptr ? *static_cast<const TStrategyMap*>(address) : TStrategyMap();
}

bool CStrategyBaskets::write(const TStrategyMap& baskets)
{
    CUserConfig* config = getUserConfig();
    void* address = config != nullptr ? config->getUserDataAddress(UM_STRATEGY_SETTINGS) : nullptr;
    if (address == nullptr) {
        return false;
    }
    // Assign first: the store saves what it holds when it hears of the change.
    *static_cast<TStrategyMap*>(address) = baskets;
    config->setModifyFlag();
    return true;
}

bool CStrategyBaskets::contains(const QString& name)
{
    CUserConfig* config = getUserConfig();
    const void* address = config != nullptr ? static_cast<const CUserConfig*>(config)->getUserDataAddress(UM_STRATEGY_SETTINGS)
                                            : nullptr;
    return address != nullptr && static_cast<const TStrategyMap*>(address)->contains(name);
}

QString CStrategyBaskets::newBasketName(const TStrategyMap& baskets)
{
    const QString base = QStringLiteral("我的组合");
    QString name = base;
    for (int counter = 1; baskets.contains(name); ++counter) {
        name = base + QString::number(counter);
    }
    return name;
}

CStrategyStockData* CStrategyBaskets::findLegByCode(const CStrategySetting& basket, const QString& code)
{
    for (CStrategyStockData* leg : basket.legs) {
        if (leg != nullptr && leg->code == code) {
            return leg;
        }
    }
    return nullptr;
}

bool CStrategyBaskets::hasKey(const CStrategySetting& basket, const QString& key)
{
    for (const CStrategyStockData* leg : basket.legs) {
        if (leg != nullptr && legKey(*leg) == key) {
            return true;
        }
    }
    return false;
}

QString CStrategyBaskets::legKey(const CStrategyStockData& leg)
{
    return QString::fromStdString(utils::vqStockKey(leg.market.toStdString(), leg.code.toStdString()));
}

}  // namespace TC
