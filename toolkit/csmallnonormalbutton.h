// The flat sibling of CSmallNormalButton: no fill until hovered or checked, the
// text carries the type's colour. For secondary actions beside a filled button.
#pragma once

#include "toolkit/csmallnormalbutton.h"

namespace WG {

class CSmallNoNormalButton : public CSmallNormalButton {
    Q_OBJECT
public:
    CSmallNoNormalButton(int id, bool checkable, ENormalButtonType type, const QString& text, QWidget* parent);
    ~CSmallNoNormalButton() override;

    QString currentBackgroundKey() const override;
    QString currentTextColorKey() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace WG
