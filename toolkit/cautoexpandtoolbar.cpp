#include "toolkit/cautoexpandtoolbar.h"

#include "toolkit/cframesplitterline.h"
#include "toolkit/cuiresource.h"

#include <QPainter>
#include <QResizeEvent>

namespace WG {

CAutoExpandToolBar::CAutoExpandToolBar(const char* backgroundKey, int left, int top, int right, int bottom,
                                       QWidget* parent, int spacing)
    : CEventWidgetT<QWidget>(parent),
      m_backgroundKey(QString::fromLatin1(backgroundKey != nullptr ? backgroundKey : "")),
      m_margins(left, top, right, bottom),
      m_spacing(qMax(0, spacing))
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setFixedHeight(heightForWidth(width()));
}

CAutoExpandToolBar::~CAutoExpandToolBar() = default;

int CAutoExpandToolBar::rowHeight() const { return CUiResource::get()->getSize(QStringLiteral("siz_tool_bar_size")); }

void CAutoExpandToolBar::addToolItem(QWidget* item, bool alignRight)
{
    if (item == nullptr) {
        return;
    }
    item->setParent(this);
    item->show();
    Item entry;
    entry.widget = item;
    entry.right = alignRight;
    m_items << entry;
    updateItemLength();
}

void CAutoExpandToolBar::addSeperator()
{
    auto* line = new CFrameSplitterLine(QStringLiteral("clr_toolbar_separator"), this, Qt::Vertical);
    line->setMargin(2, 5, 2, 5);
    addToolItem(line, false);
}

void CAutoExpandToolBar::addFixedSpace(int length)
{
    Item entry;
    entry.space = qMax(0, length);
    m_items << entry;
    updateItemLength();
}

int CAutoExpandToolBar::itemWidth(const Item& item) const
{
    if (item.widget.isNull()) {
        return item.space;
    }
    if (item.widget->isHidden()) {
        return -1;
    }
    const QSize hint = item.widget->sizeHint().expandedTo(item.widget->minimumSize());
    return item.widget->maximumWidth() < QWIDGETSIZE_MAX ? qMin(item.widget->maximumWidth(), hint.width()) : hint.width();
}

int CAutoExpandToolBar::layoutItems(int width, bool apply) const
{
    const int row = rowHeight();
    const int right = width - m_margins.right();
    int x = m_margins.left();
    int rowIndex = 0;
    auto place = [&](const Item& item, int itemW, int left, int rowNumber) {
        if (!apply || item.widget.isNull()) {
            return;
        }
        const int h = qMin(row, qMax(item.widget->sizeHint().height(), item.widget->minimumHeight()));
        const int top = m_margins.top() + rowNumber * row + (row - h) / 2;
        item.widget->setGeometry(left, top, itemW, item.widget->maximumHeight() < row ? item.widget->maximumHeight() : h);
    };
    // Items of the left group flow and wrap.
    for (const Item& item : m_items) {
        if (item.right) {
            continue;
        }
        const int w = itemWidth(item);
        if (w < 0) {
            continue;
        }
        if (x > m_margins.left() && x + w > right) {
            ++rowIndex;
            x = m_margins.left();
            if (item.widget.isNull()) {
                continue;  // a space never starts a row
            }
        }
        place(item, w, x, rowIndex);
        x += w + m_spacing;
    }
    // The right group packs against the right end of the last row, or of a row of its own.
    int rightWidth = 0;
    for (const Item& item : m_items) {
        const int w = item.right ? itemWidth(item) : -1;
        if (w >= 0) {
            rightWidth += w + m_spacing;
        }
    }
    if (rightWidth > 0) {
        if (x > m_margins.left() && x + rightWidth - m_spacing > right) {
            ++rowIndex;
        }
        int rx = qMax(m_margins.left(), right - rightWidth + m_spacing);
        for (const Item& item : m_items) {
            const int w = item.right ? itemWidth(item) : -1;
            if (w >= 0) {
                place(item, w, rx, rowIndex);
                rx += w + m_spacing;
            }
        }
    }
    return rowIndex + 1;
}

int CAutoExpandToolBar::heightForWidth(int width) const
{
    return m_margins.top() + m_margins.bottom() + layoutItems(qMax(1, width), false) * rowHeight();
}

QSize CAutoExpandToolBar::sizeHint() const
{
    int total = m_margins.left() + m_margins.right();
    for (const Item& item : m_items) {
        const int w = itemWidth(item);
        if (w >= 0) {
            total += w + m_spacing;
        }
    }
    return QSize(total, m_margins.top() + m_margins.bottom() + rowHeight());
}

QSize CAutoExpandToolBar::minimumSizeHint() const
{
    int widest = 0;
    for (const Item& item : m_items) {
        widest = qMax(widest, itemWidth(item));
    }
    return QSize(m_margins.left() + m_margins.right() + widest, m_margins.top() + m_margins.bottom() + rowHeight());
}

void CAutoExpandToolBar::updateItemLength()
{
    m_rows = layoutItems(qMax(1, width()), true);
    const int wanted = m_margins.top() + m_margins.bottom() + m_rows * rowHeight();
    if (height() != wanted || minimumHeight() != wanted) {
        setFixedHeight(wanted);
    }
    updateGeometry();
}

void CAutoExpandToolBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    updateItemLength();
}

void CAutoExpandToolBar::paintEvent(QPaintEvent*)
{
    if (m_backgroundKey.isEmpty()) {
        return;
    }
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    if (res->hasKey(QStringLiteral("images"), m_backgroundKey)) {
        painter.drawPixmap(rect(), *res->getPixmap(m_backgroundKey));
    } else {
        painter.fillRect(rect(), *res->getColor(m_backgroundKey));
    }
}

}  // namespace WG
