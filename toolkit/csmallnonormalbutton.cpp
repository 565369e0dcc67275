#include "toolkit/csmallnonormalbutton.h"

#include "toolkit/cuiresource.h"

#include <QPainter>

namespace WG {

CSmallNoNormalButton::CSmallNoNormalButton(int id, bool checkable, ENormalButtonType type, const QString& text,
                                           QWidget* parent)
    : CSmallNormalButton(id, checkable, type, text, parent)
{
}

CSmallNoNormalButton::~CSmallNoNormalButton() = default;

QString CSmallNoNormalButton::currentBackgroundKey() const
{
    if (isEnabled() && (m_hovered || isDown() || isChecked())) {
        return QStringLiteral("clr_button_hover");
    }
    return QString();
}

QString CSmallNoNormalButton::currentTextColorKey() const
{
    if (!isEnabled()) {
        return QStringLiteral("clr_button_text_disabled");
    }
    switch (buttonType()) {
    case NBT_CRITICAL:
        return QStringLiteral("clr_small_btn_critical_normal");
    case NBT_SAFE:
        return QStringLiteral("clr_small_btn_safe_normal");
    case NBT_PRIMARY:
        return QStringLiteral("clr_accent");
    case NBT_NORMAL:
        break;
    }
    return QStringLiteral("clr_button_text");
}

void CSmallNoNormalButton::paintEvent(QPaintEvent*)
{
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    const QColor textColor = *res->getColor(currentTextColorKey());
    const QString background = currentBackgroundKey();
    if (!background.isEmpty()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(*res->getColor(background));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(*res->getColor(QStringLiteral("clr_edit_border")));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter.setPen(textColor);
    painter.setFont(*res->getFont(textFontKey()));
    painter.drawText(rect(), Qt::AlignCenter, painter.fontMetrics().elidedText(text(), Qt::ElideRight, width() - 4));
}

}  // namespace WG
