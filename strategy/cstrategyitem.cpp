#include "strategy/cstrategyitem.h"

#include "seam/uievents.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/csimpletextwidget.h"

#include <QCursor>
#include <QMouseEvent>
#include <QToolTip>

namespace TC {

namespace {
constexpr int kButtonSize = 16;
}  // namespace

CStrategyItem::CStrategyItem(int type, const QString& name, QTreeWidgetItem* row, QWidget* parent)
    : CStrategyTreeRow(QStringLiteral("mofa_strategy_tree_child_item"), QStringLiteral("tc_img_btn_basket"), name, 17,
                       parent),
      m_type(type),
      m_row(row)
{
    setMouseTracking(true);
    m_delete = new WG::CPushButton(QStringLiteral("tc_img_btn_basket_del"), ID_DELETE, 1, 1, kButtonSize, kButtonSize,
                                   0, this);
    m_delete->setToolTip(QStringLiteral("删除组合"));
    layoutChildren();
}

CStrategyItem::~CStrategyItem() = default;

QString CStrategyItem::name() const { return m_caption->getText(); }

bool CStrategyItem::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code == WG::UE_BUTTON_CLICKED && id == ID_DELETE) {
        // The row becomes current first, so that the tree deletes this basket.
        emit sigClick(m_type, name());
        emit sigDelete(true, name());
        return true;
    }
    return CStrategyTreeRow::handleEvent(code, id, arg, text, data);
}

void CStrategyItem::mousePressEvent(QMouseEvent* event)
{
    CStrategyTreeRow::mousePressEvent(event);
    emit sigClick(m_type, name());
}

void CStrategyItem::mouseDoubleClickEvent(QMouseEvent* event)
{
    CStrategyTreeRow::mouseDoubleClickEvent(event);
    emit sigDoubleClick(true);
}

void CStrategyItem::mouseMoveEvent(QMouseEvent* event)
{
    CStrategyTreeRow::mouseMoveEvent(event);
    QPoint at = m_caption->mapToGlobal(m_caption->rect().center());
    at.setX(QCursor::pos().x() + 2);
    at.setY(at.y() - 8);
    QToolTip::showText(at, name(), this);
}

void CStrategyItem::layoutChildren()
{
    m_delete->move(width() - 10 - m_delete->width(), centredY(m_delete->height()));
    layoutRow(m_delete->x() - 4);
}

}  // namespace TC
