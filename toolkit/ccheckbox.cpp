#include "toolkit/ccheckbox.h"

#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

namespace WG {

void paintCheckMark(QPainter& painter, const QRect& box, bool checked, bool enabled, bool round, bool hovered)
{
    CUiResource* res = CUiResource::get();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    const QColor accent = *res->getColor(enabled ? QStringLiteral("clr_check_mark") : QStringLiteral("clr_button_text_disabled"));
    const QColor border = *res->getColor(hovered && enabled ? QStringLiteral("clr_edit_border_focus") : QStringLiteral("clr_check_border"));
    const QRectF frame = QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(checked ? accent : border, 1.0));
    painter.setBrush(checked && !round ? accent : *res->getColor(QStringLiteral("clr_edit_background")));
    if (round) {
        painter.drawEllipse(frame);
        if (checked) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(accent);
            painter.drawEllipse(frame.center(), frame.width() / 4.0, frame.height() / 4.0);
        }
    } else {
        painter.drawRoundedRect(frame, 2, 2);
        if (checked) {
            QPainterPath tick;
            tick.moveTo(frame.left() + frame.width() * 0.22, frame.top() + frame.height() * 0.52);
            tick.lineTo(frame.left() + frame.width() * 0.42, frame.top() + frame.height() * 0.72);
            tick.lineTo(frame.left() + frame.width() * 0.78, frame.top() + frame.height() * 0.30);
            painter.setPen(QPen(*res->getColor(QStringLiteral("clr_check_tick")), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.setBrush(Qt::NoBrush);
            painter.drawPath(tick);
        }
    }
    painter.restore();
}

CCheckBox::CCheckBox(int id, const QString& text, QWidget* parent) : CEventWidgetT<QCheckBox>(parent), m_id(id)
{
    setText(text);
    setAttribute(Qt::WA_Hover, true);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::clicked, this,
            [this](bool checked) { deliverEvent(UE_CHECK_CLICKED, m_id, checked ? 1 : 0, this->text(), nullptr); });
    connect(this, &QAbstractButton::toggled, this,
            [this](bool checked) { deliverEvent(UE_CHECK_TOGGLED, m_id, checked ? 1 : 0, this->text(), nullptr); });
}

CCheckBox::~CCheckBox() = default;

void CCheckBox::setFontKey(const QString& key)
{
    m_fontKey = key;
    updateGeometry();
    update();
}

void CCheckBox::setTextColorKey(const QString& key)
{
    m_textColorKey = key;
    update();
}

QSize CCheckBox::sizeHint() const
{
    const QFontMetrics metrics(*CUiResource::get()->getFont(m_fontKey));
    const int box = 13;
    return QSize(box + (text().isEmpty() ? 0 : 5 + metrics.horizontalAdvance(text())) + 2, qMax(box + 4, metrics.height() + 2));
}

void CCheckBox::paintEvent(QPaintEvent*)
{
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    const int box = 13;
    const QRect boxRect(1, (height() - box) / 2, box, box);
    paintCheckMark(painter, boxRect, isChecked(), isEnabled(), false, underMouse());
    if (!text().isEmpty()) {
        painter.setFont(*res->getFont(m_fontKey));
        painter.setPen(*res->getColor(isEnabled() ? m_textColorKey : QStringLiteral("clr_simple_text_disable")));
        const QRect textRect(boxRect.right() + 6, 0, width() - boxRect.right() - 6, height());
        painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(text(), Qt::ElideRight, textRect.width()));
    }
}

}  // namespace WG
