#include "toolkit/cbasetablecolumncomboxdelegate.h"

#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QAbstractScrollArea>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>

namespace WG {

CBaseTableColumnComboxDelegate::CBaseTableColumnComboxDelegate(int column, CEventDeliverer* deliverer)
    : CBaseTableColumnWidgetDelegate(column, deliverer)
{
}

CBaseTableColumnComboxDelegate::~CBaseTableColumnComboxDelegate()
{
    delete m_popup;
}

void CBaseTableColumnComboxDelegate::setItems(const std::string& key, const QStringList& items,
                                              const QVector<QVariant>& datas)
{
    ItemState& state = item(key);
    state.items = items;
    state.datas = datas;
    state.current = items.isEmpty() ? -1 : 0;
    changed(true);
}

QStringList CBaseTableColumnComboxDelegate::items(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr ? state->items : QStringList();
}

void CBaseTableColumnComboxDelegate::setCurrentIndex(const std::string& key, int index, bool notify)
{
    ItemState& state = item(key);
    if (index < -1 || index >= state.items.size() || state.current == index) {
        return;
    }
    state.current = index;
    changed(true);
    if (notify) {
        emit sigCurrentIndexChanged(QString::fromStdString(key), index);
        deliver(UE_DELEGATE_COMBO_CHANGED, index, key);
    }
}

int CBaseTableColumnComboxDelegate::currentIndex(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr ? state->current : -1;
}

QVariant CBaseTableColumnComboxDelegate::currentData(const std::string& key) const
{
    const ItemState* state = findItem(key);
    if (state == nullptr || state->current < 0 || state->current >= state->datas.size()) {
        return QVariant();
    }
    return state->datas.at(state->current);
}

QString CBaseTableColumnComboxDelegate::itemText(const std::string& key) const
{
    const ItemState* state = findItem(key);
    if (state == nullptr || state->current < 0 || state->current >= state->items.size()) {
        return QString();
    }
    return state->items.at(state->current);
}

void CBaseTableColumnComboxDelegate::paintCell(QPainter* painter, const std::string& key,
                                               const CCellPaintContext& context) const
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible) {
        return;
    }
    const CUiResource* resource = CUiResource::get();
    const QRect box = context.rect.adjusted(2, 2, -2, -2);
    painter->setOpacity(state->enabled ? 1.0 : 0.45);
    painter->setPen(*resource->getColor(QStringLiteral("clr_table_button_border")));
    painter->setBrush(*resource->getColor(QStringLiteral("clr_table_button_background")));
    painter->drawRect(box.adjusted(0, 0, -1, -1));
    painter->setFont(context.font);
    painter->setPen(context.textColor);
    painter->drawText(box.adjusted(4, 0, -14, 0), Qt::AlignLeft | Qt::AlignVCenter, itemText(key));
    QPainterPath arrow;
    const QPointF tip(box.right() - 7, box.center().y() + 2);
    arrow.moveTo(tip.x() - 3.5, tip.y() - 4);
    arrow.lineTo(tip.x() + 3.5, tip.y() - 4);
    arrow.lineTo(tip);
    arrow.closeSubpath();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(arrow, *resource->getColor(QStringLiteral("clr_table_header_text")));
}

bool CBaseTableColumnComboxDelegate::mousePress(const std::string& key, const QRect& cellRect, const QPoint& position)
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible || !state->enabled || state->items.isEmpty() ||
        !cellRect.contains(position)) {
        return false;
    }
    delete m_popup;
    m_popup = new QMenu(hostView());
    for (int index = 0; index < state->items.size(); ++index) {
        QAction* action = m_popup->addAction(state->items.at(index));
        action->setCheckable(true);
        action->setChecked(index == state->current);
        connect(action, &QAction::triggered, this, [this, key, index] { setCurrentIndex(key, index, true); });
    }
    QWidget* anchor = hostView() != nullptr ? static_cast<QAbstractScrollArea*>(hostView())->viewport() : nullptr;
    m_popup->popup(anchor != nullptr ? anchor->mapToGlobal(cellRect.bottomLeft()) : QCursor::pos());
    return true;
}

}  // namespace WG
