#include "toolkit/cpushbutton.h"

#include "seam/uievents.h"
#include "toolkit/ctextlinepainter.h"
#include "toolkit/cuiresource.h"

#include <QAccessibleWidget>
#include <QFontMetrics>
#include <QPainter>

namespace WG {

namespace {

// What assistive technology learns of a CPushButton: a button (a check box when
// checkable) named by its text, with its pressed and checked states, that a
// press action clicks. Qt builds an interface for every button whose text is
// set, whether or not anything listens, and tables replace their item buttons
// every tick; this one is made without the signal lookups of Qt's own.
class CPushButtonAccessible : public QAccessibleWidget {
public:
    explicit CPushButtonAccessible(QAbstractButton* button)
        : QAccessibleWidget(button, button->isCheckable() ? QAccessible::CheckBox : QAccessible::Button)
    {
    }

    QAccessible::Role role() const override
    {
        return button()->isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name && button()->accessibleName().isEmpty()) {
            QString name = button()->text();
            return name.remove(QLatin1Char('&'));
        }
        return QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.pressed = button()->isDown();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        return state;
    }

    QStringList actionNames() const override
    {
        QStringList names;
        if (widget()->isEnabled()) {
            names << (button()->isCheckable() ? toggleAction() : pressAction());
        }
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& actionName) override
    {
        if (!widget()->isEnabled()) {
            return;
        }
        if (actionName == pressAction() || actionName == toggleAction()) {
            button()->click();
        } else {
            QAccessibleWidget::doAction(actionName);
        }
    }

private:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(widget()); }
};

QAccessibleInterface* pushButtonAccessible(const QString& className, QObject* object)
{
    if (className == QLatin1String(CPushButton::staticMetaObject.className()) && object->isWidgetType()) {
        return new CPushButtonAccessible(static_cast<QAbstractButton*>(object));
    }
    return nullptr;
}

}  // namespace

CPushButton::CPushButton(const QString& imageKey, int id, int imageColumns, int imageRows, int width, int height,
                         int spacing, QWidget* parent)
    : CEventWidgetT<QAbstractButton>(parent),
      m_id(id),
      m_imageKey(imageKey),
      m_imageColumns(qMax(1, imageColumns)),
      m_imageRows(qMax(1, imageRows)),
      m_fixedWidth(width),
      m_fixedHeight(height),
      m_spacing(qMax(0, spacing)),
      m_textKeys{QStringLiteral("clr_button_text"), QStringLiteral("clr_button_text_hover"),
                 QStringLiteral("clr_button_text_active"), QStringLiteral("clr_button_text_disabled")}
{
    static const bool accessibleInstalled = (QAccessible::installFactory(pushButtonAccessible), true);
    Q_UNUSED(accessibleInstalled)
    m_buttonColor.hover = QStringLiteral("clr_button_hover");
    m_buttonColor.active = QStringLiteral("clr_button_checked");
    setFocusPolicy(Qt::NoFocus);
    if (width > 0 && height > 0) {
        setFixedSize(width, height);
    } else if (width > 0) {
        setFixedWidth(width);
    } else if (height > 0) {
        setFixedHeight(height);
    }
    connect(this, &QAbstractButton::clicked, this, [this](bool checked) {
        emit sigClicked(m_id);
        deliverEvent(UE_BUTTON_CLICKED, m_id, checked ? 1 : 0, text(), nullptr);
    });
}

CPushButton::~CPushButton() = default;

void CPushButton::setImageKey(const QString& key)
{
    m_imageKey = key;
    updateGeometry();
    update();
}

void CPushButton::setTextColorKey(const QString& normal, const QString& hover, const QString& active,
                                  const QString& disabled)
{
    m_textKeys[0] = normal;
    m_textKeys[1] = hover.isEmpty() ? normal : hover;
    m_textKeys[2] = active.isEmpty() ? normal : active;
    m_textKeys[3] = disabled.isEmpty() ? normal : disabled;
    update();
}

void CPushButton::setHorizontalText(bool horizontal)
{
    m_horizontalText = horizontal;
    updateGeometry();
    update();
}

void CPushButton::setTextFontKey(const char* fontKey)
{
    m_fontKey = QString::fromLatin1(fontKey != nullptr ? fontKey : "fnt_default_normal_fix");
    updateGeometry();
    update();
}

void CPushButton::setButtonColor(const CButtonColor& color)
{
    m_buttonColor = color;
    update();
}

int CPushButton::stateIndex() const
{
    if (!isEnabled()) {
        return 3;
    }
    if (isDown() || isChecked()) {
        return 2;
    }
    return m_hovered ? 1 : 0;
}

QString CPushButton::currentTextColorKey() const { return m_textKeys[stateIndex()]; }

