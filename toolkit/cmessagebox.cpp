#include "toolkit/cmessagebox.h"

#include "seam/uievents.h"
#include "toolkit/cbasedialog.h"
#include "toolkit/csmallnormalbutton.h"
#include "toolkit/cuiresource.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace WG {

namespace {
CMessageBox::TestHook* g_hook = nullptr;

const QList<QMessageBox::StandardButton>& buttonOrder()
{
    static const QList<QMessageBox::StandardButton> order = {
        QMessageBox::Ok,      QMessageBox::Save,   QMessageBox::SaveAll,  QMessageBox::Open,    QMessageBox::Yes,
        QMessageBox::YesToAll, QMessageBox::No,    QMessageBox::NoToAll,  QMessageBox::Abort,   QMessageBox::Retry,
        QMessageBox::Ignore,  QMessageBox::Close,  QMessageBox::Discard,  QMessageBox::Apply,   QMessageBox::Reset,
        QMessageBox::RestoreDefaults, QMessageBox::Help, QMessageBox::Cancel,
    };
    return order;
}

QString defaultText(QMessageBox::StandardButton button)
{
    switch (button) {
    case QMessageBox::Ok: return QStringLiteral("确定");
    case QMessageBox::Cancel: return QStringLiteral("取消");
    case QMessageBox::Yes: return QStringLiteral("是");
    case QMessageBox::No: return QStringLiteral("否");
    case QMessageBox::YesToAll: return QStringLiteral("全部是");
    case QMessageBox::NoToAll: return QStringLiteral("全部否");
    case QMessageBox::Close: return QStringLiteral("关闭");
    case QMessageBox::Save: return QStringLiteral("保存");
    case QMessageBox::SaveAll: return QStringLiteral("全部保存");
    case QMessageBox::Open: return QStringLiteral("打开");
    case QMessageBox::Discard: return QStringLiteral("放弃");
    case QMessageBox::Apply: return QStringLiteral("应用");
    case QMessageBox::Reset: return QStringLiteral("重置");
    case QMessageBox::RestoreDefaults: return QStringLiteral("恢复默认");
    case QMessageBox::Abort: return QStringLiteral("中止");
    case QMessageBox::Retry: return QStringLiteral("重试");
    case QMessageBox::Ignore: return QStringLiteral("忽略");
    case QMessageBox::Help: return QStringLiteral("帮助");
    default: break;
    }
    return QString();
}

// The sign beside the text: a triangle for a warning, a circle for a question.
class SignWidget : public QWidget {
public:
    SignWidget(bool question, QWidget* parent) : QWidget(parent), m_question(question) { setFixedSize(28, 28); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        CUiResource* res = CUiResource::get();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(Qt::NoPen);
        painter.setBrush(*res->getColor(m_question ? QStringLiteral("clr_accent") : QStringLiteral("clr_param_table_order_mode_active")));
        if (m_question) {
            painter.drawEllipse(QRectF(2, 2, 24, 24));
        } else {
            QPainterPath triangle;
            triangle.moveTo(14, 2);
            triangle.lineTo(26.5, 25);
            triangle.lineTo(1.5, 25);
            triangle.closeSubpath();
            painter.drawPath(triangle);
        }
        QFont font = *res->getFont(QStringLiteral("fnt_default_large_fix"));
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(*res->getColor(QStringLiteral("clr_dialog_background")));
        painter.drawText(QRect(0, m_question ? 0 : 4, 28, m_question ? 28 : 22), Qt::AlignCenter,
                         m_question ? QStringLiteral("?") : QStringLiteral("!"));
    }

private:
    bool m_question;
};

// The box itself: buttons report by the event channel with the standard button as id.
class MessageDialog : public CBaseDialog {
public:
    MessageDialog(QWidget* parent, QMessageBox::StandardButton escapeAnswer)
        : CBaseDialog(parent, true), m_answer(escapeAnswer), m_escapeAnswer(escapeAnswer)
    {
    }
    QMessageBox::StandardButton answer() const { return m_answer; }
    void setDefaultAnswer(QMessageBox::StandardButton button) { m_default = button; }

    bool handleEvent(int code, int id, int arg, QString text, void* data) override
    {
        if (code == UE_BUTTON_CLICKED && id != kCloseButtonID) {
            m_answer = static_cast<QMessageBox::StandardButton>(id);
            accept();
            return true;
        }
        if (code == UE_BUTTON_CLICKED) {
            m_answer = m_escapeAnswer;
        }
        return CBaseDialog::handleEvent(code, id, arg, text, data);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && m_default != QMessageBox::NoButton) {
            m_answer = m_default;
            accept();
            return;
        }
        CBaseDialog::keyPressEvent(event);
    }

    void reject() override
    {
        m_answer = m_escapeAnswer;
        CBaseDialog::reject();
    }

private:
    QMessageBox::StandardButton m_answer;
    QMessageBox::StandardButton m_escapeAnswer;
    QMessageBox::StandardButton m_default = QMessageBox::NoButton;
};
}  // namespace

