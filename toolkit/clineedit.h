// A themed line edit. Every change of its text delivers UE_TEXT_CHANGED, and
// Return or leaving the field delivers UE_VALUE_COMMITTED, both with its id
// and the text.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QLineEdit>

namespace WG {

class CLineEdit : public CEventWidgetT<QLineEdit> {
    Q_OBJECT
public:
    // selectAllOnFocus: a click into the field selects its text, so a trader can overwrite a price at once.
    CLineEdit(int id, QWidget* parent, bool selectAllOnFocus = false);
    ~CLineEdit() override;

    int id() const { return m_id; }
    // The number in the field; the absent marker when it holds none.
    double toDouble() const;
    void setFontKey(const QString& key);
    // Without a frame the field blends into a tool strip.
    void setLineEditFrame(bool frame);
    // Marks the field's content as wrong (a red frame) until cleared.
    void setInvalid(bool invalid);
    // Colour of the grey hint shown while the field is empty.
    void setPlaceholderColorKey(const QString& key);
    QString placeholderColorKey() const { return m_placeholderKey; }
    bool isInvalid() const { return m_invalid; }
    void themeChanged() override;

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void applyStyle();
    void applyPlaceholderColor();

    int m_id;
    bool m_selectAllOnFocus;
    bool m_selectOnNextClick = false;
    bool m_invalid = false;
    bool m_frame = true;
    QString m_fontKey;
    QString m_placeholderKey = QStringLiteral("clr_edit_placeholder");
};

}  // namespace WG
