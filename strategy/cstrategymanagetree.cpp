#include "strategy/cstrategymanagetree.h"

#include "strategy/cstrategybaskets.h"
#include "strategy/cstrategyitem.h"
#include "strategy/cstrategytypeitem.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/cstylesheetcenter.h"
#include "toolkit/cuiresource.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>

namespace TC {

namespace {
constexpr int kNameRole = Qt::UserRole;
constexpr int kTypeRole = Qt::UserRole + 1;
}  // namespace

CStrategyManageTree::CStrategyManageTree(QWidget* parent) : WG::CEventWidgetT<QTreeWidget>(parent)
{
    setObjectName(QStringLiteral("strategyManageTree"));
    setColumnCount(1);
    header()->hide();
    setRootIsDecorated(false);
    setIndentation(12);
    setFocusPolicy(Qt::ClickFocus);
    m_branchIcon.addPixmap(style()->standardPixmap(QStyle::SP_DirClosedIcon), QIcon::Normal, QIcon::Off);
    m_branchIcon.addPixmap(style()->standardPixmap(QStyle::SP_DirOpenIcon), QIcon::Normal, QIcon::On);
    if (const QPixmap* basket = WG::CUiResource::get()->getPixmap(QStringLiteral("tc_img_tree_basket_icon"))) {
        m_basketIcon.addPixmap(*basket, QIcon::Normal, QIcon::Off);
    }
    setStyleSheet(WG::CStyleSheetCenter::getStyle(WG::SS_TREEWIDGET));
    reload(QString());
}

CStrategyManageTree::~CStrategyManageTree() = default;

void CStrategyManageTree::themeChanged() { setStyleSheet(WG::CStyleSheetCenter::getStyle(WG::SS_TREEWIDGET)); }

QString CStrategyManageTree::rowText(const QTreeWidgetItem* row)
{
    return row != nullptr ? row->data(0, kNameRole).toString() : QString();
}

void CStrategyManageTree::reload(const QString& name)
{
    clear();
    setRootIsDecorated(false);
    m_renameItem = nullptr;

    m_customBranch = new QTreeWidgetItem(this);
    m_customBranch->setData(0, kTypeRole, IT_CUSTOM_BRANCH);
    m_customBranch->setData(0, kNameRole, QStringLiteral("自选组合"));
    m_customBranch->setExpanded(true);
    m_customWidget = new CStrategyTypeItem(IT_CUSTOM_BRANCH, QStringLiteral("自选组合"), this);
    setItemWidget(m_customBranch, 0, m_customWidget);
    connect(m_customWidget, &CStrategyTypeItem::sigDoubleClick, this, &CStrategyManageTree::slotTypeItemDoubleClicked);
    connect(m_customWidget, &CStrategyTypeItem::sigClick, this, &CStrategyManageTree::slotTypeItemClicked);
    connect(m_customWidget, &CStrategyTypeItem::sigNewStrategy, this, &CStrategyManageTree::slotNewStrategy);
    connect(m_customWidget, &CStrategyTypeItem::sigDelStrategy, this, &CStrategyManageTree::slotDelStrategy);

    m_winnerBranch = new QTreeWidgetItem(this);
    m_winnerBranch->setData(0, kTypeRole, IT_WINNER_BRANCH);
    m_winnerBranch->setData(0, kNameRole, QStringLiteral("稳稳胜"));
    m_winnerWidget = new CStrategyTypeItem(IT_WINNER_BRANCH, QStringLiteral("稳稳胜"), this);
    m_winnerWidget->setButtonsVisible(false);
    setItemWidget(m_winnerBranch, 0, m_winnerWidget);
    // A double click on the winner is a second click: nothing to collapse.
    connect(m_winnerWidget, &CStrategyTypeItem::sigDoubleClick, this, &CStrategyManageTree::slotTypeItemClicked);
    connect(m_winnerWidget, &CStrategyTypeItem::sigClick, this, &CStrategyManageTree::slotTypeItemClicked);

    const TStrategyMap baskets = CStrategyBaskets::copy();
    bool first = true;
    for (auto it = baskets.constBegin(); it != baskets.constEnd(); ++it) {
        if (it.key().isEmpty()) {
            continue;
        }
        QTreeWidgetItem* row = addBasketRow(it.key());
        if ((name.isEmpty() && first) || name == it.key()) {
            row->setSelected(true);
            setCurrentItem(row);
        } else {
            row->setSelected(false);
        }
        first = false;
    }
    expandAll();
}

QTreeWidgetItem* CStrategyManageTree::addBasketRow(const QString& name)
{
    auto* row = new QTreeWidgetItem(m_customBranch);
    attachBasketItem(row, IT_BASKET, name);
    return row;
}

void CStrategyManageTree::attachBasketItem(QTreeWidgetItem* row, int type, const QString& name)
{
    row->setData(0, kTypeRole, type);
    row->setData(0, kNameRole, name);
    auto* item = new CStrategyItem(type, name, row, this);
    setItemWidget(row, 0, item);
    connect(item, &CStrategyItem::sigClick, this, &CStrategyManageTree::slotItemClicked);
    connect(item, &CStrategyItem::sigDelete, this, &CStrategyManageTree::slotDeleteStrategy);
    connect(item, &CStrategyItem::sigDoubleClick, this, &CStrategyManageTree::slotRenameStrategy);
}

void CStrategyManageTree::select(const QString& name)
{
    if (m_customBranch != nullptr) {
        for (int i = 0; i < m_customBranch->childCount(); ++i) {
            QTreeWidgetItem* child = m_customBranch->child(i);
            if (rowText(child) == name) {
                child->setSelected(true);
                setCurrentItem(child);
            }
        }
    }
    tell(UE_STRATEGY_CHOSEN, 0, name);
}

QString CStrategyManageTree::currentBasketName() const
{
    auto* item = qobject_cast<CStrategyItem*>(itemWidget(currentItem(), 0));
    return item != nullptr ? item->name() : QString();
}

QStringList CStrategyManageTree::basketNames() const
{
    QStringList names;
    if (m_customBranch != nullptr) {
        for (int i = 0; i < m_customBranch->childCount(); ++i) {
            names << rowText(m_customBranch->child(i));
        }
    }
    return names;
}

QTreeWidgetItem* CStrategyManageTree::basketRow(const QString& name) const
{
    if (m_customBranch != nullptr) {
        for (int i = 0; i < m_customBranch->childCount(); ++i) {
            if (rowText(m_customBranch->child(i)) == name) {
                return m_customBranch->child(i);
            }
        }
    }
    return nullptr;
}

void CStrategyManageTree::resetColors()
{
    const QString key = QStringLiteral("clr_text_default");
    if (m_customWidget != nullptr) {
        m_customWidget->captionWidget()->setColorKey(key);
    }
    if (m_customBranch != nullptr) {
        for (int i = 0; i < m_customBranch->childCount(); ++i) {
            if (auto* item = qobject_cast<CStrategyItem*>(itemWidget(m_customBranch->child(i), 0))) {
                item->textWidget()->setColorKey(key);
            }
        }
    }
    if (m_winnerWidget != nullptr) {
        m_winnerWidget->captionWidget()->setColorKey(key);
    }
}

void CStrategyManageTree::slotItemClicked(int, QString name)
{
    resetColors();
    select(name);
    // Told twice on one click, as the workbench always has: the panel loads the basket again.
    tell(UE_STRATEGY_CHOSEN, 0, name);
}

void CStrategyManageTree::slotTypeItemClicked(int type)
{
    resetColors();
    if (type == IT_CUSTOM_BRANCH && m_customBranch != nullptr) {
        setCurrentItem(m_customBranch);
    } else if (type == IT_WINNER_BRANCH && m_winnerBranch != nullptr) {
        setCurrentItem(m_winnerBranch);
    }
    tell(UE_STRATEGY_CHOSEN, type, QString());
}

void CStrategyManageTree::slotTypeItemDoubleClicked(int type)
{
    if (type == IT_CUSTOM_BRANCH && m_customBranch != nullptr) {
        m_customBranch->setExpanded(!m_customBranch->isExpanded());
    }
    tell(UE_STRATEGY_CHOSEN, type, QString());
}

void CStrategyManageTree::slotNewStrategy(bool)
{
    TStrategyMap baskets = CStrategyBaskets::copy();
    const QString name = CStrategyBaskets::newBasketName(baskets);
    CStrategySetting basket;
    basket.name = name;
    baskets.insert(name, basket);
    CStrategyBaskets::write(baskets);
    tell(UE_STRATEGY_CREATED, 0, name);
}

void CStrategyManageTree::slotDelStrategy(int type)
{
    if (type != IT_CUSTOM_BRANCH || m_customBranch == nullptr) {
        return;
    }
    const QString current = currentBasketName();
    TStrategyMap baskets = CStrategyBaskets::copy();
    for (int i = 0; i < m_customBranch->childCount(); ++i) {
        const QString name = rowText(m_customBranch->child(i));
        if (baskets.remove(name) > 0 && name == current) {
            tell(UE_STRATEGY_CHOSEN, 0, QString());
        }
    }
    CStrategyBaskets::write(baskets);
    tell(UE_STRATEGY_REMOVED, 0, QString());
    reload(QString());
}

void CStrategyManageTree::slotDeleteStrategy(bool, QString name)
{
    QTreeWidgetItem* current = currentItem();
    TStrategyMap baskets = CStrategyBaskets::copy();
    if (current == nullptr || !baskets.contains(name) || m_customBranch == nullptr) {
        return;
    }
    baskets.remove(name);
    CStrategyBaskets::write(baskets);
    // The row goes at once; its widget, which may be the sender, is deleted later by the view.
    delete m_customBranch->takeChild(m_customBranch->indexOfChild(current));
    QString next;
    if (m_customBranch->childCount() > 0) {
        QTreeWidgetItem* first = m_customBranch->child(0);
        next = rowText(first);
        const QSignalBlocker blocker(this);
        first->setSelected(true);
        setCurrentItem(first);
    }
    tell(UE_STRATEGY_REMOVED, 0, next);
    tell(UE_STRATEGY_CHOSEN, 0, next);
}

void CStrategyManageTree::slotRenameStrategy(bool)
{
    QTreeWidgetItem* current = currentItem();
    if (current == nullptr) {
        return;
    }
    m_renameName = rowText(current);
    m_renameType = current->data(0, kTypeRole).toInt();
    m_renameItem = current;
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QStringLiteral("strategyRenameEdit"));
    edit->setStyleSheet(WG::CStyleSheetCenter::getStyle(WG::SS_LINEEDIT));
    setItemWidget(current, 0, edit);
    connect(edit, &QLineEdit::editingFinished, this, &CStrategyManageTree::slotRenameFinishEdit);
    edit->setText(m_renameName);
    edit->selectAll();
    edit->setFocus();
}

