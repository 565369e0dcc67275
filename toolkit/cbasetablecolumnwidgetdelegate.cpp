#include "toolkit/cbasetablecolumnwidgetdelegate.h"

#include <QPainter>

#include <algorithm>

namespace WG {

CBaseTableColumnWidgetDelegate::CBaseTableColumnWidgetDelegate(int column, CEventDeliverer* deliverer)
    : CEventDeliverer(deliverer), m_column(column)
{
}

CBaseTableColumnWidgetDelegate::~CBaseTableColumnWidgetDelegate() = default;

void CBaseTableColumnWidgetDelegate::paintCell(QPainter* painter, const std::string& key,
                                               const CCellPaintContext& context) const
{
    const ItemState* state = findItem(key);
    if (state != nullptr && !state->visible) {
        return;
    }
    const QString text = state != nullptr && !state->text.isEmpty() ? state->text : context.text;
    painter->setFont(context.font);
    painter->setPen(context.textColor);
    painter->drawText(context.rect.adjusted(4, 0, -4, 0), context.alignment, text);
}

bool CBaseTableColumnWidgetDelegate::mousePress(const std::string&, const QRect&, const QPoint&)
{
    return false;
}

QString CBaseTableColumnWidgetDelegate::itemText(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr ? state->text : QString();
}

void CBaseTableColumnWidgetDelegate::setItemVisible(const std::string& key, bool visible, bool update)
{
    item(key).visible = visible;
    changed(update);
}

bool CBaseTableColumnWidgetDelegate::itemVisible(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr && state->visible;
}

void CBaseTableColumnWidgetDelegate::setItemEnabled(const std::string& key, bool enabled, bool update)
{
    item(key).enabled = enabled;
    changed(update);
}

bool CBaseTableColumnWidgetDelegate::itemEnabled(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr && state->enabled;
}

void CBaseTableColumnWidgetDelegate::removeItem(const std::string& key)
{
    if (m_items.erase(key) != 0) {
        changed(true);
    }
}

void CBaseTableColumnWidgetDelegate::moveItem(const std::string& from, const std::string& to)
{
    auto it = m_items.find(from);
    if (it == m_items.end()) {
        m_items.erase(to);
        return;
    }
    ItemState state = it->second;
    m_items.erase(it);
    m_items[to] = state;
}

void CBaseTableColumnWidgetDelegate::clearItems()
{
    m_items.clear();
    changed(true);
}

const CBaseTableColumnWidgetDelegate::ItemState* CBaseTableColumnWidgetDelegate::findItem(const std::string& key) const
{
    auto it = m_items.find(key);
    return it != m_items.end() ? &it->second : nullptr;
}

void CBaseTableColumnWidgetDelegate::changed(bool update)
{
    if (update) {
        emit sigRepaint();
    }
}

QRect CBaseTableColumnWidgetDelegate::controlRect(const QRect& cell, const QSize& size)
{
    const int width = std::min(size.width(), cell.width() - 2);
    const int height = std::min(size.height(), cell.height() - 2);
    return QRect(cell.x() + (cell.width() - width) / 2, cell.y() + (cell.height() - height) / 2, width, height);
}

}  // namespace WG
