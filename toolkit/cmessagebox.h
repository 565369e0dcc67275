// Modal message boxes in the toolkit's look: warning and question, answered by
// one of the standard buttons. Tests answer them through CMessageBox::TestHook,
// which the desk never installs.
#pragma once

#include "toolkit/toolkitenums.h"

#include <QList>
#include <QMap>
#include <QMessageBox>
#include <QString>

class QWidget;

namespace WG {

// Texts and looks of a box's buttons; a box without a style uses the defaults.
class CButtonStyle {
public:
    void setButtonText(QMessageBox::StandardButton button, const QString& text) { m_texts[button] = text; }
    void setButtonType(QMessageBox::StandardButton button, ENormalButtonType type) { m_types[button] = type; }
    QString buttonText(QMessageBox::StandardButton button) const;
    // The default button is primary, the others neutral, unless set.
    ENormalButtonType buttonType(QMessageBox::StandardButton button, bool isDefault) const;

private:
    QMap<QMessageBox::StandardButton, QString> m_texts;
    QMap<QMessageBox::StandardButton, ENormalButtonType> m_types;
};

// What one box showed and how it was answered.
struct CMessageBoxRecord {
    QString kind;  // "warning" or "question"
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QMessageBox::StandardButton answer = QMessageBox::NoButton;
    bool queued = false;  // answered from the hook's queue (else by the default)
};

class CMessageBox {
public:
    // showIcon: the warning sign beside the text.
    static QMessageBox::StandardButton warning(CButtonStyle* style, QWidget* parent, const QString& title,
                                               const QString& text,
                                               QFlags<QMessageBox::StandardButton> buttons = QMessageBox::Ok,
                                               QMessageBox::StandardButton defaultButton = QMessageBox::Ok,
                                               bool showIcon = true);
    // escapeIsDefault: closing the box answers the default button; otherwise Cancel, No or the last button.
    static QMessageBox::StandardButton question(CButtonStyle* style, QWidget* parent, const QString& title,
                                                const QString& text,
                                                QFlags<QMessageBox::StandardButton> buttons = QMessageBox::Yes | QMessageBox::No,
                                                QMessageBox::StandardButton defaultButton = QMessageBox::Yes,
                                                bool showIcon = true, bool escapeIsDefault = false);

    // Answers boxes without showing them while it lives: queued answers first,
    // then each box's default button. Records every box. One at a time.
    class TestHook {
    public:
        TestHook();
        ~TestHook();
        TestHook(const TestHook&) = delete;
        TestHook& operator=(const TestHook&) = delete;

        void queueAnswer(QMessageBox::StandardButton answer) { m_answers << answer; }
        int pendingAnswers() const { return m_answers.size(); }
        const QList<CMessageBoxRecord>& records() const { return m_records; }
        int count() const { return m_records.size(); }
        // The last box; an empty record when none was shown.
        CMessageBoxRecord last() const { return m_records.isEmpty() ? CMessageBoxRecord() : m_records.last(); }
        void clear() { m_records.clear(); }

        static TestHook* current();

    private:
        friend class CMessageBox;
        QList<QMessageBox::StandardButton> m_answers;
        QList<CMessageBoxRecord> m_records;
    };

private:
    static QMessageBox::StandardButton show(const QString& kind, CButtonStyle* style, QWidget* parent,
                                            const QString& title, const QString& text,
                                            QFlags<QMessageBox::StandardButton> buttons,
                                            QMessageBox::StandardButton defaultButton, bool showIcon,
                                            QMessageBox::StandardButton escapeAnswer);
};

}  // namespace WG
