#include "app/crecordtable.h"

#include "toolkit/ctablecellmodel.h"

#include <QAbstractItemModel>
#include <QTableView>

namespace desk {

CRecordTable::CRecordTable(int id, QAbstractItemModel* model, QWidget* parent)
    : WG::IBaseTable(id, parent, WG::BTMF_ALL), m_model(model)
{
    setBackgroundColorKey("clr_table_background", nullptr);
    attachModel(model);
}

CRecordTable::~CRecordTable() = default;

std::string CRecordTable::rowKey(int row) const
{
    return m_model->index(row, 0).data(WG::CTableCellModel::RowKeyRole).toString().toStdString();
}

QRect CRecordTable::cellRect(int row, int column) const
{
    return tableView()->visualRect(viewIndex(row, column));
}

}  // namespace desk
