// A painted radio button. A click delivers UE_CHECK_CLICKED; a change of state
// delivers UE_CHECK_TOGGLED with the new state in arg.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QRadioButton>

namespace WG {

class CRadioButton : public CEventWidgetT<QRadioButton> {
    Q_OBJECT
public:
    CRadioButton(int id, const QString& text, QWidget* parent);
    ~CRadioButton() override;

    int id() const { return m_id; }
    void setFontKey(const QString& key);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

private:
    int m_id;
    QString m_fontKey = QStringLiteral("fnt_default_normal_fix");
};

}  // namespace WG