QString CPushButton::currentBackgroundKey() const
{
    switch (stateIndex()) {
    case 1:
        return m_buttonColor.hover.isEmpty() ? m_buttonColor.normal : m_buttonColor.hover;
    case 2:
        return m_buttonColor.active.isEmpty() ? m_buttonColor.normal : m_buttonColor.active;
    case 3:
        return m_buttonColor.disabled.isEmpty() ? m_buttonColor.normal : m_buttonColor.disabled;
    default:
        return m_buttonColor.normal;
    }
}

QSize CPushButton::sizeHint() const
{
    CUiResource* res = CUiResource::get();
    QSize image;
    if (!m_imageKey.isEmpty()) {
        const QPixmap* pixmap = res->getPixmap(m_imageKey);
        image = QSize(pixmap->width() / m_imageColumns, pixmap->height() / m_imageRows);
    }
    QSize textSize;
    if (!text().isEmpty()) {
        const QFontMetrics metrics(*res->getFont(m_fontKey));
        textSize = QSize(metrics.horizontalAdvance(text()) + 12, metrics.height() + 4);
    }
    QSize hint;
    if (m_horizontalText) {
        hint = QSize(image.width() + textSize.width() + (image.isEmpty() || textSize.isEmpty() ? 0 : m_spacing),
                     qMax(image.height(), textSize.height()));
    } else {
        hint = QSize(qMax(image.width(), textSize.width()),
                     image.height() + textSize.height() + (image.isEmpty() || textSize.isEmpty() ? 0 : m_spacing));
    }
    hint = hint.expandedTo(QSize(16, 16));
    if (m_fixedWidth > 0) {
        hint.setWidth(m_fixedWidth);
    }
    if (m_fixedHeight > 0) {
        hint.setHeight(m_fixedHeight);
    }
    return hint;
}

void CPushButton::paintEvent(QPaintEvent*)
{
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRect area = rect();
    const QString backgroundKey = currentBackgroundKey();
    if (!backgroundKey.isEmpty()) {
        painter.fillRect(area, *res->getColor(backgroundKey));
    }
    if (!m_buttonColor.border.isEmpty()) {
        painter.setPen(*res->getColor(m_buttonColor.border));
        painter.drawRect(area.adjusted(0, 0, -1, -1));
    }

    QRect imageTarget;
    QRect source;
    const QPixmap* pixmap = nullptr;
    if (!m_imageKey.isEmpty()) {
        pixmap = res->getPixmap(m_imageKey);
        const int frameWidth = pixmap->width() / m_imageColumns;
        const int frameHeight = pixmap->height() / m_imageRows;
        const int column = qMin(stateIndex(), m_imageColumns - 1);
        const int row = (isChecked() && m_imageRows > 1) ? 1 : 0;
        source = QRect(column * frameWidth, row * frameHeight, frameWidth, frameHeight);
        QSize target(frameWidth, frameHeight);
        target.scale(target.boundedTo(area.size() - QSize(2, 2)), Qt::KeepAspectRatio);
        imageTarget = QRect(QPoint(0, 0), target);
    }
    const QString label = text();
    const QFont font = *res->getFont(m_fontKey);
    const QFontMetrics metrics(font);
    QRect textRect;
    if (label.isEmpty()) {
        imageTarget.moveCenter(area.center());
    } else if (pixmap == nullptr) {
        textRect = area;
    } else if (m_horizontalText) {
        const int total = imageTarget.width() + m_spacing + metrics.horizontalAdvance(label);
        const int left = qMax(area.left() + 2, area.center().x() - total / 2);
        imageTarget.moveTopLeft(QPoint(left, area.center().y() - imageTarget.height() / 2));
        textRect = QRect(imageTarget.right() + 1 + m_spacing, area.top(), area.right() - imageTarget.right() - m_spacing,
                         area.height());
    } else {
        const int total = imageTarget.height() + m_spacing + metrics.height();
        const int top = qMax(area.top(), area.center().y() - total / 2);
        imageTarget.moveTopLeft(QPoint(area.center().x() - imageTarget.width() / 2, top));
        textRect = QRect(area.left(), imageTarget.bottom() + 1 + m_spacing, area.width(), metrics.height());
    }
    if (pixmap != nullptr) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
        painter.drawPixmap(imageTarget, *pixmap, source);
    }
    if (!label.isEmpty()) {
        painter.setPen(*res->getColor(currentTextColorKey()));
        const Qt::Alignment align = (pixmap != nullptr && m_horizontalText) ? (Qt::AlignLeft | Qt::AlignVCenter)
                                                                           : Qt::AlignCenter;
        CTextLinePainter::draw(&painter, textRect, int(align), label, font);
    }
}

void CPushButton::enterEvent(QEvent* event)
{
    // The pointing hand is set when the mouse first comes: tables make and
    // drop buttons by the hundred, and most are never pointed at. A cursor the
    // caller set stays.
    if (!testAttribute(Qt::WA_SetCursor)) {
        setCursor(Qt::PointingHandCursor);
    }
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void CPushButton::leaveEvent(QEvent* event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

}  // namespace WG
