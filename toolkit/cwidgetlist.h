// A row or column of child widgets with fixed and stretching members, margins
// and spacing: the plain layout the panels build their tool strips from.
#pragma once

#include "toolkit/ceventwidgett.h"
#include "toolkit/toolkitenums.h"

#include <QBoxLayout>
#include <QList>

namespace WG {

class CWidgetList : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    CWidgetList(Qt::Orientation orientation, QWidget* parent);
    ~CWidgetList() override;

    void setMargin(int left, int top, int right, int bottom);
    void setSpacing(int spacing);
    // A member of its own length. updateLength: recompute the list's length now
    // (pass false while adding many and call updateWidgetLength() once).
    void addFixedWidget(QWidget* widget, EWidgetAnchor anchor = WA_CENTER, bool updateLength = true);
    // A member that takes a share (stretch) of the free length.
    void addStretchWidget(QWidget* widget, int stretch, EWidgetAnchor anchor = WA_CENTER, bool updateLength = true);
    void addFixedSpace(int length);
    void addStretchSpace(int stretch);
    // Removes and deletes every member.
    void removeAllWidgets();
    // Sets the list's minimum length to what its fixed members, spaces and margins need.
    void updateWidgetLength();

    Qt::Orientation orientation() const { return m_orientation; }
    int count() const { return m_layout->count(); }

private:
    Qt::Alignment alignmentOf(EWidgetAnchor anchor) const;

    Qt::Orientation m_orientation;
    QBoxLayout* m_layout;
};

}  // namespace WG
