#include "app/ccombinationstablemodel.h"

#include "app/cpositionstablemodel.h"

#include "seam/tradingrecords.h"

namespace desk {

namespace {
const nqservice::CStkOptCombPositionDetail& asCombination(const nqservice::IData& record)
{
    return static_cast<const nqservice::CStkOptCombPositionDetail&>(record);
}
}  // namespace

CCombinationsTableModel::CCombinationsTableModel(QObject* parent)
    : CAccountRecordModel({QStringLiteral("资金账号"), QStringLiteral("组合编号"), QStringLiteral("策略代码"),
                           QStringLiteral("策略名称"), QStringLiteral("组合数量"), QStringLiteral("可解除数量"),
                           QStringLiteral("合约一代码"), QStringLiteral("合约一持仓类型"), QStringLiteral("合约二代码"),
                           QStringLiteral("合约二持仓类型")},
                          parent)
{
}

CAccountRecordModel::Cell CCombinationsTableModel::cell(const nqservice::IData& record, int column) const
{
    const nqservice::CStkOptCombPositionDetail& comb = asCombination(record);
    auto side = [](int direction) {
        return textCell(CPositionsTableModel::directionText(direction),
                        direction == '0' ? QStringLiteral("clr_global_rise") : QStringLiteral("clr_global_fall"));
    };
    switch (column) {
    case COL_ACCOUNT:
        return textCell(accountText(accountOf(record)));
    case COL_COMB_ID:
        return textCell(QString::fromStdString(comb.combId));
    case COL_STRATEGY:
        return textCell(QString::fromStdString(comb.strategyCode));
    case COL_NAME:
        return textCell(QString::fromStdString(comb.name));
    case COL_VOLUME:
        return integerCell(comb.volume);
    case COL_RELEASE_VOLUME:
        return integerCell(comb.releaseVolume);
    case COL_LEG_ONE:
        return textCell(QString::fromStdString(comb.legOneCode));
    case COL_LEG_ONE_TYPE:
        return side(comb.legOneType);
    case COL_LEG_TWO:
        return textCell(QString::fromStdString(comb.legTwoCode));
    case COL_LEG_TWO_TYPE:
        return comb.legTwoCode.empty() ? textCell(QString()) : side(comb.legTwoType);
    default:
        return Cell();
    }
}

std::string CCombinationsTableModel::accountOf(const nqservice::IData& record) const
{
    const nqservice::CStkOptCombPositionDetail& comb = asCombination(record);
    return comb.account ? comb.account->getKey() : std::string();
}

bool CCombinationsTableModel::keeps(const nqservice::IData& record) const { return asCombination(record).volume >= 1; }

}  // namespace desk
