// A column of check boxes. A change by click, or by setItemChecked with notify,
// emits sigItemCheckChanged and then delivers UE_DELEGATE_CHECK_CHANGED (232)
// with the column as id, 2 (ticked) or 0 as arg and the row's key as text.
// In exclusive mode at most one row is ticked: ticking one unticks the others.
#pragma once

#include "toolkit/cbasetablecolumnwidgetdelegate.h"

#include <vector>

namespace WG {

class CBaseTableColumnCheckBoxDelegate : public CBaseTableColumnWidgetDelegate {
    Q_OBJECT
public:
    CBaseTableColumnCheckBoxDelegate(int column, CEventDeliverer* deliverer);
    ~CBaseTableColumnCheckBoxDelegate() override;

    void setItemChecked(const std::string& key, bool checked, bool notify = false, bool update = true);
    bool itemChecked(const std::string& key) const;
    void setExclusive(bool exclusive);
    bool isExclusive() const { return m_exclusive; }
    std::vector<std::string> checkedKeys() const;

    void paintCell(QPainter* painter, const std::string& key, const CCellPaintContext& context) const override;
    bool mousePress(const std::string& key, const QRect& cellRect, const QPoint& position) override;
    QString itemText(const std::string& key) const override;

signals:
    void sigItemCheckChanged(const QString& key, bool checked);

private:
    void changeOne(const std::string& key, bool checked, bool notify);

    bool m_exclusive = false;
};

}  // namespace WG
