#include "toolkit/cbasenormaltable.h"

#include "seam/formatters.h"
#include "toolkit/cbasetablecolumnwidgetdelegate.h"
#include "toolkit/clineedit.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/ctablesortproxy.h"
#include "toolkit/ctableview.h"

#include <QLayout>
#include <QRegion>
#include <QResizeEvent>

#include <array>
#include <cstring>

namespace WG {

// A layout that lays out nothing. On a holder it stands where Qt would otherwise
// post a layout request each time a child shows or hides, and look through all
// events posted so far for one to merge it with: with hundreds of widgets
// replaced in a tick, that search grew with the square of their number.
class CInertLayout : public QLayout {
public:
    explicit CInertLayout(QWidget* parent) : QLayout(parent)
    {
        setContentsMargins(0, 0, 0, 0);
        setSizeConstraint(QLayout::SetNoConstraint);
    }
    void addItem(QLayoutItem* item) override { delete item; }
    QLayoutItem* itemAt(int) const override { return nullptr; }
    QLayoutItem* takeAt(int) override { return nullptr; }
    int count() const override { return 0; }
    QSize sizeHint() const override { return QSize(); }
    void invalidate() override {}
};

// The cell's own widget: stays in the view for the life of the cell, so that
// replacing the caller's widget is a reparent and no view bookkeeping. A new
// widget is staged at once (itemWidget() answers with it) and shown when the
// table commits its widgets, once per tick, with the others of the tick.
class CItemWidgetHolder : public QWidget {
public:
    explicit CItemWidgetHolder(QWidget* parent) : QWidget(parent)
    {
        setAttribute(Qt::WA_NoSystemBackground);
        new CInertLayout(this);
    }

    // Takes the widget; returns whether the holder now waits for a commit. A
    // widget staged and replaced before any commit goes to retired unseen.
    bool stage(QWidget* child, EAligns align, std::vector<QPointer<QWidget>>& retired)
    {
        m_align = align;
        if (child == m_child) {
            return m_child != m_shown;
        }
        if (m_child != nullptr && m_child != m_shown) {
            retired.emplace_back(m_child.data());
        }
        m_child = child;
        if (child != nullptr && child->parentWidget() != this) {
            child->setParent(this);  // hidden until the commit shows it
        }
        return m_child != m_shown;
    }

    // The first half of a commit: the widget shown so far leaves the screen. Its
    // updates are off first and its size goes to nothing once hidden, so that
    // neither hiding nor deleting it marks an area of the window dirty on its
    // own (one rectangle at a time, each merged into the window's dirty region);
    // the table repaints the area of all replaced cells at once instead.
    void retireShown(std::vector<QPointer<QWidget>>& retired)
    {
        if (m_shown == nullptr || m_shown == m_child) {
            return;
        }
        m_shown->setUpdatesEnabled(false);
        m_shown->hide();
        m_shown->setFixedSize(0, 0);
        retired.emplace_back(m_shown.data());
        m_shown = nullptr;
    }

    // The second half: the staged widget takes its place in the cell and shows,
    // if the cell is in view. Out of view it waits hidden until scrolling or a
    // larger viewport brings the cell in: a tick pays for what can be seen.
    void showStaged()
    {
        if (m_child == nullptr || m_child == m_shown || !inView()) {
            return;
        }
        place();
        m_child->show();
        m_shown = m_child;
    }

    bool inView() const
    {
        const QWidget* viewport = parentWidget();
        return viewport == nullptr || geometry().intersects(viewport->rect());
    }

    QWidget* child() const { return m_child; }
    // Whether the table has this holder in its list of the next commit.
    bool queued = false;

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QWidget::resizeEvent(event);
        place();
        showStaged();
    }

