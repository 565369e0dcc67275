// A model-driven table: it keeps no cell text and asks the rows of its
// IBaseHpfTableModel for text, colour and change state when it paints. Columns
// are the model's; the model stays owned by the caller.
#pragma once

#include "toolkit/ibasehpftablemodel.h"
#include "toolkit/ibasetable.h"

namespace WG {

class CBaseHpfTablePanel;
class CHpfTableAdapterModel;

class CBaseHighPerformanceTable : public IBaseTable {
    Q_OBJECT
public:
    CBaseHighPerformanceTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags);
    ~CBaseHighPerformanceTable() override;

    // Empties the model's rows; columns stay.
    void clear() override;
    // Columns come from the model; these only reset the table's column states.
    void clearColumns() override;
    void setColumnCount(int count) override;
    int addColumn() override;
    void removeColumn(int column) override;
    void removeRow(int row) override;
    void updateUiData() override;
    void updateTable() override;
    virtual void setDataModel(IBaseHpfTableModel* model);

    IBaseHpfTableModel* dataModel() const { return m_dataModel; }
    IBaseHpfTableDataPtr rowData(int row) const;
    // The row id of a key, -1 when no row has it.
    int rowOfKey(const std::string& key) const;
    CBaseHpfTablePanel* getPanel() const { return m_panel; }
    CHpfTableAdapterModel* adapter() const { return m_adapter; }

protected:
    QAbstractItemModel* cellModel() const override;
    std::string rowKey(int row) const override;
    bool cellFlashing(const QModelIndex& sourceIndex, double now) const override;
    void onModelFlushNeeded() override;

private:
    void refreshStatistics();

    CBaseHpfTablePanel* m_panel;
    CHpfTableAdapterModel* m_adapter;
    IBaseHpfTableModel* m_dataModel = nullptr;
};

}  // namespace WG
