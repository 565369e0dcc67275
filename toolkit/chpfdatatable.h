// A high-performance table of nqservice::IData records of one data type. Its
// model is a CHpfDataModel set by the owner; addColumn adds a computed column
// (values in the model's extra data, shown through a column delegate).
#pragma once

#include "seam/tradingenums.h"
#include "toolkit/chpfdatacolumnproperty.h"
#include "toolkit/cstandardhpftable.h"

namespace TC {

class CHpfDataModel;

class CHpfDataTable : public WG::CStandardHpfTable {
    Q_OBJECT
public:
    CHpfDataTable(int id, int dataType, QWidget* parent, bool showStatistics, nqservice::EVqTraderType traderType);
    ~CHpfDataTable() override;

    void setDataModel(WG::IBaseHpfTableModel* model) override;
    virtual void setTradeType(nqservice::EVqTraderType traderType);
    // A computed column after the model's columns; returns its number, -1 without a CHpfDataModel.
    int addColumn(const CHpfDataColumnProperty& property, bool locked, bool visible, const QString& tip, int stat,
                  int flag);
    using WG::CStandardHpfTable::addColumn;
    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

    int dataType() const { return m_dataType; }
    nqservice::EVqTraderType tradeType() const { return m_traderType; }
    CHpfDataModel* hpfDataModel() const { return m_hpfModel; }

private:
    void applyColumnProperties();

    int m_dataType;
    bool m_showStatistics;
    nqservice::EVqTraderType m_traderType;
    CHpfDataModel* m_hpfModel = nullptr;
};

}  // namespace TC
