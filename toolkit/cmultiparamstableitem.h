// One row of a CMultiParamsTable: a caption and an editor widget. Subclasses
// (CComboBoxDelegate) give the row a kind of editor of their own.
#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QHBoxLayout;

namespace WG {

class CMultiParamsTableItem : public QWidget {
    Q_OBJECT
public:
    // editor: the row's widget, taken by the item; may be null for a subclass that builds its own.
    CMultiParamsTableItem(const QString& name, QWidget* editor, QWidget* parent = nullptr);
    ~CMultiParamsTableItem() override;

    QString name() const;
    void setName(const QString& name);
    QWidget* editor() const { return m_editor; }
    // The row's value as text, for the owner to read without knowing the editor.
    virtual QString valueText() const;

protected:
    void setEditor(QWidget* editor);

private:
    QLabel* m_caption;
    QHBoxLayout* m_layout;
    QWidget* m_editor = nullptr;
};

}  // namespace WG
