#include "strategy/cstrategyitem.h"

#include "seam/uievents.h"
#include "toolkit/cimagewidget.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/csimpletextwidget.h"

#include <QCursor>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QToolTip>

#include <algorithm>

namespace TC {

namespace {
constexpr int kRowHeight = 26;
constexpr int kIconSize = 14;
constexpr int kButtonSize = 16;

int centredY(int rowHeight, int childHeight) { return (rowHeight - childHeight - 1) / 2; }
}  // namespace

CStrategyItem::CStrategyItem(int type, const QString& name, QTreeWidgetItem* row, QWidget* parent)
    : WG::CBaseWidget(QStringLiteral("mofa_strategy_tree_child_item"), false, parent), m_type(type), m_row(row)
{
    setFixedHeight(kRowHeight);
    setMouseTracking(true);
    m_image = new WG::CImageWidget(-1, QStringLiteral("tc_img_btn_basket"), this);
    m_image->setFixedSize(kIconSize, kIconSize);
    m_image->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_text = new WG::CSimpleTextWidget(false, -1, name, this);
    m_text->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_delete = new WG::CPushButton(QStringLiteral("tc_img_btn_basket_del"), ID_DELETE, 1, 1, kButtonSize, kButtonSize,
                                   0, this);
    m_delete->setToolTip(QStringLiteral("删除组合"));
    layoutChildren();
}

CStrategyItem::~CStrategyItem() = default;

QString CStrategyItem::name() const { return m_text->getText(); }

bool CStrategyItem::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code == WG::UE_BUTTON_CLICKED && id == ID_DELETE) {
        // The row becomes current first, so that the tree deletes this basket.
        emit sigClick(m_type, name());
        emit sigDelete(true, name());
        return true;
    }
    return WG::CBaseWidget::handleEvent(code, id, arg, text, data);
}

void CStrategyItem::themeChanged() { layoutChildren(); }

void CStrategyItem::mousePressEvent(QMouseEvent* event)
{
    WG::CBaseWidget::mousePressEvent(event);
    emit sigClick(m_type, name());
}

void CStrategyItem::mouseDoubleClickEvent(QMouseEvent* event)
{
    WG::CBaseWidget::mouseDoubleClickEvent(event);
    emit sigDoubleClick(true);
}

void CStrategyItem::mouseMoveEvent(QMouseEvent* event)
{
    WG::CBaseWidget::mouseMoveEvent(event);
    QPoint at = m_text->mapToGlobal(m_text->rect().center());
    at.setX(QCursor::pos().x() + 2);
    at.setY(at.y() - 8);
    QToolTip::showText(at, name(), this);
}

void CStrategyItem::resizeEvent(QResizeEvent* event)
{
    WG::CBaseWidget::resizeEvent(event);
    layoutChildren();
}

void CStrategyItem::layoutChildren()
{
    const int h = height() > 0 ? height() : kRowHeight;
    m_image->move(2, centredY(h, m_image->height()));
    const int textHeight = m_text->sizeHint().height();
    m_text->setFixedHeight(textHeight);
    m_text->move(17, centredY(h, textHeight));
    m_delete->move(width() - 10 - m_delete->width(), centredY(h, m_delete->height()));
    m_text->setFixedWidth(std::max(0, m_delete->x() - 4 - 17));
}

}  // namespace TC
