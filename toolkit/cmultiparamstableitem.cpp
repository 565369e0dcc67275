#include "toolkit/cmultiparamstableitem.h"

#include "toolkit/cparametercell.h"
#include "toolkit/cuiresource.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace WG {

CMultiParamsTableItem::CMultiParamsTableItem(const QString& name, QWidget* editor, QWidget* parent)
    : QWidget(parent), m_caption(new QLabel(name, this)), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(4, 1, 4, 1);
    m_layout->setSpacing(6);
    m_caption->setMinimumWidth(60);
    m_caption->setStyleSheet(
        QStringLiteral("color:%1;").arg(CUiResource::get()->getColor(QStringLiteral("clr_param_cell_unit"))->name()));
    m_caption->setVisible(!name.isEmpty());
    m_layout->addWidget(m_caption);
    setEditor(editor);
}

CMultiParamsTableItem::~CMultiParamsTableItem() = default;

QString CMultiParamsTableItem::name() const { return m_caption->text(); }

void CMultiParamsTableItem::setName(const QString& name)
{
    m_caption->setText(name);
    m_caption->setVisible(!name.isEmpty());
}

void CMultiParamsTableItem::setEditor(QWidget* editor)
{
    if (editor == nullptr || editor == m_editor) {
        return;
    }
    delete m_editor;
    m_editor = editor;
    editor->setParent(this);
    m_layout->addWidget(editor, 1);
}

QString CMultiParamsTableItem::valueText() const
{
    if (auto* cell = qobject_cast<CParameterCell*>(m_editor)) {
        return cell->text();
    }
    if (auto* line = qobject_cast<QLineEdit*>(m_editor)) {
        return line->text();
    }
    return QString();
}

}  // namespace WG
