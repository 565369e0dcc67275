// A toolkit table over a model the desk keeps itself (the accounts dock's tables,
// the message area): the toolkit's view, header, themed painting, sorting and
// menu, while rows and columns belong to the model. Column delegates name a row
// by the model's row key, so a button stays with its record when rows move.
#pragma once

#include "toolkit/ibasetable.h"

class QAbstractItemModel;

namespace desk {

class CRecordTable : public WG::IBaseTable {
    Q_OBJECT
public:
    // The model stays the caller's and must outlive the table.
    CRecordTable(int id, QAbstractItemModel* model, QWidget* parent = nullptr);
    ~CRecordTable() override;

    // The model decides rows and columns: these change nothing.
    void clear() override {}
    void clearColumns() override {}
    void setColumnCount(int) override {}
    int addColumn() override { return -1; }
    void removeColumn(int) override {}
    void removeRow(int) override {}

    // The view rectangle of a source cell, empty when it is not shown.
    QRect cellRect(int row, int column) const;

protected:
    QAbstractItemModel* cellModel() const override { return m_model; }
    std::string rowKey(int row) const override;

private:
    QAbstractItemModel* m_model;
};

}  // namespace desk
