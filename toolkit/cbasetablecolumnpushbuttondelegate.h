// A column of push buttons, one per row, drawn in the cell. A press delivers
// UE_DELEGATE_BUTTON_CLICKED (235) with the column as id and the row's key as text.
#pragma once

#include "toolkit/cbasetablecolumnwidgetdelegate.h"
#include "toolkit/toolkitenums.h"

namespace WG {

class CBaseTableColumnPushButtonDelegate : public CBaseTableColumnWidgetDelegate {
    Q_OBJECT
public:
    CBaseTableColumnPushButtonDelegate(int column, CEventDeliverer* deliverer);
    ~CBaseTableColumnPushButtonDelegate() override;

    void setItemText(const std::string& key, const QString& text, EUpdateType update = UT_UPDATE);
    void setItemType(const std::string& key, ENormalButtonType type, EUpdateType update = UT_UPDATE);
    ENormalButtonType itemType(const std::string& key) const;
    // The text colour key of every button of the column.
    void setTextColor(const QString& colorKey);
    QString textColor() const { return m_textColorKey; }

    void paintCell(QPainter* painter, const std::string& key, const CCellPaintContext& context) const override;
    bool mousePress(const std::string& key, const QRect& cellRect, const QPoint& position) override;

signals:
    void sigItemClicked(const QString& key);

private:
    QString m_textColorKey;
};

}  // namespace WG
