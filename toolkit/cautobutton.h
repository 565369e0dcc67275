// A small button that rests after each click: for the time given it takes no
// further click, so a double click cannot send an order twice.
#pragma once

#include "toolkit/csmallnormalbutton.h"

class QTimer;

namespace TC {

class CAutoButton : public WG::CSmallNormalButton {
    Q_OBJECT
public:
    // milliseconds: the rest after a click; 0 or less for none.
    CAutoButton(int id, bool checkable, WG::ENormalButtonType type, QWidget* parent, int milliseconds = 500);
    ~CAutoButton() override;

    int restTime() const { return m_milliseconds; }
    bool isResting() const;

public slots:
    // Delivers the click, unless the button is still resting from the last one.
    void slotClicked(bool checked);

protected:
    void onClicked(bool checked) override;

private:
    int m_milliseconds;
    QTimer* m_rest;
};

}  // namespace TC
