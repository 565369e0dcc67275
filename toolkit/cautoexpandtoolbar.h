// A tool strip that wraps its items onto further rows when it is too narrow,
// growing its height instead of hiding controls a trader needs.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QList>
#include <QPointer>

namespace WG {

class CAutoExpandToolBar : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    // backgroundKey: a colour or image key painted behind the items (empty for none);
    // then the four margins; spacing between items.
    CAutoExpandToolBar(const char* backgroundKey, int left, int top, int right, int bottom, QWidget* parent,
                       int spacing = 4);
    ~CAutoExpandToolBar() override;

    // alignRight: the item goes to the right end of the last row.
    void addToolItem(QWidget* item, bool alignRight = false);
    void addSeperator();
    void addFixedSpace(int length);
    // Places the items again; call after items changed their size or visibility.
    void updateItemLength();

    int rowCount() const { return m_rows; }
    int rowHeight() const;

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Item {
        QPointer<QWidget> widget;
        int space = 0;
        bool right = false;
    };
    // Lays the items out for a width; moves them when apply is true. Returns the rows used.
    int layoutItems(int width, bool apply) const;
    int itemWidth(const Item& item) const;

    QString m_backgroundKey;
    QMargins m_margins;
    int m_spacing;
    QList<Item> m_items;
    int m_rows = 1;
};

}  // namespace WG
