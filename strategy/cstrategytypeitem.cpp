#include "strategy/cstrategytypeitem.h"

#include "seam/uievents.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/csimpletextwidget.h"

#include <QMouseEvent>

namespace TC {

namespace {
constexpr int kButtonSize = 16;
}  // namespace

CStrategyTypeItem::CStrategyTypeItem(int type, const QString& caption, QWidget* parent)
    : CStrategyTreeRow(QStringLiteral("mofa_basket_tree_typeitem"), QStringLiteral("tc_img_btn_close_basket"), caption,
                       20, parent),
      m_type(type)
{
    m_add = new WG::CPushButton(QStringLiteral("tc_img_btn_add_basket"), ID_ADD, 1, 1, kButtonSize, kButtonSize, 0, this);
    m_add->setToolTip(QStringLiteral("新建组合"));
    m_delete = new WG::CPushButton(QStringLiteral("tc_img_del_basket"), ID_DELETE_ALL, 1, 1, kButtonSize, kButtonSize, 0,
                                   this);
    m_delete->setToolTip(QStringLiteral("删除所有组合"));
    layoutChildren();
}

CStrategyTypeItem::~CStrategyTypeItem() = default;

QString CStrategyTypeItem::caption() const { return m_caption->getText(); }

void CStrategyTypeItem::setButtonsVisible(bool visible)
{
    m_add->setVisible(visible);
    m_delete->setVisible(visible);
    layoutChildren();
}

bool CStrategyTypeItem::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code != WG::UE_BUTTON_CLICKED) {
        return CStrategyTreeRow::handleEvent(code, id, arg, text, data);
    }
    if (id == ID_ADD) {
        emit sigNewStrategy(true);
    } else if (id == ID_DELETE_ALL) {
        const auto answer = WG::CMessageBox::question(nullptr, this, QStringLiteral("提示"),
                                                      QStringLiteral("是否删除下面所有的组合？"),
                                                      QMessageBox::StandardButtons(0x400400), QMessageBox::Ok);
        if (answer == QMessageBox::Ok) {
            emit sigDelStrategy(m_type);
        }
    }
    return true;
}

void CStrategyTypeItem::mousePressEvent(QMouseEvent* event)
{
    CStrategyTreeRow::mousePressEvent(event);
    emit sigClick(m_type);
}

void CStrategyTypeItem::mouseDoubleClickEvent(QMouseEvent* event)
{
    CStrategyTreeRow::mouseDoubleClickEvent(event);
    emit sigDoubleClick(m_type);
}

void CStrategyTypeItem::layoutChildren()
{
    // Delete 10 from the right edge, add 4 to its left.
    m_delete->move(width() - 10 - m_delete->width(), centredY(m_delete->height()));
    m_add->move(width() - 14 - m_delete->width() - m_add->width(), centredY(m_add->height()));
    layoutRow((!m_add->isHidden() ? m_add->x() : width()) - 4);
}

}  // namespace TC
