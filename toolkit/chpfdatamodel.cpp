#include "toolkit/chpfdatamodel.h"

#include "seam/common.h"
#include "seam/formatters.h"
#include "toolkit/chpfdata.h"

namespace TC {

CHpfDataModel::CHpfDataModel(int dataType, nqservice::EVqTraderType traderType)
    : WG::IBaseHpfTableModel(true), m_dataType(dataType), m_traderType(traderType)
{
}

CHpfDataModel::~CHpfDataModel() = default;

int CHpfDataModel::columnCount() const
{
    std::lock_guard<std::mutex> lock(m_columnMutex);
    return m_columns.size();
}

QString CHpfDataModel::columnHeader(int column) const { return columnProperty(column).header; }

int CHpfDataModel::columnType(int column) const { return columnProperty(column).qtType; }

QString CHpfDataModel::getStatDispalyQString(int column) const
{
    const CHpfDataColumnProperty property = columnProperty(column);
    if (!property.stat) {
        return QString();
    }
    // An absent value makes the whole sum absent: a partial sum would mislead.
    // A record's field is read by its name, found once: a sum runs at every
    // change of the rows, over all of them.
    const bool fromRecord = !property.fieldName.empty() && !m_extra.exist(column);
    double sum = 0.0;
    const QList<WG::IBaseHpfTableDataPtr> rows = getAllDatas();
    for (const auto& row : rows) {
        const auto* record = fromRecord ? dynamic_cast<const CHpfData*>(row.get()) : nullptr;
        const double value = record != nullptr ? record->numberField(property.fieldName) : row->doubleValue(column);
        if (!utils::isUsable(value)) {
            return QStringLiteral("-");
        }
        sum += value;
    }
    const int decimals = property.qtType == QVariant::Double ? property.decimals : 0;
    return WG::formatDoubleNumber(sum, decimals, utils::FNF_SEGMENTED, false, QStringLiteral("-"));
}

void CHpfDataModel::setInfo(double info) { m_info = info; }

void CHpfDataModel::onTimer() {}

void CHpfDataModel::refreshDataByPage() { notifyChanged(); }

void CHpfDataModel::setColumns(const std::vector<int>& dataTypes)
{
    if (m_des == nullptr) {
        return;
    }
    for (int type : dataTypes) {
        if (type != m_des->dataType) {
            continue;
        }
        for (const nqservice::FieldDes& field : m_des->fields) {
            if (!field.getProperty(nqservice::FP_DISPLAY)) {
                continue;
            }
            CHpfDataColumnProperty property(QString::fromStdString(field.chsName), dataTypeToQtType(field.type),
                                            field.getProperty(nqservice::FP_ALIGN_LEFT)     ? 0x81
                                            : field.getProperty(nqservice::FP_ALIGN_CENTER) ? 0x84
                                                                                            : 0x82);
            property.stat = field.getProperty(nqservice::FP_STAT);
            property.flags = field.getProperty(nqservice::FP_DISPLAY);
            property.secondFlags = field.getProperty(nqservice::FP_KEY);
            property.fieldName = field.name;
            property.enumName = field.enumName;
            addColumnProperty(property);
        }
    }
}

int CHpfDataModel::customFieldSort(const nqservice::IDataPtr&, const nqservice::IDataPtr&, int) const { return 0; }

int CHpfDataModel::customSort(const WG::IBaseHpfTableDataPtr& left, const WG::IBaseHpfTableDataPtr& right) const
{
    auto* l = dynamic_cast<const CHpfData*>(left.get());
    auto* r = dynamic_cast<const CHpfData*>(right.get());
    if (l == nullptr || r == nullptr) {
        return 0;
    }
    return customFieldSort(l->getIData(), r->getIData(), sortColumn());
}

void CHpfDataModel::setColumnStatEnable(int column, bool enable)
{
    std::lock_guard<std::mutex> lock(m_columnMutex);
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].stat = enable;
    }
}

int CHpfDataModel::dataTypeToQtType(int fieldType)
{
    switch (fieldType) {
    case nqservice::FT_BOOL:
        return QVariant::Bool;
    case nqservice::FT_INT:
        return QVariant::Int;
    case nqservice::FT_LONGLONG:
        return QVariant::LongLong;
    case nqservice::FT_DOUBLE:
        return QVariant::Double;
    default:
        return QVariant::String;
    }
}

int CHpfDataModel::addColumnProperty(const CHpfDataColumnProperty& property)
{
    int column = 0;
    {
        std::lock_guard<std::mutex> lock(m_columnMutex);
        m_columns.push_back(property);
        column = m_columns.size() - 1;
    }
    notifyStructureChanged();
    return column;
}

void CHpfDataModel::clearColumnProperties()
{
    {
        std::lock_guard<std::mutex> lock(m_columnMutex);
        m_columns.clear();
    }
    m_extra.clearColumn();
    notifyStructureChanged();
}

CHpfDataColumnProperty CHpfDataModel::columnProperty(int column) const
{
    std::lock_guard<std::mutex> lock(m_columnMutex);
    return column >= 0 && column < m_columns.size() ? m_columns.at(column) : CHpfDataColumnProperty();
}

void CHpfDataModel::setStructDes(const nqservice::StructDes* des) { m_des = des; }

}  // namespace TC
