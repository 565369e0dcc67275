#include "toolkit/csplitcontainer.h"

#include "toolkit/cuiresource.h"

#include <QSplitter>
#include <QVBoxLayout>

namespace WG {

CSplitContainer::CSplitContainer(Qt::Orientation orientation, int handleWidth, QWidget* parent)
    : CEventWidgetT<QWidget>(parent), m_splitter(new QSplitter(orientation, this)), m_handleWidth(qMax(1, handleWidth))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(m_handleWidth);
    applyStyle();
}

CSplitContainer::~CSplitContainer() = default;

void CSplitContainer::setWidgets(QWidget* first, QWidget* second, bool secondFixed, int secondLength)
{
    while (m_splitter->count() > 0) {
        QWidget* old = m_splitter->widget(0);
        old->hide();
        old->setParent(nullptr);
        old->deleteLater();
    }
    if (first != nullptr) {
        m_splitter->addWidget(first);
        m_splitter->setStretchFactor(m_splitter->indexOf(first), 1);
    }
    if (second != nullptr) {
        m_splitter->addWidget(second);
        m_splitter->setStretchFactor(m_splitter->indexOf(second), secondFixed ? 0 : 1);
    }
    if (first != nullptr && second != nullptr && secondLength > 0) {
        const int total = m_splitter->orientation() == Qt::Horizontal ? width() : height();
        m_splitter->setSizes({qMax(1, total - secondLength - m_handleWidth), secondLength});
    }
}

void CSplitContainer::setSpliterVisible(bool visible)
{
    m_spliterVisible = visible;
    m_splitter->setHandleWidth(visible ? m_handleWidth : 0);
    for (int i = 1; i < m_splitter->count(); ++i) {
        m_splitter->handle(i)->setEnabled(visible);
        m_splitter->handle(i)->setVisible(visible);
    }
}

int CSplitContainer::getSecondWidth() const
{
    if (m_splitter->count() < 2) {
        return 0;
    }
    const QWidget* second = m_splitter->widget(1);
    if (second->isHidden()) {
        return 0;
    }
    const QList<int> sizes = m_splitter->sizes();
    if (sizes.size() > 1 && sizes.at(1) > 0) {
        return sizes.at(1);
    }
    return m_splitter->orientation() == Qt::Horizontal ? second->width() : second->height();
}

void CSplitContainer::themeChanged() { applyStyle(); }

void CSplitContainer::applyStyle()
{
    // A style sheet is a cached derived value: rebuilt on every theme change.
    const QColor* line = CUiResource::get()->getColor(QStringLiteral("clr_table_split_line"));
    m_splitter->setStyleSheet(QStringLiteral("QSplitter::handle { background: %1; }").arg(line->name()));
}

}  // namespace WG
