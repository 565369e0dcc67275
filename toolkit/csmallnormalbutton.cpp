#include "toolkit/csmallnormalbutton.h"

#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QFontMetrics>
#include <QPainter>

namespace WG {

namespace {
const char* typeName(ENormalButtonType type)
{
    switch (type) {
    case NBT_CRITICAL:
        return "critical";
    case NBT_SAFE:
        return "safe";
    case NBT_PRIMARY:
        return "primary";
    case NBT_NORMAL:
        break;
    }
    return "normal";
}
}  // namespace

CSmallNormalButton::CSmallNormalButton(int id, bool checkable, ENormalButtonType type, const QString& text,
                                       QWidget* parent)
    : CEventWidgetT<QAbstractButton>(parent), m_id(id), m_type(type)
{
    setText(text);
    setCheckable(checkable);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    connect(this, &QAbstractButton::clicked, this, [this](bool checked) { onClicked(checked); });
}

CSmallNormalButton::~CSmallNormalButton() = default;

void CSmallNormalButton::onClicked(bool checked) { deliverEvent(UE_BUTTON_CLICKED, m_id, checked ? 1 : 0, text(), nullptr); }

void CSmallNormalButton::setButtonType(ENormalButtonType type)
{
    m_type = type;
    update();
}

void CSmallNormalButton::setTextFontKey(const QString& fontKey)
{
    m_fontKey = fontKey;
    updateGeometry();
    update();
}

QString CSmallNormalButton::currentBackgroundKey() const
{
    if (!isEnabled()) {
        return QStringLiteral("clr_small_btn_disabled");
    }
    const bool hot = m_hovered || isDown() || isChecked();
    return QStringLiteral("clr_small_btn_%1_%2").arg(QLatin1String(typeName(m_type)), hot ? QLatin1String("hover") : QLatin1String("normal"));
}

QString CSmallNormalButton::currentTextColorKey() const
{
    if (!isEnabled()) {
        return QStringLiteral("clr_button_text_disabled");
    }
    return m_type == NBT_NORMAL ? QStringLiteral("clr_small_btn_normal_text") : QStringLiteral("clr_small_btn_text");
}

QSize CSmallNormalButton::sizeHint() const
{
    CUiResource* res = CUiResource::get();
    const QFontMetrics metrics(*res->getFont(m_fontKey));
    return QSize(qMax(48, metrics.horizontalAdvance(text()) + 16), res->getSize(QStringLiteral("siz_small_btn_height")));
}

void CSmallNormalButton::paintEvent(QPaintEvent*)
{
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(*res->getColor(currentBackgroundKey()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(*res->getColor(QStringLiteral("clr_edit_border_focus")));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    }
    painter.setFont(*res->getFont(m_fontKey));
    painter.setPen(*res->getColor(currentTextColorKey()));
    painter.drawText(rect(), Qt::AlignCenter, painter.fontMetrics().elidedText(text(), Qt::ElideRight, width() - 4));
}

void CSmallNormalButton::enterEvent(QEvent* event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void CSmallNormalButton::leaveEvent(QEvent* event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

}  // namespace WG