QString CButtonStyle::buttonText(QMessageBox::StandardButton button) const
{
    return m_texts.contains(button) ? m_texts.value(button) : defaultText(button);
}

ENormalButtonType CButtonStyle::buttonType(QMessageBox::StandardButton button, bool isDefault) const
{
    if (m_types.contains(button)) {
        return m_types.value(button);
    }
    return isDefault ? NBT_PRIMARY : NBT_NORMAL;
}

CMessageBox::TestHook::TestHook()
{
    Q_ASSERT(g_hook == nullptr);
    g_hook = this;
}

CMessageBox::TestHook::~TestHook()
{
    if (g_hook == this) {
        g_hook = nullptr;
    }
}

CMessageBox::TestHook* CMessageBox::TestHook::current() { return g_hook; }

QMessageBox::StandardButton CMessageBox::warning(CButtonStyle* style, QWidget* parent, const QString& title,
                                                 const QString& text, QFlags<QMessageBox::StandardButton> buttons,
                                                 QMessageBox::StandardButton defaultButton, bool showIcon)
{
    if (buttons == QMessageBox::NoButton) {
        buttons = QMessageBox::Ok;
    }
    return show(QStringLiteral("warning"), style, parent, title, text, buttons, defaultButton, showIcon, defaultButton);
}

QMessageBox::StandardButton CMessageBox::question(CButtonStyle* style, QWidget* parent, const QString& title,
                                                  const QString& text, QFlags<QMessageBox::StandardButton> buttons,
                                                  QMessageBox::StandardButton defaultButton, bool showIcon,
                                                  bool escapeIsDefault)
{
    if (buttons == QMessageBox::NoButton) {
        buttons = QMessageBox::Yes | QMessageBox::No;
    }
    QMessageBox::StandardButton escape = defaultButton;
    if (!escapeIsDefault) {
        if (buttons.testFlag(QMessageBox::Cancel)) {
            escape = QMessageBox::Cancel;
        } else if (buttons.testFlag(QMessageBox::No)) {
            escape = QMessageBox::No;
        } else {
            for (QMessageBox::StandardButton button : buttonOrder()) {
                if (buttons.testFlag(button)) {
                    escape = button;
                }
            }
        }
    }
    return show(QStringLiteral("question"), style, parent, title, text, buttons, defaultButton, showIcon, escape);
}

QMessageBox::StandardButton CMessageBox::show(const QString& kind, CButtonStyle* style, QWidget* parent,
                                              const QString& title, const QString& text,
                                              QFlags<QMessageBox::StandardButton> buttons,
                                              QMessageBox::StandardButton defaultButton, bool showIcon,
                                              QMessageBox::StandardButton escapeAnswer)
{
    if (!buttons.testFlag(defaultButton)) {
        defaultButton = QMessageBox::NoButton;
        for (QMessageBox::StandardButton button : buttonOrder()) {
            if (buttons.testFlag(button)) {
                defaultButton = button;
                break;
            }
        }
    }
    CMessageBoxRecord record;
    record.kind = kind;
    record.title = title;
    record.text = text;
    record.buttons = buttons;
    record.defaultButton = defaultButton;

    if (TestHook* hook = TestHook::current()) {
        record.queued = !hook->m_answers.isEmpty();
        record.answer = record.queued ? hook->m_answers.takeFirst() : defaultButton;
        hook->m_records << record;
        return record.answer;
    }

    CButtonStyle defaults;
    const CButtonStyle& looks = style != nullptr ? *style : defaults;
    MessageDialog dialog(parent, escapeAnswer);
    dialog.setTitle(title);
    dialog.setDefaultAnswer(defaultButton);
    auto* body = new QHBoxLayout();
    body->setSpacing(12);
    if (showIcon) {
        body->addWidget(new SignWidget(kind == QLatin1String("question"), &dialog), 0, Qt::AlignTop);
    }
    auto* label = new QLabel(text, &dialog);
    label->setWordWrap(true);
    label->setMinimumWidth(220);
    label->setMaximumWidth(420);
    label->setFont(*CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_fix")));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    body->addWidget(label, 1);
    dialog.contentLayout()->addLayout(body);
    auto* row = new QHBoxLayout();
    row->addStretch(1);
    row->setSpacing(8);
    for (QMessageBox::StandardButton button : buttonOrder()) {
        if (!buttons.testFlag(button)) {
            continue;
        }
        const bool isDefault = button == defaultButton;
        auto* widget = new CSmallNormalButton(static_cast<int>(button), false, looks.buttonType(button, isDefault),
                                              looks.buttonText(button), &dialog);
        widget->setMinimumWidth(64);
        row->addWidget(widget);
        if (isDefault) {
            widget->setFocus();
        }
    }
    dialog.contentLayout()->addLayout(row);
    dialog.adjustSize();
    if (parent != nullptr) {
        const QRect area = parent->window()->frameGeometry();
        dialog.move(area.center() - QPoint(dialog.width() / 2, dialog.height() / 2));
    }
    dialog.exec();
    return dialog.answer();
}

}  // namespace WG
