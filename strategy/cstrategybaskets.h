// The trader's baskets as the user configuration keeps them (member 122): a map
// from name to basket, read as a private copy and written back whole. Also the
// few rules every writer shares: the name of a new basket, finding a leg.
// Holds no state of its own; GUI thread only, as the configuration is.
#pragma once

#include "seam/userrecords.h"

#include <QMap>
#include <QString>

namespace TC {

using TStrategyMap = QMap<QString, CStrategySetting>;

class CStrategyBaskets {
public:
    // A copy of all baskets; empty when no configuration is installed.
    static TStrategyMap copy();
    // Replaces all baskets with these and marks the configuration changed, so
    // the store saves them. False when no configuration is installed.
    static bool write(const TStrategyMap& baskets);
    // Whether a basket of that name exists now.
    static bool contains(const QString& name);

    // "我的组合", else the first free "我的组合N" counting from 1, so that gaps fill.
    static QString newBasketName(const TStrategyMap& baskets);
    // The first leg with this code, whatever its market; null when none.
    static CStrategyStockData* findLegByCode(const CStrategySetting& basket, const QString& code);
    // Whether a leg of the basket has this stock key.
    static bool hasKey(const CStrategySetting& basket, const QString& key);
    // The stock key of a leg.
    static QString legKey(const CStrategyStockData& leg);
};

}  // namespace TC