void CStrategyManageTree::slotRenameFinishEdit()
{
    if (m_renameItem == nullptr) {
        return;
    }
    // The edit answers once: losing the focus after Return must not finish a second time.
    if (auto* sender = qobject_cast<QLineEdit*>(QObject::sender())) {
        disconnect(sender, &QLineEdit::editingFinished, this, &CStrategyManageTree::slotRenameFinishEdit);
    }
    const QString oldName = m_renameName;
    m_renameName.clear();
    TStrategyMap baskets = CStrategyBaskets::copy();
    if (!baskets.contains(oldName)) {
        // Deleted elsewhere meanwhile: the row stays empty until the next reload.
        removeItemWidget(m_renameItem, 0);
        return;
    }
    auto* edit = qobject_cast<QLineEdit*>(itemWidget(m_renameItem, 0));
    if (edit == nullptr) {
        return;
    }
    const QString text = edit->text();
    enum { None, Empty, Exists } failure = None;
    QString newName;
    if (text.isEmpty()) {
        removeItemWidget(m_renameItem, 0);
        select(oldName);
        newName = oldName;
        failure = Empty;
    } else if (baskets.contains(text) && text != oldName) {
        edit->setText(oldName);
        newName = oldName;
        failure = Exists;
    } else {
        removeItemWidget(m_renameItem, 0);
        newName = text;
    }
    // A fresh row widget with working delete and rename, whatever the outcome.
    attachBasketItem(m_renameItem, m_renameType, newName);
    QWidget* newItem = itemWidget(m_renameItem, 0);
    if (failure == Empty) {
        WG::CMessageTip::showTip(newItem, 64, QStringLiteral("名称不能为空"), 2, 300);
        return;
    }
    if (failure == Exists) {
        WG::CMessageTip::showTip(newItem, 64, QStringLiteral("此名称已存在"), 2, 300);
        return;
    }
    CStrategySetting renamed = baskets.value(oldName);
    baskets.remove(oldName);
    renamed.name = newName;
    baskets.insert(newName, renamed);
    CStrategyBaskets::write(baskets);
    tell(UE_STRATEGY_RENAMED, 0, QString());
    select(newName);
}

void CStrategyManageTree::keyPressEvent(QKeyEvent* event)
{
    // Shift+W belongs to the window above.
    if (event->key() == Qt::Key_W && (event->modifiers() & Qt::ShiftModifier)) {
        event->ignore();
        return;
    }
    event->ignore();
}

}  // namespace TC
