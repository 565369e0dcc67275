#include "toolkit/cbasedialog.h"

#include "seam/uievents.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/cstylesheetcenter.h"
#include "toolkit/cuiresource.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace WG {

namespace {
// The title bar paints its own background so that it follows the theme.
class TitleBar : public QWidget {
public:
    explicit TitleBar(QWidget* parent) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), *CUiResource::get()->getColor(QStringLiteral("clr_dialog_title_background")));
    }
};
}  // namespace

CBaseDialog::CBaseDialog(QWidget* parent, bool titleBar) : CEventWidgetT<QDialog>(parent)
{
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(1, 1, 1, 1);
    outer->setSpacing(0);
    if (titleBar) {
        m_titleBar = new TitleBar(this);
        m_titleBar->setFixedHeight(CUiResource::get()->getSize(QStringLiteral("siz_dialog_title_height")));
        auto* bar = new QHBoxLayout(m_titleBar);
        bar->setContentsMargins(10, 0, 4, 0);
        m_title = new CSimpleTextWidget(false, 0, QString(), m_titleBar);
        m_title->setFontKey(QStringLiteral("fnt_default_normal_heavy_fix"));
        m_title->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        m_close = new CPushButton(QString(), kCloseButtonID, 1, 1, 24, 20, 0, m_titleBar);
        m_close->setText(QStringLiteral("×"));
        m_close->setTextColorKey(QStringLiteral("clr_button_text_disabled"), QStringLiteral("clr_global_white"),
                                 QStringLiteral("clr_global_white"), QStringLiteral("clr_button_text_disabled"));
        m_close->setButtonColor(CButtonColor{QString(), QStringLiteral("clr_small_btn_critical_normal"),
                                             QStringLiteral("clr_small_btn_critical_hover"), QString(), QString()});
        bar->addWidget(m_title, 1);
        bar->addWidget(m_close, 0, Qt::AlignVCenter);
        outer->addWidget(m_titleBar);
    }
    m_content = new QVBoxLayout();
    m_content->setContentsMargins(12, 10, 12, 10);
    m_content->setSpacing(8);
    outer->addLayout(m_content, 1);
    applyStyle();
}

CBaseDialog::~CBaseDialog() = default;

void CBaseDialog::setTitle(const QString& title)
{
    setWindowTitle(title);
    if (m_title != nullptr) {
        m_title->setText(title);
    }
}

QString CBaseDialog::title() const { return windowTitle(); }

bool CBaseDialog::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code == UE_BUTTON_CLICKED && id == kCloseButtonID) {
        reject();
        return true;
    }
    return CEventDeliverer::handleEvent(code, id, arg, text, data);
}

void CBaseDialog::themeChanged() { applyStyle(); }

void CBaseDialog::applyStyle() { setStyleSheet(CStyleSheetCenter::getStyle(SS_DIALOG, nullptr)); }

void CBaseDialog::paintEvent(QPaintEvent*)
{
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    painter.fillRect(rect(), *res->getColor(QStringLiteral("clr_dialog_background")));
    painter.setPen(*res->getColor(QStringLiteral("clr_dialog_border")));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void CBaseDialog::mousePressEvent(QMouseEvent* event)
{
    if (m_titleBar != nullptr && event->button() == Qt::LeftButton && m_titleBar->geometry().contains(event->pos())) {
        m_dragging = true;
        m_dragOffset = event->globalPos() - frameGeometry().topLeft();
        return;
    }
    QDialog::mousePressEvent(event);
}

void CBaseDialog::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging) {
        move(event->globalPos() - m_dragOffset);
        return;
    }
    QDialog::mouseMoveEvent(event);
}

void CBaseDialog::mouseReleaseEvent(QMouseEvent* event)
{
    m_dragging = false;
    QDialog::mouseReleaseEvent(event);
}

}  // namespace WG
