// Two widgets side by side (or one above the other) with a draggable splitter
// line in the theme's split colour.
#pragma once

#include "toolkit/ceventwidgett.h"

class QSplitter;

namespace WG {

class CSplitContainer : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    CSplitContainer(Qt::Orientation orientation, int handleWidth, QWidget* parent);
    ~CSplitContainer() override;

    // Replaces both members. secondFixed: the second keeps secondLength when the
    // container resizes, the first takes the rest.
    void setWidgets(QWidget* first, QWidget* second, bool secondFixed, int secondLength);
    // A hidden splitter can no longer be dragged and takes no room.
    void setSpliterVisible(bool visible);
    bool isSpliterVisible() const { return m_spliterVisible; }
    // Length of the second member along the orientation (its width when horizontal).
    int getSecondWidth() const;

    QSplitter* splitter() const { return m_splitter; }
    void themeChanged() override;

private:
    void applyStyle();

    QSplitter* m_splitter;
    int m_handleWidth;
    bool m_spliterVisible = true;
};

}  // namespace WG
