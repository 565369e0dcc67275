#include "toolkit/clineedit.h"

#include "seam/common.h"
#include "seam/uievents.h"
#include "toolkit/cstylesheetcenter.h"
#include "toolkit/cuiresource.h"

#include <QEvent>

#include <QStyle>

namespace WG {

CLineEdit::CLineEdit(int id, QWidget* parent, bool selectAllOnFocus)
    : CEventWidgetT<QLineEdit>(parent), m_id(id), m_selectAllOnFocus(selectAllOnFocus)
{
    applyStyle();
    connect(this, &QLineEdit::textChanged, this,
            [this](const QString& text) { deliverEvent(UE_TEXT_CHANGED, m_id, 0, text, nullptr); });
    connect(this, &QLineEdit::editingFinished, this,
            [this]() { deliverEvent(UE_VALUE_COMMITTED, m_id, 0, text(), nullptr); });
}

CLineEdit::~CLineEdit() = default;

double CLineEdit::toDouble() const
{
    bool ok = false;
    const double value = text().trimmed().toDouble(&ok);
    return ok && utils::isUsable(value) ? value : utils::kAbsentDouble;
}

void CLineEdit::setFontKey(const QString& key)
{
    m_fontKey = key;
    applyStyle();
}

void CLineEdit::setLineEditFrame(bool frame)
{
    m_frame = frame;
    applyStyle();
}

void CLineEdit::setInvalid(bool invalid)
{
    if (m_invalid == invalid) {
        return;
    }
    m_invalid = invalid;
    setProperty("invalid", invalid);
    // Property selectors are evaluated when the style is applied.
    style()->unpolish(this);
    style()->polish(this);
    update();
}

void CLineEdit::setPlaceholderColorKey(const QString& key)
{
    m_placeholderKey = key;
    applyPlaceholderColor();
}

void CLineEdit::applyPlaceholderColor()
{
    const QColor wanted = *CUiResource::get()->getColor(m_placeholderKey);
    if (palette().color(QPalette::PlaceholderText) != wanted) {
        QPalette adjusted = palette();
        adjusted.setColor(QPalette::PlaceholderText, wanted);
        setPalette(adjusted);
    }
}

bool CLineEdit::event(QEvent* event)
{
    const bool handled = QLineEdit::event(event);
    // A style sheet gives the hint the text colour whenever it polishes the field; the hint stays grey.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange || event->type() == QEvent::Polish) {
        applyPlaceholderColor();
    }
    return handled;
}

void CLineEdit::themeChanged()
{
    applyStyle();
    applyPlaceholderColor();
}

void CLineEdit::applyStyle()
{
    CStyleSheetOption option;
    option.fontKey = m_fontKey;
    option.frame = m_frame;
    setStyleSheet(CStyleSheetCenter::getStyle(SS_LINEEDIT, &option));
}

void CLineEdit::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (m_selectAllOnFocus) {
        selectAll();
        m_selectOnNextClick = true;
    }
}

void CLineEdit::mousePressEvent(QMouseEvent* event)
{
    QLineEdit::mousePressEvent(event);
    // The press that gave the focus would otherwise place the cursor and drop the selection.
    if (m_selectOnNextClick) {
        m_selectOnNextClick = false;
        selectAll();
    }
}

}  // namespace WG
