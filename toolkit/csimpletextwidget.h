// One line of text painted in a colour key and a font key (resolved at paint
// time), elided to a width. When clickable, a click delivers UE_BUTTON_CLICKED.
#pragma once

#include "toolkit/ceventwidgett.h"

namespace WG {

class CSimpleTextWidget : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    CSimpleTextWidget(bool clickable, int id, const QString& text, QWidget* parent);
    ~CSimpleTextWidget() override;

    int id() const { return m_id; }
    // maxWidth > 0 elides the text to that width and fixes the widget's width to it.
    void setText(const QString& text, int maxWidth = 0);
    QString getText() const { return m_text; }
    // The text as painted (elided), for tool tips and tests.
    QString shownText() const;
    void setFontKey(const QString& key);
    void setColorKey(const QString& key);
    QString fontKey() const { return m_fontKey; }
    QString colorKey() const { return m_colorKey; }
    // Qt::Alignment flags; left and vertically centred by default.
    void setFlag(int flag);
    int flag() const { return m_flag; }
    // The key painted now: the colour key, or the disabled colour when disabled.
    QString currentColorKey() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void sigClicked(int id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool m_clickable;
    int m_id;
    QString m_text;
    int m_maxWidth = 0;
    int m_flag = Qt::AlignLeft | Qt::AlignVCenter;
    QString m_fontKey = QStringLiteral("fnt_default_normal_fix");
    QString m_colorKey = QStringLiteral("clr_text_default");
};

}  // namespace WG
