#include "toolkit/csearchtextlineedit.h"

#include "seam/uievents.h"
#include "toolkit/clineedit.h"
#include "toolkit/cuiresource.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>

namespace WG {

namespace {
// Id of the inner field; its own events stay inside this widget.
constexpr int kEditID = -172;

QIcon magnifierIcon(const QColor& color)
{
    QPixmap pixmap(14, 14);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(color, 1.5));
    painter.drawEllipse(QRectF(1.5, 1.5, 7.5, 7.5));
    painter.drawLine(QPointF(8.2, 8.2), QPointF(12.5, 12.5));
    return QIcon(pixmap);
}
}  // namespace

CSearchTextLineEdit::CSearchTextLineEdit(QWidget* parent, int id)
    : CEventWidgetT<QWidget>(parent), m_id(id), m_edit(new CLineEdit(kEditID, this)), m_magnifier(new QAction(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit);
    m_edit->setClearButtonEnabled(true);
    m_edit->addAction(m_magnifier, QLineEdit::LeadingPosition);
    setFocusProxy(m_edit);
    // As tall as the field, so no bare strip shows around it.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    applyStyle();
    connect(m_edit, &QLineEdit::textChanged, this, [this](const QString& text) {
        emit sigTextChanged(text);
        deliverEvent(UE_TEXT_FILTER_CHANGED, m_id, 0, text, nullptr);
    });
}

CSearchTextLineEdit::~CSearchTextLineEdit() = default;

QString CSearchTextLineEdit::getText() const { return m_edit->text(); }

void CSearchTextLineEdit::setText(const QString& text) { m_edit->setText(text); }

void CSearchTextLineEdit::setLineEditFrame(bool frame)
{
    m_frame = frame;
    m_edit->setLineEditFrame(frame);
}

void CSearchTextLineEdit::setEmptyTip(const QString& tip) { m_edit->setPlaceholderText(tip); }

bool CSearchTextLineEdit::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (id == kEditID) {
        return true;
    }
    return CEventWidgetT<QWidget>::handleEvent(code, id, arg, text, data);
}

void CSearchTextLineEdit::themeChanged() { applyStyle(); }

void CSearchTextLineEdit::applyStyle()
{
    m_magnifier->setIcon(magnifierIcon(*CUiResource::get()->getColor(QStringLiteral("clr_edit_placeholder"))));
}

}  // namespace WG
