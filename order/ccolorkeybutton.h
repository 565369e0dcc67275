// A small button whose face takes a colour key of its own while enabled: the
// order buttons in the operation's colour (rise red, fall green).
#pragma once

#include "toolkit/csmallnormalbutton.h"

#include <QString>

namespace TC {

class CColorKeyButton : public WG::CSmallNormalButton {
    Q_OBJECT
public:
    CColorKeyButton(int id, const QString& text, QWidget* parent);
    ~CColorKeyButton() override;

    void setColorKey(const QString& key);
    QString colorKey() const { return m_key; }
    QString currentBackgroundKey() const override;

private:
    QString m_key;
};

}  // namespace TC
