// A filter field with a magnifier and a clear button. Every change of its text
// delivers UE_TEXT_FILTER_CHANGED with its id and the text.
#pragma once

#include "toolkit/ceventwidgett.h"

class QAction;

namespace WG {

class CLineEdit;

class CSearchTextLineEdit : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    explicit CSearchTextLineEdit(QWidget* parent, int id = 0);
    ~CSearchTextLineEdit() override;

    int id() const { return m_id; }
    QString getText() const;
    void setText(const QString& text);
    // Without a frame the field blends into a tool strip.
    void setLineEditFrame(bool frame);
    // Grey hint shown while the field is empty.
    void setEmptyTip(const QString& tip);
    CLineEdit* lineEdit() const { return m_edit; }
    bool handleEvent(int code, int id, int arg, QString text, void* data) override;
    void themeChanged() override;

signals:
    void sigTextChanged(const QString& text);

private:
    void applyStyle();

    int m_id;
    bool m_frame = true;
    CLineEdit* m_edit;
    QAction* m_magnifier;
};

}  // namespace WG
