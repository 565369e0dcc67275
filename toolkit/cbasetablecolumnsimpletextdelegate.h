// A column of plain texts named by row key: what a row of the model can't say
// itself (computed columns). A key without text shows the cell's own text.
#pragma once

#include "toolkit/cbasetablecolumnwidgetdelegate.h"

namespace WG {

class CBaseTableColumnSimpleTextDelegate : public CBaseTableColumnWidgetDelegate {
    Q_OBJECT
public:
    CBaseTableColumnSimpleTextDelegate(int column, CEventDeliverer* deliverer);
    ~CBaseTableColumnSimpleTextDelegate() override;

    void setItemText(const std::string& key, const QString& text, EUpdateType update = UT_UPDATE);
    // "" keeps the cell's colour.
    void setItemTextColorKey(const std::string& key, const QString& colorKey, EUpdateType update = UT_UPDATE);

    void paintCell(QPainter* painter, const std::string& key, const CCellPaintContext& context) const override;

private:
    std::unordered_map<std::string, QString> m_colorKeys;
};

}  // namespace WG
