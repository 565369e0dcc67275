#include "toolkit/cbasetablecolumnpushbuttondelegate.h"

#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QFontMetrics>
#include <QPainter>

namespace WG {

namespace {

QString backgroundKey(int type)
{
    switch (type) {
    case NBT_CRITICAL:
        return QStringLiteral("clr_global_rise");
    case NBT_SAFE:
        return QStringLiteral("clr_global_fall");
    case NBT_PRIMARY:
        return QStringLiteral("clr_table_check_mark");
    default:
        return QStringLiteral("clr_table_button_background");
    }
}

}  // namespace

CBaseTableColumnPushButtonDelegate::CBaseTableColumnPushButtonDelegate(int column, CEventDeliverer* deliverer)
    : CBaseTableColumnWidgetDelegate(column, deliverer)
{
}

CBaseTableColumnPushButtonDelegate::~CBaseTableColumnPushButtonDelegate() = default;

void CBaseTableColumnPushButtonDelegate::setItemText(const std::string& key, const QString& text, EUpdateType update)
{
    item(key).text = text;
    changed(update == UT_UPDATE);
}

void CBaseTableColumnPushButtonDelegate::setItemType(const std::string& key, ENormalButtonType type,
                                                     EUpdateType update)
{
    item(key).type = type;
    changed(update == UT_UPDATE);
}

ENormalButtonType CBaseTableColumnPushButtonDelegate::itemType(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr ? static_cast<ENormalButtonType>(state->type) : NBT_NORMAL;
}

void CBaseTableColumnPushButtonDelegate::setTextColor(const QString& colorKey)
{
    m_textColorKey = colorKey;
    changed(true);
}

void CBaseTableColumnPushButtonDelegate::paintCell(QPainter* painter, const std::string& key,
                                                   const CCellPaintContext& context) const
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible) {
        return;
    }
    const CUiResource* resource = CUiResource::get();
    const QFontMetrics metrics(context.font);
    const QSize size(std::max(36, metrics.horizontalAdvance(state->text) + 14), context.rect.height() - 4);
    const QRect button = controlRect(context.rect, size);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(state->enabled ? 1.0 : 0.45);
    painter->setPen(QPen(*resource->getColor(QStringLiteral("clr_table_button_border")), 1));
    painter->setBrush(*resource->getColor(backgroundKey(state->type)));
    painter->drawRoundedRect(QRectF(button).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter->setFont(context.font);
    painter->setPen(*resource->getColor(m_textColorKey.isEmpty() ? QStringLiteral("clr_text_default")
                                                                 : m_textColorKey));
    painter->drawText(button, Qt::AlignCenter, state->text);
}

bool CBaseTableColumnPushButtonDelegate::mousePress(const std::string& key, const QRect& cellRect,
                                                    const QPoint& position)
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible || !state->enabled || !cellRect.contains(position)) {
        return false;
    }
    emit sigItemClicked(QString::fromStdString(key));
    deliver(UE_DELEGATE_BUTTON_CLICKED, 0, key);
    return true;
}

}  // namespace WG
