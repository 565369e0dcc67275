// A column of drop-down choices, each row with its own items and datas. A click
// opens the list; a new choice delivers UE_DELEGATE_COMBO_CHANGED (236) with the
// column as id, the index as arg and the row's key as text.
#pragma once

#include "toolkit/cbasetablecolumnwidgetdelegate.h"

#include <QMenu>
#include <QPointer>

namespace WG {

class CBaseTableColumnComboxDelegate : public CBaseTableColumnWidgetDelegate {
    Q_OBJECT
public:
    CBaseTableColumnComboxDelegate(int column, CEventDeliverer* deliverer);
    ~CBaseTableColumnComboxDelegate() override;

    void setItems(const std::string& key, const QStringList& items, const QVector<QVariant>& datas);
    QStringList items(const std::string& key) const;
    void setCurrentIndex(const std::string& key, int index, bool notify = false);
    int currentIndex(const std::string& key) const;
    QVariant currentData(const std::string& key) const;
    // The open list, while it is open.
    QMenu* popup() const { return m_popup; }

    void paintCell(QPainter* painter, const std::string& key, const CCellPaintContext& context) const override;
    bool mousePress(const std::string& key, const QRect& cellRect, const QPoint& position) override;
    QString itemText(const std::string& key) const override;

signals:
    void sigCurrentIndexChanged(const QString& key, int index);

private:
    QPointer<QMenu> m_popup;
};

}  // namespace WG
