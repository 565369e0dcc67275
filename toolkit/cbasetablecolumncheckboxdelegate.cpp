#include "toolkit/cbasetablecolumncheckboxdelegate.h"

#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QPainter>
#include <QPainterPath>

namespace WG {

namespace {

constexpr int kBoxSize = 13;

}  // namespace

CBaseTableColumnCheckBoxDelegate::CBaseTableColumnCheckBoxDelegate(int column, CEventDeliverer* deliverer)
    : CBaseTableColumnWidgetDelegate(column, deliverer)
{
}

CBaseTableColumnCheckBoxDelegate::~CBaseTableColumnCheckBoxDelegate() = default;

void CBaseTableColumnCheckBoxDelegate::changeOne(const std::string& key, bool checked, bool notify)
{
    ItemState& state = item(key);
    if (state.checked == checked) {
        return;
    }
    state.checked = checked;
    if (notify) {
        emit sigItemCheckChanged(QString::fromStdString(key), checked);
        deliver(UE_DELEGATE_CHECK_CHANGED, checked ? Qt::Checked : Qt::Unchecked, key);
    }
}

void CBaseTableColumnCheckBoxDelegate::setItemChecked(const std::string& key, bool checked, bool notify, bool update)
{
    if (checked && m_exclusive) {
        std::vector<std::string> others;
        for (const auto& entry : m_items) {
            if (entry.second.checked && entry.first != key) {
                others.push_back(entry.first);
            }
        }
        for (const std::string& other : others) {
            changeOne(other, false, notify);
        }
    }
    changeOne(key, checked, notify);
    changed(update);
}

bool CBaseTableColumnCheckBoxDelegate::itemChecked(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr && state->checked;
}

void CBaseTableColumnCheckBoxDelegate::setExclusive(bool exclusive)
{
    m_exclusive = exclusive;
    if (!exclusive) {
        return;
    }
    // Keep the first ticked row only.
    bool seen = false;
    for (auto& entry : m_items) {
        if (entry.second.checked) {
            entry.second.checked = !seen;
            seen = true;
        }
    }
}

std::vector<std::string> CBaseTableColumnCheckBoxDelegate::checkedKeys() const
{
    std::vector<std::string> keys;
    for (const auto& entry : m_items) {
        if (entry.second.checked) {
            keys.push_back(entry.first);
        }
    }
    return keys;
}

void CBaseTableColumnCheckBoxDelegate::paintCell(QPainter* painter, const std::string& key,
                                                 const CCellPaintContext& context) const
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible) {
        return;
    }
    const CUiResource* resource = CUiResource::get();
    const QRect box = controlRect(context.rect, QSize(kBoxSize, kBoxSize));
    painter->setRenderHint(QPainter::Antialiasing);
    const QColor border = *resource->getColor(QStringLiteral("clr_table_check_border"));
    const QColor mark = *resource->getColor(QStringLiteral("clr_table_check_mark"));
    painter->setOpacity(state->enabled ? 1.0 : 0.4);
    if (state->checked) {
        QPainterPath path;
        path.addRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
        painter->fillPath(path, mark);
        QPen pen(*resource->getColor(QStringLiteral("clr_global_white")), 1.6);
        painter->setPen(pen);
        const QPointF a(box.left() + 3, box.center().y() + 0.5);
        const QPointF b(box.left() + 5.5, box.bottom() - 3);
        const QPointF c(box.right() - 2.5, box.top() + 3.5);
        painter->drawPolyline(QVector<QPointF>{a, b, c});
    } else {
        painter->setPen(QPen(border, 1));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    }
}

bool CBaseTableColumnCheckBoxDelegate::mousePress(const std::string& key, const QRect& cellRect,
                                                  const QPoint& position)
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible || !state->enabled || !cellRect.contains(position)) {
        return false;
    }
    // The whole cell is the target: a small box is hard to hit in a compact row.
    setItemChecked(key, !state->checked, true, true);
    return true;
}

QString CBaseTableColumnCheckBoxDelegate::itemText(const std::string& key) const
{
    return itemChecked(key) ? QStringLiteral("√") : QString();
}

}  // namespace WG
