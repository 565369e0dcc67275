#include "toolkit/chpfdatatable.h"

#include "toolkit/chpfdatamodel.h"
#include "toolkit/chpftableadaptermodel.h"

namespace TC {

CHpfDataTable::CHpfDataTable(int id, int dataType, QWidget* parent, bool showStatistics,
                             nqservice::EVqTraderType traderType)
    : WG::CStandardHpfTable(id, parent, WG::BTMF_ALL),
      m_dataType(dataType),
      m_showStatistics(showStatistics),
      m_traderType(traderType)
{
}

CHpfDataTable::~CHpfDataTable() = default;

void CHpfDataTable::setDataModel(WG::IBaseHpfTableModel* model)
{
    m_hpfModel = dynamic_cast<CHpfDataModel*>(model);
    WG::CStandardHpfTable::setDataModel(model);
    applyColumnProperties();
}

void CHpfDataTable::setTradeType(nqservice::EVqTraderType traderType)
{
    m_traderType = traderType;
    if (m_hpfModel != nullptr) {
        m_hpfModel->setTraderType(traderType);
    }
}

int CHpfDataTable::addColumn(const CHpfDataColumnProperty& property, bool locked, bool visible, const QString&,
                             int stat, int)
{
    if (m_hpfModel == nullptr) {
        return -1;
    }
    CHpfDataColumnProperty computed = property;
    computed.fieldName.clear();
    computed.stat = m_showStatistics && stat == 1;
    const int column = m_hpfModel->addColumnProperty(computed);
    m_hpfModel->getExtraDataModel()->addColumn(column);
    adapter()->sync();
    ensureColumnStates();
    setColumnAlignment(column, property.alignment & Qt::AlignHorizontal_Mask);
    setColumnLocked(column, locked);
    setColumnVisible(column, visible);
    return column;
}

void CHpfDataTable::applyColumnProperties()
{
    if (m_hpfModel == nullptr) {
        return;
    }
    for (int column = 0; column < m_hpfModel->columnCount(); ++column) {
        setColumnAlignment(column, m_hpfModel->columnProperty(column).alignment & Qt::AlignHorizontal_Mask);
    }
}

bool CHpfDataTable::handleEvent(int code, int id, int arg, QString text, void* data)
{
    return WG::CStandardHpfTable::handleEvent(code, id, arg, text, data);
}

}  // namespace TC
