#include "strategy/cstrategytypeitem.h"

#include "seam/uievents.h"
#include "toolkit/cimagewidget.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/csimpletextwidget.h"

#include <QMouseEvent>
#include <QResizeEvent>

#include <algorithm>

namespace TC {

namespace {
constexpr int kRowHeight = 26;
constexpr int kIconSize = 14;
constexpr int kButtonSize = 16;

// Centred in height: (row height - child height - 1) / 2.
int centredY(int rowHeight, int childHeight) { return (rowHeight - childHeight - 1) / 2; }
}  // namespace

CStrategyTypeItem::CStrategyTypeItem(int type, const QString& caption, QWidget* parent)
    : WG::CBaseWidget(QStringLiteral("mofa_basket_tree_typeitem"), false, parent), m_type(type)
{
    setFixedHeight(kRowHeight);
    m_image = new WG::CImageWidget(-1, QStringLiteral("tc_img_btn_close_basket"), this);
    m_image->setFixedSize(kIconSize, kIconSize);
    m_image->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_caption = new WG::CSimpleTextWidget(false, -1, caption, this);
    m_caption->setAttribute(Qt::WA_TransparentForMouseEvents);
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
}

bool CStrategyTypeItem::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code != WG::UE_BUTTON_CLICKED) {
        return WG::CBaseWidget::handleEvent(code, id, arg, text, data);
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

void CStrategyTypeItem::themeChanged() { layoutChildren(); }

void CStrategyTypeItem::mousePressEvent(QMouseEvent* event)
{
    WG::CBaseWidget::mousePressEvent(event);
    emit sigClick(m_type);
}

void CStrategyTypeItem::mouseDoubleClickEvent(QMouseEvent* event)
{
    WG::CBaseWidget::mouseDoubleClickEvent(event);
    emit sigDoubleClick(m_type);
}

void CStrategyTypeItem::resizeEvent(QResizeEvent* event)
{
    WG::CBaseWidget::resizeEvent(event);
    layoutChildren();
}

void CStrategyTypeItem::layoutChildren()
{
    const int h = height() > 0 ? height() : kRowHeight;
    m_image->move(2, centredY(h, m_image->height()));
    const int captionHeight = m_caption->sizeHint().height();
    m_caption->setFixedHeight(captionHeight);
    m_caption->move(20, centredY(h, captionHeight));
    // Delete 10 from the right edge, add 4 to its left.
    const int deleteX = width() - 10 - m_delete->width();
    m_delete->move(deleteX, centredY(h, m_delete->height()));
    m_add->move(width() - 14 - m_delete->width() - m_add->width(), centredY(h, m_add->height()));
    const int captionRight = (!m_add->isHidden() ? m_add->x() : width()) - 4;
    m_caption->setFixedWidth(std::max(0, captionRight - 20));
}

}  // namespace TC
