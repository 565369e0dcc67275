#include "toolkit/cmessagetip.h"

#include "toolkit/cuiresource.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>

namespace WG {

namespace {
constexpr int kPadding = 8;

class TipWindow : public QWidget {
public:
    TipWindow(const QString& text, int maxWidth) : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint), m_text(text)
    {
        setAttribute(Qt::WA_DeleteOnClose, true);
        setAttribute(Qt::WA_ShowWithoutActivating, true);
        setAttribute(Qt::WA_TranslucentBackground, true);
        const QFontMetrics metrics(*CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_fix")));
        const int wrap = qMax(60, maxWidth) - 2 * kPadding;
        const QRect bounds = metrics.boundingRect(QRect(0, 0, wrap, 10000), Qt::TextWordWrap, m_text);
        resize(bounds.width() + 2 * kPadding, bounds.height() + 2 * kPadding);
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this]() { close(); });
    }
    void start(int seconds) { m_timer.start(qMax(1, seconds) * 1000); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        CUiResource* res = CUiResource::get();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(*res->getColor(QStringLiteral("clr_operation_frame_line_color")));
        painter.setBrush(*res->getColor(QStringLiteral("clr_tip_background")));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        painter.setFont(*res->getFont(QStringLiteral("fnt_default_normal_fix")));
        painter.setPen(*res->getColor(QStringLiteral("clr_tip_text")));
        painter.drawText(rect().adjusted(kPadding, kPadding, -kPadding, -kPadding), Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignVCenter, m_text);
    }
    void mousePressEvent(QMouseEvent*) override { close(); }

private:
    QString m_text;
    QTimer m_timer;
};

QPointer<TipWindow>& currentTip()
{
    static QPointer<TipWindow> s_tip;
    return s_tip;
}

CMessageTipRecord& record()
{
    static CMessageTipRecord s_record;
    return s_record;
}

int& counter()
{
    static int s_count = 0;
    return s_count;
}
}  // namespace

void CMessageTip::showTip(QWidget* anchor, QFlags<EAlign> align, const QString& text, int seconds, int maxWidth)
{
    hideTip();
    if (anchor == nullptr || text.isEmpty()) {
        return;
    }
    auto* tip = new TipWindow(text, maxWidth > 0 ? maxWidth : 300);
    const QRect target(anchor->mapToGlobal(QPoint(0, 0)), anchor->size());
    QPoint place;
    if (align.testFlag(AL_TOP)) {
        place = QPoint(target.left(), target.top() - tip->height() - 2);
    } else if (align.testFlag(AL_LEFT)) {
        place = QPoint(target.left() - tip->width() - 2, target.top());
    } else if (align.testFlag(AL_RIGHT)) {
        place = QPoint(target.right() + 3, target.top());
    } else {
        place = QPoint(target.left(), target.bottom() + 3);
    }
    if (QScreen* screen = QGuiApplication::screenAt(target.center())) {
        const QRect area = screen->availableGeometry();
        place.setX(qBound(area.left(), place.x(), qMax(area.left(), area.right() - tip->width())));
        place.setY(qBound(area.top(), place.y(), qMax(area.top(), area.bottom() - tip->height())));
    }
    tip->move(place);
    // The tip leaves with its anchor.
    QObject::connect(anchor, &QObject::destroyed, tip, &QWidget::close);
    tip->show();
    tip->start(seconds);
    currentTip() = tip;

    CMessageTipRecord& last = record();
    last.text = text;
    last.anchor = anchor;
    last.align = static_cast<int>(align);
    last.seconds = seconds;
    last.maxWidth = maxWidth;
    last.geometry = tip->geometry();
    ++counter();
}

void CMessageTip::hideTip()
{
    if (!currentTip().isNull()) {
        currentTip()->close();
        currentTip() = nullptr;
    }
}

bool CMessageTip::isTipVisible() { return !currentTip().isNull() && currentTip()->isVisible(); }

CMessageTipRecord CMessageTip::lastTip() { return record(); }

int CMessageTip::tipCount() { return counter(); }

void CMessageTip::resetRecord()
{
    record() = CMessageTipRecord();
    counter() = 0;
}

}  // namespace WG
