#include "order/chpfoptionmultiorderdatamodel.h"

#include <QStringList>

namespace TC {

CHpfOptionMultiOrderDataModel::CHpfOptionMultiOrderDataModel() : WG::IBaseHpfTableModel(true) {}

CHpfOptionMultiOrderDataModel::~CHpfOptionMultiOrderDataModel() = default;

int CHpfOptionMultiOrderDataModel::columnCount() const { return 8; }

QString CHpfOptionMultiOrderDataModel::columnHeader(int column) const
{
    static const QStringList kHeaders{QStringLiteral("代码"),     QStringLiteral("名称"), QStringLiteral("类别"),
                                      QStringLiteral("开平"),     QStringLiteral("买卖"), QStringLiteral("每份数量"),
                                      QStringLiteral("价格"),     QStringLiteral("账号")};
    return column >= 0 && column < kHeaders.size() ? kHeaders.at(column) : QString();
}

int CHpfOptionMultiOrderDataModel::columnType(int column) const
{
    if (column >= 0 && column <= 4) {
        return 10;
    }
    return column == 5 ? 2 : 0;
}

}  // namespace TC
