// The model of an IData table: columns described by CHpfDataColumnProperty
// (record fields, plus computed columns in the extra model), rows of CHpfData.
// Column descriptions are guarded by a lock so that a worker may read them.
#pragma once

#include "seam/idata.h"
#include "seam/tradingenums.h"
#include "toolkit/chpfdatacolumnproperty.h"
#include "toolkit/chpfextradatamodel.h"
#include "toolkit/ibasehpftablemodel.h"

#include <QSet>
#include <QVector>

#include <mutex>
#include <vector>

namespace TC {

class CHpfDataModel : public WG::IBaseHpfTableModel {
public:
    CHpfDataModel(int dataType, nqservice::EVqTraderType traderType);
    ~CHpfDataModel() override;

    int columnCount() const override;
    QString columnHeader(int column) const override;
    int columnType(int column) const override;
    QString getStatDispalyQString(int column) const override;

    virtual void setInfo(double info);
    virtual void onTimer();
    virtual void refreshDataByPage();
    // Builds the field columns of the given data types. The base knows the
    // fields of records registered with setStructDes.
    virtual void setColumns(const std::vector<int>& dataTypes);
    // The order of two records on a field column; 0 leaves it to the default.
    virtual int customFieldSort(const nqservice::IDataPtr& left, const nqservice::IDataPtr& right, int column) const;
    int customSort(const WG::IBaseHpfTableDataPtr& left, const WG::IBaseHpfTableDataPtr& right) const override;

    void setColumnStatEnable(int column, bool enable);
    static int dataTypeToQtType(int fieldType);
    CHpfExtraDataModel* getExtraDataModel() { return &m_extra; }
    const CHpfExtraDataModel* getExtraDataModel() const { return &m_extra; }

    // Column descriptions. addColumnProperty returns the new column.
    int addColumnProperty(const CHpfDataColumnProperty& property);
    void clearColumnProperties();
    CHpfDataColumnProperty columnProperty(int column) const;
    // The field columns of a record kind: every field marked for display.
    void setStructDes(const nqservice::StructDes* des);
    int dataType() const { return m_dataType; }
    nqservice::EVqTraderType traderType() const { return m_traderType; }
    void setTraderType(nqservice::EVqTraderType type) { m_traderType = type; }
    double info() const { return m_info; }

protected:
    mutable std::mutex m_columnMutex;

private:
    int m_dataType;
    nqservice::EVqTraderType m_traderType;
    QVector<CHpfDataColumnProperty> m_columns;
    const nqservice::StructDes* m_des = nullptr;
    CHpfExtraDataModel m_extra;
    double m_info = 0.0;
};

}  // namespace TC
