#include "toolkit/cbasetablecolumnsimpletextdelegate.h"

#include "toolkit/ctextlinepainter.h"
#include "toolkit/cuiresource.h"

#include <QPainter>

namespace WG {

CBaseTableColumnSimpleTextDelegate::CBaseTableColumnSimpleTextDelegate(int column, CEventDeliverer* deliverer)
    : CBaseTableColumnWidgetDelegate(column, deliverer)
{
}

CBaseTableColumnSimpleTextDelegate::~CBaseTableColumnSimpleTextDelegate() = default;

void CBaseTableColumnSimpleTextDelegate::setItemText(const std::string& key, const QString& text, EUpdateType update)
{
    item(key).text = text;
    changed(update == UT_UPDATE);
}

void CBaseTableColumnSimpleTextDelegate::setItemTextColorKey(const std::string& key, const QString& colorKey,
                                                             EUpdateType update)
{
    m_colorKeys[key] = colorKey;
    changed(update == UT_UPDATE);
}

void CBaseTableColumnSimpleTextDelegate::paintCell(QPainter* painter, const std::string& key,
                                                   const CCellPaintContext& context) const
{
    const ItemState* state = findItem(key);
    if (state != nullptr && !state->visible) {
        return;
    }
    const QString text = state != nullptr && !state->text.isEmpty() ? state->text : context.text;
    auto color = m_colorKeys.find(key);
    painter->setFont(context.font);
    painter->setPen(color != m_colorKeys.end() && !color->second.isEmpty()
                        ? *CUiResource::get()->getColor(color->second)
                        : context.textColor);
    // Drawn as the table draws its own cells: a column of figures repaints often.
    CTextLinePainter::draw(painter, context.rect.adjusted(4, 0, -4, 0), context.alignment, text, context.font);
}

}  // namespace WG
