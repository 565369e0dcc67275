#include "toolkit/cbasenormaltable.h"

#include "seam/formatters.h"
#include "toolkit/cbasetablecolumnwidgetdelegate.h"
#include "toolkit/clineedit.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/ctablesortproxy.h"
#include "toolkit/ctableview.h"

#include <QResizeEvent>

namespace WG {

// The cell's own widget: stays in the view for the life of the cell, so that
// replacing the caller's widget is a reparent and no view bookkeeping.
class CItemWidgetHolder : public QWidget {
public:
    explicit CItemWidgetHolder(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_NoSystemBackground); }

    void setChild(QWidget* child, EAligns align)
    {
        if (m_child != child && m_child != nullptr) {
            m_child->hide();
            m_child->deleteLater();  // it may be the sender of the signal that led here
        }
        m_child = child;
        m_align = align;
        if (child != nullptr) {
            child->setParent(this);
            place();
            child->show();
        }
    }
    QWidget* child() const { return m_child; }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QWidget::resizeEvent(event);
        place();
    }

private:
    void place()
    {
        if (m_child == nullptr) {
            return;
        }
        QSize size = m_child->sizeHint().boundedTo(this->size());
        if (m_child->minimumWidth() > 0 && m_child->minimumWidth() == m_child->maximumWidth()) {
            size.setWidth(qMin(m_child->minimumWidth(), width()));
        }
        if (m_child->minimumHeight() > 0 && m_child->minimumHeight() == m_child->maximumHeight()) {
            size.setHeight(qMin(m_child->minimumHeight(), height()));
        }
        if (!size.isValid() || size.isEmpty()) {
            size = this->size();
        }
        int x = (width() - size.width()) / 2;
        if (m_align & AL_LEFT) {
            x = 0;
        } else if (m_align & AL_RIGHT) {
            x = width() - size.width();
        }
        int y = (height() - size.height()) / 2;
        if (m_align & AL_TOP) {
            y = 0;
        } else if (m_align & AL_BOTTOM) {
            y = height() - size.height();
        }
        m_child->setGeometry(x, y, size.width(), size.height());
    }

    QPointer<QWidget> m_child;
    EAligns m_align = AL_CENTER;
};

namespace {

quint64 holderKey(int row, int column)
{
    return (static_cast<quint64>(static_cast<quint32>(row)) << 32) | static_cast<quint32>(column);
}

}  // namespace

CBaseNormalTable::CBaseNormalTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags)
    : IBaseTable(id, parent, menuFlags), m_model(new CTableCellModel(this))
{
    attachModel(m_model);
}

CBaseNormalTable::~CBaseNormalTable() = default;

QAbstractItemModel* CBaseNormalTable::cellModel() const { return m_model; }

void CBaseNormalTable::clear()
{
    m_holders.clear();  // the view drops its cell widgets with the rows
    m_model->clearRows();
    for (ColumnState& column : m_columns) {
        if (column.delegate != nullptr) {
            column.delegate->clearItems();
        }
    }
}

void CBaseNormalTable::clearColumns()
{
    clear();
    resetColumnStates();
    m_model->setColumnCount(0);
}

void CBaseNormalTable::setColumnCount(int count)
{
    if (count < 0) {
        return;
    }
    while (m_columns.size() > count) {
        dropColumnState(m_columns.size() - 1);
    }
    m_model->setColumnCount(count);
    ensureColumnStates();
}

int CBaseNormalTable::addColumn()
{
    const int column = m_model->columnCount();
    setColumnCount(column + 1);
    return column;
}

void CBaseNormalTable::removeColumn(int column)
{
    if (column < 0 || column >= m_model->columnCount()) {
        return;
    }
    remapHolders(-1, column);
    dropColumnState(column);
    m_model->removeColumnAt(column);
}

void CBaseNormalTable::removeRow(int row)
{
    if (row < 0 || row >= m_model->rowCount()) {
        return;
    }
    remapHolders(row, -1);
    for (ColumnState& column : m_columns) {
        if (column.delegate != nullptr) {
            column.delegate->removeItem(rowKey(row));
        }
    }
    m_model->removeRowAt(row);
}

void CBaseNormalTable::remapHolders(int removedRow, int removedColumn)
{
    // Later rows (or columns) move down by one; their cell widgets keep their cells.
    QHash<quint64, QPointer<CItemWidgetHolder>> moved;
    for (auto it = m_holders.constBegin(); it != m_holders.constEnd(); ++it) {
        int row = static_cast<int>(it.key() >> 32);
        int column = static_cast<int>(it.key() & 0xffffffffu);
        if (row == removedRow || column == removedColumn || it.value().isNull()) {
            continue;
        }
        if (removedRow >= 0 && row > removedRow) {
            --row;
        }
        if (removedColumn >= 0 && column > removedColumn) {
            --column;
        }
        moved.insert(holderKey(row, column), it.value());
    }
    m_holders.swap(moved);
}

