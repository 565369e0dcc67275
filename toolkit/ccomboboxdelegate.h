// A row of a parameter table that chooses among texts, each with a data value
// (a price type, an account key).
#pragma once

#include "toolkit/cmultiparamstableitem.h"

#include <QStringList>
#include <QVariant>
#include <QVector>

class QComboBox;

namespace WG {

class CComboBoxDelegate : public CMultiParamsTableItem {
    Q_OBJECT
public:
    explicit CComboBoxDelegate(const QString& name, QWidget* parent = nullptr);
    ~CComboBoxDelegate() override;

    void setItems(const QStringList& texts, const QVector<QVariant>& datas);
    void clearItems();
    QStringList getQStringList() const { return m_texts; }
    QVector<QVariant> getDatas() const { return m_datas; }
    int currentIndex() const;
    void setCurrentIndex(int index);
    QVariant currentData() const;
    QString valueText() const override;
    QComboBox* comboBox() const { return m_combo; }

signals:
    void sigCurrentIndexChanged(int index);

private:
    QComboBox* m_combo;
    QStringList m_texts;
    QVector<QVariant> m_datas;
};

}  // namespace WG
