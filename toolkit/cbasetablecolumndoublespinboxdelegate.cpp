#include "toolkit/cbasetablecolumndoublespinboxdelegate.h"

#include "seam/common.h"
#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QAbstractScrollArea>
#include <QDoubleSpinBox>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace WG {

CBaseTableColumnDoubleSpinBoxDelegate::CBaseTableColumnDoubleSpinBoxDelegate(int column, CEventDeliverer* deliverer)
    : CBaseTableColumnWidgetDelegate(column, deliverer)
{
}

CBaseTableColumnDoubleSpinBoxDelegate::~CBaseTableColumnDoubleSpinBoxDelegate()
{
    delete m_editor;
}

void CBaseTableColumnDoubleSpinBoxDelegate::setDoubleSpinBoxRange(double minimum, double maximum)
{
    m_minimum = std::min(minimum, maximum);
    m_maximum = std::max(minimum, maximum);
}

void CBaseTableColumnDoubleSpinBoxDelegate::setDoubleSpinBoxSingelStep(double step)
{
    if (step > 0.0) {
        m_step = step;
    }
}

void CBaseTableColumnDoubleSpinBoxDelegate::setDoubleSpinBoxDecimals(int decimals)
{
    m_decimals = std::clamp(decimals, 0, 10);
}

double CBaseTableColumnDoubleSpinBoxDelegate::clampValue(double value) const
{
    return std::clamp(value, m_minimum, m_maximum);
}

void CBaseTableColumnDoubleSpinBoxDelegate::setItemText(const std::string& key, const QString& text,
                                                        EUpdateType update)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok) {
        return;
    }
    ItemState& state = item(key);
    state.value = clampValue(value);
    state.hasValue = true;
    changed(update == UT_UPDATE);
}

void CBaseTableColumnDoubleSpinBoxDelegate::setItemValue(const std::string& key, double value, bool notify)
{
    if (!utils::isUsable(value)) {
        return;
    }
    ItemState& state = item(key);
    const double clamped = clampValue(value);
    const bool differs = !state.hasValue || state.value != clamped;
    state.value = clamped;
    state.hasValue = true;
    changed(true);
    if (differs && notify) {
        emit sigValueChanged(QString::fromStdString(key), clamped);
        deliver(UE_DELEGATE_SPIN_CHANGED, 0, key);
    }
}

double CBaseTableColumnDoubleSpinBoxDelegate::itemValue(const std::string& key) const
{
    const ItemState* state = findItem(key);
    return state != nullptr && state->hasValue ? state->value : utils::kAbsentDouble;
}

QString CBaseTableColumnDoubleSpinBoxDelegate::itemText(const std::string& key) const
{
    const double value = itemValue(key);
    return utils::isUsable(value) ? QString::number(value, 'f', m_decimals) : QString();
}

void CBaseTableColumnDoubleSpinBoxDelegate::paintCell(QPainter* painter, const std::string& key,
                                                      const CCellPaintContext& context) const
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible) {
        return;
    }
    const CUiResource* resource = CUiResource::get();
    painter->setOpacity(state->enabled ? 1.0 : 0.45);
    const QRect text = context.rect.adjusted(4, 0, -(kArrowWidth + 4), 0);
    painter->setFont(context.font);
    painter->setPen(context.textColor);
    painter->drawText(text, Qt::AlignRight | Qt::AlignVCenter, itemText(key));
    const QColor arrowColor = *resource->getColor(QStringLiteral("clr_table_header_text"));
    const int x = context.rect.right() - kArrowWidth / 2 - 2;
    const int y = context.rect.center().y();
    QPainterPath up;
    up.moveTo(x - 3, y - 2);
    up.lineTo(x + 3, y - 2);
    up.lineTo(x, y - 6);
    up.closeSubpath();
    QPainterPath down;
    down.moveTo(x - 3, y + 2);
    down.lineTo(x + 3, y + 2);
    down.lineTo(x, y + 6);
    down.closeSubpath();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(up, arrowColor);
    painter->fillPath(down, arrowColor);
}

bool CBaseTableColumnDoubleSpinBoxDelegate::mousePress(const std::string& key, const QRect& cellRect,
                                                       const QPoint& position)
{
    const ItemState* state = findItem(key);
    if (state == nullptr || !state->visible || !state->enabled || !cellRect.contains(position)) {
        return false;
    }
    const double current = state->hasValue ? state->value : m_minimum;
    if (position.x() >= cellRect.right() - kArrowWidth - 2) {
        setItemValue(key, current + (position.y() < cellRect.center().y() ? m_step : -m_step), true);
        return true;
    }
    QWidget* viewport = hostView() != nullptr ? static_cast<QAbstractScrollArea*>(hostView())->viewport() : nullptr;
    if (viewport == nullptr) {
        return false;
    }
    delete m_editor;
    m_editor = new QDoubleSpinBox(viewport);
    m_editor->setRange(m_minimum, m_maximum);
    m_editor->setSingleStep(m_step);
    m_editor->setDecimals(m_decimals);
    m_editor->setValue(current);
    m_editor->setGeometry(cellRect);
    m_editor->setFrame(false);
    QPointer<QDoubleSpinBox> editor = m_editor;
    connect(m_editor, &QDoubleSpinBox::editingFinished, this, [this, key, editor] {
        if (editor == nullptr) {
            return;
        }
        const double value = editor->value();
        editor->hide();
        editor->deleteLater();
        setItemValue(key, value, true);
    });
    m_editor->show();
    m_editor->setFocus();
    return true;
}

}  // namespace WG