void CBaseNormalTable::updateTable()
{
    m_model->flush();
}

void CBaseNormalTable::onModelFlushNeeded() { m_model->flush(); }

QVector<int> CBaseNormalTable::setRowCount(int count)
{
    if (count < 0) {
        count = 0;
    }
    for (int row = m_model->rowCount() - 1; row >= count; --row) {
        remapHolders(row, -1);
    }
    m_model->setRowCountTo(count);
    QVector<int> ids(count);
    for (int row = 0; row < count; ++row) {
        ids[row] = row;
    }
    return ids;
}

int CBaseNormalTable::appendRow() { return m_model->appendRowAt(); }

void CBaseNormalTable::noteFlash()
{
    if (m_model->lastFlashAt() > m_seenFlashAt) {
        m_seenFlashAt = m_model->lastFlashAt();
        startFlashTimer();
    }
}

void CBaseNormalTable::setItemText(int row, int column, const QString& text, bool)
{
    if (m_model->setCellText(row, column, text)) {
        noteFlash();
    }
}

void CBaseNormalTable::setItemText(int row, int column, const std::string& text, bool update)
{
    setItemText(row, column, QString::fromStdString(text), update);
}

void CBaseNormalTable::setItemInt(int row, int column, int value, utils::CFlags<utils::EFormatNumberFlag> flags, bool)
{
    const bool absent = utils::isAbsent(value);
    const QString text = absent ? invalidText() : formatIntNumber(value, 0, flags);
    if (m_model->setCellNumber(row, column, text, absent ? utils::kAbsentDouble : static_cast<double>(value),
                               QVariant::Int)) {
        noteFlash();
    }
}

void CBaseNormalTable::setItemLongLong(int row, int column, long long value,
                                       utils::CFlags<utils::EFormatNumberFlag> flags, bool)
{
    const bool absent = utils::isAbsent(value);
    const QString text = absent ? invalidText() : formatLongLongNumber(value, 0, flags);
    if (m_model->setCellNumber(row, column, text, absent ? utils::kAbsentDouble : static_cast<double>(value),
                               QVariant::LongLong)) {
        noteFlash();
    }
}

void CBaseNormalTable::setItemDouble(int row, int column, double value, int decimals,
                                     utils::CFlags<utils::EFormatNumberFlag> flags, bool)
{
    const bool usable = utils::isUsable(value);
    const QString text = usable ? formatDoubleNumber(value, decimals, flags, false, invalidText()) : invalidText();
    if (m_model->setCellNumber(row, column, text, usable ? value : utils::kAbsentDouble, QVariant::Double)) {
        noteFlash();
    }
}

void CBaseNormalTable::setItemTextColorKey(int row, int column, const char* key, bool)
{
    m_model->setCellTextColorKey(row, column, key != nullptr ? QString::fromUtf8(key) : QString());
}

void CBaseNormalTable::setItemBackgroundColorKey(int row, int column, const char* key, bool)
{
    m_model->setCellBackgroundKey(row, column, key != nullptr ? QString::fromUtf8(key) : QString());
}

void CBaseNormalTable::clearItem(int row, int column)
{
    m_model->clearCell(row, column);
}

void CBaseNormalTable::setItemWidget(int row, int column, QWidget* widget, EAligns align, bool)
{
    if (row < 0 || row >= m_model->rowCount() || column < 0 || column >= m_model->columnCount()) {
        delete widget;
        return;
    }
    const quint64 key = holderKey(row, column);
    QPointer<CItemWidgetHolder> holder = m_holders.value(key);
    if (widget == nullptr) {
        if (holder != nullptr) {
            view()->setIndexWidget(viewIndex(row, column), nullptr);
        }
        m_holders.remove(key);
        return;
    }
    if (holder == nullptr) {
        holder = new CItemWidgetHolder(view()->viewport());
        view()->setIndexWidget(viewIndex(row, column), holder);
        m_holders.insert(key, holder);
    }
    holder->setChild(widget, align);
}

QWidget* CBaseNormalTable::itemWidget(int row, int column) const
{
    const QPointer<CItemWidgetHolder> holder = m_holders.value(holderKey(row, column));
    return holder != nullptr ? holder->child() : nullptr;
}

void CBaseNormalTable::setColumnEditor(int column, CLineEdit* editor)
{
    setColumnEditorWidget(column, editor);
}

void CBaseNormalTable::setColumnEditable(int column, bool editable)
{
    m_model->setColumnEditable(column, editable);
}

void CBaseNormalTable::setItemDblClickEnabled(int column, bool enabled)
{
    setColumnDblClick(column, enabled);
}

void CBaseNormalTable::setFlashOnlyUpdateBorderAndText()
{
    m_flashBorderOnly = true;
}

void CBaseNormalTable::applyEditedText(int row, int column, const QString& text)
{
    setItemText(row, column, text, true);
}

}  // namespace WG