    // Scrolling moves the holders; one that enters the view shows what it holds.
    void moveEvent(QMoveEvent* event) override
    {
        QWidget::moveEvent(event);
        showStaged();
    }

private:
    void place()
    {
        if (m_child == nullptr) {
            return;
        }
        const QSize minimum = m_child->minimumSize();
        const QSize maximum = m_child->maximumSize();
        const bool fixedWidth = minimum.width() > 0 && minimum.width() == maximum.width();
        const bool fixedHeight = minimum.height() > 0 && minimum.height() == maximum.height();
        // A widget of fixed size needs no size hint, which may measure text.
        QSize size = fixedWidth && fixedHeight ? minimum.boundedTo(this->size())
                                               : m_child->sizeHint().boundedTo(this->size());
        if (fixedWidth) {
            size.setWidth(qMin(minimum.width(), width()));
        }
        if (fixedHeight) {
            size.setHeight(qMin(minimum.height(), height()));
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

    QPointer<QWidget> m_child;  // what the cell shows, or will show at the next commit
    QPointer<QWidget> m_shown;  // what the screen shows now
    EAligns m_align = AL_CENTER;
};

// Replaced item widgets of one commit, deleted together by one deferred delete:
// like deleteLater() on each (a widget may be the sender of the signal that led
// to its replacement), at the cost of one posted event.
class CRetiredItemWidgets : public QObject {
public:
    CRetiredItemWidgets(std::vector<QPointer<QWidget>> widgets, QObject* parent)
        : QObject(parent), m_widgets(std::move(widgets))
    {
    }
    ~CRetiredItemWidgets() override
    {
        for (const QPointer<QWidget>& widget : m_widgets) {
            delete widget.data();
        }
    }

private:
    std::vector<QPointer<QWidget>> m_widgets;
};

namespace {

// Colour keys arrive as C strings, mostly the same few literals tick after
// tick: a key met before at the same address is handed on as the QString
// made then, which shares its text, instead of being converted and allocated
// again. The text is compared too, since an address may be reused. GUI thread.
QString sharedKey(const char* key)
{
    if (key == nullptr || *key == '\0') {
        return QString();
    }
    struct Entry {
        const char* address = nullptr;
        QByteArray bytes;  // the text as it came, compared byte for byte
        QString text;
    };
    static std::array<Entry, 64> recent;
    Entry& entry = recent[(reinterpret_cast<quintptr>(key) >> 3) % recent.size()];
    if (entry.address != key || std::strcmp(entry.bytes.constData(), key) != 0) {
        entry.address = key;
        entry.bytes = QByteArray(key);
        entry.text = QString::fromUtf8(entry.bytes);
    }
    return entry.text;
}

quint64 holderKey(int row, int column)
{
    return (static_cast<quint64>(static_cast<quint32>(row)) << 32) | static_cast<quint32>(column);
}

}  // namespace

CBaseNormalTable::CBaseNormalTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags)
    : IBaseTable(id, parent, menuFlags), m_model(new CTableCellModel(this))
{
    attachModel(m_model);
    m_widgetTimer.setSingleShot(true);
    m_widgetTimer.setInterval(0);
    connect(&m_widgetTimer, &QTimer::timeout, this, &CBaseNormalTable::commitItemWidgets);
    view()->viewport()->installEventFilter(this);
}

bool CBaseNormalTable::eventFilter(QObject* watched, QEvent* event)
{
    // A larger viewport brings cells into view without moving their holders.
    if (event->type() == QEvent::Resize && watched == view()->viewport()) {
        for (const QPointer<CItemWidgetHolder>& holder : qAsConst(m_holders)) {
            if (holder != nullptr) {
                holder->showStaged();
            }
        }
    }
    return IBaseTable::eventFilter(watched, event);
}

CBaseNormalTable::~CBaseNormalTable() = default;

QAbstractItemModel* CBaseNormalTable::cellModel() const { return m_model; }

void CBaseNormalTable::clear()
{
    m_holders.clear();  // the view drops its cell widgets with the rows
    m_stagedHolders.clear();
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
    const int count = m_model->rowCount();
    for (ColumnState& column : m_columns) {
        if (column.delegate != nullptr) {
            column.delegate->removeItem(rowKey(row));
            // Row ids are positions: the later rows' controls move up with their cells.
            for (int later = row + 1; later < count; ++later) {
                column.delegate->moveItem(rowKey(later), rowKey(later - 1));
            }
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
    commitItemWidgets();
}

void CBaseNormalTable::onModelFlushNeeded()
{
    m_model->flush();
    commitItemWidgets();
}

void CBaseNormalTable::commitItemWidgets()
{
    m_widgetTimer.stop();
    if (m_stagedHolders.isEmpty() && m_retired.empty()) {
        return;
    }
    // All replaced widgets leave first, then the new ones show: no widget is
    // hidden while others of the tick wait in the repaint queue.
    QRegion changed;  // the cells themselves: a bounding rectangle would span the rows between
    m_retired.reserve(m_retired.size() + static_cast<std::size_t>(m_stagedHolders.size()));
    for (const QPointer<CItemWidgetHolder>& holder : qAsConst(m_stagedHolders)) {
        if (holder != nullptr) {
            holder->retireShown(m_retired);
            changed += holder->geometry();
        }
    }
    for (const QPointer<CItemWidgetHolder>& holder : qAsConst(m_stagedHolders)) {
        if (holder != nullptr) {
            holder->showStaged();
            holder->queued = false;
        }
    }
    m_stagedHolders.clear();
    if (!changed.isEmpty()) {
        view()->viewport()->update(changed);
    }
    if (!m_retired.empty()) {
        (new CRetiredItemWidgets(std::move(m_retired), this))->deleteLater();
        m_retired.clear();
    }
}

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
    m_model->setCellTextColorKey(row, column, sharedKey(key));
}

void CBaseNormalTable::setItemBackgroundColorKey(int row, int column, const char* key, bool)
{
    m_model->setCellBackgroundKey(row, column, sharedKey(key));
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
            holder->stage(nullptr, align, m_retired);  // a widget staged meanwhile never shows
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
    if (holder->stage(widget, align, m_retired) && !holder->queued) {
        holder->queued = true;
        m_stagedHolders.append(holder);
    }
    if (!m_widgetTimer.isActive() && (!m_stagedHolders.isEmpty() || !m_retired.empty())) {
        m_widgetTimer.start();  // commits at the end of this turn unless updateTable() comes first
    }
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
