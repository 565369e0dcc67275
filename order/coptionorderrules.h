// The rules of a chain row's order buttons and of the option order dialog that
// need no widget: what each of the twelve buttons does for each trader type,
// its captions and colour, the price types a dialog offers, the limit on one
// order and the volume a percentage comes to. Plain functions of their inputs.
#pragma once

#include <QPair>
#include <QString>
#include <QVector>

#include <map>
#include <string>

namespace TC {

// The limit on one order and whether a larger one may be split.
struct COrderLimit {
    long long limit = 0;
    bool allowance = false;
};

class COptionOrderRules {
public:
    static constexpr int kButtonCount = 12;

    // "备兑开仓", "卖出平仓", ... by operationIndex; "" beyond 0..11.
    static QString operationText(int operationIndex);
    // "可备兑", "可买开", ... by operationIndex.
    static QString availableText(int operationIndex);
    // "开空", "平多", "-", ... by operationIndex: the order button of a commodity option.
    static QString futureButtonText(int operationIndex);
    // The operation a button sends (EOperationType): 32..37 for stock options,
    // 0..5 for commodity options, "平今" choosing the close of today.
    static int operationType(int operationIndex, int traderType, bool closeToday);
    // "clr_global_fall" or "clr_global_rise": the order button's colour.
    static const char* buttonColorKey(int operationIndex);
    // Whether the "平今" check shows for a button.
    static bool showsCloseToday(int operationIndex, int traderType);
    // The price types of the dialog's combo when nothing better is known, in
    // order, with their labels; and the one selected first (-1: none).
    static QVector<QPair<QString, int>> priceTypes(int traderType, bool hasUpStopPrice);
    static int defaultPriceType(int traderType);
    // The price types whose price the dialog keeps, for a trader type.
    static QVector<int> pricedTypes(int traderType);
    // The limit on one order: the instrument's field 2008 caps the user's
    // configured limit (permission keys), with 10 for market prices and the
    // instrument's own limit when none is configured.
    static COrderLimit orderLimit(long long instrumentLimit, const std::map<std::string, int>& permissions,
                                  bool marketPriceBranch);
    // Contracts for a share of what is available, truncated, at most 0x7fffffff.
    static int volumeOfRatio(long long available, double ratio);
};

}  // namespace TC
