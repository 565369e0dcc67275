// A painted check box. A click delivers UE_CHECK_CLICKED; every change of state,
// by click or by code, delivers UE_CHECK_TOGGLED with the new state in arg.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QCheckBox>

namespace WG {

class CCheckBox : public CEventWidgetT<QCheckBox> {
    Q_OBJECT
public:
    CCheckBox(int id, const QString& text, QWidget* parent);
    ~CCheckBox() override;

    int id() const { return m_id; }
    void setFontKey(const QString& key);
    void setTextColorKey(const QString& key);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

private:
    int m_id;
    QString m_fontKey = QStringLiteral("fnt_default_normal_fix");
    QString m_textColorKey = QStringLiteral("clr_text_default");
};

// Paints the box or circle of a check box or radio button; shared by both.
void paintCheckMark(QPainter& painter, const QRect& box, bool checked, bool enabled, bool round, bool hovered);

}  // namespace WG
